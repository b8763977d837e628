#pragma once

#include "platform/jet/IndexCursor.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/JetTable.h"
#include "platform/jet/RowScan.h"

namespace jet {

/// What the cursors of a table share: the values of the row that they stand on.
class JetCursor : public storage::Cursor
{
public:
    storage::RowId rowId() const override;
    storage::Value value(int column) const override;

protected:
    explicit JetCursor(const JetTable &table);

    virtual const FoundRow &current() const = 0;
    const JetTable &table() const { return m_table; }
    const JetTable::Known &known() const { return *m_known; }

private:
    const JetTable &m_table;
    JetTable::KnownPtr m_known;
};

/// All rows, in the order of the pages.
class ScanCursor final : public JetCursor
{
public:
    explicit ScanCursor(const JetTable &table);
    bool next() override;

private:
    const FoundRow &current() const override { return m_scan.row(); }

    RowScan m_scan;
};

/// The rows of a range of an index, in its order.
class RangeCursor final : public JetCursor
{
public:
    RangeCursor(const JetTable &table, const storage::KeyRange &range);
    bool next() override;

private:
    const FoundRow &current() const override { return *m_row; }
    IndexCursor entries(const storage::KeyRange &range) const;
    void checkKey() const;

    const IndexDef &m_index;
    IndexKeyMaker m_keys;
    IndexCursor m_entries;
    std::optional<FoundRow> m_row{};
};

/// One row.
class SingleRowCursor final : public JetCursor
{
public:
    SingleRowCursor(const JetTable &table, FoundRow row);
    bool next() override { return false; }

private:
    const FoundRow &current() const override { return m_row; }

    FoundRow m_row;
};

} // namespace jet
