// Cursors: a row's values are decoded only when asked for.
#include "platform/jet/JetCursor.h"

#include <utility>

#include "platform/jet/Damage.h"
#include "platform/jet/FieldReader.h"

using namespace Qt::StringLiterals;

namespace jet {

JetCursor::JetCursor(const JetTable &table)
    : m_table(table)
    , m_known(table.known())
{ }

storage::RowId JetCursor::rowId() const
{
    return current().home.number();
}

storage::Value JetCursor::value(int column) const
{
    const FoundRow &row = current();
    const JetDatabase &database = m_table.database();
    return withPlace(
        [this, &row] { return u"%1, Seite %2, Zeile %3"_s.arg(m_table.place()).arg(row.body.page).arg(row.body.row); },
        [&] {
            return readField(database.file(), database.codec(), row.view,
                             m_known->map.columns.at(static_cast<std::size_t>(column)));
        });
}

ScanCursor::ScanCursor(const JetTable &table)
    : JetCursor(table)
    , m_scan(table.database().file(), def())
{ }

bool ScanCursor::next()
{
    return withPlace([this] { return table().place(); }, [this] { return m_scan.next(); });
}

SingleRowCursor::SingleRowCursor(const JetTable &table, FoundRow row)
    : JetCursor(table)
    , m_row(std::move(row))
{ }

} // namespace jet
