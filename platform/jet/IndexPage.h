#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/jet/IndexKey.h"
#include "platform/jet/IndexLayout.h"
#include "platform/jet/PageStore.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// One page of an index tree as it is stored, searched and added to in place. Whoever wants to change more takes an
/// IndexNode. Holds the page; a change of the page by others ends the object.
///
/// Places are offsets among the stored entries: an entry is known by where it begins, end() is behind the last one.
class IndexPage
{
public:
    /// Checks the page as IndexNode::read does, with all its entries unless that was done since it has changed.
    IndexPage(PageStore &store, PageNo number, PageNo owner);

    PageNo number() const { return m_number; }
    bool isLeaf() const;
    PageNo previous() const;
    PageNo next() const;
    std::size_t end() const { return m_end; }
    /// False for a page above the leaves whose entries have a common beginning. No program is known to write that, and
    /// places and children are not looked for in it.
    bool isSearchable() const { return isLeaf() || m_prefix == 0; }

    /// The place of the first entry that is not below `entry`, which is key and row address.
    std::size_t find(storage::Bytes entry) const;
    /// The place of the entry before.
    std::size_t before(std::size_t place) const;
    /// Key and row address.
    KeyBytes entry(std::size_t place) const;
    /// The page below an entry; of end() the tail.
    PageNo child(std::size_t place) const;

    /// Whether the entry, which belongs to that place of a leaf, can be added without anything else on the page
    /// becoming another.
    bool hasRoomFor(storage::Bytes entry, std::size_t place) const;
    void insert(PageStore &store, storage::Bytes entry, std::size_t place) const;

private:
    storage::Bytes bitmap() const;
    std::size_t endOf(std::size_t place) const;
    storage::Bytes stored(std::size_t place) const;
    std::size_t skipped(std::size_t place) const { return place == 0 ? 0 : m_prefix; }

    PagePtr m_page;
    const IndexLayout *m_layout;
    PageNo m_number;
    std::size_t m_end = 0;
    std::size_t m_prefix = 0; // that all entries but the first leave out
};

} // namespace jet
