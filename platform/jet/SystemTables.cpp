// The definitions of the system tables, as the engine makes them in a new database.
#include "platform/jet/SystemTables.h"

#include <algorithm>

#include "platform/jet/Format.h"
#include "platform/jet/TableLayout.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

constexpr std::uint8_t systemFlag = 0x10;
constexpr std::uint8_t ownerFlag = 0x20;

struct SystemColumn {
    const char16_t *name;
    ColumnType type;
    bool fixed = true;
    std::uint8_t flags = ColumnDef::Usual | systemFlag;
};

struct SystemIndex {
    const char16_t *name;
    std::vector<std::uint16_t> columns;
    std::uint8_t flags;
    LogicalIndexDef::Kind kind = LogicalIndexDef::Kind::Plain;
};

using enum ColumnType;

const SystemColumn objectColumns[] = {
    {u"Id", Long},
    {u"ParentId", Long},
    {u"Name", Text, false},
    {u"Type", Integer},
    {u"DateCreate", DateTime},
    {u"DateUpdate", DateTime},
    {u"Owner", Binary, false, ColumnDef::Usual | systemFlag | ownerFlag},
    {u"Flags", Long},
    {u"Database", Memo, false},
    {u"Connect", Memo, false},
    {u"ForeignName", Text, false},
    {u"RmtInfoShort", Binary, false},
    {u"RmtInfoLong", LongBinary, false},
    {u"Lv", LongBinary, false},
    {u"LvProp", LongBinary, false},
    {u"LvModule", LongBinary, false},
    {u"LvExtra", LongBinary, false},
};

const SystemColumn permissionColumns[] = {
    {u"ObjectId", Long},
    {u"SID", Binary, false, ColumnDef::Usual | systemFlag | ownerFlag},
    {u"ACM", Long},
    {u"FInheritable", Boolean},
};

const SystemColumn queryColumns[] = {
    {u"ObjectId", Long},     {u"Attribute", Byte},         {u"Order", Binary, false}, {u"Name1", Text, false},
    {u"Name2", Text, false}, {u"Expression", Memo, false}, {u"Flag", Integer},        {u"LvExtra", Long}, // Jet 4 only
};

const SystemColumn relationshipColumns[] = {
    {u"szRelationship", Text, false},
    {u"grbit", Long},
    {u"ccolumn", Long},
    {u"icolumn", Long},
    {u"szObject", Text, false},
    {u"szColumn", Text, false},
    {u"szReferencedObject", Text, false},
    {u"szReferencedColumn", Text, false},
};

const SystemIndex objectIndexes[] = {
    {u"ParentIdName", {1, 2}, IndexDef::Unique},
    {u"Id", {0}, IndexDef::Unique, LogicalIndexDef::Kind::Primary},
};
const SystemIndex permissionIndexes[] = {{u"ObjectId", {0}, IndexDef::Required}};
const SystemIndex queryIndexes[]
    = {{u"ObjectIdAttribute", {0, 1, 2}, IndexDef::Unique, LogicalIndexDef::Kind::Primary}};
const SystemIndex relationshipIndexes[] = {
    {u"szRelationship", {0}, IndexDef::IgnoreNulls},
    {u"szObject", {4}, IndexDef::IgnoreNulls},
    {u"szReferencedObject", {6}, IndexDef::IgnoreNulls},
};

ColumnDef makeColumn(const SystemColumn &column, bool jet4)
{
    ColumnDef made;
    made.name = QString::fromUtf16(column.name);
    made.type = column.type;
    made.flags = static_cast<std::uint8_t>(column.flags | (column.fixed ? ColumnDef::Fixed : 0));
    made.length = static_cast<std::uint16_t>(fixedLength(column.type));
    if (column.type == Text || column.type == Binary)
        made.length = jet4 ? 2 * maxTextLength : maxTextLength;
    return made;
}

TableDef makeTable(PageNo page, std::span<const SystemColumn> columns, std::span<const SystemIndex> indexes,
                   const FileHeader &header)
{
    TableDef def;
    def.page = page;
    def.type = TableDef::System;
    for (const SystemColumn &column : columns)
        def.columns.push_back(makeColumn(column, header.jet4));
    numberColumns(def, header);
    for (ColumnDef &column : def.columns)
        column.ordinal = 0;
    if (header.jet4)
        std::ranges::sort(def.columns, {}, &ColumnDef::name);
    for (const SystemIndex &index : indexes) {
        IndexDef real;
        for (const std::uint16_t column : index.columns)
            real.columns.push_back({column, true});
        real.flags = index.flags;
        addIndex(def, QString::fromUtf16(index.name), index.kind, real, header.jet4);
    }
    return def;
}

} // namespace

std::vector<TableDef> systemTables(const FileHeader &header)
{
    const std::size_t queryCount = std::size(queryColumns) - (header.jet4 ? 0 : 1);
    return {makeTable(objectsPage, objectColumns, objectIndexes, header),
            makeTable(permissionsPage, permissionColumns, permissionIndexes, header),
            makeTable(queriesPage, std::span(queryColumns).first(queryCount), queryIndexes, header),
            makeTable(relationshipsPage, relationshipColumns, relationshipIndexes, header)};
}

} // namespace jet
