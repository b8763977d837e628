#pragma once

#include <optional>
#include <vector>

#include "platform/jet/IndexNode.h"
#include "platform/jet/IndexPage.h"
#include "platform/jet/PageStore.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// The way from the root to a leaf: each page with the position of the child taken, or of the entry on the leaf.
struct IndexStep {
    IndexNode node;
    std::size_t position;
};
using IndexPath = std::vector<IndexStep>;

/// Where an entry belongs: a leaf, and the place of the first entry on it that is not below.
struct IndexPlace {
    IndexPage leaf;
    std::size_t place;
};

/// How far above the leaves a step of a path is.
inline std::uint8_t levelOf(const IndexPath &path, std::size_t depth)
{
    return static_cast<std::uint8_t>(path.size() - 1 - depth);
}

/// Finds the way through an index tree. Keeps nothing of the file in memory; paths end with a write to the tree.
///
/// Errors  StorageError::Damaged when a page does not fit the one above it or the one beside it.
class IndexWalk
{
public:
    /// `owner` is the page of the table's definition.
    IndexWalk(PageStore &store, PageNo root, PageNo owner);

    /// What to look for: the first entry whose key is not below `key`, or also does not begin with it.
    struct Target {
        storage::Bytes key;
        bool behind; ///< skip the keys that begin with `key`
    };
    /// The way to the target, or to the end of the leaf on which it would stand.
    IndexPath toTarget(const Target &target) const;
    /// The way to an entry: key and row address. Or to the place where it belongs.
    IndexPath toEntry(storage::Bytes entry) const;
    /// The same place without the way, found on the pages as they are stored; nothing if they cannot be searched so.
    std::optional<IndexPlace> placeOf(storage::Bytes entry) const;
    /// The ends of the tree; StorageError::Damaged if a page beyond is linked.
    IndexPath toStart() const;
    IndexPath toEnd() const;

    /// Goes on to the first entry of the next leaf, or behind the last of the one before; false at the tree's end.
    bool nextLeaf(IndexPath &path) const;
    bool previousLeaf(IndexPath &path) const;

private:
    template <typename Choose> IndexPath descend(const Choose &choose) const;
    template <typename Choose> void descendFrom(IndexPath &path, const Choose &choose) const;
    IndexNode readChild(const IndexPath &path) const;

    PageStore &m_store;
    PageNo m_root;
    PageNo m_owner;
};

} // namespace jet
