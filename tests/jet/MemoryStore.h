#pragma once

#include <map>
#include <vector>

#include "platform/jet/PageStore.h"

/// A file that exists in memory only; released pages are reused.
class MemoryStore final : public jet::PageStore
{
public:
    explicit MemoryStore(bool jet4)
        : m_jet4(jet4)
    {
        m_pages.push_back(std::make_shared<jet::Page>(pageSize()));
    }

    bool isJet4() const override { return m_jet4; }
    std::size_t pageSize() const override { return m_jet4 ? 4096 : 2048; }
    jet::PageNo pageCount() const override { return static_cast<jet::PageNo>(m_pages.size()); }
    jet::PagePtr read(jet::PageNo number) override { return page(number); }
    jet::Page &modify(jet::PageNo number) override { return *page(number); }

    jet::PageNo allocate() override
    {
        if (m_free.empty()) {
            m_pages.push_back(std::make_shared<jet::Page>(pageSize()));
            return pageCount() - 1;
        }
        const jet::PageNo number = m_free.back();
        m_free.pop_back();
        page(number)->assign(pageSize(), std::byte{0});
        return number;
    }

    void release(jet::PageNo number) override { m_free.push_back(number); }
    std::size_t freeCount() const { return m_free.size(); }

private:
    const std::shared_ptr<jet::Page> &page(jet::PageNo number) { return m_pages.at(number); }

    bool m_jet4;
    std::vector<std::shared_ptr<jet::Page>> m_pages{};
    std::vector<jet::PageNo> m_free{};
};
