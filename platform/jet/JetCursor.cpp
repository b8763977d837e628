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
    , m_scan(table.database().file(), known().def)
{ }

bool ScanCursor::next()
{
    return withPlace([this] { return table().place(); }, [this] { return m_scan.next(); });
}

RangeCursor::RangeCursor(const JetTable &table, const storage::KeyRange &range)
    : JetCursor(table)
    , m_index(known().def.indexes[known().map.trees.at(static_cast<std::size_t>(range.index))])
    , m_keys(known().def, m_index, table.database().file().isJet4())
    , m_entries(entries(range))
{ }

IndexCursor RangeCursor::entries(const storage::KeyRange &range) const
{
    const auto bound = [this](const std::optional<storage::Bound> &end) -> std::optional<KeyBound> {
        if (!end)
            return std::nullopt;
        return m_keys.bound(end->key, end->inclusive);
    };
    return {table().database().file(), m_index,        known().def.page, bound(range.lower),
            bound(range.upper),        range.backwards};
}

bool RangeCursor::next()
{
    return withPlace([this] { return table().place(); },
                     [this] {
                         if (!m_entries.next())
                             return false;
                         const RowPointer where = m_entries.row();
                         m_row = findRow(table().database().file(), known().def, where);
                         if (!m_row)
                             damaged(where.page,
                                     u"Ein Index verweist auf Zeile %1, die es nicht gibt"_s.arg(where.row));
                         checkKey();
                         return true;
                     });
}

/// An entry with another row's key would stand for that row, which then were missing.
void RangeCursor::checkKey() const
{
    std::vector<storage::Value> values;
    for (const IndexColumnDef &part : m_index.columns) {
        values.push_back(readField(table().database().file(), table().database().codec(), m_row->view,
                                   *known().def.column(part.column)));
    }
    if (!m_keys.explains(values, m_entries.key())) {
        damaged(m_row->home.page, u"Zeile %1 steht mit einem falschen Schlüssel in einem Index"_s.arg(m_row->home.row));
    }
}

SingleRowCursor::SingleRowCursor(const JetTable &table, FoundRow row)
    : JetCursor(table)
    , m_row(std::move(row))
{ }

} // namespace jet
