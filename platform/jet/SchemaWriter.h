#pragma once

#include <vector>

#include "platform/jet/PageFile.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Storage.h"

namespace jet {

/// Makes and removes tables, indexes and relationships. Only within a write scope, which undoes a failed change; that
/// names are free and tables exist is the caller's matter.
///
/// Errors  StorageError: Unsupported, OutOfRange, TooLong, NotEncodable for wishes that cannot be met; Duplicate and
///         Required when a new index does not fit the rows; NoSuchColumn, NoSuchIndex, ParentMissing for relationships.
class SchemaWriter
{
public:
    SchemaWriter(PageFile &file, const TextCodec &codec);

    void createTable(const storage::TableSchema &schema);
    /// `columns` are those of the table's schema, which the index goes by.
    void createIndex(PageNo table, const std::vector<ColumnDef> &columns, const storage::Index &index);
    /// Removes the table that the catalog lists under that id.
    void dropTable(PageNo table);
    /// `table` and `foreignTable` are the definitions' pages of the tables that the relationship names.
    void createRelationship(const storage::Relationship &relationship, PageNo table, PageNo foreignTable);

private:
    void enforce(const storage::Relationship &relationship, PageNo table, PageNo foreignTable);
    std::size_t childIndex(TableDef &def, const std::vector<std::uint16_t> &columns);
    void requireParents(const storage::Relationship &relationship, const TableDef &parent, const TableDef &child,
                        std::size_t parentIndex, std::size_t childIndex);
    void addRelationshipRows(const storage::Relationship &relationship);
    void appendIndex(TableDef &def);

    PageFile &m_file;
    const TextCodec &m_codec;
};

} // namespace jet
