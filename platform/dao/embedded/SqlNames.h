#pragma once

#include <functional>
#include <map>
#include <vector>

#include "platform/dao/embedded/SqlWording.h"
#include "platform/storage/Storage.h"

namespace dao {

/// The names of a statement: which columns they are, and what those give. Must not outlive the schemas.
class SqlNames
{
public:
    /// `isKeyword` tells keywords from names.
    SqlNames(const std::vector<Token> &tokens, const std::vector<storage::TableSchema> &schemas,
             const std::function<bool(const Token &)> &isKeyword);

    /// A name that the statement gives to a column of its own.
    void give(const QString &name, Kind kind) { m_given[name.toCaseFolded()] = kind; }
    /// Of a column, of any table unless `table` (or its alias) is known; Unknown or Mixed if several differ.
    Kind kindOf(const QString &column, const QString &table) const;
    /// Of all columns of a table; none if it is not known.
    std::vector<Kind> kindsOf(const QString &table) const;

private:
    const std::vector<storage::TableSchema> &m_schemas;
    std::map<QString, const storage::TableSchema *> m_tables{}; // by name and alias
    std::map<QString, Kind> m_given{};
};

} // namespace dao
