#pragma once

#include <QString>

#include "fuzz/Target.h"
#include "platform/storage/Storage.h"

/// What can be done to any database, as an input says.
namespace fuzz {

/// Reads every value of every row of a table, each row again by its address, and every usable index in both directions.
void readTable(storage::Table &table);
void readDatabase(storage::Database &database);

/// A value that suits the column, more often than not.
storage::Value drawValue(Input &input, const storage::Column &column);
/// A range of one of the table's usable indexes; nothing if it has none.
std::optional<storage::KeyRange> drawRange(Input &input, const storage::TableSchema &schema);

/// One insert, update or removal in one of the tables, or several of them in a scope that is committed or not.
void change(storage::Database &database, Input &input);

} // namespace fuzz
