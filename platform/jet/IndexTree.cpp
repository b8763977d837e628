// Keeps index trees: adding an entry may split pages upwards, removing the last one of a page takes it out of the tree.
#include "platform/jet/IndexTree.h"

#include <algorithm>

#include "platform/jet/Damage.h"
#include "platform/jet/IndexBuild.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/UsageMap.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::StorageError;

namespace jet {

namespace {

KeyBytes copyOf(Bytes bytes)
{
    return {bytes.begin(), bytes.end()};
}

/// Whether the path leads to the end of the whole tree.
bool isAtEnd(const IndexPath &path)
{
    return std::ranges::all_of(path, [](const IndexStep &step) { return step.position == step.node.count(); });
}

/// Where a full page is cut: the first position right of the cut, closest to the middle, with which both halves fit.
/// Above the leaves the entry at the cut itself moves up.
std::size_t findCut(const IndexNode &node, bool appending)
{
    const std::size_t count = node.count();
    const std::size_t moved = node.isLeaf() ? 0 : 1;
    const auto works = [&](std::size_t cut) {
        return cut >= 1 && cut + moved < count && node.fits(0, cut) && node.fits(cut + moved, count);
    };
    // Ascending keys leave full pages behind them
    if (appending && works(count - 1 - moved))
        return count - 1 - moved;
    for (std::size_t distance = 0; distance <= count / 2 + 1; ++distance) {
        if (works(count / 2 + distance))
            return count / 2 + distance;
        if (distance <= count / 2 && works(count / 2 - distance))
            return count / 2 - distance;
    }
    throw StorageError(
        StorageError::TooLong,
        u"Seite %1: die Einträge des Index sind zu lang, um sie auf zwei Seiten zu verteilen"_s.arg(node.number()));
}

/// Moves the lower part of `right`, which is too full, to the empty page `left`; returns the entry that divides them.
KeyBytes divide(IndexNode &left, IndexNode &right, bool appending)
{
    const std::size_t cut = findCut(right, appending);
    left.takeContent(right);
    left.erase(cut, left.count());
    if (right.isLeaf()) {
        right.erase(0, cut);
        return copyOf(left.entry(cut - 1));
    }
    KeyBytes separator = copyOf(right.entry(cut));
    left.setChild(cut, right.child(cut));
    right.erase(0, cut + 1);
    return separator;
}

} // namespace

IndexTree::IndexTree(PageStore &store, const IndexDef &index, PageNo owner)
    : m_store(store)
    , m_index(index)
    , m_owner(owner)
{ }

void IndexTree::format(PageStore &store, PageNo root, PageNo owner)
{
    IndexNode(store, root, owner, 0).write(store);
}

IndexNode IndexTree::readNode(PageNo number) const
{
    return IndexNode::read(m_store, number, m_owner);
}

IndexNode IndexTree::newNode(std::uint8_t level)
{
    const PageNo number = m_store.allocate();
    UsageMap(m_store, m_index.map).add(number);
    return {m_store, number, m_owner, level};
}

void IndexTree::setPrevious(PageNo number, PageNo previous)
{
    IndexNode node = readNode(number);
    node.setLinks(previous, node.next());
    node.write(m_store);
}

void IndexTree::setNext(PageNo number, PageNo next)
{
    IndexNode node = readNode(number);
    node.setLinks(node.previous(), next);
    node.write(m_store);
}

bool IndexTree::contains(Bytes key) const
{
    IndexCursor cursor(m_store, m_index, m_owner, KeyBound{copyOf(key)});
    return cursor.next() && compareKeys(cursor.key(), key) == 0;
}

/// `place` is where the new entry belongs.
bool IndexTree::hasEqualKey(const IndexPath &place, Bytes key) const
{
    const auto &[leaf, position] = place.back();
    if (position > 0 && compareKeys(leaf.key(position - 1), key) == 0)
        return true;
    if (position < leaf.count() && compareKeys(leaf.key(position), key) == 0)
        return true;
    const bool isBorder = (position == 0 && leaf.previous() != 0) || (position == leaf.count() && leaf.next() != 0);
    return isBorder && contains(key);
}

bool IndexTree::hasEqualKey(const IndexPlace &where, Bytes key) const
{
    const auto &[leaf, place] = where;
    const auto isEqual = [&, &page = leaf](std::size_t other) {
        const KeyBytes entry = page.entry(other);
        return compareKeys(Bytes(entry).first(entry.size() - indexRowSize), key) == 0;
    };
    if ((place > 0 && isEqual(leaf.before(place))) || (place < leaf.end() && isEqual(place)))
        return true;
    const bool isBorder = (place == 0 && leaf.previous() != 0) || (place == leaf.end() && leaf.next() != 0);
    return isBorder && contains(key);
}

/// Nothing if more than the leaf's entries would have to change; then nothing was.
std::optional<IndexTree::Inserted> IndexTree::insertInPlace(Bytes entry, Duplicates duplicates)
{
    const auto where = IndexWalk(m_store, m_index.rootPage, m_owner).placeOf(entry);
    if (!where || !where->leaf.hasRoomFor(entry, where->place))
        return std::nullopt;
    const auto &[leaf, place] = *where;
    const bool known = hasEqualKey(*where, entry.first(entry.size() - indexRowSize));
    if (known && duplicates == Duplicates::Refused)
        return Inserted::Refused;
    if (known && place < leaf.end() && compareKeys(leaf.entry(place), entry) == 0)
        return std::nullopt; // which is damage
    leaf.insert(m_store, entry, place);
    return known ? Inserted::KnownKey : Inserted::NewKey;
}

IndexTree::Inserted IndexTree::insert(Bytes key, RowPointer row, Duplicates duplicates)
{
    const KeyBytes entry = indexEntry(key, row);
    if (entry.size() > IndexNode::entryLimit(m_store)) {
        throw StorageError(StorageError::TooLong,
                           u"Der Wert ist zu lang für den Index: sein Schlüssel hat %1 Bytes"_s.arg(key.size()));
    }
    if (const auto inserted = insertInPlace(entry, duplicates))
        return *inserted;
    IndexPath path = IndexWalk(m_store, m_index.rootPage, m_owner).toEntry(entry);
    const bool known = hasEqualKey(path, key);
    if (known && duplicates == Duplicates::Refused)
        return Inserted::Refused;
    auto &[leaf, position] = path.back();
    if (position < leaf.count() && compareKeys(leaf.entry(position), entry) == 0)
        damaged(leaf.number(), u"der Index enthält Zeile %1 der Seite %2 schon"_s.arg(row.row).arg(row.page));
    const bool appending = isAtEnd(path);
    leaf.insert(position, entry);
    if (leaf.fits())
        leaf.write(m_store);
    else
        split(path, path.size() - 1, appending);
    return known ? Inserted::KnownKey : Inserted::NewKey;
}

/// Splits a page in memory that has become too full, and writes it and the page to its left that it needs.
void IndexTree::split(IndexPath &path, std::size_t depth, bool appending)
{
    if (depth == 0)
        return splitRoot(path, appending);
    const std::uint8_t level = levelOf(path, depth);
    IndexNode &right = path[depth].node;
    IndexNode left = newNode(level);
    const KeyBytes separator = divide(left, right, appending);
    left.setLinks(right.previous(), right.number());
    right.setLinks(left.number(), right.next());
    left.write(m_store);
    right.write(m_store);
    if (left.previous() != 0)
        setNext(left.previous(), left.number());
    if (level > 1)
        separateChildren(left, right);

    IndexStep &parent = path[depth - 1];
    parent.node.insert(parent.position, separator, left.number());
    if (parent.node.fits())
        parent.node.write(m_store);
    else
        split(path, depth - 1, appending);
}

/// The root keeps its page: what was on it goes to two new ones.
void IndexTree::splitRoot(const IndexPath &path, bool appending)
{
    const std::uint8_t level = levelOf(path, 0);
    IndexNode left = newNode(level);
    IndexNode right = newNode(level);
    right.takeContent(path.front().node);
    const KeyBytes separator = divide(left, right, appending);
    left.setLinks(0, right.number());
    right.setLinks(left.number(), 0);
    left.write(m_store);
    right.write(m_store);
    if (level > 1)
        separateChildren(left, right);
    IndexNode root(m_store, m_index.rootPage, m_owner, static_cast<std::uint8_t>(level + 1));
    root.setChild(0, right.number());
    root.insert(0, separator, left.number());
    root.write(m_store);
}

/// Above the leaves, only children of the same parent are linked.
void IndexTree::separateChildren(const IndexNode &left, const IndexNode &right)
{
    setNext(left.tail(), 0);
    setPrevious(right.child(0), 0);
}

void IndexTree::rebuild(std::span<const KeyBytes> entries)
{
    UsageMap map(m_store, m_index.map);
    for (const PageNo page : map.pages()) {
        if (page == m_index.rootPage)
            continue;
        map.remove(page);
        m_store.release(page);
    }
    buildIndexTree(m_store, m_index, m_owner, entries);
}

} // namespace jet
