#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <QByteArray>

#include "platform/dao/embedded/SqlTokens.h"
#include "platform/storage/Storage.h"

namespace dao {

/// What is written around a token, or instead of it.
struct Wording {
    QByteArray before{};
    QByteArray after{};
    std::optional<QByteArray> instead{};
};

/// Follows the types through a statement's expressions. Stored amounts and decimals are exact numbers (ExactNumber.h);
/// the wording, one for each token, turns what they are compared with and added to into such, and them into doubles
/// where SQLite computes. `isKeyword` tells keywords from names.
///
/// Throws DaoError 3464 where a column that is no text is compared with one, or the other way round. What is no
/// expression is left alone: SQLite will say so.
std::vector<Wording> typedWording(const std::vector<Token> &tokens, const std::vector<storage::TableSchema> &schemas,
                                  const std::function<bool(const Token &)> &isKeyword);

} // namespace dao
