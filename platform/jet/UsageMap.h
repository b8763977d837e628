#pragma once

#include <vector>

#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"

namespace jet {

/// A set of page numbers in the file: a row that holds a bitmap, or the numbers of bitmap pages. Holds no state of its
/// own, so any number of them may look at the same map.
///
/// Errors  StorageError::Damaged for a row that is no map.
class UsageMap
{
public:
    UsageMap(PageStore &store, RowPointer where);

    bool contains(PageNo page) const;
    /// The smallest page of the set that is at least `from` and below `limit`; `limit` if there is none.
    PageNo next(PageNo from, PageNo limit) const;
    /// All pages of the set that the file has, ascending.
    std::vector<PageNo> pages() const;

    /// Adds a page; the map takes its other form, on pages of its own, when it has to.
    void add(PageNo page);
    void remove(PageNo page);

private:
    PageStore &m_store;
    RowPointer m_where;
};

} // namespace jet
