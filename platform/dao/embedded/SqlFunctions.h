#pragma once

#include <sqlite3.h>

namespace dao {

class Connection;

/// Teaches SQLite this database's text order (collation TEXTS), its `Like` and Jet's functions.
void registerFunctions(Connection &connection, sqlite3 *sqlite);

} // namespace dao
