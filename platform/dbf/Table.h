#pragma once

#include <memory>
#include <optional>

#include "platform/dbf/Layout.h"
#include "platform/dbf/MemoFile.h"
#include "platform/dbf/Transaction.h"

namespace dbf {

/// One .dbf file with its memo file. RowId is the record number, from 1; deleted records do not show.
///
/// Errors     as storage::Table has them. A write that fails leaves the files as they were.
class Table final : public storage::Table
{
public:
    /// `state` must outlive the table.
    Table(const QString &path, WriteState &state);

    const storage::TableSchema &schema() const override { return m_schema; }
    std::int64_t rowEstimate() const override { return readFacts(m_file).recordCount; }

    std::unique_ptr<storage::Cursor> scan() override;
    std::unique_ptr<storage::Cursor> range(const storage::KeyRange &range) override;
    std::unique_ptr<storage::Cursor> row(storage::RowId id) override;

    void requireStorable(const storage::Assignment &value) const override;
    storage::RowId insert(std::span<const storage::Assignment> values) override;
    void update(storage::RowId id, std::span<const storage::Assignment> values) override;
    void remove(storage::RowId id) override;

    const TableFile &file() const { return m_file; }
    const Layout &layout() const { return m_layout; }
    /// The content of a field in a record's bytes. The text of an error names the record.
    storage::Value valueOf(const Field &field, storage::Bytes record, storage::RowId id);

    /// Throws StorageError::Unsupported, naming the index file, where a write would leave one behind.
    void requireNoIndex() const;
    /// The memo file's path; nothing if the table has none.
    std::optional<QString> memoPath() const;
    /// In what the head and the file's length do not agree, in German.
    QStringList headFaults();

private:
    struct NewField;
    struct NewContent;

    qint64 recordCount();
    qint64 heldRecords(qint64 counted) const;
    bool goesOnBehind(storage::RowId last) const;
    void requireWritable();
    MemoFile &memo();
    NewField encoded(const storage::Assignment &assignment) const;
    NewContent encodeAll(std::span<const storage::Assignment> values);
    void put(Transaction &transaction, const NewContent &content, QByteArray &record);
    QByteArray lockRecord(Transaction &transaction, storage::RowId id);

    WriteState &m_state;
    TableFile m_file;
    Layout m_layout;
    storage::TableSchema m_schema;
    std::unique_ptr<MemoFile> m_memo; // opened when needed: the other columns can be read without it
};

} // namespace dbf
