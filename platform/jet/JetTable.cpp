// A table: what it is, its rows, and changes of them.
#include "platform/jet/JetTable.h"

#include "platform/jet/Damage.h"
#include "platform/jet/JetCursor.h"
#include "platform/jet/TableDefFile.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace jet {

JetTable::JetTable(JetDatabase &database, const CatalogEntry &entry)
    : m_database(database)
    , m_entry(entry)
{ }

QString JetTable::place() const
{
    return u"%1, %2"_s.arg(m_database.file().path(), m_entry.name);
}

JetTable::KnownPtr JetTable::known() const
{
    m_database.file().refresh();
    return knownAsSeen();
}

JetTable::KnownPtr JetTable::knownAsSeen() const
{
    PageFile &file = m_database.file();
    if (!m_known || m_known->generation != file.generation()) {
        m_known.reset();
        m_known = withPlace([this] { return place(); },
                            [&] { return unhurried(file, [this] { return readDefinition(); }); });
        m_schema = m_known->map.schema;
    }
    return m_known;
}

JetTable::KnownPtr JetTable::readDefinition() const
{
    PageFile &file = m_database.file();
    const std::uint64_t generation = file.generation();
    const Catalog catalog(file, m_database.codec());
    if (!catalog.has(m_entry)) {
        throw StorageError(StorageError::NoSuchTable, u"%1 wurde inzwischen gelöscht oder neu angelegt."_s.arg(place()),
                           m_entry.name);
    }
    TableDef def = readTableDef(file, m_database.codec(), m_entry);
    const QByteArray properties = catalog.properties(m_entry.row);
    SchemaMap map = makeSchema(m_entry.name, def, properties, m_database.codec());
    return std::make_shared<Known>(Known{generation, std::move(def), std::move(map)});
}

const storage::TableSchema &JetTable::schema() const
{
    known();
    return m_schema;
}

std::int64_t JetTable::rowEstimate() const
{
    PageFile &file = m_database.file();
    return unhurried(file, [&] { return TableCounters(file, m_entry.id).rowCount(); });
}

std::unique_ptr<storage::Cursor> JetTable::scan()
{
    return std::make_unique<ScanCursor>(*this);
}

std::unique_ptr<storage::Cursor> JetTable::range(const storage::KeyRange &range)
{
    return withPlace([this] { return place(); },
                     [&]() -> std::unique_ptr<storage::Cursor> { return std::make_unique<RangeCursor>(*this, range); });
}

std::unique_ptr<storage::Cursor> JetTable::row(storage::RowId id)
{
    const RowPointer home = RowPointer::fromNumber(static_cast<std::uint32_t>(id));
    PageFile &file = m_database.file();
    return withPlace([this] { return place(); },
                     [&] {
                         return unhurried(file, [&]() -> std::unique_ptr<storage::Cursor> {
                             KnownPtr now = knownAsSeen();
                             auto found = findRow(file, now->def, home);
                             if (!found)
                                 return nullptr;
                             return std::make_unique<SingleRowCursor>(*this, std::move(now), std::move(*found));
                         });
                     });
}

} // namespace jet
