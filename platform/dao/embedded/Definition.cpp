// Carries out data definition statements on the stored database.
#include "platform/dao/embedded/Definition.h"

#include <algorithm>

#include "platform/dao/embedded/Errors.h"

namespace dao {

namespace {

const storage::TableSchema &schemaOf(storage::Database &database, const QString &name)
{
    const storage::Table *table = database.table(name);
    if (table == nullptr)
        throw daoError(DaoError::UnknownTable, name);
    return table->schema();
}

QStringList primaryKey(const storage::TableSchema &schema)
{
    QStringList columns;
    const auto primary = std::ranges::find_if(schema.indexes, &storage::Index::primary);
    if (primary == schema.indexes.end())
        throw daoError(number::UnknownIndex, schema.name);
    for (const storage::IndexColumn &column : primary->columns)
        columns.append(schema.columns[static_cast<std::size_t>(column.column)].name);
    return columns;
}

struct Definer {
    storage::Database &database;

    void operator()(const CreateTable &definition) const
    {
        translated(Doing::CreateTable, [&] { database.createTable(definition.schema); });
        for (storage::Relationship relationship : definition.relationships) {
            if (relationship.columns.isEmpty())
                relationship.columns = primaryKey(schemaOf(database, relationship.table));
            translated(Doing::CreateRelationship, [&] { database.createRelationship(relationship); });
        }
    }

    void operator()(const CreateIndex &definition) const
    {
        const storage::TableSchema &schema = schemaOf(database, definition.table);
        storage::Index index = definition.index;
        for (std::size_t i = 0; i < index.columns.size(); ++i) {
            const QString &name = definition.columns[static_cast<qsizetype>(i)];
            const auto column = schema.find(name);
            if (!column)
                throw daoError(number::IndexColumnUnknown, name);
            index.columns[i].column = *column;
        }
        translated(Doing::CreateIndex, [&] { database.createIndex(schema.name, index); });
    }

    void operator()(const DropTable &definition) const { database.dropTable(definition.name); }
};

} // namespace

void define(storage::Database &database, const Definition &definition)
{
    std::visit(Definer{database}, definition);
}

} // namespace dao
