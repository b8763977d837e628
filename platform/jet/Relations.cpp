// Enforced relationships: no child without its parent.
#include "platform/jet/Relations.h"

#include <algorithm>

#include "platform/jet/Damage.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/IndexKey.h"
#include "platform/jet/IndexLookup.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;
using storage::Value;

namespace jet {

namespace {

using Side = LogicalIndexDef::Side;

/// The other table's side of a relationship.
struct Partner {
    JetTable &table;
    JetTable::KnownPtr known;
    const IndexDef &tree;
};

Partner partnerOf(JetDatabase &database, const LogicalIndexDef &index)
{
    JetTable &table = database.tableAt(index.partnerTable);
    const JetTable::KnownPtr known = table.known();
    for (const LogicalIndexDef &other : known->def.logicalIndexes) {
        if (other.number == index.partner && other.side != Side::None)
            return {table, known, known->def.indexes[other.real]};
    }
    damaged(index.partnerTable, u"Die Gegenseite der Beziehung %1 fehlt"_s.arg(index.name));
}

IndexKeyMaker keysOf(const JetDatabase &database, const Partner &partner)
{
    return {partner.known->def, partner.tree, database.file().isJet4()};
}

bool hasNull(const std::vector<Value> &key)
{
    return std::ranges::any_of(key, storage::isNull);
}

std::vector<RowPointer> rowsWith(const JetDatabase &database, const Partner &partner, const std::vector<Value> &values)
{
    return rowsWith(database.file(), database.codec(), partner.known->def, partner.tree, values);
}

[[noreturn]] void refuse(const QString &name)
{
    throw StorageError(
        StorageError::ChildrenExist,
        u"Der Datensatz kann nicht gelöscht oder geändert werden, weil die Tabelle %1 zugehörige Datensätze "
        "enthält."_s.arg(name),
        name);
}

} // namespace

Relations::Relations(JetDatabase &database, const TableDef &def)
    : m_database(database)
    , m_def(def)
{ }

Relations::Values Relations::valuesOf(const RowView &row) const
{
    Values values;
    for (const LogicalIndexDef &index : m_def.logicalIndexes) {
        if (index.side == Side::None)
            continue;
        for (const IndexColumnDef &part : m_def.indexes[index.real].columns) {
            values.emplace_back(part.column,
                                readField(m_database.file(), m_database.codec(), row, *m_def.column(part.column)));
        }
    }
    return values;
}

Relations::Key Relations::keyOf(const LogicalIndexDef &index, const Values &row) const
{
    Key key;
    for (const IndexColumnDef &part : m_def.indexes[index.real].columns) {
        const auto found = std::ranges::find(row, part.column, &Values::value_type::first);
        key.push_back(found->second);
    }
    return key;
}

bool Relations::hasParents() const
{
    return std::ranges::any_of(m_def.logicalIndexes,
                               [](const LogicalIndexDef &index) { return index.side == Side::Referencing; });
}

void Relations::inserted(const Values &row) const
{
    for (const LogicalIndexDef &index : m_def.logicalIndexes) {
        if (index.side == Side::Referencing)
            requireParent(index, keyOf(index, row));
    }
}

void Relations::updated(const Values &before, const Values &after) const
{
    for (const LogicalIndexDef &index : m_def.logicalIndexes) {
        if (index.side == Side::None)
            continue;
        const Key was = keyOf(index, before);
        const Key is = keyOf(index, after);
        if (was == is)
            continue;
        if (index.side == Side::Referencing)
            requireParent(index, is);
        else
            cascadeUpdate(index, was, is);
    }
}

void Relations::removed(const Values &row) const
{
    for (const LogicalIndexDef &index : m_def.logicalIndexes) {
        if (index.side == Side::Referenced)
            cascadeDelete(index, keyOf(index, row));
    }
}

void Relations::requireParent(const LogicalIndexDef &index, const Key &key) const
{
    if (hasNull(key))
        return;
    const Partner parent = partnerOf(m_database, index);
    if (!rowsWith(m_database, parent, key).empty())
        return;
    const QString name = parent.table.entry().name;
    throw StorageError(StorageError::ParentMissing,
                       u"In der Tabelle %1 gibt es keinen zugehörigen Datensatz."_s.arg(name), name);
}

void Relations::cascadeUpdate(const LogicalIndexDef &index, const Key &before, const Key &after) const
{
    if (hasNull(before))
        return;
    const Partner child = partnerOf(m_database, index);
    const std::vector<RowPointer> rows = rowsWith(m_database, child, before);
    if (rows.empty())
        return;
    // Texts that differ in capitals only are the same key: such a child still has its parent.
    const IndexKeyMaker keys = keysOf(m_database, child);
    if (!index.cascadeUpdates && keys.make(before) == keys.make(after))
        return;
    if (!index.cascadeUpdates)
        refuse(child.table.entry().name);
    std::vector<storage::Assignment> changes;
    for (std::size_t i = 0; i < after.size(); ++i) {
        const auto column
            = std::ranges::find(child.known->map.columns, child.tree.columns[i].column, &ColumnDef::number);
        changes.push_back({static_cast<int>(column - child.known->map.columns.begin()), after[i]});
    }
    for (const RowPointer row : rows)
        child.table.update(row.number(), changes);
}

void Relations::cascadeDelete(const LogicalIndexDef &index, const Key &key) const
{
    if (hasNull(key))
        return;
    const Partner child = partnerOf(m_database, index);
    for (const RowPointer row : rowsWith(m_database, child, key)) {
        if (!index.cascadeDeletes)
            refuse(child.table.entry().name);
        // A cascade that comes back to the same table may have taken the row already.
        if (child.table.row(row.number()))
            child.table.remove(row.number());
    }
}

} // namespace jet
