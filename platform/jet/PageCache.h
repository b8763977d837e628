#pragma once

#include <list>
#include <unordered_map>

#include "platform/jet/PageStore.h"

namespace jet {

/// Recently read pages, up to a bound; the longest unused go first.
class PageCache
{
public:
    /// `capacity` counts pages and is at least 1.
    explicit PageCache(std::size_t capacity);

    /// nullptr if the page is not there.
    PagePtr find(PageNo number);
    void put(PageNo number, PagePtr page);
    void clear();

private:
    struct Entry {
        PageNo number;
        PagePtr page;
    };
    std::size_t m_capacity;
    std::list<Entry> m_entries; // the latest first
    std::unordered_map<PageNo, std::list<Entry>::iterator> m_places;
};

} // namespace jet
