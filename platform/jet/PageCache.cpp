// The bounded memory of pages read.
#include "platform/jet/PageCache.h"

#include <utility>

namespace jet {

PageCache::PageCache(std::size_t capacity)
    : m_capacity(capacity)
{ }

PagePtr PageCache::find(PageNo number)
{
    const auto place = m_places.find(number);
    if (place == m_places.end())
        return nullptr;
    m_entries.splice(m_entries.begin(), m_entries, place->second);
    return place->second->page;
}

void PageCache::put(PageNo number, PagePtr page)
{
    if (const auto place = m_places.find(number); place != m_places.end()) {
        place->second->page = std::move(page);
        m_entries.splice(m_entries.begin(), m_entries, place->second);
        return;
    }
    if (m_entries.size() >= m_capacity) {
        m_places.erase(m_entries.back().number);
        m_entries.pop_back();
    }
    m_entries.push_front({number, std::move(page)});
    m_places.emplace(number, m_entries.begin());
}

void PageCache::clear()
{
    m_entries.clear();
    m_places.clear();
}

} // namespace jet
