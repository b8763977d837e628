#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/jet/IndexKey.h"
#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// A key with its row's address behind it.
KeyBytes indexEntry(storage::Bytes key, RowPointer row);

/// One page of an index tree, read into memory with its entries in full; changed there and written back.
///
/// An entry is a key and its row's address, together in the order of their bytes. On a page above the leaves it is the
/// last entry below the child that it leads to; what is larger than all entries is below the tail.
class IndexNode
{
public:
    /// Reads a page. Throws StorageError::Damaged unless it is an index page of `owner` whose entries are in order.
    static IndexNode read(PageStore &store, PageNo number, PageNo owner);
    /// An empty page without neighbours; nothing is written. Level 0 is a leaf.
    IndexNode(const PageStore &store, PageNo number, PageNo owner, std::uint8_t level);

    PageNo number() const { return m_number; }
    bool isLeaf() const { return m_leaf; }
    /// As the file says; some programs write 0 for all levels. New levels are right.
    std::uint8_t level() const { return m_level; }
    PageNo previous() const { return m_previous; }
    PageNo next() const { return m_next; }
    PageNo tail() const { return m_tail; }

    std::size_t count() const { return m_ends.size(); }
    /// Key and row address.
    storage::Bytes entry(std::size_t position) const;
    storage::Bytes key(std::size_t position) const;
    RowPointer row(std::size_t position) const;
    /// The child of an entry; of position count() the tail.
    PageNo child(std::size_t position) const;
    /// The position of the first entry that is not below `entry`; count() if there is none.
    std::size_t find(storage::Bytes entry) const;

    void insert(std::size_t position, storage::Bytes entry, PageNo child = 0);
    void replace(std::size_t position, storage::Bytes entry);
    void setChild(std::size_t position, PageNo child);
    void erase(std::size_t first, std::size_t last);
    void setLinks(PageNo previous, PageNo next);
    /// Takes everything but number and links from another page.
    void takeContent(const IndexNode &other);

    /// Whether a page holds these entries, with their common beginning stored once if need be.
    bool fits(std::size_t first, std::size_t last) const;
    bool fits() const { return fits(0, count()); }
    /// Writes the page, which must fit.
    void write(PageStore &store) const;

    /// The longest entry that leaves room for two on a page of any level.
    static std::size_t entryLimit(const PageStore &store);

private:
    void readEntries(storage::Bytes page);
    void checkEntries(std::size_t prefix) const;
    std::size_t start(std::size_t position) const { return position == 0 ? 0 : m_ends[position - 1]; }
    storage::Bytes stored(std::size_t position) const;
    std::size_t childSize() const { return m_leaf ? 0 : 4; }
    std::size_t prefixNeeded(std::size_t first, std::size_t last) const;

    bool m_jet4;
    PageNo m_number;
    PageNo m_owner;
    bool m_leaf;
    std::uint8_t m_level;
    PageNo m_previous = 0;
    PageNo m_next = 0;
    PageNo m_tail = 0;
    std::vector<std::byte> m_bytes{}; // entries one after the other; above the leaves each with its child
    std::vector<std::size_t> m_ends{};
};

} // namespace jet
