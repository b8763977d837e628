// The pages of index trees in memory; IndexLayout.h describes them.
#include "platform/jet/IndexNode.h"

#include <algorithm>
#include <bit>

#include "platform/jet/Damage.h"
#include "platform/jet/IndexKey.h"
#include "platform/jet/IndexLayout.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::readLE;
using storage::writeLE;

namespace jet {

namespace {

void storeBigEndian(std::uint32_t number, std::vector<std::byte> &bytes, std::size_t at)
{
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<std::byte>(number >> (8 * (3 - i)));
}

/// The places at which the entries end, ascending.
std::vector<std::size_t> readEnds(Bytes bitmap)
{
    std::vector<std::size_t> ends;
    for (std::size_t i = 0; i < bitmap.size(); ++i) {
        for (auto bits = std::to_integer<unsigned>(bitmap[i]); bits != 0; bits &= bits - 1)
            ends.push_back(8 * i + static_cast<std::size_t>(std::countr_zero(bits)));
    }
    return ends;
}

} // namespace

KeyBytes indexEntry(Bytes key, RowPointer row)
{
    KeyBytes entry(key.begin(), key.end());
    entry.resize(key.size() + indexRowSize);
    storeBigEndian(row.number(), entry, key.size());
    return entry;
}

IndexNode::IndexNode(const PageStore &store, PageNo number, PageNo owner, std::uint8_t level)
    : m_jet4(store.isJet4())
    , m_number(number)
    , m_owner(owner)
    , m_leaf(level == 0)
    , m_level(level)
{ }

IndexNode IndexNode::read(PageStore &store, PageNo number, PageNo owner)
{
    const PagePtr held = store.read(number);
    const Bytes page = *held;
    const IndexLayout &layout = indexLayoutOf(store.isJet4());
    const auto tag = readLE<std::uint16_t>(page, 0);
    if (tag != upperIndexTag && tag != leafIndexTag)
        damaged(number, u"sie ist keine Seite eines Index"_s);
    if (readLE<PageNo>(page, indexOwnerAt) != owner)
        damaged(number, u"sie gehört nicht zu einem Index der Tabelle auf Seite %1"_s.arg(owner));
    IndexNode node(store, number, owner, std::to_integer<std::uint8_t>(page[layout.levelAt]));
    node.m_leaf = tag == leafIndexTag;
    node.m_previous = readLE<PageNo>(page, layout.previousAt);
    node.m_next = readLE<PageNo>(page, layout.nextAt());
    if (!node.m_leaf) {
        node.m_tail = readLE<PageNo>(page, layout.tailAt());
        if (node.m_tail == 0)
            damaged(number, u"der letzte Zweig des Index fehlt"_s);
    }
    node.readEntries(page);
    return node;
}

void IndexNode::readEntries(Bytes page)
{
    const IndexLayout &layout = indexLayoutOf(m_jet4);
    const std::size_t free = readLE<std::uint16_t>(page, indexFreeAt);
    const std::vector<std::size_t> ends = readEnds(page.subspan(layout.bitmapAt, layout.bitmapSize()));
    const std::size_t used = ends.empty() ? 0 : ends.back();
    if (used > layout.capacity() || used + free != layout.capacity())
        damaged(m_number, u"die Einträge des Index enden nicht dort, wo der freie Platz beginnt"_s);
    const std::size_t prefix = layout.prefixIn(page);
    if (ends.empty())
        return;
    if (prefix > ends.front())
        damaged(m_number, u"der gemeinsame Anfang der Einträge ist länger als der erste"_s);
    const Bytes entries = page.subspan(layout.entriesAt, used);
    m_bytes.resize(used + prefix * (ends.size() - 1));
    m_ends.reserve(ends.size());
    auto to = m_bytes.begin();
    std::size_t begin = 0;
    for (const std::size_t end : ends) {
        if (begin != 0)
            to = std::ranges::copy(entries.first(prefix), to).out;
        to = std::ranges::copy(entries.subspan(begin, end - begin), to).out;
        m_ends.push_back(static_cast<std::size_t>(to - m_bytes.begin()));
        begin = end;
    }
    checkEntries(prefix);
}

void IndexNode::checkEntries(std::size_t prefix) const
{
    const std::size_t shortest = 1 + indexRowSize + childSize();
    for (std::size_t i = 0; i < count(); ++i) {
        if (stored(i).size() < shortest)
            damaged(m_number, u"Eintrag %1 des Index ist zu kurz"_s.arg(i));
        if (i == 0)
            continue;
        // all entries share the prefix, so the order shows behind it
        const Bytes before = entry(i - 1);
        const Bytes here = entry(i);
        const std::size_t skip = std::min({prefix, before.size(), here.size()});
        if (compareKeys(before.subspan(skip), here.subspan(skip)) >= 0)
            damaged(m_number, u"die Einträge %1 und %2 des Index stehen in falscher Reihenfolge"_s.arg(i - 1).arg(i));
    }
}

Bytes IndexNode::stored(std::size_t position) const
{
    return Bytes(m_bytes).subspan(start(position), m_ends[position] - start(position));
}

Bytes IndexNode::entry(std::size_t position) const
{
    const Bytes whole = stored(position);
    return whole.first(whole.size() - childSize());
}

Bytes IndexNode::key(std::size_t position) const
{
    const Bytes whole = entry(position);
    return whole.first(whole.size() - indexRowSize);
}

RowPointer IndexNode::row(std::size_t position) const
{
    return RowPointer::fromNumber(readBigEndian(entry(position).last(indexRowSize)));
}

PageNo IndexNode::child(std::size_t position) const
{
    Q_ASSERT(!m_leaf);
    return position == count() ? m_tail : readBigEndian(stored(position).last(indexLinkSize));
}

std::size_t IndexNode::find(Bytes wanted) const
{
    std::size_t low = 0;
    std::size_t high = count();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        if (compareKeys(entry(middle), wanted) < 0)
            low = middle + 1;
        else
            high = middle;
    }
    return low;
}

void IndexNode::insert(std::size_t position, Bytes entry, PageNo child)
{
    const std::size_t at = start(position);
    const std::size_t size = entry.size() + childSize();
    m_bytes.insert(m_bytes.begin() + static_cast<std::ptrdiff_t>(at), size, std::byte{0});
    std::ranges::copy(entry, m_bytes.begin() + static_cast<std::ptrdiff_t>(at));
    m_ends.insert(m_ends.begin() + static_cast<std::ptrdiff_t>(position), at);
    for (std::size_t i = position; i < m_ends.size(); ++i)
        m_ends[i] += size;
    if (!m_leaf)
        setChild(position, child);
}

void IndexNode::replace(std::size_t position, Bytes entry)
{
    const PageNo kept = m_leaf ? 0 : child(position);
    erase(position, position + 1);
    insert(position, entry, kept);
}

void IndexNode::setChild(std::size_t position, PageNo child)
{
    if (position == count())
        m_tail = child;
    else
        storeBigEndian(child, m_bytes, m_ends[position] - indexLinkSize);
}

void IndexNode::erase(std::size_t first, std::size_t last)
{
    const std::size_t begin = start(first);
    const std::size_t size = start(last) - begin;
    m_bytes.erase(m_bytes.begin() + static_cast<std::ptrdiff_t>(begin),
                  m_bytes.begin() + static_cast<std::ptrdiff_t>(begin + size));
    m_ends.erase(m_ends.begin() + static_cast<std::ptrdiff_t>(first),
                 m_ends.begin() + static_cast<std::ptrdiff_t>(last));
    for (std::size_t i = first; i < m_ends.size(); ++i)
        m_ends[i] -= size;
}

void IndexNode::setLinks(PageNo previous, PageNo next)
{
    m_previous = previous;
    m_next = next;
}

void IndexNode::takeContent(const IndexNode &other)
{
    m_leaf = other.m_leaf;
    m_level = other.m_level;
    m_tail = other.m_tail;
    m_bytes = other.m_bytes;
    m_ends = other.m_ends;
}

/// The length of the beginning that the page has to store once only; 0 if there is room without that.
std::size_t IndexNode::prefixNeeded(std::size_t first, std::size_t last) const
{
    const IndexLayout &layout = indexLayoutOf(m_jet4);
    if (!m_leaf || last - first < 2 || start(last) - start(first) <= layout.capacity())
        return 0;
    // in ordered entries, what the first and the last begin with all begin with
    const Bytes low = key(first);
    const Bytes high = key(last - 1);
    std::size_t shortest = std::min({low.size(), high.size(), layout.prefixLimit()});
    for (std::size_t i = first; i < last; ++i)
        shortest = std::min(shortest, key(i).size());
    const auto differing
        = std::mismatch(low.begin(), low.begin() + static_cast<std::ptrdiff_t>(shortest), high.begin());
    return static_cast<std::size_t>(differing.first - low.begin());
}

bool IndexNode::fits(std::size_t first, std::size_t last) const
{
    const std::size_t size = start(last) - start(first);
    const std::size_t capacity = indexLayoutOf(m_jet4).capacity();
    return size <= capacity || size - prefixNeeded(first, last) * (last - first - 1) <= capacity;
}

void IndexNode::write(PageStore &store) const
{
    Q_ASSERT(fits());
    const IndexLayout &layout = indexLayoutOf(m_jet4);
    Page &page = store.modify(m_number);
    std::ranges::fill(page, std::byte{0});
    const storage::MutableBytes bytes = page;
    const std::size_t prefix = prefixNeeded(0, count());
    std::size_t used = 0;
    for (std::size_t i = 0; i < count(); ++i) {
        const Bytes rest = stored(i).subspan(i == 0 ? 0 : prefix);
        std::ranges::copy(rest, bytes.subspan(layout.entriesAt + used).begin());
        used += rest.size();
        std::byte &bits = bytes[layout.bitmapAt + used / 8];
        bits |= static_cast<std::byte>(1U << (used % 8));
    }
    writeLE(bytes, 0, m_leaf ? leafIndexTag : upperIndexTag);
    writeLE(bytes, indexFreeAt, static_cast<std::uint16_t>(layout.capacity() - used));
    writeLE(bytes, indexOwnerAt, m_owner);
    writeLE(bytes, layout.previousAt, m_previous);
    writeLE(bytes, layout.nextAt(), m_next);
    writeLE(bytes, layout.tailAt(), m_tail);
    if (layout.prefixSize == 1)
        bytes[layout.prefixAt] = static_cast<std::byte>(prefix);
    else
        writeLE(bytes, layout.prefixAt, static_cast<std::uint16_t>(prefix));
    bytes[layout.levelAt] = static_cast<std::byte>(m_level);
}

std::size_t IndexNode::entryLimit(const PageStore &store)
{
    return indexLayoutOf(store.isJet4()).capacity() / 2 - indexLinkSize;
}

} // namespace jet
