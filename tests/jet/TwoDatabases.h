#pragma once

#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>

#include <gtest/gtest.h>

#include "platform/storage/Storage.h"

/// A table of which some rows always stay as they are while all others come, change, grow and go; and what walks over
/// it must find. Every row's texts follow from its number and a version of its own.
namespace two {

enum Columns { Id, Key, Version, Notes };
constexpr std::int64_t steadyRows = 60;

using Chance = std::mt19937;
std::size_t below(Chance &chance, std::size_t limit);

/// Makes the table "T" with its steady rows, numbered from 1 to steadyRows but lying among others.
void makeTable(storage::Database &database, Chance &chance);

struct Row {
    std::int64_t number = 0;
    std::int64_t version = 0;
};
/// The rows that are not steady, and those that once were there, by address.
struct Model {
    std::map<storage::RowId, Row> rows;
    std::set<storage::RowId> gone;
};

/// One to thirty changes within one scope or each in its own, some of them taken back; tables that come and go.
void changeSomething(storage::Database &database, Model &model, Chance &chance);

/// A walk over "T" one way or another, checking each row that it sees.
class Walk
{
public:
    Walk(storage::Database &database, Chance &chance);
    /// Goes on; false when the end was reached, and checked.
    bool step();

private:
    void see();

    std::unique_ptr<storage::Cursor> m_cursor;
    std::set<std::int64_t> m_expected; // steady rows that have not come yet
    bool m_backwards = false;
    bool m_ordered = false;
    QString m_last{};
};

/// Reads a row by an address from the model, or one that is gone.
void readByAddress(storage::Database &database, const Model &model, Chance &chance);

} // namespace two
