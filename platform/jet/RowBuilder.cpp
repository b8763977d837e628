// Putting rows together; RowView.cpp describes them.
#include "platform/jet/RowBuilder.h"

#include <algorithm>
#include <utility>

namespace jet {

namespace {

constexpr std::byte noSlot{0xFF};

void append(std::vector<std::byte> &row, const QByteArray &bytes)
{
    const auto view = std::as_bytes(std::span(bytes.constData(), static_cast<std::size_t>(bytes.size())));
    row.insert(row.end(), view.begin(), view.end());
}

void appendNumber(std::vector<std::byte> &row, std::size_t number, bool jet4)
{
    row.push_back(static_cast<std::byte>(number & 0xFF));
    if (jet4)
        row.push_back(static_cast<std::byte>(number >> 8 & 0xFF));
}

} // namespace

RowBuilder::RowBuilder(const TableDef &def, bool jet4)
    : m_def(def)
    , m_jet4(jet4)
    , m_fields(def.columnsEver)
{ }

RowBuilder::RowBuilder(const TableDef &def, bool jet4, const RowView &row)
    : RowBuilder(def, jet4)
{
    for (const ColumnDef &column : def.columns) {
        if (column.type == ColumnType::Boolean)
            setBoolean(column, row.boolean(column));
        else if (const auto field = row.field(column))
            m_fields[column.number]
                = QByteArray(reinterpret_cast<const char *>(field->data()), static_cast<qsizetype>(field->size()));
    }
}

void RowBuilder::setField(const ColumnDef &column, std::optional<QByteArray> field)
{
    Q_ASSERT(!column.isFixed() || !field || field->size() == column.length);
    m_fields[column.number] = std::move(field);
}

void RowBuilder::setBoolean(const ColumnDef &column, bool value)
{
    m_fields[column.number] = value ? std::optional<QByteArray>(QByteArray()) : std::nullopt;
}

std::vector<std::byte> RowBuilder::build() const
{
    std::vector<std::byte> row;
    appendNumber(row, m_def.columnsEver, m_jet4);
    appendFixed(row);
    if (m_def.variableSlots > 0)
        appendTrailer(row, appendVariable(row));
    appendMask(row);
    return row;
}

void RowBuilder::appendFixed(std::vector<std::byte> &row) const
{
    const std::size_t start = row.size();
    for (const ColumnDef &column : m_def.columns) {
        if (!column.isFixed() || column.type == ColumnType::Boolean)
            continue;
        const std::size_t at = start + column.fixedOffset;
        row.resize(std::max(row.size(), at + column.length));
        if (const auto &field = m_fields[column.number]) {
            const auto bytes = std::as_bytes(std::span(field->constData(), static_cast<std::size_t>(field->size())));
            std::ranges::copy(bytes.first(std::min<std::size_t>(bytes.size(), column.length)),
                              row.begin() + static_cast<std::ptrdiff_t>(at));
        }
    }
}

/// Returns where each slot starts and, last, where the data ends.
std::vector<std::size_t> RowBuilder::appendVariable(std::vector<std::byte> &row) const
{
    std::vector<const ColumnDef *> slots(m_def.variableSlots);
    for (const ColumnDef &column : m_def.columns) {
        if (!column.isFixed() && column.type != ColumnType::Boolean)
            slots[column.slot] = &column;
    }
    std::vector<std::size_t> offsets;
    for (const ColumnDef *column : slots) {
        offsets.push_back(row.size());
        if (column && m_fields[column->number])
            append(row, *m_fields[column->number]);
    }
    offsets.push_back(row.size());
    return offsets;
}

void RowBuilder::appendTrailer(std::vector<std::byte> &row, const std::vector<std::size_t> &offsets) const
{
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset)
        appendNumber(row, *offset, m_jet4);
    if (!m_jet4) {
        const std::size_t rest = 1 + (m_def.columnsEver + 7U) / 8U; // k and the mask
        std::size_t jumps = 0;
        // The jumps count for the length that decides on their number.
        while ((row.size() + jumps + rest - 1) / 256 > jumps)
            ++jumps;
        for (std::size_t jump = jumps; jump > 0; --jump) {
            const auto first = std::ranges::find_if(offsets, [jump](std::size_t o) { return o >= 256 * jump; });
            row.push_back(first == offsets.end() ? noSlot : static_cast<std::byte>(first - offsets.begin()));
        }
    }
    appendNumber(row, m_def.variableSlots, m_jet4);
}

void RowBuilder::appendMask(std::vector<std::byte> &row) const
{
    const std::size_t start = row.size();
    row.resize(start + (m_def.columnsEver + 7U) / 8U);
    for (std::size_t number = 0; number < m_fields.size(); ++number) {
        if (m_fields[number])
            row[start + number / 8] |= static_cast<std::byte>(1U << (number % 8));
    }
}

} // namespace jet
