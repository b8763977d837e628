#pragma once

#include <optional>

#include "platform/jet/DataPage.h"
#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/RowView.h"
#include "platform/jet/TableDef.h"

namespace jet {

/// A row that was found, with the page that holds its bytes.
struct FoundRow {
    RowPointer home; ///< what indexes and users know it by
    RowPointer body; ///< where it stands: elsewhere if it was moved
    DataPage page;
    RowView view;
};

/// The row at a home address; nothing if there is none (any more), also when its page is not the table's any more.
/// Throws StorageError::Damaged when a page of the table is not as it should be, or a moved row not where it should be.
std::optional<FoundRow> findRow(PageStore &store, const TableDef &def, RowPointer home);

/// Walks over all rows of a table in the order of its pages, or over those behind an address. `def` must outlive it; a
/// write to the table ends it.
///
/// Errors  StorageError::Damaged for pages that are not the table's, and when fewer rows are found than the table
/// counts.
class RowScan
{
public:
    RowScan(PageStore &store, const TableDef &def, std::optional<RowPointer> behind = {});

    /// The next row; nothing at the end.
    std::optional<FoundRow> next();

private:
    bool nextPage();
    void checkCount() const;

    PageStore &m_store;
    const TableDef &m_def;
    std::optional<DataPage> m_page{};
    std::optional<RowPointer> m_behind;
    PageNo m_number = 0;
    std::size_t m_slot = 0;
    std::uint64_t m_found = 0;
    bool m_fromStart;
};

} // namespace jet
