// Cursors: a row's values are decoded only when asked for.
#include "platform/jet/JetCursor.h"

#include <algorithm>
#include <utility>

#include "platform/jet/Damage.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/IndexLookup.h"

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
    return withPlace([this] { return rowPlace(); },
                     [&] {
                         return unhurried(file, [&] {
                             if (position >= m_known->map.columns.size())
                                 refuseRebuilt();
                             // What a row only points to may be something else by now; the rest stands on the page it
                             // holds.
                             if (m_known->map.columns[position].isLong() && m_rowGeneration != file.generation())
                                 findAgain();
                             return readField(file, database.codec(), m_row->view, m_known->map.columns[position]);
                         });
                     });
}

bool JetCursor::readText(int column, QString &into) const
{
    const auto position = static_cast<std::size_t>(column);
    if (position >= m_known->map.columns.size() || m_known->map.columns[position].type != ColumnType::Text)
        return false;
    return withPlace([this] { return rowPlace(); },
                     [&] {
                         const auto field = m_row->view.field(m_known->map.columns[position]);
                         if (field)
                             m_table.database().codec().decode(*field, into);
                         return field.has_value();
                     });
}

QString JetCursor::rowPlace() const
{
    return u"%1, Seite %2, Zeile %3"_s.arg(m_table.place()).arg(m_row->body.page).arg(m_row->body.row);
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
    const auto bound = [&keys](const std::optional<storage::Bound> &end, auto side) {
        if (!end)
            return std::optional<KeyBound>();
        return std::optional((keys.span(end->key).*side)(end->inclusive || !keys.isCertain(end->key)));
    };
    std::optional<KeyBound> lower = bound(m_range.lower, &KeySpan::lower);
    std::optional<KeyBound> upper = bound(m_range.upper, &KeySpan::upper);
    const std::optional<KeySpan> again = behind ? m_span : std::nullopt;
    if (again && m_range.backwards)
        upper = again->upper();
    else if (again)
        lower = again->lower();
    IndexCursor entries(file, index, known().def.page, std::move(lower), std::move(upper), m_range.backwards);
    if (behind && !again)
        entries.startBehind(m_entry);
    m_way.emplace(Way{&index, std::move(keys), std::move(entries)});
    if (!again)
        return;
    m_way->ahead = m_way->entries.next();
    if (m_way->ahead && again->contains(m_way->entries.key()))
        sortSpan(*again);
    while (!m_way->sorted.empty() && !isBehindLast(m_way->sorted.back().entry))
        m_way->sorted.pop_back();
}

std::optional<FoundRow> RangeCursor::findNext()
{
    if (m_way->sorted.empty()) {
        if (!m_way->ahead && !m_way->entries.next())
            return std::nullopt;
        m_way->ahead = false;
        FoundRow row = rowAt(m_way->entries.row());
        const std::vector<storage::Value> values = checkedValues(row);
        if (m_way->keys.isCertain(values)) {
            const storage::Bytes entry = m_way->entries.entry();
            m_entry.assign(entry.begin(), entry.end());
            m_span.reset();
            return row;
        }
        sortSpan(m_way->keys.span(values));
    }
    FoundRow row = rowAt(m_way->sorted.back().row);
    m_entry = std::move(m_way->sorted.back().entry);
    m_span = m_way->span;
    m_way->sorted.pop_back();
    return row;
}

FoundRow RangeCursor::rowAt(RowPointer where) const
{
    auto row = findRow(table().database().file(), known().def, where);
    if (!row)
        damaged(where.page, u"Ein Index verweist auf Zeile %1, die es nicht gibt"_s.arg(where.row));
    return std::move(*row);
}

/// The values of the row of the current entry. An entry with another row's key would stand for that row, which then
/// were missing.
std::vector<storage::Value> RangeCursor::checkedValues(const FoundRow &row) const
{
    std::vector<storage::Value> values
        = indexedValues(table().database().file(), table().database().codec(), known().def, *m_way->index, row.view);
    const storage::Bytes key = m_way->entries.key();
    if (compareKeys(m_way->keys.make(values), key) != 0 && !m_way->keys.isOthersKey(values, key))
        damaged(row.home.page, u"Zeile %1 steht mit einem falschen Schlüssel in einem Index"_s.arg(row.home.row));
    return values;
}

/// Takes the current entry and those that follow within the span.
void RangeCursor::sortSpan(KeySpan span)
{
    std::vector<Place> &sorted = m_way->sorted;
    do {
        const RowPointer where = m_way->entries.row();
        sorted.push_back({indexEntry(m_way->keys.make(checkedValues(rowAt(where))), where), where});
        m_way->ahead = m_way->entries.next();
    } while (m_way->ahead && span.contains(m_way->entries.key()));
    m_way->span = std::move(span);
    std::ranges::sort(sorted, [this](const Place &a, const Place &b) {
        const int order = compareKeys(a.entry, b.entry);
        return m_range.backwards ? order < 0 : order > 0;
    });
}

bool RangeCursor::isBehindLast(const KeyBytes &entry) const
{
    const int order = compareKeys(entry, m_entry);
    return m_range.backwards ? order < 0 : order > 0;
}

SingleRowCursor::SingleRowCursor(const JetTable &table, JetTable::KnownPtr known, FoundRow row)
    : JetCursor(table, std::move(known), std::move(row))
{ }

} // namespace jet
