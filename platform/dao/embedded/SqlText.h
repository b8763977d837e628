#pragma once

#include <functional>

#include <QByteArray>
#include <QStringList>

#include "platform/dao/embedded/SqlTokens.h"
#include "platform/storage/Storage.h"

namespace dao {

enum class StatementKind { Select, Insert, Update, Delete, Definition };

/// What the first words ask for. Throws DaoError 3129 for anything else, and 3293 for ALTER.
StatementKind kindOf(const std::vector<Token> &tokens);

/// A statement as SQLite is to read it.
struct SqlText {
    StatementKind kind = StatementKind::Select;
    QByteArray sql{}; ///< UTF-8
    qsizetype whereAt = -1; ///< where the first condition begins in `sql`
    QStringList tables{}; ///< the stored tables that are named

    /// INSERT: the columns that are given values, by position in the table; all if the statement names none.
    std::vector<int> insertColumns{};

    /// A SELECT over nothing but rows of one table: that table, and the query for their addresses alone.
    QString onlyTable{};
    QByteArray addresses{};
    QByteArray reversed{}; ///< the same from the last row to the first; empty unless that is certain
};

/// Finds a table's schema by name; nullptr if there is no such table.
using SchemaLookup = std::function<const storage::TableSchema *(const QString &)>;

/// Puts a query or action statement into SQLite's words: names bracketed (so that only Jet's own keywords count),
/// texts in single quotes, dates as serial numbers, True and False as -1 and 0, Jet's functions by the names under
/// which they were registered. Throws DaoError for what would mean something else there.
SqlText sqlText(const std::vector<Token> &tokens, const SchemaLookup &schemaOf);

/// A name in brackets.
QByteArray bracketed(const QString &name);

} // namespace dao
