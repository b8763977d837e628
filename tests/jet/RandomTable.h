#pragma once

#include <map>
#include <random>
#include <set>
#include <vector>

#include "tests/jet/JetFileTest.h"

/// Seeded: the same in every run.
class Chance
{
public:
    explicit Chance(unsigned seed)
        : m_random(seed)
    { }

    std::size_t below(std::size_t limit) { return m_random() % limit; }
    std::int64_t between(std::int64_t low, std::int64_t high)
    {
        return low + static_cast<std::int64_t>(below(static_cast<std::size_t>(high - low + 1)));
    }
    /// One of the elements, of which there must be some.
    template <typename Container> auto any(Container &container)
    {
        return std::next(container.begin(), static_cast<std::ptrdiff_t>(below(container.size())));
    }

private:
    std::mt19937 m_random;
};

/// A table with columns of all types and a counter, and what should be in it.
class RandomTable
{
public:
    using Row = std::vector<storage::Value>;

    /// `plan` has a word for each index: its columns by letters, small ones descending; "+" makes it unique.
    RandomTable(storage::Database &database, const QString &name, const QString &plan, bool jet4);

    /// Inserts a row, changes one or removes up to so many neighbours.
    void change(storage::Database &database, Chance &chance, unsigned insertShare, std::size_t removals);
    /// From now on all rows that are there stay as they are.
    void keepRows();
    const std::map<storage::RowId, Row> &rows() const { return m_rows; }

    void compare(storage::Database &database) const;
    /// Reads a row by its address, or one that is gone.
    void readAny(storage::Database &database, Chance &chance) const;
    Row rowOf(const storage::Cursor &cursor) const;
    /// Whether the long text that the cursor stands on is that of one row, and not half of another's.
    static bool isWhole(const storage::Cursor &cursor);

private:
    storage::Table &tableOf(storage::Database &database) const { return *database.table(m_name); }
    bool isTaken(const Row &row, std::optional<storage::RowId> self) const;
    void write(storage::Table &table, std::optional<storage::RowId> id, Row row);

    QString m_name;
    std::size_t m_columns; // of the row's; the counter comes behind them
    std::optional<std::size_t> m_uniqueColumn{};
    std::int64_t m_lastNumber = 0;
    std::map<storage::RowId, Row> m_rows{};
    std::set<storage::RowId> m_kept{};
    std::set<storage::RowId> m_gone{};
};
