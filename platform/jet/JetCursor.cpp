// Cursors: a row's values are decoded only when asked for.
#include "platform/jet/JetCursor.h"

#include <algorithm>
#include <utility>

#include "platform/jet/Damage.h"
#include "platform/jet/FieldReader.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace jet {

namespace {

/// Whether columns and indexes have kept name and kind, so that positions still mean the same.
bool sameShape(const storage::TableSchema &left, const storage::TableSchema &right)
{
    return std::ranges::equal(
               left.columns, right.columns,
               [](const storage::Column &a, const storage::Column &b) { return a.name == b.name && a.type == b.type; })
        && std::ranges::equal(left.indexes, right.indexes, [](const storage::Index &a, const storage::Index &b) {
               return a.name == b.name
                   && std::ranges::equal(a.columns, b.columns,
                                         [](const storage::IndexColumn &one, const storage::IndexColumn &other) {
                                             return one.column == other.column && one.descending == other.descending;
                                         });
           });
}

} // namespace

JetCursor::JetCursor(const JetTable &table)
    : m_table(table)
    , m_known(table.known())
{ }

JetCursor::JetCursor(const JetTable &table, JetTable::KnownPtr known, FoundRow row)
    : m_table(table)
    , m_known(std::move(known))
    , m_row(std::move(row))
    , m_rowGeneration(m_known->generation)
{ }

/// Takes the table as it is now.
void JetCursor::catchUp() const
{
    const JetTable::KnownPtr known = m_table.known();
    if (!sameShape(known->map.schema, m_known->map.schema))
        refuseRebuilt();
    m_known = known;
}

void JetCursor::refuseRebuilt() const
{
    throw StorageError(StorageError::Locked,
                       u"%1 wurde inzwischen von einem anderen Programm umgebaut."_s.arg(m_table.place()));
}

/// Takes the row as it is now.
void JetCursor::findAgain() const
{
    catchUp();
    auto row = findRow(m_table.database().file(), m_known->def, m_row->home);
    if (!row) {
        throw StorageError(StorageError::RowGone,
                           u"%1: Der Datensatz wurde inzwischen gelöscht."_s.arg(m_table.place()));
    }
    m_row = std::move(row);
    m_rowGeneration = m_known->generation;
}

bool JetCursor::next()
{
    return withPlace([this] { return m_table.place(); },
                     [this] {
                         return unhurried(m_table.database().file(), [this] {
                             const std::uint64_t generation = m_table.database().file().generation();
                             if (!m_started || m_generation != generation) {
                                 if (m_known->generation != generation)
                                     catchUp();
                                 start(m_row ? std::optional(m_row->home) : std::nullopt);
                                 m_generation = m_known->generation;
                             }
                             m_started = false; // should it throw
                             auto found = findNext();
                             m_started = true;
                             if (!found)
                                 return false;
                             m_row = std::move(found);
                             m_rowGeneration = m_generation;
                             return true;
                         });
                     });
}

storage::RowId JetCursor::rowId() const
{
    return m_row->home.number();
}

storage::Value JetCursor::value(int column) const
{
    const JetDatabase &database = m_table.database();
    PageFile &file = database.file();
    const auto position = static_cast<std::size_t>(column);
    return withPlace(
        [this] { return u"%1, Seite %2, Zeile %3"_s.arg(m_table.place()).arg(m_row->body.page).arg(m_row->body.row); },
        [&] {
            return unhurried(file, [&] {
                if (position >= m_known->map.columns.size())
                    refuseRebuilt();
                // What a row only points to may be something else by now; the rest stands on the page it holds.
                if (m_known->map.columns[position].isLong() && m_rowGeneration != file.generation())
                    findAgain();
                return readField(file, database.codec(), m_row->view, m_known->map.columns[position]);
            });
        });
}

ScanCursor::ScanCursor(const JetTable &table)
    : JetCursor(table)
{ }

void ScanCursor::start(const std::optional<RowPointer> &behind)
{
    m_scan.emplace(table().database().file(), known().def, behind);
}

std::optional<FoundRow> ScanCursor::findNext()
{
    return m_scan->next();
}

RangeCursor::RangeCursor(const JetTable &table, const storage::KeyRange &range)
    : JetCursor(table)
    , m_range(range)
{ }

void RangeCursor::start(const std::optional<RowPointer> &behind)
{
    PageFile &file = table().database().file();
    const auto position = static_cast<std::size_t>(m_range.index);
    if (position >= known().map.trees.size())
        refuseRebuilt();
    const IndexDef &index = known().def.indexes[known().map.trees[position]];
    IndexKeyMaker keys(known().def, index, file.isJet4());
    const auto bound = [&keys](const std::optional<storage::Bound> &end) {
        return end ? std::optional(keys.bound(end->key, end->inclusive)) : std::nullopt;
    };
    IndexCursor entries(file, index, known().def.page, bound(m_range.lower), bound(m_range.upper), m_range.backwards);
    if (behind)
        entries.startBehind(m_entry);
    m_way.emplace(Way{&index, std::move(keys), std::move(entries)});
}

std::optional<FoundRow> RangeCursor::findNext()
{
    if (!m_way->entries.next())
        return std::nullopt;
    const RowPointer where = m_way->entries.row();
    auto row = findRow(table().database().file(), known().def, where);
    if (!row)
        damaged(where.page, u"Ein Index verweist auf Zeile %1, die es nicht gibt"_s.arg(where.row));
    checkKey(*row);
    const storage::Bytes entry = m_way->entries.entry();
    m_entry.assign(entry.begin(), entry.end());
    return row;
}

/// An entry with another row's key would stand for that row, which then were missing.
void RangeCursor::checkKey(const FoundRow &row) const
{
    std::vector<storage::Value> values;
    for (const IndexColumnDef &part : m_way->index->columns) {
        values.push_back(readField(table().database().file(), table().database().codec(), row.view,
                                   *known().def.column(part.column)));
    }
    if (!m_way->keys.explains(values, m_way->entries.key()))
        damaged(row.home.page, u"Zeile %1 steht mit einem falschen Schlüssel in einem Index"_s.arg(row.home.row));
}

SingleRowCursor::SingleRowCursor(const JetTable &table, JetTable::KnownPtr known, FoundRow row)
    : JetCursor(table, std::move(known), std::move(row))
{ }

} // namespace jet
