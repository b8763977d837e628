#pragma once

#include <functional>
#include <vector>

#include "platform/dao/embedded/SqlWording.h"
#include "platform/storage/Storage.h"

namespace dao {

/// Follows the types through a statement's expressions. Stored amounts and decimals are exact numbers (ExactNumber.h);
/// the wording, one for each token, turns what they are compared with and added to into such, and them into doubles
/// where SQLite computes. `isKeyword` tells keywords from names.
///
/// Throws DaoError 3464 where a column that is no text is compared with one, or the other way round. What is no
/// expression is left alone: SQLite will say so.
std::vector<Wording> typedWording(const std::vector<Token> &tokens, const std::vector<storage::TableSchema> &schemas,
                                  const std::function<bool(const Token &)> &isKeyword);

} // namespace dao
