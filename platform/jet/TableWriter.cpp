// Rows with their long values, index entries and counters.
#include "platform/jet/TableWriter.h"

#include <algorithm>

#include "platform/jet/Damage.h"
#include "platform/jet/Format.h"
#include "platform/jet/IndexLookup.h"
#include "platform/jet/IndexNode.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/LongValue.h"
#include "platform/jet/RowStore.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/ValueCodec.h"
#include "platform/storage/FileSystem.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::bytesOf;
using storage::StorageError;
using storage::Value;

namespace jet {

namespace {

bool isKnown(const ColumnDef &column)
{
    switch (column.type) {
    case ColumnType::Boolean:
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
    case ColumnType::Currency:
    case ColumnType::Single:
    case ColumnType::Double:
    case ColumnType::DateTime:
    case ColumnType::Binary:
    case ColumnType::Text:
    case ColumnType::LongBinary:
    case ColumnType::Memo:
    case ColumnType::Guid:
    case ColumnType::Numeric:
        return true;
    case ColumnType::FixedBinary:
        break;
    }
    return false;
}

} // namespace

TableWriter::TableWriter(PageFile &file, const TextCodec &codec, const TableDef &def)
    : m_file(file)
    , m_codec(codec)
    , m_def(def)
{
    requireKeepable();
}

void TableWriter::requireKeepable() const
{
    for (const ColumnDef &column : m_def.columns) {
        if (!isKnown(column)) {
            throw StorageError(
                StorageError::Unsupported,
                u"Die Spalte %1 hat einen Datentyp (%2), der nicht geschrieben werden kann."_s.arg(column.name)
                    .arg(static_cast<int>(column.type)),
                column.name);
        }
    }
    for (std::size_t i = 0; i < m_def.indexes.size(); ++i) {
        if (keySupport(m_def, m_def.indexes[i], m_file.isJet4(), m_file.header().codePage) == KeySupport::None) {
            throw StorageError(
                StorageError::Unsupported,
                u"Die Sortierfolge des Index %1 ist nicht bekannt; die Tabelle kann nur gelesen werden."_s.arg(
                    indexName(i)),
                indexName(i));
        }
    }
}

RowPointer TableWriter::insert(std::span<const ColumnValue> values)
{
    RowBuilder builder(m_def, m_file.isJet4());
    for (const ColumnValue &value : values)
        setValue(builder, value);
    const std::vector<std::byte> row = fittingRow(builder);
    const RowPointer where = RowStore(m_file, m_def).insert(row);
    const RowView view(row, where, m_def, m_file.isJet4());
    for (std::size_t i = 0; i < m_def.indexes.size(); ++i)
        insertKey(i, keyOf(m_def.indexes[i], view), where);
    TableCounters(m_file, m_def.page).addRows(1);
    return where;
}

void TableWriter::update(const FoundRow &row, std::span<const ColumnValue> values)
{
    RowBuilder builder(m_def, m_file.isJet4(), row.view);
    std::vector<std::optional<RowKey>> before;
    for (const IndexDef &index : m_def.indexes)
        before.push_back(keyOf(index, row.view));
    for (const ColumnValue &value : values) {
        freeLong(*value.column, row.view);
        setValue(builder, value);
    }
    const std::vector<std::byte> bytes = fittingRow(builder);
    RowStore(m_file, m_def).update(row.home, bytes);
    const RowView view(bytes, row.home, m_def, m_file.isJet4());
    for (std::size_t i = 0; i < m_def.indexes.size(); ++i) {
        const auto after = keyOf(m_def.indexes[i], view);
        if (after.has_value() == before[i].has_value() && (!after || keepsEntry(i, *before[i], *after)))
            continue;
        removeKey(i, before[i], row.home);
        insertKey(i, after, row.home);
    }
}

void TableWriter::remove(const FoundRow &row)
{
    for (std::size_t i = 0; i < m_def.indexes.size(); ++i)
        removeKey(i, keyOf(m_def.indexes[i], row.view), row.home);
    for (const ColumnDef &column : m_def.columns)
        freeLong(column, row.view);
    RowStore(m_file, m_def).remove(row.home);
    TableCounters(m_file, m_def.page).addRows(-1);
}

void TableWriter::setValue(RowBuilder &builder, const ColumnValue &value)
{
    const ColumnDef &column = *value.column;
    if (column.type == ColumnType::Boolean)
        builder.setBoolean(column, std::get<bool>(value.value));
    else if (storage::isNull(value.value))
        builder.setField(column, std::nullopt);
    else if (column.isLong())
        builder.setField(column, writeLongValue(m_file, column, bytesOf(encodeValue(column, value.value, m_codec))));
    else
        builder.setField(column, encodeValue(column, value.value, m_codec));
}

/// The row's bytes; long values that stand in the row leave it, the longest first, as far as needed.
std::vector<std::byte> TableWriter::fittingRow(RowBuilder &builder)
{
    const std::size_t limit = formatOf(m_file).rowLimit;
    std::vector<std::byte> row = builder.build();
    while (row.size() > limit) {
        const ColumnDef *longest = nullptr;
        for (const ColumnDef &column : m_def.columns) {
            if (!column.isLong() || !builder.field(column) || !isInRow(bytesOf(*builder.field(column))))
                continue;
            if (!longest || builder.field(column)->size() > builder.field(*longest)->size())
                longest = &column;
        }
        const qsizetype before = longest ? builder.field(*longest)->size() : 0;
        if (longest)
            moveOutOfRow(builder, *longest);
        if (!longest || builder.field(*longest)->size() == before)
            refuseRow(builder, row.size());
        row = builder.build();
    }
    return row;
}

void TableWriter::refuseRow(const RowBuilder &builder, std::size_t size) const
{
    const auto sizeOf = [&](const ColumnDef &column) {
        const auto &field = builder.field(column);
        return field ? field->size() : 0;
    };
    const ColumnDef &widest = *std::ranges::max_element(m_def.columns, {}, sizeOf);
    const Format &format = formatOf(m_file);
    throw StorageError(
        StorageError::RowTooLong,
        u"Er hätte %1 Bytes; auf einer Seite von %2 Bytes sind %3 möglich. Am meisten braucht die Spalte %4."_s
            .arg(size)
            .arg(format.pageSize)
            .arg(format.rowLimit)
            .arg(widest.name),
        widest.name);
}

void TableWriter::moveOutOfRow(RowBuilder &builder, const ColumnDef &column)
{
    const QByteArray content = readLongValue(m_file, bytesOf(*builder.field(column)));
    builder.setField(column, writeLongValue(m_file, column, bytesOf(content), false));
}

void TableWriter::freeLong(const ColumnDef &column, const RowView &row)
{
    if (!column.isLong())
        return;
    if (const auto field = row.field(column))
        freeLongValue(m_file, column, *field);
}

std::optional<TableWriter::RowKey> TableWriter::keyOf(const IndexDef &index, const RowView &row) const
{
    std::vector<Value> values = indexedValues(m_file, m_codec, m_def, index, row);
    const auto nulls = std::ranges::count_if(values, storage::isNull);
    if (index.ignoresNulls() && static_cast<std::size_t>(nulls) == values.size())
        return std::nullopt;
    KeyBytes key = IndexKeyMaker(m_def, index, m_file.isJet4()).make(values);
    return RowKey{std::move(key), std::move(values), nulls > 0};
}

void TableWriter::insertKey(std::size_t index, const std::optional<RowKey> &key, RowPointer row)
{
    const IndexDef &def = m_def.indexes[index];
    requireIndexable(index, key);
    if (!key)
        return;
    const bool unique = def.isUnique() && !key->hasNull;
    const bool certain = !unique || IndexKeyMaker(m_def, def, m_file.isJet4()).isCertain(key->values);
    if (!certain && !rowsWith(m_file, m_codec, m_def, def, key->values).empty())
        refuseDuplicate(index);
    const auto duplicates = unique && certain ? IndexTree::Duplicates::Refused : IndexTree::Duplicates::Allowed;
    switch (IndexTree(m_file, def, m_def.page).insert(key->key, row, duplicates)) {
    case IndexTree::Inserted::Refused:
        refuseDuplicate(index);
    case IndexTree::Inserted::NewKey:
        TableCounters(m_file, m_def.page).countDistinctKey(index);
        break;
    case IndexTree::Inserted::KnownKey:
        break;
    }
}

/// Not where the entry may have another program's key, which then would not be one of the new values.
bool TableWriter::keepsEntry(std::size_t index, const RowKey &before, const RowKey &after) const
{
    return before.values == after.values
        || (before.key == after.key
            && IndexKeyMaker(m_def, m_def.indexes[index], m_file.isJet4()).isCertain(after.values));
}

void TableWriter::removeKey(std::size_t index, const std::optional<RowKey> &key, RowPointer row)
{
    if (key)
        IndexTree(m_file, m_def.indexes[index], m_def.page).remove(key->key, row);
}

void TableWriter::fillIndex(std::size_t index)
{
    const IndexDef &def = m_def.indexes[index];
    struct Entry {
        KeyBytes bytes; // with the row's address
        std::size_t keySize;
        bool hasNull;
    };
    std::vector<Entry> entries;
    RowScan scan(m_file, m_def);
    while (const auto found = scan.next()) {
        const auto key = keyOf(def, found->view);
        requireIndexable(index, key);
        if (key)
            entries.push_back({indexEntry(key->key, found->home), key->key.size(), key->hasNull});
    }
    std::ranges::sort(entries, [](const Entry &a, const Entry &b) { return compareKeys(a.bytes, b.bytes) < 0; });
    std::vector<KeyBytes> sorted;
    std::uint32_t distinct = 0;
    for (Entry &entry : entries) {
        const Bytes key = Bytes(entry.bytes).first(entry.keySize);
        const bool known = !sorted.empty() && sorted.back().size() == entry.bytes.size()
            && std::ranges::equal(key, Bytes(sorted.back()).first(entry.keySize));
        if (known && def.isUnique() && !entry.hasNull)
            refuseDuplicate(index);
        distinct += known ? 0 : 1;
        sorted.push_back(std::move(entry.bytes));
    }
    IndexTree(m_file, def, m_def.page).rebuild(sorted);
    TableCounters(m_file, m_def.page).setDistinctKeys(index, distinct);
}

void TableWriter::requireIndexable(std::size_t index, const std::optional<RowKey> &key) const
{
    if (key && key->hasNull && m_def.indexes[index].isRequired()) {
        throw StorageError(StorageError::Required, u"Der Index %1 lässt kein leeres Feld zu."_s.arg(indexName(index)),
                           indexedColumns(index));
    }
    const std::size_t size = key ? indexEntry(key->key, {}).size() : 0;
    if (const std::size_t limit = IndexNode::entryLimit(m_file); size > limit) {
        throw StorageError(StorageError::TooLong,
                           u"Der Index %1 hätte einen Eintrag von %2 Bytes; möglich sind %3."_s.arg(indexName(index))
                               .arg(size)
                               .arg(limit),
                           indexedColumns(index));
    }
}

void TableWriter::refuseDuplicate(std::size_t index) const
{
    throw StorageError(StorageError::Duplicate,
                       u"Im eindeutigen Index %1 gibt es diesen Wert schon."_s.arg(indexName(index)), indexName(index));
}

QString TableWriter::indexedColumns(std::size_t index) const
{
    QStringList names;
    for (const IndexColumnDef &part : m_def.indexes[index].columns)
        names += m_def.column(part.column)->name;
    return names.join(u", "_s);
}

QString TableWriter::indexName(std::size_t index) const
{
    for (const LogicalIndexDef &logical : m_def.logicalIndexes) {
        if (logical.real == index)
            return logical.name;
    }
    return QString::number(index);
}

} // namespace jet
