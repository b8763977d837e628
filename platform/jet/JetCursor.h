#pragma once

#include <optional>

#include "platform/jet/IndexCursor.h"
#include "platform/jet/IndexTree.h"
#include "platform/jet/JetTable.h"
#include "platform/jet/RowScan.h"

namespace jet {

/// What the cursors of a table share: the row that they stand on, and its values. When another program has written
/// meanwhile, they go on behind that row in the new state of the file.
///
/// Errors  StorageError: Damaged; RowGone, NoSuchTable and Locked when another program has deleted the row or the
/// table,
///         or changed the table's columns or indexes.
class JetCursor : public storage::Cursor
{
public:
    bool next() final;
    storage::RowId rowId() const override;
    storage::Value value(int column) const override;
    bool readText(int column, QString &into) const override;

protected:
    explicit JetCursor(const JetTable &table);
    /// Stands on a row already.
    JetCursor(const JetTable &table, JetTable::KnownPtr known, FoundRow row);

    /// Prepares for finding the rows behind the one that was found last, or all if none was.
    virtual void start(const std::optional<RowPointer> &behind) = 0;
    /// The next row; nothing at the end. May be called again if it throws.
    virtual std::optional<FoundRow> findNext() = 0;
    const JetTable &table() const { return m_table; }
    const JetTable::Known &known() const { return *m_known; }
    [[noreturn]] void refuseRebuilt() const;

private:
    QString rowPlace() const;
    void catchUp() const;
    void findAgain() const;

    const JetTable &m_table;
    mutable JetTable::KnownPtr m_known;
    mutable std::optional<FoundRow> m_row{};
    mutable std::uint64_t m_rowGeneration = 0;
    std::uint64_t m_generation = 0; // of the last start
    bool m_started = false;
};

/// All rows, in the order of the pages.
class ScanCursor final : public JetCursor
{
public:
    explicit ScanCursor(const JetTable &table);

private:
    void start(const std::optional<RowPointer> &behind) override;
    std::optional<FoundRow> findNext() override;

    std::optional<RowScan> m_scan{};
};

/// The rows of a range of an index, in the order of their values: where programs make different keys of the same value,
/// the entries concerned are sorted anew.
class RangeCursor final : public JetCursor
{
public:
    RangeCursor(const JetTable &table, const storage::KeyRange &range);

private:
    void start(const std::optional<RowPointer> &behind) override;
    std::optional<FoundRow> findNext() override;

    /// An entry as we make it.
    struct Place {
        KeyBytes entry;
        RowPointer row;
    };
    struct Way {
        const IndexDef *index;
        IndexKeyMaker keys;
        IndexCursor entries;
        bool ahead = false; // `entries` stands on an entry that was not looked at yet
        std::optional<KeySpan> span{}; // of `sorted`
        std::vector<Place> sorted{}; // entries to come before that one, the next one at the end
    };
    FoundRow rowAt(RowPointer where) const;
    std::vector<storage::Value> checkedValues(const FoundRow &row) const;
    void sortSpan(KeySpan span);
    bool isBehindLast(const KeyBytes &entry) const;

    storage::KeyRange m_range;
    std::optional<Way> m_way{};
    KeyBytes m_entry{}; // of the last row
    std::optional<KeySpan> m_span{}; // in which it was sorted, if it was
};

/// One row.
class SingleRowCursor final : public JetCursor
{
public:
    SingleRowCursor(const JetTable &table, JetTable::KnownPtr known, FoundRow row);

private:
    void start(const std::optional<RowPointer> &) override { }
    std::optional<FoundRow> findNext() override { return std::nullopt; }
};

} // namespace jet
