// A table: what it is, its rows, and changes of them.
#include "platform/jet/JetTable.h"

#include "platform/jet/Damage.h"
#include "platform/jet/JetCursor.h"
#include "platform/jet/TableDefFile.h"

using namespace Qt::StringLiterals;

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
    PageFile &file = m_database.file();
    file.refresh();
    if (!m_known || m_known->generation != file.generation()) {
        m_known.reset();
        withPlace([this] { return place(); },
                  [&] {
                      TableDef def = readTableDef(file, m_database.codec(), m_entry.id);
                      if (m_entry.isUserTable() && def.type != TableDef::User)
                          damaged(m_entry.id, u"die Definition ist die einer Systemtabelle"_s);
                      const QByteArray properties = Catalog(file, m_database.codec()).properties(m_entry.row);
                      SchemaMap map = makeSchema(m_entry.name, def, properties, m_database.codec());
                      m_known = std::make_shared<Known>(Known{file.generation(), std::move(def), std::move(map)});
                  });
        m_schema = m_known->map.schema;
    }
    return m_known;
}

const storage::TableSchema &JetTable::schema() const
{
    known();
    return m_schema;
}

std::int64_t JetTable::rowEstimate() const
{
    return TableCounters(m_database.file(), m_entry.id).rowCount();
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
    return withPlace([this] { return place(); },
                     [&]() -> std::unique_ptr<storage::Cursor> {
                         auto found = findRow(m_database.file(), known()->def,
                                              RowPointer::fromNumber(static_cast<std::uint32_t>(id)));
                         if (!found)
                             return nullptr;
                         return std::make_unique<SingleRowCursor>(*this, std::move(*found));
                     });
}

} // namespace jet
