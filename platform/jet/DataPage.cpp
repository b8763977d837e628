// Data pages: a table of slots from the front, rows from the back.
//
//   0  2  01 01                                    header size (Jet 3 10, Jet 4 14): the slots, 2 bytes each:
//   2  2  free bytes between slots and rows          low 13 bits  the row's offset; it ends where the row before starts
//   4  4  owner: a definition, "LVAL" or 0           0x4000 moved, 0x8000 a moved row's body, both: deleted
//   8 / 12 (Jet 3 / Jet 4)  2  number of slots
#include "platform/jet/DataPage.h"

#include <cstring>

#include "platform/jet/Damage.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::MutableBytes;
using storage::readLE;
using storage::writeLE;

namespace jet {

namespace {

constexpr std::uint16_t dataPageTag = 0x0101;
constexpr std::size_t offsetMask = 0x1FFF;

SlotKind kindOf(std::size_t word)
{
    switch (word & 0xC000) {
    case 0:
        return SlotKind::Row;
    case 0x4000:
        return SlotKind::Moved;
    case 0x8000:
        return SlotKind::Body;
    default:
        return SlotKind::Deleted;
    }
}

std::size_t bitsOf(SlotKind kind)
{
    switch (kind) {
    case SlotKind::Row:
        return 0;
    case SlotKind::Moved:
        return 0x4000;
    case SlotKind::Body:
        return 0x8000;
    case SlotKind::Deleted:
        break;
    }
    return 0xC000;
}

std::size_t slotAt(const Format &format, std::size_t slot)
{
    return format.dataHeader + slotSize * slot;
}

std::size_t offsetIn(const Page &page, const Format &format, std::size_t slot)
{
    return readLE<std::uint16_t>(page, slotAt(format, slot)) & offsetMask;
}

std::size_t endIn(const Page &page, const Format &format, std::size_t slot)
{
    return slot == 0 ? format.pageSize : offsetIn(page, format, slot - 1);
}

Page &modifyDataPage(PageStore &store, PageNo number)
{
    const DataPage checked(store, number);
    return store.modify(checked.number());
}

} // namespace

DataPage::DataPage(PageStore &store, PageNo number)
    : m_page(store.read(number))
    , m_format(&formatOf(store))
    , m_number(number)
    , m_owner(readLE<std::uint32_t>(*m_page, 4))
    , m_slotCount(readLE<std::uint16_t>(*m_page, m_format->slotCountAt))
    , m_free(readLE<std::uint16_t>(*m_page, 2))
{
    check();
}

void DataPage::check() const
{
    if (readLE<std::uint16_t>(*m_page, 0) != dataPageTag)
        damaged(m_number, u"keine Datenseite"_s);
    constexpr std::size_t addressable = 256; // a slot's number is one byte
    const std::size_t slotEnd = slotAt(*m_format, m_slotCount);
    if (slotEnd > m_format->pageSize || m_slotCount > addressable)
        damaged(m_number, u"%1 Zeilen passen nicht auf die Seite"_s.arg(m_slotCount));
    std::size_t lowest = m_format->pageSize;
    for (std::size_t slot = 0; slot < m_slotCount; ++slot) {
        const std::size_t start = offset(slot);
        if (start > lowest || start < slotEnd)
            damaged(m_number, u"Zeile %1 liegt nicht im freien Teil der Seite"_s.arg(slot));
        lowest = start;
    }
    if (lowest - slotEnd != m_free)
        damaged(m_number, u"%1 Bytes sind frei, angegeben sind %2"_s.arg(lowest - slotEnd).arg(m_free));
}

void DataPage::requireOwner(PageNo owner) const
{
    if (m_owner != owner)
        damaged(m_number, u"gehört zu %1 statt zu %2"_s.arg(m_owner).arg(owner));
}

SlotKind DataPage::kind(std::size_t slot) const
{
    return kindOf(readLE<std::uint16_t>(*m_page, slotAt(*m_format, slot)));
}

bool DataPage::isVacant() const
{
    for (std::size_t slot = 0; slot < m_slotCount; ++slot) {
        if (kind(slot) != SlotKind::Deleted)
            return false;
    }
    return true;
}

Bytes DataPage::row(std::size_t slot) const
{
    if (slot >= m_slotCount)
        damaged(m_number, u"Zeile %1 gibt es nicht"_s.arg(slot));
    return Bytes(*m_page).subspan(offset(slot), end(slot) - offset(slot));
}

RowPointer DataPage::target(std::size_t slot) const
{
    const Bytes bytes = row(slot);
    if (bytes.size() < 4)
        damaged(m_number, u"Zeile %1 soll ein Verweis sein und ist zu kurz"_s.arg(slot));
    return RowPointer::fromNumber(readLE<std::uint32_t>(bytes, 0));
}

std::size_t DataPage::offset(std::size_t slot) const
{
    return offsetIn(*m_page, *m_format, slot);
}

std::size_t DataPage::end(std::size_t slot) const
{
    return endIn(*m_page, *m_format, slot);
}

DataPageWriter::DataPageWriter(PageStore &store, PageNo number)
    : m_page(modifyDataPage(store, number))
    , m_format(formatOf(store))
{ }

DataPageWriter DataPageWriter::init(PageStore &store, PageNo number, PageNo owner)
{
    const Format &format = formatOf(store);
    Page &page = store.modify(number);
    writeLE<std::uint16_t>(page, 0, dataPageTag);
    writeLE<std::uint16_t>(page, 2, static_cast<std::uint16_t>(format.pageSize - format.dataHeader));
    writeLE<std::uint32_t>(page, 4, owner);
    return {store, number};
}

std::size_t DataPageWriter::slotCount() const
{
    return readLE<std::uint16_t>(m_page, m_format.slotCountAt);
}

std::size_t DataPageWriter::freeBytes() const
{
    return readLE<std::uint16_t>(m_page, 2);
}

bool DataPageWriter::hasRoom(std::size_t length) const
{
    return slotCount() < maxSlots && freeBytes() >= length + slotSize;
}

bool DataPageWriter::canResize(std::size_t slot, std::size_t length) const
{
    return freeBytes() + (end(slot) - offset(slot)) >= length;
}

std::uint8_t DataPageWriter::append(Bytes row, SlotKind kind)
{
    Q_ASSERT(hasRoom(row.size()));
    const std::size_t slot = slotCount();
    const std::size_t start = lowest() - row.size();
    writeLE<std::uint16_t>(m_page, m_format.slotCountAt, static_cast<std::uint16_t>(slot + 1));
    setSlot(slot, start, kind);
    std::copy(row.begin(), row.end(), m_page.begin() + static_cast<std::ptrdiff_t>(start));
    setFree();
    return static_cast<std::uint8_t>(slot);
}

void DataPageWriter::replace(std::size_t slot, Bytes row, SlotKind kind)
{
    Q_ASSERT(canResize(slot, row.size()));
    const std::size_t oldStart = offset(slot);
    const std::size_t newStart = end(slot) - row.size();
    const std::size_t from = lowest();
    const std::size_t to = from + newStart - oldStart;
    // The rows behind this one lie in front of it and move by the difference.
    std::memmove(m_page.data() + to, m_page.data() + from, oldStart - from);
    if (to > from)
        std::memset(m_page.data() + from, 0, to - from);
    for (std::size_t behind = slot + 1; behind < slotCount(); ++behind)
        setSlot(behind, offset(behind) + newStart - oldStart, kindOf(slotWord(behind)));
    setSlot(slot, newStart, kind);
    std::copy(row.begin(), row.end(), m_page.begin() + static_cast<std::ptrdiff_t>(newStart));
    setFree();
}

void DataPageWriter::replaceByPointer(std::size_t slot, RowPointer target)
{
    std::byte pointer[4]{};
    writeLE(MutableBytes(pointer), 0, target.number());
    replace(slot, pointer, SlotKind::Moved);
}

void DataPageWriter::erase(std::size_t slot)
{
    replace(slot, {}, SlotKind::Deleted);
}

MutableBytes DataPageWriter::bytes(std::size_t slot)
{
    return MutableBytes(m_page).subspan(offset(slot), end(slot) - offset(slot));
}

std::size_t DataPageWriter::slotWord(std::size_t slot) const
{
    return readLE<std::uint16_t>(m_page, slotAt(m_format, slot));
}

std::size_t DataPageWriter::offset(std::size_t slot) const
{
    return offsetIn(m_page, m_format, slot);
}

std::size_t DataPageWriter::end(std::size_t slot) const
{
    return endIn(m_page, m_format, slot);
}

std::size_t DataPageWriter::lowest() const
{
    return endIn(m_page, m_format, slotCount());
}

void DataPageWriter::setSlot(std::size_t slot, std::size_t offset, SlotKind kind)
{
    writeLE<std::uint16_t>(m_page, slotAt(m_format, slot), static_cast<std::uint16_t>(offset | bitsOf(kind)));
}

void DataPageWriter::setFree()
{
    writeLE<std::uint16_t>(m_page, 2, static_cast<std::uint16_t>(lowest() - slotAt(m_format, slotCount())));
}

} // namespace jet
