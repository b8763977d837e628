#pragma once

#include <variant>
#include <vector>

#include "platform/dao/embedded/SqlTokens.h"
#include "platform/storage/Storage.h"

namespace dao {

struct CreateTable {
    storage::TableSchema schema;
    /// Empty column lists on the referenced side mean its primary key.
    std::vector<storage::Relationship> relationships{};
};

struct CreateIndex {
    QString table;
    QStringList columns; ///< pairwise with index.columns, whose positions are still open
    storage::Index index;
};

struct DropTable {
    QString name;
};

using Definition = std::variant<CreateTable, CreateIndex, DropTable>;

/// Reads CREATE TABLE, CREATE INDEX or DROP TABLE. Throws DaoError 3290 and its neighbours for what is none of them.
Definition definitionOf(const std::vector<Token> &tokens);

/// Carries a definition out. The caller holds the write scope. Throws DaoError or StorageError.
void define(storage::Database &database, const Definition &definition);

} // namespace dao
