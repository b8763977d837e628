#pragma once

#include <sqlite3.h>

namespace dao {

class Connection;

/// The module through which SQLite sees the stored tables: CREATE VIRTUAL TABLE [name] USING stored([name]).
constexpr auto tableModule = "stored";

void registerTables(Connection &connection, sqlite3 *sqlite);

} // namespace dao
