// Finding rows: by address, or all of a table one after the other.
#include "platform/jet/RowScan.h"

#include "platform/jet/Damage.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/UsageMap.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

FoundRow followMoved(PageStore &store, const TableDef &def, RowPointer home, const DataPage &page)
{
    const RowPointer body = page.target(home.row);
    DataPage target(store, body.page);
    target.requireOwner(def.page);
    const storage::Bytes bytes = target.row(body.row);
    if (target.kind(body.row) != SlotKind::Body)
        damaged(body.page, u"Zeile %1 soll die verschobene von Seite %2 sein"_s.arg(body.row).arg(home.page));
    return {home, body, std::move(target), RowView(bytes, body, def, store.isJet4())};
}

/// Nothing for slots that are no row's home.
std::optional<FoundRow> rowAt(PageStore &store, const TableDef &def, RowPointer home, const DataPage &page)
{
    switch (page.kind(home.row)) {
    case SlotKind::Row:
        return FoundRow{home, home, page, RowView(page.row(home.row), home, def, store.isJet4())};
    case SlotKind::Moved:
        return followMoved(store, def, home, page);
    case SlotKind::Body:
    case SlotKind::Deleted:
        break;
    }
    return std::nullopt;
}

} // namespace

std::optional<FoundRow> findRow(PageStore &store, const TableDef &def, RowPointer home)
{
    // A page that was given back may look as before, and is no damage if it does not.
    if (!UsageMap(store, def.ownedMap).contains(home.page))
        return std::nullopt;
    const DataPage page(store, home.page);
    page.requireOwner(def.page);
    if (home.row >= page.slotCount())
        return std::nullopt;
    return rowAt(store, def, home, page);
}

RowScan::RowScan(PageStore &store, const TableDef &def, std::optional<RowPointer> behind)
    : m_store(store)
    , m_def(def)
    , m_behind(behind)
    , m_fromStart(!behind)
{ }

std::optional<FoundRow> RowScan::next()
{
    while (m_page || nextPage()) {
        while (m_slot < m_page->slotCount()) {
            const RowPointer home{m_page->number(), static_cast<std::uint8_t>(m_slot++)};
            if (auto row = rowAt(m_store, m_def, home, *m_page)) {
                ++m_found;
                return row;
            }
        }
        m_page.reset();
    }
    return std::nullopt;
}

bool RowScan::nextPage()
{
    const PageNo end = m_store.pageCount();
    const PageNo from = m_behind ? m_behind->page : m_number + 1;
    const PageNo number = UsageMap(m_store, m_def.ownedMap).next(from, end);
    if (number >= end) {
        m_number = end - 1; // stays at the end
        checkCount();
        return false;
    }
    m_page.emplace(m_store, number);
    m_page->requireOwner(m_def.page);
    m_number = number;
    m_slot = m_behind && m_behind->page == number ? m_behind->row + 1U : 0;
    m_behind.reset();
    return true;
}

/// The counter may lag behind in good files, but rows never come short of it.
void RowScan::checkCount() const
{
    if (!m_fromStart)
        return;
    const std::uint32_t counted = TableCounters(m_store, m_def.page).rowCount();
    if (m_found < counted)
        damaged(m_def.page, u"Die Tabelle hat %1 Zeilen, gezählt sind %2"_s.arg(m_found).arg(counted));
}

} // namespace jet
