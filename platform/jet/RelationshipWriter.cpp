// Making relationships: rows in the catalog and, when enforced, a logical index on either side.
#include "platform/jet/SchemaWriter.h"

#include <algorithm>

#include "platform/jet/CatalogWriter.h"
#include "platform/jet/Damage.h"
#include "platform/jet/FieldReader.h"
#include "platform/jet/IndexLookup.h"
#include "platform/jet/Relationships.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/SystemTables.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TableLayout.h"
#include "platform/jet/TableWriter.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace jet {

namespace {

std::vector<std::uint16_t> numbersOf(const TableDef &def, const QString &table, const QStringList &columns)
{
    std::vector<std::uint16_t> numbers;
    for (const QString &name : columns) {
        const ColumnDef *column = findColumn(def, name);
        if (!column)
            throw StorageError(StorageError::NoSuchColumn, u"%1 hat keine Spalte %2."_s.arg(table, name), name);
        numbers.push_back(column->number);
    }
    return numbers;
}

bool covers(const IndexDef &index, const std::vector<std::uint16_t> &columns)
{
    return std::ranges::equal(index.columns, columns, [](const IndexColumnDef &part, std::uint16_t column) {
        return part.column == column && part.ascending;
    });
}

/// The unique index of the referenced table over exactly these columns.
std::size_t parentIndex(const TableDef &def, const storage::Relationship &relationship)
{
    const auto columns = numbersOf(def, relationship.table, relationship.columns);
    for (std::size_t i = 0; i < def.indexes.size(); ++i) {
        if (def.indexes[i].isUnique() && covers(def.indexes[i], columns))
            return i;
    }
    throw StorageError(
        StorageError::NoSuchIndex,
        u"%1 hat keinen eindeutigen Index über %2."_s.arg(relationship.table, relationship.columns.join(u", "_s)),
        relationship.table);
}

/// ".rB", ".rC" and so on: what the referenced side is called.
QString hiddenName(const TableDef &def)
{
    for (char16_t letter = u'B'; letter <= u'Z'; ++letter) {
        const QString name = u".r"_s + QChar(letter);
        if (std::ranges::find(def.logicalIndexes, name, &LogicalIndexDef::name) == def.logicalIndexes.end())
            return name;
    }
    throw StorageError(StorageError::Unsupported, u"Die Tabelle hat schon zu viele Beziehungen."_s);
}

void requireSameTypes(const TableDef &parent, const TableDef &child, const storage::Relationship &relationship)
{
    const auto left = numbersOf(parent, relationship.table, relationship.columns);
    const auto right = numbersOf(child, relationship.foreignTable, relationship.foreignColumns);
    const bool same = !left.empty() && std::ranges::equal(left, right, [&](std::uint16_t a, std::uint16_t b) {
        return parent.column(a)->type == child.column(b)->type;
    });
    if (!same) {
        throw StorageError(StorageError::WrongType,
                           u"Die Spalten der Beziehung %1 passen nicht zusammen."_s.arg(relationship.name),
                           relationship.name);
    }
}

} // namespace

void SchemaWriter::createRelationship(const storage::Relationship &relationship, PageNo table, PageNo foreignTable)
{
    requireName(relationship.name);
    requireSameTypes(readTableDef(m_file, m_codec, table), readTableDef(m_file, m_codec, foreignTable), relationship);
    if (relationship.enforced)
        enforce(relationship, table, foreignTable);
    addRelationshipRows(relationship);
}

void SchemaWriter::enforce(const storage::Relationship &relationship, PageNo table, PageNo foreignTable)
{
    TableDef child = readTableDef(m_file, m_codec, foreignTable);
    const auto columns = numbersOf(child, relationship.foreignTable, relationship.foreignColumns);
    LogicalIndexDef childSide;
    childSide.name = relationship.name;
    childSide.kind = LogicalIndexDef::Kind::Relation;
    childSide.side = LogicalIndexDef::Side::Referencing;
    childSide.partnerTable = table;
    childSide.cascadeUpdates = relationship.cascadeUpdates;
    childSide.cascadeDeletes = relationship.cascadeDeletes;
    childSide.real = static_cast<std::uint32_t>(childIndex(child, columns));
    const std::uint32_t childNumber = addLogicalIndex(child, childSide);
    writeTableDef(m_file, m_codec, child);

    // Read only now: both sides may be the same table.
    TableDef parent = readTableDef(m_file, m_codec, table);
    LogicalIndexDef parentSide = childSide;
    parentSide.name = hiddenName(parent);
    parentSide.side = LogicalIndexDef::Side::Referenced;
    parentSide.partnerTable = foreignTable;
    parentSide.partner = childNumber;
    parentSide.real = static_cast<std::uint32_t>(parentIndex(parent, relationship));
    const std::uint32_t parentNumber = addLogicalIndex(parent, parentSide);
    writeTableDef(m_file, m_codec, parent);

    child = readTableDef(m_file, m_codec, foreignTable);
    const auto side = std::ranges::find(child.logicalIndexes, childNumber, &LogicalIndexDef::number);
    side->partner = parentNumber;
    writeTableDef(m_file, m_codec, child);
    requireParents(relationship, parent, child, parentSide.real, childSide.real);
}

/// A real index of the referring table over exactly these columns, a new one if there is none.
std::size_t SchemaWriter::childIndex(TableDef &def, const std::vector<std::uint16_t> &columns)
{
    for (std::size_t i = 0; i < def.indexes.size(); ++i) {
        if (covers(def.indexes[i], columns) && !def.indexes[i].ignoresNulls())
            return i;
    }
    IndexDef real;
    for (const std::uint16_t column : columns)
        real.columns.push_back({column, true});
    if (m_file.isJet4())
        real.flags = IndexDef::AlwaysInJet4;
    if (keySupport(def, real, m_file.isJet4(), m_file.header().codePage) == KeySupport::None)
        throw StorageError(StorageError::Unsupported, u"Über diese Spalten kann keine Beziehung geführt werden."_s);
    def.indexes.push_back(real);
    appendIndex(def);
    return def.indexes.size() - 1;
}

void SchemaWriter::requireParents(const storage::Relationship &relationship, const TableDef &parent,
                                  const TableDef &child, std::size_t parentIndex, std::size_t childIndex)
{
    RowScan scan(m_file, child);
    while (const auto found = scan.next()) {
        const auto values = indexedValues(m_file, m_codec, child, child.indexes[childIndex], found->view);
        if (std::ranges::none_of(values, storage::isNull)
            && rowsWith(m_file, m_codec, parent, parent.indexes[parentIndex], values).empty()) {
            throw StorageError(StorageError::ParentMissing,
                               u"In %1 gibt es Zeilen, zu denen in %2 keine gehört."_s.arg(relationship.foreignTable,
                                                                                           relationship.table),
                               relationship.table);
        }
    }
}

void SchemaWriter::addRelationshipRows(const storage::Relationship &relationship)
{
    CatalogWriter catalog(m_file, m_codec);
    std::uint32_t flags = 0;
    if (!relationship.enforced)
        flags |= NotEnforced;
    if (relationship.cascadeUpdates)
        flags |= CascadeUpdates;
    if (relationship.cascadeDeletes)
        flags |= CascadeDeletes;
    for (qsizetype i = 0; i < relationship.columns.size(); ++i) {
        catalog.addRelationshipPair({relationship.name, flags, relationship.columns.size(), i,
                                     relationship.foreignTable, relationship.foreignColumns.at(i), relationship.table,
                                     relationship.columns.at(i)});
    }
    catalog.addObject(
        {catalog.freeId(), relationshipsContainer, relationship.name, RelationshipObject, 0, catalog.usersOwner(), {}});
}

} // namespace jet
