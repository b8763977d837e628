// Rows of the system tables.
#include "platform/jet/CatalogWriter.h"

#include <algorithm>
#include <map>

#include "platform/jet/Catalog.h"
#include "platform/jet/Clock.h"
#include "platform/jet/Damage.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TableWriter.h"
#include "platform/jet/ValueCodec.h"

using namespace Qt::StringLiterals;
using storage::Value;

namespace jet {

namespace {

/// What accounts start with. Jet 4 masks them with bytes that differ from file to file.
const QByteArray engineAccount = QByteArray::fromHex("0203");
const QByteArray creatorAccount = QByteArray::fromHex("0204");

QByteArray combined(QByteArray left, const QByteArray &right)
{
    for (qsizetype i = 0; i < std::min(left.size(), right.size()); ++i)
        left[i] = static_cast<char>(left[i] ^ right[i]);
    return left;
}

Value signedNumber(std::uint32_t number)
{
    return std::int64_t{static_cast<std::int32_t>(number)};
}

Value bytesOrNull(const QByteArray &bytes)
{
    return bytes.isEmpty() ? Value() : Value(bytes);
}

} // namespace

CatalogWriter::CatalogWriter(PageFile &file, const TextCodec &codec)
    : m_file(file)
    , m_codec(codec)
    , m_objects(readTableDef(file, codec, objectsPage))
    , m_permissions(readTableDef(file, codec, permissionsPage))
    , m_relationships(readTableDef(file, codec, relationshipsPage))
{ }

void CatalogWriter::addObject(const Object &object)
{
    insert(m_objects,
           {{u"Id", signedNumber(object.id)},
            {u"ParentId", signedNumber(object.parent)},
            {u"Name", object.name},
            {u"Type", std::int64_t{object.type}},
            {u"DateCreate", now()},
            {u"DateUpdate", now()},
            {u"Owner", bytesOrNull(object.owner)},
            {u"Flags", signedNumber(object.flags)},
            {u"LvProp", bytesOrNull(object.properties)}});
}

void CatalogWriter::addPermission(const Permission &permission)
{
    insert(m_permissions,
           {{u"ObjectId", signedNumber(permission.object)},
            {u"SID", bytesOrNull(permission.account)},
            {u"ACM", signedNumber(permission.rights)},
            {u"FInheritable", permission.inheritable}});
}

void CatalogWriter::addRelationshipPair(const RelationshipPair &pair)
{
    insert(m_relationships,
           {{u"szRelationship", pair.name},
            {u"grbit", signedNumber(pair.flags)},
            {u"ccolumn", pair.count},
            {u"icolumn", pair.position},
            {u"szObject", pair.table},
            {u"szColumn", pair.column},
            {u"szReferencedObject", pair.referencedTable},
            {u"szReferencedColumn", pair.referencedColumn}});
}

void CatalogWriter::inheritPermissions(std::uint32_t table, const QByteArray &owner)
{
    QByteArray engine;
    for (const CatalogEntry &entry : Catalog(m_file, m_codec).entries()) {
        if (entry.id == tablesContainer)
            engine = entry.owner;
    }
    const QByteArray creator = combined(creatorAccount, combined(engine, engineAccount));
    std::map<QByteArray, std::uint32_t> rights;
    RowScan scan(m_file, m_permissions);
    while (const auto found = scan.next()) {
        const SystemRow row(m_file, m_codec, m_permissions, found->view);
        if (row.number(u"ObjectId") != tablesContainer || row.value(u"FInheritable") != Value(true))
            continue;
        const QByteArray account = row.bytes(u"SID");
        rights[account == creator ? owner : account] |= static_cast<std::uint32_t>(row.number(u"ACM"));
    }
    for (const auto &[account, rightsOfAccount] : rights)
        addPermission({table, rightsOfAccount, false, account});
}

void CatalogWriter::removeObject(std::uint32_t id)
{
    removeWhere(m_objects, u"Id", signedNumber(id));
    removeWhere(m_permissions, u"ObjectId", signedNumber(id));
}

void CatalogWriter::removeRelationship(const QString &name)
{
    removeWhere(m_relationships, u"szRelationship", name);
    for (const CatalogEntry &entry : Catalog(m_file, m_codec).entries()) {
        if (entry.type == RelationshipObject && entry.name == name)
            removeObject(entry.id);
    }
}

QByteArray CatalogWriter::usersOwner() const
{
    for (const CatalogEntry &entry : Catalog(m_file, m_codec).entries()) {
        if (entry.id == databaseObject)
            return entry.owner;
    }
    return {};
}

std::uint32_t CatalogWriter::freeId() const
{
    constexpr std::uint32_t first = 0x80000000;
    std::uint32_t next = first;
    for (const CatalogEntry &entry : Catalog(m_file, m_codec).entries()) {
        if (entry.id >= next)
            next = entry.id + 1;
    }
    return next;
}

void CatalogWriter::insert(const TableDef &def, std::initializer_list<Column> columns)
{
    std::vector<ColumnValue> values;
    for (const Column &column : columns) {
        const ColumnDef *found = findColumn(def, column.name);
        if (!found)
            damaged(def.page, u"Die Spalte %1 fehlt"_s.arg(QStringView(column.name)));
        values.push_back({found, fitValue(*found, column.value, m_codec)});
    }
    TableWriter(m_file, m_codec, def).insert(values);
}

void CatalogWriter::removeWhere(const TableDef &def, const char16_t *column, const Value &value)
{
    std::vector<RowPointer> rows;
    RowScan scan(m_file, def);
    while (const auto found = scan.next()) {
        if (SystemRow(m_file, m_codec, def, found->view).value(column) == value)
            rows.push_back(found->home);
    }
    for (const RowPointer row : rows)
        TableWriter(m_file, m_codec, def).remove(*findRow(m_file, def, row));
}

} // namespace jet
