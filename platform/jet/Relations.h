#pragma once

#include <span>
#include <vector>

#include "platform/jet/JetTable.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/TableDef.h"
#include "platform/storage/Value.h"

namespace jet {

/// Keeps the enforced relationships of one table when its rows change. Called after the change and within the same
/// write scope, which a refusal undoes.
///
/// Errors  StorageError: ParentMissing, ChildrenExist, and what the cascaded changes throw.
class Relations
{
public:
    Relations(JetDatabase &database, const TableDef &def);

    /// The values of the row's columns that relationships go by, to compare with later.
    using Values = std::vector<std::pair<std::uint16_t, storage::Value>>; // by column number
    Values valuesOf(const RowView &row) const;

    /// Whether a new row may need one of another table.
    bool hasParents() const;
    void inserted(const Values &row) const;
    void updated(const Values &before, const Values &after) const;
    void removed(const Values &row) const;

private:
    using Key = std::vector<storage::Value>;
    Key keyOf(const LogicalIndexDef &index, const Values &row) const;
    void requireParent(const LogicalIndexDef &index, const Key &key) const;
    void cascadeUpdate(const LogicalIndexDef &index, const Key &before, const Key &after) const;
    void cascadeDelete(const LogicalIndexDef &index, const Key &key) const;

    JetDatabase &m_database;
    const TableDef &m_def;
};

} // namespace jet
