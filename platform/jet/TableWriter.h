#pragma once

#include <span>
#include <vector>

#include "platform/jet/IndexKey.h"
#include "platform/jet/PageFile.h"
#include "platform/jet/RowBuilder.h"
#include "platform/jet/RowScan.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Value.h"

namespace jet {

/// A column's new content, in the column's own form (fitValue).
struct ColumnValue {
    const ColumnDef *column;
    storage::Value value{};
};

/// Changes the rows of a table with all that hangs on them: long values, every index, counters. What users may write
/// (defaults, rules, relationships) is not looked at here. Only within a write scope, which undoes a failed change.
///
/// Errors  StorageError: Unsupported before anything is changed if a column or index cannot be kept;
///         Required and TooLong (of an index), RowTooLong, NotEncodable, each naming the column; Duplicate, naming the
///         index; Damaged.
class TableWriter
{
public:
    /// `def` must outlive it.
    TableWriter(PageFile &file, const TextCodec &codec, const TableDef &def);

    /// Columns not named are Null or false.
    RowPointer insert(std::span<const ColumnValue> values);
    void update(const FoundRow &row, std::span<const ColumnValue> values);
    void remove(const FoundRow &row);

    /// Fills the empty tree of an index that was added to a table with rows.
    void fillIndex(std::size_t index);

    /// The key of a row in an index; nothing if the index leaves the row out.
    struct RowKey {
        KeyBytes key;
        std::vector<storage::Value> values;
        bool hasNull;
    };
    std::optional<RowKey> keyOf(const IndexDef &index, const RowView &row) const;

private:
    void requireKeepable() const;
    void setValue(RowBuilder &builder, const ColumnValue &value);
    std::vector<std::byte> fittingRow(RowBuilder &builder);
    [[noreturn]] void refuseRow(const RowBuilder &builder, std::size_t size) const;
    void moveOutOfRow(RowBuilder &builder, const ColumnDef &column);
    void freeLong(const ColumnDef &column, const RowView &row);
    void insertKey(std::size_t index, const std::optional<RowKey> &key, RowPointer row);
    bool keepsEntry(std::size_t index, const RowKey &before, const RowKey &after) const;
    void removeKey(std::size_t index, const std::optional<RowKey> &key, RowPointer row);
    void requireIndexable(std::size_t index, const std::optional<RowKey> &key) const;
    [[noreturn]] void refuseDuplicate(std::size_t index) const;
    QString indexedColumns(std::size_t index) const;
    QString indexName(std::size_t index) const;

    PageFile &m_file;
    const TextCodec &m_codec;
    const TableDef &m_def;
};

} // namespace jet
