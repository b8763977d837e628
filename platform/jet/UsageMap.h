#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/storage/Bytes.h"

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
    /// The largest page of the set below `limit`; 0 if there is none (page 0 is in no set).
    PageNo previous(PageNo limit) const;
    /// All pages of the set, ascending. Throws Damaged if one is not in the file.
    std::vector<PageNo> pages() const;
    /// The bitmap pages that the map itself occupies.
    std::vector<PageNo> ownPages() const;

    /// Adds a page; the map takes its other form, on pages of its own, when it has to.
    void add(PageNo page);
    void remove(PageNo page);

    /// For the map of free pages, in which all pages behind the end of the file count as set: makes it reach `page`.
    /// `append` adds a zeroed page at the end of the file.
    void extendFree(PageNo page, const std::function<PageNo()> &append);

    /// An empty map's row, of the length that is usual in the file's version.
    static std::vector<std::byte> emptyRow(const PageStore &store);

    /// The row of a map of free pages, for a new file whose first `used` pages are in use.
    static std::vector<std::byte> freeRow(const PageStore &store, PageNo used);

    /// The number of pages that one bitmap page covers.
    static PageNo pagesPerBitmapPage(const PageStore &store);

private:
    struct Window;
    std::vector<Window> windows() const;
    storage::MutableBytes row();
    void setInWindow(PageNo page, bool value);
    bool widenInline(PageNo page);
    void convertToReference();
    bool covers(PageNo page) const;
    void cover(PageNo page);
    void setEntry(PageNo entry, PageNo number);

    PageStore &m_store;
    RowPointer m_where;
};

} // namespace jet
