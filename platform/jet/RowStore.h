#pragma once

#include "platform/jet/DataPage.h"
#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/TableDef.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// Puts rows on a table's data pages. Keeps the maps of its pages; indexes and counters are the caller's matter.
/// Rows must not be longer than the format allows. Only within a write scope.
class RowStore
{
public:
    RowStore(PageStore &store, const TableDef &def);

    /// Returns the new row's home address.
    RowPointer insert(storage::Bytes row);
    /// Changes a row that exists; it keeps its home address and moves to another page if it has to.
    void update(RowPointer home, storage::Bytes row);
    void remove(RowPointer home);

private:
    RowPointer place(storage::Bytes row, SlotKind kind);
    bool tryPage(PageNo page, storage::Bytes row, SlotKind kind, RowPointer &placed);
    void move(RowPointer home, storage::Bytes row);
    void updateMoved(RowPointer home, RowPointer body, storage::Bytes row);
    void noteRoom(PageNo page);

    PageStore &m_store;
    const TableDef &m_def;
};

} // namespace jet
