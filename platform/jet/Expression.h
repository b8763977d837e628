#pragma once

#include <memory>
#include <optional>
#include <vector>

#include <QString>

#include "platform/jet/TableDef.h"
#include "platform/storage/Value.h"

/// The expressions that a column keeps as text: its default and its validation rule.
namespace jet {

/// One word of an expression.
struct Token {
    enum Kind { Number, Text, Date, Word, Name, Sign, End };
    Kind kind = End;
    QString text{}; ///< a text without quotes, a name without brackets
};

/// The words of an expression, with an End behind; nothing for what is none.
std::optional<std::vector<Token>> tokenize(QStringView expression);

/// Reads a constant or a call of Now(), Date(), Time() and GenGUID() from the tokens at `at` and goes on behind it.
/// Nothing for anything else.
std::optional<storage::Value> readConstant(const std::vector<Token> &tokens, std::size_t &at);

/// A column's default as a value for it. Throws StorageError::Unsupported, naming column and expression, for one that
/// we cannot evaluate.
storage::Value evaluateDefault(const ColumnDef &column, const QString &expression);

} // namespace jet
