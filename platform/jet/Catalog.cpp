// The catalog table.
#include "platform/jet/Catalog.h"

#include "platform/jet/Damage.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"

using namespace Qt::StringLiterals;

namespace jet {

SystemRow::SystemRow(PageStore &store, const TextCodec &codec, const TableDef &def, const RowView &row)
    : m_store(store)
    , m_codec(codec)
    , m_def(def)
    , m_row(row)
{ }

storage::Value SystemRow::value(QStringView column) const
{
    const ColumnDef *found = findColumn(m_def, column);
    return found ? readField(m_store, m_codec, m_row, *found) : storage::Value();
}

std::int64_t SystemRow::number(QStringView column) const
{
    const storage::Value found = value(column);
    const auto *number = std::get_if<std::int64_t>(&found);
    return number ? *number : 0;
}

QString SystemRow::text(QStringView column) const
{
    const storage::Value found = value(column);
    const auto *text = std::get_if<QString>(&found);
    return text ? *text : QString();
}

QByteArray SystemRow::bytes(QStringView column) const
{
    const storage::Value found = value(column);
    const auto *bytes = std::get_if<QByteArray>(&found);
    return bytes ? *bytes : QByteArray();
}

bool CatalogEntry::isUserTable() const
{
    return type == TableObject && (flags & hiddenObjectFlags) == 0 && !name.startsWith(u"MSys"_s, Qt::CaseInsensitive);
}

TableDef readTableDef(PageStore &store, const TextCodec &codec, const CatalogEntry &table)
{
    TableDef def = readTableDef(store, codec, table.id);
    if (table.isUserTable() && def.type != TableDef::User)
        damaged(table.id, u"die Definition ist die einer Systemtabelle"_s);
    return def;
}

Catalog::Catalog(PageStore &store, const TextCodec &codec)
    : m_store(store)
    , m_codec(codec)
    , m_def(readTableDef(store, codec, objectsPage))
{
    for (const auto *column : {u"Id", u"ParentId", u"Name", u"Type", u"Flags", u"LvProp"}) {
        if (!findColumn(m_def, column))
            damaged(objectsPage, u"Dem Katalog fehlt die Spalte %1"_s.arg(QStringView(column)));
    }
}

std::vector<CatalogEntry> Catalog::entries() const
{
    std::vector<CatalogEntry> entries;
    RowScan scan(m_store, m_def);
    while (const auto found = scan.next()) {
        const SystemRow row(m_store, m_codec, m_def, found->view);
        entries.push_back({found->home, static_cast<std::uint32_t>(row.number(u"Id")),
                           static_cast<std::uint32_t>(row.number(u"ParentId")), row.text(u"Name"),
                           static_cast<std::int16_t>(row.number(u"Type")),
                           static_cast<std::uint32_t>(row.number(u"Flags")), row.bytes(u"Owner")});
    }
    for (const CatalogEntry &entry : entries)
        checkEntry(entry);
    return entries;
}

/// An object that lost its name or type would be missing without a word, so both are compared with what else the file
/// says: the index by name, and the ids, which are small for tables only.
void Catalog::checkEntry(const CatalogEntry &entry) const
{
    if (entry.id != 0 && entry.id < rootContainer && entry.type != TableObject)
        damaged(entry.row.page, u"Das Objekt %1 hat die Nummer einer Tabelle und ist keine"_s.arg(entry.name));
    for (const IndexDef &index : m_def.indexes) {
        const bool isNames = index.columns.size() == 2
            && m_def.column(index.columns[1].column)->name.compare(u"Name"_s, Qt::CaseInsensitive) == 0;
        if (isNames && keySupport(m_def, index, m_store.isJet4(), m_codec.codePage()) == KeySupport::Full
            && !isListed(index, entry)) {
            damaged(entry.row.page, u"Das Objekt %1 fehlt im Verzeichnis der Namen"_s.arg(entry.name));
        }
    }
}

bool Catalog::isListed(const IndexDef &names, const CatalogEntry &entry) const
{
    const storage::Value values[] = {std::int64_t{static_cast<std::int32_t>(entry.parent)}, entry.name};
    const KeySpan span = IndexKeyMaker(m_def, names, m_store.isJet4()).span(values);
    IndexCursor cursor(m_store, names, m_def.page, span.lower(), span.upper());
    while (cursor.next()) {
        if (cursor.row() == entry.row)
            return true;
    }
    return false;
}

bool Catalog::has(const CatalogEntry &entry) const
{
    const auto found = findRow(m_store, m_def, entry.row);
    if (!found)
        return false;
    const SystemRow row(m_store, m_codec, m_def, found->view);
    return static_cast<std::uint32_t>(row.number(u"Id")) == entry.id && row.number(u"Type") == entry.type
        && row.text(u"Name") == entry.name;
}

QByteArray Catalog::properties(RowPointer where) const
{
    const auto found = findRow(m_store, m_def, where);
    if (!found)
        damaged(where.page, u"Zeile %1 des Katalogs ist weg"_s.arg(where.row));
    return SystemRow(m_store, m_codec, m_def, found->view).bytes(u"LvProp");
}

} // namespace jet
