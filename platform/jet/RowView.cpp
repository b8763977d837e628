// Rows as they stand on a page.
//
//   Jet 3  n 1 | fixed values | variable values | offsets (1 byte each) | jumps | k 1 | null mask
//   Jet 4  n 2 | fixed values | variable values | offsets (2 bytes each)        | k 2 | null mask
//
// n columns, k variable slots; the offsets run backwards: end of data, slot k-1, ... slot 0. A table without variable
// slots has rows without offsets, jumps and k. Jet 3 stores offsets modulo 256; jump m, counted backwards from k, is
// the first slot at or behind 256 * m. A set bit in the mask is a value that is not Null, or a Boolean that is true.
#include "platform/jet/RowView.h"

#include "platform/jet/Damage.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::readLE;

namespace jet {

RowView::RowView(Bytes row, RowPointer where, const TableDef &def, bool jet4)
    : m_row(row)
    , m_where(where)
    , m_jet4(jet4)
{
    const std::size_t numberSize = jet4 ? 2 : 1;
    if (row.size() < numberSize)
        fail(u"ist leer");
    m_columns = jet4 ? readLE<std::uint16_t>(row, 0) : readLE<std::uint8_t>(row, 0);
    const std::size_t maskSize = (m_columns + 7) / 8;
    if (m_columns > def.columnsEver)
        fail(u"hat mehr Spalten als die Tabelle");
    if (row.size() < numberSize + maskSize)
        fail(u"ist kürzer als ihre Liste der leeren Felder");
    m_maskAt = row.size() - maskSize;
    m_fixedEnd = m_maskAt;
    if (def.variableSlots > 0)
        readTrailer(def.variableSlots);
}

void RowView::readTrailer(std::size_t variableSlots)
{
    const std::size_t numberSize = m_jet4 ? 2 : 1;
    if (m_maskAt < 2 * numberSize)
        fail(u"ist zu kurz");
    const std::size_t countAt = m_maskAt - numberSize;
    m_slots = m_jet4 ? readLE<std::uint16_t>(m_row, countAt) : readLE<std::uint8_t>(m_row, countAt);
    if (m_slots > variableSlots)
        fail(u"hat mehr veränderliche Felder als die Tabelle");
    m_jumpsEnd = countAt;
    m_jumps = m_jet4 ? 0 : (m_row.size() - 1) / 256;
    const std::size_t tableSize = numberSize * (m_slots + 1);
    if (countAt < numberSize + m_jumps + tableSize)
        fail(u"ist kürzer als ihre Liste der Felder");
    m_offsetsEnd = countAt - m_jumps;
    m_fixedEnd = variableOffset(0);
    const std::size_t end = variableOffset(m_slots);
    const std::size_t tableStart = m_offsetsEnd - tableSize;
    // Jet 4 pads rows that became shorter in front of the table.
    if (m_fixedEnd < numberSize || m_fixedEnd > end || end > tableStart || (!m_jet4 && end != tableStart))
        fail(u"hat Felder außerhalb der Zeile");
}

std::size_t RowView::variableOffset(std::size_t slot) const
{
    if (m_jet4)
        return readLE<std::uint16_t>(m_row, m_offsetsEnd - 2 * (slot + 1));
    std::size_t offset = readLE<std::uint8_t>(m_row, m_offsetsEnd - slot - 1);
    for (std::size_t jump = 1; jump <= m_jumps && readLE<std::uint8_t>(m_row, m_jumpsEnd - jump) <= slot; ++jump)
        offset += 256;
    return offset;
}

bool RowView::isMarked(std::uint16_t number) const
{
    if (number >= m_columns)
        return false;
    return (readLE<std::uint8_t>(m_row, m_maskAt + number / 8U) >> (number % 8U) & 1U) != 0;
}

std::optional<Bytes> RowView::field(const ColumnDef &column) const
{
    if (!isMarked(column.number))
        return std::nullopt;
    if (!column.isFixed())
        return variableField(column);
    const std::size_t start = (m_jet4 ? 2U : 1U) + column.fixedOffset;
    if (start + column.length > m_fixedEnd)
        fail(u"hat ein festes Feld außerhalb der Zeile");
    return m_row.subspan(start, column.length);
}

std::optional<Bytes> RowView::variableField(const ColumnDef &column) const
{
    if (column.slot >= m_slots)
        return std::nullopt;
    const std::size_t start = variableOffset(column.slot);
    const std::size_t end = variableOffset(column.slot + 1U);
    if (start > end || start < m_fixedEnd || end > m_offsetsEnd)
        fail(u"hat ein Feld außerhalb der Zeile");
    return m_row.subspan(start, end - start);
}

void RowView::fail(const char16_t *reason) const
{
    damaged(m_where.page, u"Zeile %1 %2"_s.arg(m_where.row).arg(QStringView(reason)));
}

} // namespace jet
