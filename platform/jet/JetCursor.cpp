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
    , m_entries(entries(range))
{ }

IndexCursor RangeCursor::entries(const storage::KeyRange &range) const
{
    const TableDef &def = known().def;
    PageFile &file = table().database().file();
    const IndexDef &index = def.indexes[known().map.trees.at(static_cast<std::size_t>(range.index))];
    const IndexKeyMaker maker(def, index, file.isJet4());
    const auto bound = [&maker](const std::optional<storage::Bound> &end) -> std::optional<KeyBound> {
        if (!end)
            return std::nullopt;
        return KeyBound{maker.make(end->key), end->inclusive};
    };
    return {file, index, def.page, bound(range.lower), bound(range.upper), range.backwards};
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
                         return true;
                     });
}

SingleRowCursor::SingleRowCursor(const JetTable &table, FoundRow row)
    : JetCursor(table)
    , m_row(std::move(row))
{ }

} // namespace jet
