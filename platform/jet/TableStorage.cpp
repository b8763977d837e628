// The pages that belong to a table.
#include "platform/jet/TableStorage.h"

#include <vector>

#include "platform/jet/DataPage.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/UsageMap.h"

namespace jet {

namespace {

constexpr PageNo nobody = 0; // owner of the pages with maps

void releaseMap(PageStore &store, RowPointer map)
{
    if (map.isNull())
        return;
    for (const PageNo page : UsageMap(store, map).ownPages())
        store.release(page);
    DataPageWriter(store, map.page).erase(map.row);
    if (DataPage(store, map.page).isVacant())
        store.release(map.page);
}

void releaseMapAndPages(PageStore &store, RowPointer map)
{
    if (map.isNull())
        return;
    for (const PageNo page : UsageMap(store, map).pages())
        store.release(page);
    releaseMap(store, map);
}

} // namespace

MapRows::MapRows(PageStore &store, std::optional<PageNo> page)
    : m_store(store)
    , m_page(page)
{ }

RowPointer MapRows::add()
{
    const std::vector<std::byte> row = UsageMap::emptyRow(m_store);
    if (!m_page || !DataPageWriter(m_store, *m_page).hasRoom(row.size())) {
        m_page = m_store.allocate();
        DataPageWriter::init(m_store, *m_page, nobody);
    }
    return {*m_page, DataPageWriter(m_store, *m_page).append(row)};
}

void layOutIndex(PageStore &store, MapRows &maps, IndexDef &index, PageNo owner)
{
    index.map = maps.add();
    index.rootPage = store.allocate();
    UsageMap(store, index.map).add(index.rootPage);
    IndexTree::format(store, index.rootPage, owner);
}

void layOut(PageStore &store, MapRows &maps, TableDef &def)
{
    def.ownedMap = maps.add();
    def.freeMap = maps.add();
    for (ColumnDef &column : def.columns) {
        if (!column.isLong())
            continue;
        column.longOwnedMap = maps.add();
        column.longFreeMap = maps.add();
    }
    for (IndexDef &index : def.indexes)
        layOutIndex(store, maps, index, def.page);
}

void releaseTable(PageStore &store, const TableDef &def)
{
    const std::vector<PageNo> definition = tableDefPages(store, def.page);
    for (const IndexDef &index : def.indexes)
        releaseMapAndPages(store, index.map);
    for (const ColumnDef &column : def.columns) {
        releaseMapAndPages(store, column.longOwnedMap);
        releaseMap(store, column.longFreeMap);
    }
    releaseMapAndPages(store, def.ownedMap);
    releaseMap(store, def.freeMap);
    for (const PageNo page : definition)
        store.release(page);
}

} // namespace jet
