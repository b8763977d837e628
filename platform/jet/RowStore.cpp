// Where rows go.
#include "platform/jet/RowStore.h"

#include <cstddef>

#include "platform/jet/Damage.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/UsageMap.h"

using namespace Qt::StringLiterals;
using storage::Bytes;

namespace jet {

namespace {

constexpr int attempts = 8; // pages looked at before a new one is taken
constexpr std::size_t pointerSize = 4;

} // namespace

RowStore::RowStore(PageStore &store, const TableDef &def)
    : m_store(store)
    , m_def(def)
{ }

RowPointer RowStore::insert(Bytes row)
{
    return place(row, SlotKind::Row);
}

RowPointer RowStore::place(Bytes row, SlotKind kind)
{
    UsageMap free(m_store, m_def.freeMap);
    PageNo limit = m_store.pageCount();
    RowPointer placed{};
    for (int attempt = 0; attempt < attempts; ++attempt) {
        limit = free.previous(limit);
        if (limit == 0)
            break;
        if (tryPage(limit, row, kind, placed))
            return placed;
    }
    const PageNo page = m_store.allocate();
    DataPageWriter writer = DataPageWriter::init(m_store, page, m_def.page);
    UsageMap(m_store, m_def.ownedMap).add(page);
    placed = {page, writer.append(row, kind)};
    noteRoom(page);
    return placed;
}

bool RowStore::tryPage(PageNo page, Bytes row, SlotKind kind, RowPointer &placed)
{
    const DataPage looked(m_store, page);
    looked.requireOwner(m_def.page);
    if (looked.slotCount() >= maxSlots || looked.freeBytes() < row.size() + slotSize) {
        noteRoom(page);
        return false;
    }
    DataPageWriter writer(m_store, page);
    placed = {page, writer.append(row, kind)};
    // It comes from the map of pages with room, and may stay there.
    if (writer.slotCount() >= maxSlots || writer.freeBytes() < worthwhileRoom)
        noteRoom(page);
    return true;
}

void RowStore::update(RowPointer home, Bytes row)
{
    const auto found = findRow(m_store, m_def, home);
    if (!found)
        damaged(home.page, u"Zeile %1 ist weg"_s.arg(home.row));
    if (found->body != home) {
        updateMoved(home, found->body, row);
        return;
    }
    if (!DataPageWriter(m_store, home.page).canResize(home.row, row.size())) {
        move(home, row);
        return;
    }
    DataPageWriter(m_store, home.page).replace(home.row, row, SlotKind::Row);
    noteRoom(home.page);
}

/// Puts the row on another page and leaves a pointer to it.
void RowStore::move(RowPointer home, Bytes row)
{
    // Shorter rows have no variable columns and therefore do not grow.
    if (!DataPageWriter(m_store, home.page).canResize(home.row, pointerSize))
        damaged(home.page, u"Zeile %1 ist zu kurz, um verschoben zu werden"_s.arg(home.row));
    const RowPointer body = place(row, SlotKind::Body);
    DataPageWriter(m_store, home.page).replaceByPointer(home.row, body);
    noteRoom(home.page);
}

void RowStore::updateMoved(RowPointer home, RowPointer body, Bytes row)
{
    DataPageWriter there(m_store, body.page);
    if (there.canResize(body.row, row.size())) {
        there.replace(body.row, row, SlotKind::Body);
    } else {
        there.erase(body.row);
        DataPageWriter here(m_store, home.page);
        if (here.canResize(home.row, row.size()))
            here.replace(home.row, row, SlotKind::Row);
        else
            move(home, row);
    }
    noteRoom(body.page);
    noteRoom(home.page);
}

void RowStore::remove(RowPointer home)
{
    const auto found = findRow(m_store, m_def, home);
    if (!found)
        damaged(home.page, u"Zeile %1 ist weg"_s.arg(home.row));
    const RowPointer body = found->body;
    if (body != home) {
        DataPageWriter(m_store, body.page).erase(body.row);
        noteRoom(body.page);
    }
    DataPageWriter(m_store, home.page).erase(home.row);
    noteRoom(home.page);
}

/// Keeps the map of pages with room. A page whose slots are all used up by deleted rows is given back; others stay the
/// table's, so that the address of a deleted row is not soon another row's.
void RowStore::noteRoom(PageNo page)
{
    const DataPage looked(m_store, page);
    UsageMap free(m_store, m_def.freeMap);
    if (looked.slotCount() < maxSlots) {
        if (looked.freeBytes() >= worthwhileRoom)
            free.add(page);
        else
            free.remove(page);
        return;
    }
    free.remove(page);
    if (looked.isVacant()) {
        UsageMap(m_store, m_def.ownedMap).remove(page);
        m_store.release(page);
    }
}

} // namespace jet
