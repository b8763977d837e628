// Usage maps: sets of pages, in two forms.
//
//   inline     0  1  0                                reference  0  1  1
//              1  4  first page, a multiple of 8                 1  4 each  page of a bitmap, 0 = none;
//              5  -  bitmap, lowest bit first                       entry k covers the pages from k * P on
//
//   A bitmap page is 05 01 00 00 and a bitmap of P bits: P = (page size - 4) * 8.
#include "platform/jet/UsageMap.h"

#include <algorithm>
#include <utility>

#include "platform/jet/Bits.h"
#include "platform/jet/Damage.h"
#include "platform/jet/DataPage.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::MutableBytes;
using storage::readLE;
using storage::writeLE;

namespace jet {

namespace {

constexpr std::size_t bitmapPageHeader = 4;
constexpr std::uint32_t bitmapPageTag = 0x00000105;
constexpr std::size_t rowHeader = 5; // of the inline form
constexpr std::size_t firstEntry = 1; // of the reference form
constexpr std::byte inlineForm{0};
constexpr std::byte referenceForm{1};

} // namespace

/// A stretch of consecutive pages and its bits.
struct UsageMap::Window {
    PageNo start;
    PagePtr page; ///< holds the bits
    Bytes bits;

    std::uint64_t end() const { return std::uint64_t{start} + bitCount(bits); }
};

UsageMap::UsageMap(PageStore &store, RowPointer where)
    : m_store(store)
    , m_where(where)
{ }

PageNo UsageMap::pagesPerBitmapPage(const PageStore &store)
{
    return static_cast<PageNo>((store.pageSize() - bitmapPageHeader) * 8);
}

std::vector<std::byte> UsageMap::emptyRow(const PageStore &store)
{
    return std::vector<std::byte>(formatOf(store).mapRow);
}

std::vector<std::byte> UsageMap::freeRow(const PageStore &store, PageNo used)
{
    auto row = emptyRow(store);
    const MutableBytes bits = MutableBytes(row).subspan(rowHeader);
    for (std::size_t bit = used; bit < bitCount(bits); ++bit)
        setBit(bits, bit, true);
    return row;
}

std::vector<UsageMap::Window> UsageMap::windows() const
{
    const DataPage home(m_store, m_where.page);
    const PagePtr page = m_store.read(m_where.page);
    const Bytes bytes = home.row(m_where.row);
    if (bytes.empty() || home.kind(m_where.row) != SlotKind::Row)
        damaged(m_where.page, u"Zeile %1 ist keine Seitenliste"_s.arg(m_where.row));
    if (bytes[0] == inlineForm) {
        if (bytes.size() < rowHeader)
            damaged(m_where.page, u"Seitenliste in Zeile %1 ist zu kurz"_s.arg(m_where.row));
        return {{readLE<std::uint32_t>(bytes, 1), page, bytes.subspan(rowHeader)}};
    }
    if (bytes[0] != referenceForm)
        damaged(m_where.page, u"Zeile %1 ist keine Seitenliste"_s.arg(m_where.row));
    std::vector<Window> windows;
    for (std::size_t at = firstEntry; at + 4 <= bytes.size(); at += 4) {
        const auto number = readLE<std::uint32_t>(bytes, at);
        // Entries that point past the end of the file occur and mean nothing.
        if (number == 0 || number >= m_store.pageCount())
            continue;
        const PagePtr bitmap = m_store.read(number);
        if (readLE<std::uint32_t>(*bitmap, 0) != bitmapPageTag)
            damaged(number, u"keine Seitenliste"_s);
        const auto index = static_cast<PageNo>((at - firstEntry) / 4);
        windows.push_back({index * pagesPerBitmapPage(m_store), bitmap, Bytes(*bitmap).subspan(bitmapPageHeader)});
    }
    return windows;
}

bool UsageMap::contains(PageNo page) const
{
    const auto all = windows();
    return std::any_of(all.begin(), all.end(), [page](const Window &window) {
        return page >= window.start && page < window.end() && isSet(window.bits, page - window.start);
    });
}

PageNo UsageMap::next(PageNo from, PageNo limit) const
{
    for (const Window &window : windows()) {
        if (window.end() <= from)
            continue;
        const std::size_t bit = nextBit(window.bits, from > window.start ? from - window.start : 0);
        if (bit < bitCount(window.bits))
            return static_cast<PageNo>(std::min<std::uint64_t>(window.start + bit, limit));
    }
    return limit;
}

PageNo UsageMap::previous(PageNo limit) const
{
    const auto all = windows();
    for (auto window = all.rbegin(); window != all.rend(); ++window) {
        if (window->start >= limit)
            continue;
        const std::size_t end = endOfBits(window->bits, limit - window->start);
        if (end > 0)
            return static_cast<PageNo>(window->start + end - 1);
    }
    return 0;
}

std::vector<PageNo> UsageMap::pages() const
{
    std::vector<PageNo> pages;
    for (const Window &window : windows()) {
        for (std::size_t bit = nextBit(window.bits, 0); bit < bitCount(window.bits);
             bit = nextBit(window.bits, bit + 1)) {
            const std::uint64_t page = window.start + bit;
            if (page >= m_store.pageCount()) {
                damaged(m_where.page,
                        u"Seitenliste in Zeile %1 nennt Seite %2, die es nicht gibt"_s.arg(m_where.row).arg(page));
            }
            pages.push_back(static_cast<PageNo>(page));
        }
    }
    return pages;
}

std::vector<PageNo> UsageMap::ownPages() const
{
    const DataPage home(m_store, m_where.page);
    const Bytes bytes = home.row(m_where.row);
    std::vector<PageNo> own;
    if (bytes.empty() || bytes[0] != referenceForm)
        return own;
    for (std::size_t at = firstEntry; at + 4 <= bytes.size(); at += 4) {
        const auto number = readLE<std::uint32_t>(bytes, at);
        if (number != 0 && number < m_store.pageCount())
            own.push_back(number);
    }
    return own;
}

MutableBytes UsageMap::row()
{
    return DataPageWriter(m_store, m_where.page).bytes(m_where.row);
}

void UsageMap::remove(PageNo page)
{
    if (contains(page))
        setInWindow(page, false);
}

void UsageMap::add(PageNo page)
{
    if (contains(page))
        return;
    if (!covers(page) && (row()[0] != inlineForm || !widenInline(page))) {
        if (row()[0] == inlineForm)
            convertToReference();
        cover(page);
    }
    setInWindow(page, true);
}

bool UsageMap::covers(PageNo page) const
{
    const auto all = windows();
    return std::any_of(all.begin(), all.end(),
                       [page](const Window &window) { return page >= window.start && page < window.end(); });
}

void UsageMap::setInWindow(PageNo page, bool value)
{
    const MutableBytes bytes = row();
    if (bytes[0] == inlineForm) {
        setBit(bytes.subspan(rowHeader), page - readLE<std::uint32_t>(bytes, 1), value);
        return;
    }
    const PageNo perPage = pagesPerBitmapPage(m_store);
    const auto number = readLE<std::uint32_t>(bytes, firstEntry + std::size_t{4} * (page / perPage));
    setBit(MutableBytes(m_store.modify(number)).subspan(bitmapPageHeader), page % perPage, value);
}

/// Moves the stretch that an inline map covers so that it includes `page` too; false if it is not long enough.
bool UsageMap::widenInline(PageNo page)
{
    const std::vector<PageNo> used = pages();
    const MutableBytes bytes = row();
    const MutableBytes bits = bytes.subspan(rowHeader);
    const PageNo lowest = used.empty() ? page : std::min(page, used.front());
    const PageNo highest = used.empty() ? page : std::max(page, used.back());
    const PageNo start = lowest & ~PageNo{7};
    if (highest - start >= bitCount(bits))
        return false;
    writeLE(bytes, 1, start);
    std::fill(bits.begin(), bits.end(), std::byte{0});
    for (const PageNo number : used)
        setBit(bits, number - start, true);
    return true;
}

void UsageMap::convertToReference()
{
    const std::vector<PageNo> used = pages();
    const MutableBytes bytes = row();
    std::fill(bytes.begin(), bytes.end(), std::byte{0});
    bytes[0] = referenceForm;
    for (const PageNo page : used) {
        cover(page);
        setInWindow(page, true);
    }
}

/// Gives a reference map a bitmap page for the stretch that `page` is in, unless it has one.
void UsageMap::cover(PageNo page)
{
    if (covers(page))
        return;
    const PageNo number = m_store.allocate();
    writeLE(MutableBytes(m_store.modify(number)), 0, bitmapPageTag);
    setEntry(page / pagesPerBitmapPage(m_store), number);
}

void UsageMap::setEntry(PageNo entry, PageNo number)
{
    const std::size_t at = firstEntry + std::size_t{4} * entry;
    const MutableBytes bytes = row();
    if (at + 4 > bytes.size())
        damaged(m_where.page,
                u"Seitenliste in Zeile %1 hat keinen Platz für Abschnitt %2"_s.arg(m_where.row).arg(entry));
    writeLE(bytes, at, number);
}

void UsageMap::extendFree(PageNo page, const std::function<PageNo()> &append)
{
    if (covers(page))
        return;
    const PageNo perPage = pagesPerBitmapPage(m_store);
    const PageNo last = page / perPage;
    PageNo first = last;
    std::vector<PageNo> free;
    if (row()[0] == inlineForm) {
        first = 0;
        for (PageNo set = next(0, m_store.pageCount()); set < m_store.pageCount();
             set = next(set + 1, m_store.pageCount()))
            free.push_back(set);
        const MutableBytes bytes = row();
        std::fill(bytes.begin(), bytes.end(), std::byte{0});
        bytes[0] = referenceForm;
    }
    for (PageNo entry = first; entry <= last; ++entry) {
        const PageNo number = append();
        Page &bitmap = m_store.modify(number);
        std::fill(bitmap.begin(), bitmap.end(), std::byte{0xFF});
        writeLE(MutableBytes(bitmap), 0, bitmapPageTag);
        setEntry(entry, number);
    }
    for (PageNo used = first * perPage; used < m_store.pageCount(); ++used)
        setInWindow(used, false);
    for (const PageNo number : free)
        setInWindow(number, true);
}

} // namespace jet
