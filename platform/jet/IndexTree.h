#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "platform/jet/IndexKey.h"
#include "platform/jet/IndexWalk.h"
#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/TableDef.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// Changes the tree of one real index: adds and removes entries. Keeps nothing of the file in memory. An entry for
/// which its leaf has room is added to the page as it stands; everything else is done with IndexNode.
///
/// Errors  StorageError::Damaged when pages contradict each other, with the page's number.
class IndexTree
{
public:
    /// `owner` is the page of the table's definition.
    IndexTree(PageStore &store, const IndexDef &index, PageNo owner);

    /// Makes the tree of a new index: one empty leaf on the root page, which is already in the index's usage map.
    static void format(PageStore &store, PageNo root, PageNo owner);

    enum class Duplicates { Allowed, Refused };
    enum class Inserted {
        NewKey,
        KnownKey, ///< other rows have the same key
        Refused ///< they have, and the caller wanted none; nothing was changed
    };
    /// Adds the entry of a row. Throws StorageError::TooLong for a key of which no two fit on a page.
    Inserted insert(storage::Bytes key, RowPointer row, Duplicates duplicates);
    /// Removes the entry of a row; Damaged if it is not there.
    void remove(storage::Bytes key, RowPointer row);
    /// Whether some row has exactly this key.
    bool contains(storage::Bytes key) const;
    /// Replaces the whole content. `entries` are keys with row addresses behind them, in order.
    void rebuild(std::span<const KeyBytes> entries);

private:
    std::optional<Inserted> insertInPlace(storage::Bytes entry, Duplicates duplicates);
    bool hasEqualKey(const IndexPath &place, storage::Bytes key) const;
    bool hasEqualKey(const IndexPlace &where, storage::Bytes key) const;
    KeyBytes findByRow(RowPointer row) const;

    IndexNode readNode(PageNo number) const;
    IndexNode newNode(std::uint8_t level);
    void dropNode(const IndexNode &node);
    void setPrevious(PageNo number, PageNo previous);
    void setNext(PageNo number, PageNo next);

    void split(IndexPath &path, std::size_t depth, bool appending);
    void splitRoot(const IndexPath &path, bool appending);
    void separateChildren(const IndexNode &left, const IndexNode &right);

    void replaceSeparator(IndexPath &path, std::size_t depth, storage::Bytes entry);
    void dropChild(IndexPath &path, std::size_t depth);
    void dropTail(IndexPath &path, std::size_t depth);
    void settle(IndexPath &path, std::size_t depth);
    void collapseRoot(IndexNode root);
    void mergeIntoSibling(IndexPath &path, std::size_t depth);
    void rebuildFromLeaves();

    PageStore &m_store;
    IndexDef m_index;
    PageNo m_owner;
};

} // namespace jet
