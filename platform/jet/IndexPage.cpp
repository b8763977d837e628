// Searching the pages of index trees where they stand, and adding entries there; IndexLayout.h describes them.
#include "platform/jet/IndexPage.h"

#include <algorithm>
#include <cstring>

#include "platform/jet/Bits.h"
#include "platform/jet/Damage.h"
#include "platform/jet/IndexNode.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::MutableBytes;
using storage::readLE;

namespace jet {

namespace {

/// Moves all bits behind `at` up by `distance`, and sets the one at that distance.
void insertBits(MutableBytes bits, std::size_t at, std::size_t distance)
{
    const std::size_t firstByte = (at + 1) / 8;
    const auto kept = static_cast<std::byte>((1U << ((at + 1) % 8)) - 1);
    const auto moved = [&](std::size_t byte) {
        if (byte < firstByte || byte >= bits.size())
            return 0U;
        return std::to_integer<unsigned>(byte == firstByte ? bits[byte] & ~kept : bits[byte]);
    };
    const std::size_t bytes = distance / 8;
    const std::size_t rest = distance % 8;
    for (std::size_t to = bits.size(); to-- > firstByte;) {
        const unsigned word = moved(to - bytes) << 8 | moved(to - bytes - 1);
        const std::byte stays = to == firstByte ? bits[to] & kept : std::byte{0};
        bits[to] = stays | static_cast<std::byte>(word >> (8 - rest));
    }
    setBit(bits, at + distance, true);
}

} // namespace

IndexPage::IndexPage(PageStore &store, PageNo number, PageNo owner)
    : m_page(store.read(number))
    , m_layout(&indexLayoutOf(store.isJet4()))
    , m_number(number)
{
    if (!store.isSound(number) || readLE<PageNo>(*m_page, indexOwnerAt) != owner) {
        IndexNode::read(store, number, owner); // throws for all that is wrong
        store.noteSound(number);
    }
    m_end = m_layout->capacity()
        - std::min<std::size_t>(readLE<std::uint16_t>(*m_page, indexFreeAt), m_layout->capacity());
    m_prefix = m_layout->prefixIn(*m_page);
}

bool IndexPage::isLeaf() const
{
    return readLE<std::uint16_t>(*m_page, 0) == leafIndexTag;
}

PageNo IndexPage::previous() const
{
    return readLE<PageNo>(*m_page, m_layout->previousAt);
}

PageNo IndexPage::next() const
{
    return readLE<PageNo>(*m_page, m_layout->nextAt());
}

Bytes IndexPage::bitmap() const
{
    return Bytes(*m_page).subspan(m_layout->bitmapAt, m_layout->bitmapSize());
}

std::size_t IndexPage::endOf(std::size_t place) const
{
    const std::size_t end = nextBit(bitmap(), place + 1);
    if (end > m_end)
        damaged(m_number, u"hinter Stelle %1 endet kein Eintrag des Index"_s.arg(place));
    return end;
}

/// What stands at a place: without the common beginning, and without the child.
Bytes IndexPage::stored(std::size_t place) const
{
    const std::size_t size = endOf(place) - place;
    const std::size_t child = isLeaf() ? 0 : indexLinkSize;
    storage::requireBytes(size, 0, child);
    return storage::part(*m_page, m_layout->entriesAt + place, size - child);
}

std::size_t IndexPage::before(std::size_t place) const
{
    const std::size_t end = endOfBits(bitmap(), place);
    return end == 0 ? 0 : end - 1;
}

std::size_t IndexPage::find(Bytes wanted) const
{
    Q_ASSERT(isSearchable());
    if (m_end == 0)
        return 0;
    // What all begin with is compared once.
    const Bytes start = storage::part(*m_page, m_layout->entriesAt, m_prefix);
    if (const int order = compareKeys(start, wanted.first(std::min(m_prefix, wanted.size()))); order != 0)
        return order < 0 ? m_end : 0;
    const Bytes rest = wanted.subspan(m_prefix);
    std::size_t low = 0;
    std::size_t high = m_end;
    while (low < high) {
        const std::size_t middle = before((low + high) / 2 + 1);
        if (compareKeys(stored(middle).subspan(middle == 0 ? m_prefix : 0), rest) < 0)
            low = endOf(middle);
        else
            high = middle;
    }
    return low;
}

KeyBytes IndexPage::entry(std::size_t place) const
{
    const Bytes start = storage::part(*m_page, m_layout->entriesAt, skipped(place));
    const Bytes rest = stored(place);
    KeyBytes entry(start.size() + rest.size());
    std::ranges::copy(rest, std::ranges::copy(start, entry.begin()).out);
    return entry;
}

PageNo IndexPage::child(std::size_t place) const
{
    Q_ASSERT(!isLeaf() && isSearchable());
    if (place == m_end)
        return readLE<PageNo>(*m_page, m_layout->tailAt());
    return readBigEndian(storage::part(*m_page, m_layout->entriesAt + endOf(place) - indexLinkSize, indexLinkSize));
}

/// The common beginning stays what IndexNode would make of the page: it is that of the first and the last entry, as far
/// as the shortest key goes.
bool IndexPage::hasRoomFor(Bytes entry, std::size_t place) const
{
    if (m_prefix > 0) {
        const Bytes start = storage::part(*m_page, m_layout->entriesAt, m_prefix);
        if (place == 0 || entry.size() < m_prefix + indexRowSize || !std::ranges::equal(entry.first(m_prefix), start))
            return false;
    }
    return entry.size() - m_prefix <= m_layout->capacity() - m_end;
}

void IndexPage::insert(PageStore &store, Bytes entry, std::size_t place) const
{
    Q_ASSERT(isLeaf() && hasRoomFor(entry, place));
    const Bytes added = entry.subspan(m_prefix);
    const MutableBytes page = store.modify(m_number);
    const MutableBytes entries = page.subspan(m_layout->entriesAt);
    std::memmove(&entries[place + added.size()], &entries[place], m_end - place);
    std::ranges::copy(added, &entries[place]);
    const std::size_t bitmapUsed = (m_end + added.size()) / 8 + 1;
    insertBits(page.subspan(m_layout->bitmapAt, bitmapUsed), place, added.size());
    storage::writeLE(page, indexFreeAt, static_cast<std::uint16_t>(m_layout->capacity() - m_end - added.size()));
    store.noteSound(m_number);
}

} // namespace jet
