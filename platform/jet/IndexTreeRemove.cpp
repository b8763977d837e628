// Takes entries out of index trees. A page without entries leaves the tree; a page above the leaves that is left with
// its tail alone joins its sibling.
#include "platform/jet/IndexTree.h"

#include <utility>

#include "platform/jet/Damage.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/UsageMap.h"

using namespace Qt::StringLiterals;
using storage::Bytes;

namespace jet {

namespace {

bool isAt(const IndexStep &step, Bytes entry)
{
    return step.position < step.node.count() && compareKeys(step.node.entry(step.position), entry) == 0;
}

} // namespace

void IndexTree::remove(Bytes key, RowPointer row)
{
    KeyBytes entry = indexEntry(key, row);
    const IndexWalk walk(m_store, m_index.rootPage, m_owner);
    IndexPath path = walk.toEntry(entry);
    if (!isAt(path.back(), entry)) {
        entry = findByRow(row);
        path = walk.toEntry(entry);
    }
    auto &[leaf, position] = path.back();
    leaf.erase(position, position + 1);
    const std::size_t depth = path.size() - 1;
    if (leaf.count() == 0 && depth > 0) {
        dropNode(leaf);
        dropChild(path, depth - 1);
        return;
    }
    leaf.write(m_store);
    if (position == leaf.count() && position > 0)
        replaceSeparator(path, depth, leaf.entry(position - 1));
}

/// The entry of a row, whatever its key: some programs make other keys of some texts than the file's own engine.
KeyBytes IndexTree::findByRow(RowPointer row) const
{
    IndexCursor cursor(m_store, m_index, m_owner);
    while (cursor.next()) {
        if (cursor.row() == row)
            return {cursor.entry().begin(), cursor.entry().end()};
    }
    damaged(m_index.rootPage, u"im Index fehlt der Eintrag für Zeile %1 der Seite %2"_s.arg(row.row).arg(row.page));
}

/// Takes a page out of its level and of the file.
void IndexTree::dropNode(const IndexNode &node)
{
    if (node.previous() != 0)
        setNext(node.previous(), node.next());
    if (node.next() != 0)
        setPrevious(node.next(), node.previous());
    UsageMap(m_store, m_index.map).remove(node.number());
    m_store.release(node.number());
}

/// Below the step at `depth` everything ends with `entry` now: says so above, where there is room. A larger entry in
/// its place is right as well.
void IndexTree::replaceSeparator(IndexPath &path, std::size_t depth, Bytes entry)
{
    while (depth-- > 0) {
        auto &[node, position] = path[depth];
        if (position == node.count())
            continue;
        IndexNode changed = node;
        changed.replace(position, entry);
        if (changed.fits()) {
            changed.write(m_store);
            node = std::move(changed);
        }
        return;
    }
}

/// Takes out the child at the position of the step; its page is gone already.
void IndexTree::dropChild(IndexPath &path, std::size_t depth)
{
    auto &[node, position] = path[depth];
    if (position < node.count())
        node.erase(position, position + 1);
    else if (node.count() > 0)
        dropTail(path, depth);
    else if (depth > 0) { // other programs leave pages with nothing but a tail
        dropNode(node);
        return dropChild(path, depth - 1);
    } else {
        return format(m_store, m_index.rootPage, m_owner);
    }
    settle(path, depth);
}

/// Writes a page above the leaves that has lost a child.
void IndexTree::settle(IndexPath &path, std::size_t depth)
{
    const IndexNode &node = path[depth].node;
    if (node.count() > 0)
        node.write(m_store);
    else if (depth == 0)
        collapseRoot(node);
    else
        mergeIntoSibling(path, depth);
}

/// The child of the last entry becomes the tail.
void IndexTree::dropTail(IndexPath &path, std::size_t depth)
{
    IndexNode &node = path[depth].node;
    const std::size_t last = node.count() - 1;
    const Bytes entry = node.entry(last);
    const KeyBytes separator(entry.begin(), entry.end());
    node.setChild(node.count(), node.child(last));
    node.erase(last, last + 1);
    replaceSeparator(path, depth, separator);
}

/// A root with one child takes that child's place.
void IndexTree::collapseRoot(IndexNode root)
{
    while (!root.isLeaf() && root.count() == 0) {
        const IndexNode child = readNode(root.tail());
        root.takeContent(child);
        dropNode(child);
    }
    root.write(m_store);
}

/// A page that has only a tail left gives it to the page beside it, and goes.
void IndexTree::mergeIntoSibling(IndexPath &path, std::size_t depth)
{
    const IndexNode lonely = path[depth].node;
    auto &[parent, position] = path[depth - 1];
    if (parent.count() == 0) { // only in files of other programs
        lonely.write(m_store);
        return rebuildFromLeaves();
    }
    const bool toLeft = position > 0;
    const std::size_t separatorAt = toLeft ? position - 1 : position;
    const Bytes entry = parent.entry(separatorAt);
    const KeyBytes separator(entry.begin(), entry.end());
    IndexNode sibling = readNode(parent.child(toLeft ? position - 1 : position + 1));
    const PageNo neighbour = toLeft ? sibling.tail() : sibling.child(0);
    if (toLeft) {
        sibling.insert(sibling.count(), separator, sibling.tail());
        sibling.setChild(sibling.count(), lonely.tail());
    } else {
        sibling.insert(0, separator, lonely.tail());
    }
    if (!sibling.fits()) {
        lonely.write(m_store);
        return rebuildFromLeaves();
    }
    sibling.write(m_store);
    if (levelOf(path, depth) > 1) {
        setNext(toLeft ? neighbour : lonely.tail(), toLeft ? lonely.tail() : neighbour);
        setPrevious(toLeft ? lonely.tail() : neighbour, toLeft ? neighbour : lonely.tail());
    }
    dropNode(lonely);
    if (toLeft)
        parent.setChild(position, sibling.number());
    parent.erase(separatorAt, separatorAt + 1);
    settle(path, depth - 1);
}

/// The way out that always works: everything anew from the entries.
void IndexTree::rebuildFromLeaves()
{
    std::vector<KeyBytes> entries;
    IndexCursor cursor(m_store, m_index, m_owner);
    while (cursor.next())
        entries.emplace_back(cursor.entry().begin(), cursor.entry().end());
    rebuild(entries);
}

} // namespace jet
