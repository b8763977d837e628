#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <vector>

#include <QString>

#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/VerifierFindings.h"

namespace jet {

/// Who uses which page: each must have exactly one use.
class PageBook
{
public:
    PageBook(PageStore &store, Findings &findings);

    /// Notes the use of a page; a second use is a fault.
    void claim(PageNo page, const QString &use);
    /// Notes a usage map: its page, which maps share, and its bitmap pages. A second user of the map is a fault.
    void claimMap(RowPointer map, const QString &user);
    /// Compares the uses with the map of free pages; pages that are neither used nor free are worth a note.
    void compareWithFree(RowPointer freeMap);

private:
    PageStore &m_store;
    Findings &m_findings;
    std::vector<std::uint32_t> m_uses; // by page: position in m_names, 0 = none
    std::vector<QString> m_names{QString()};
    std::map<QString, std::uint32_t> m_numbers{};
    std::set<PageNo> m_mapPages{};
    std::map<RowPointer, QString> m_maps{};
};

} // namespace jet
