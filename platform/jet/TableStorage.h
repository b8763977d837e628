#pragma once

#include <optional>

#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/TableDef.h"

namespace jet {

/// Finds places for the usage maps of tables: rows on pages that belong to nobody.
class MapRows
{
public:
    /// Goes on on `page` as long as it has room; nothing: starts a new page with the first map.
    explicit MapRows(PageStore &store, std::optional<PageNo> page = {});

    /// A new, empty map.
    RowPointer add();

private:
    PageStore &m_store;
    std::optional<PageNo> m_page;
};

/// Gives a new table's definition, whose page is set, its maps and the empty trees of its indexes.
void layOut(PageStore &store, MapRows &maps, TableDef &def);

/// Gives one more index of a table its map and its empty tree.
void layOutIndex(PageStore &store, MapRows &maps, IndexDef &index, PageNo owner);

/// Gives back everything that belongs to a table: rows, long values, indexes, maps, its definition.
void releaseTable(PageStore &store, const TableDef &def);

} // namespace jet
