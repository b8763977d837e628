// Tables and indexes as a whole.
#include "platform/jet/SchemaWriter.h"

#include "platform/jet/CatalogWriter.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TableLayout.h"
#include "platform/jet/TableStorage.h"
#include "platform/jet/TableWriter.h"

namespace jet {

SchemaWriter::SchemaWriter(PageFile &file, const TextCodec &codec)
    : m_file(file)
    , m_codec(codec)
{ }

void SchemaWriter::createTable(const storage::TableSchema &schema)
{
    TableDef def = makeTableDef(schema, m_file.header());
    def.page = m_file.allocate();
    MapRows maps(m_file);
    layOut(m_file, maps, def);
    writeTableDef(m_file, m_codec, def);

    CatalogWriter catalog(m_file, m_codec);
    const QByteArray owner = catalog.usersOwner();
    catalog.addObject({def.page, tablesContainer, schema.name, TableObject, 0, owner, makeProperties(schema, m_codec)});
    catalog.inheritPermissions(def.page, owner);
}

void SchemaWriter::createIndex(PageNo table, const std::vector<ColumnDef> &columns, const storage::Index &index)
{
    TableDef def = readTableDef(m_file, m_codec, table);
    addSchemaIndex(def, index, columns, m_file.header());
    appendIndex(def);
}

/// Gives the definition's last index its place, and its entries.
void SchemaWriter::appendIndex(TableDef &def)
{
    MapRows maps(m_file, def.ownedMap.page);
    layOutIndex(m_file, maps, def.indexes.back(), def.page);
    writeTableDef(m_file, m_codec, def);
    TableWriter(m_file, m_codec, def).fillIndex(def.indexes.size() - 1);
}

void SchemaWriter::dropTable(PageNo table)
{
    releaseTable(m_file, readTableDef(m_file, m_codec, table));
    CatalogWriter(m_file, m_codec).removeObject(table);
}

} // namespace jet
