// The book of pages and their uses.
#include "platform/jet/VerifierPages.h"

#include "platform/jet/UsageMap.h"

using namespace Qt::StringLiterals;

namespace jet {

PageBook::PageBook(PageStore &store, Findings &findings)
    : m_store(store)
    , m_findings(findings)
    , m_uses(store.pageCount())
{ }

void PageBook::claim(PageNo page, const QString &use)
{
    if (page >= m_uses.size())
        return m_findings.fault(page, u"sie liegt hinter dem Ende der Datei (%1)"_s.arg(use));
    if (m_uses[page] != 0)
        return m_findings.fault(page, u"sie hat zwei Aufgaben: %1 und %2"_s.arg(m_names[m_uses[page]], use));
    const auto [known, added] = m_numbers.try_emplace(use, static_cast<std::uint32_t>(m_names.size()));
    if (added)
        m_names.push_back(use);
    m_uses[page] = known->second;
}

void PageBook::claimMap(RowPointer map, const QString &user)
{
    if (map.isNull()) // tables of the system have columns without one
        return;
    const auto [known, added] = m_maps.try_emplace(map, user);
    if (!added) {
        return m_findings.fault(
            map.page, u"die Seitenliste in Zeile %1 dient zweien: %2 und %3"_s.arg(map.row).arg(known->second, user));
    }
    if (m_mapPages.insert(map.page).second)
        claim(map.page, u"Seitenlisten"_s);
    m_findings.attempt(user, [&] {
        for (const PageNo page : UsageMap(m_store, map).ownPages())
            claim(page, u"Seitenliste von %1"_s.arg(user));
    });
}

void PageBook::compareWithFree(RowPointer freeMap)
{
    const UsageMap free(m_store, freeMap);
    std::vector<PageNo> lost;
    PageNo nextFree = free.next(0, m_store.pageCount());
    for (PageNo page = 0; page < m_uses.size(); ++page) {
        const bool isFree = page == nextFree;
        if (isFree)
            nextFree = free.next(page + 1, m_store.pageCount());
        if (isFree && m_uses[page] != 0)
            m_findings.fault(page, u"sie gilt als frei, enthält aber %1"_s.arg(m_names[m_uses[page]]));
        else if (!isFree && m_uses[page] == 0)
            lost.push_back(page);
    }
    if (!lost.empty()) {
        m_findings.note(
            u"%1 Seiten sind weder frei noch in Gebrauch, die erste ist %2"_s.arg(lost.size()).arg(lost.front()));
    }
}

} // namespace jet
