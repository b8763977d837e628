#pragma once

#include <optional>

#include "platform/jet/IndexKey.h"
#include "platform/jet/IndexWalk.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/TableDef.h"

namespace jet {

/// Walks over an index's entries between two ends, in order or backwards. A write to the table ends it.
///
/// Errors  StorageError::Damaged, also when the tree's pages and their links tell different stories.
class IndexCursor
{
public:
    /// `owner` is the page of the table's definition.
    IndexCursor(PageStore &store, const IndexDef &index, PageNo owner, std::optional<KeyBound> lower = {},
                std::optional<KeyBound> upper = {}, bool backwards = false);

    /// Begins behind an entry, in the cursor's direction, whether the entry is still there or not.
    void startBehind(KeyBytes entry) { m_behind = std::move(entry); }
    /// Moves to the next entry; false when there is none (any more).
    bool next();
    /// The row that the current entry belongs to.
    RowPointer row() const;
    /// The current entry's key, and the whole entry with the row's address; they hold until the next move.
    storage::Bytes key() const;
    storage::Bytes entry() const;

private:
    void start();
    bool stepForwards();
    bool stepBackwards();
    bool isInside() const;

    IndexWalk m_walk;
    std::optional<KeyBound> m_lower;
    std::optional<KeyBound> m_upper;
    std::optional<KeyBytes> m_behind{};
    bool m_backwards;
    bool m_ended = false;
    IndexPath m_path{}; // empty before the first move
};

} // namespace jet
