#pragma once

#include "platform/dbf/Table.h"

namespace dbf {

/// Walks over the records of a table, reading them in blocks of limited size whatever the table's.
class Cursor final : public storage::Cursor
{
public:
    /// Over the records `first` to `last`, both included.
    Cursor(Table &table, storage::RowId first, storage::RowId last);

    bool next() override;
    storage::RowId rowId() const override { return m_id; }
    storage::Value value(int column) const override;
    bool readText(int column, QString &into) const override;

private:
    storage::Bytes record() const;
    void readBlock();

    Table &m_table;
    storage::RowId m_id; // the current record
    storage::RowId m_last;
    storage::RowId m_blockBegin = 0; // the records in m_block
    storage::RowId m_blockEnd = 0; // one behind them
    QByteArray m_block;
};

/// Whether a record is marked as deleted; throws StorageError::Damaged if its mark is none.
bool isDeleted(const Table &table, storage::Bytes record, storage::RowId id);

} // namespace dbf
