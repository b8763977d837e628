#pragma once

#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <vector>

#include <sqlite3.h>

#include "platform/dao/embedded/SqlText.h"
#include "platform/storage/Storage.h"

namespace dao {

/// A prepared statement; finalised with the object.
using StatementHandle = std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt *)>;

/// What reads a table from call to call.
struct HeldCursor {
    std::unique_ptr<storage::Cursor> cursor{}; ///< null: to be fetched again
    std::function<void()> beforeWrite{}; ///< finds what a write could change
};

/// An open database: the stored tables, and SQLite in front of them.
///
/// Owns    both. Everything that was opened through a database shares its connection; after close() each use of it
///         throws 3420.
/// Errors  DaoError; StorageError and DaoError raised below SQLite are kept and thrown once SQLite has returned.
class Connection
{
public:
    explicit Connection(std::unique_ptr<storage::Database> database);
    ~Connection();
    Connection(const Connection &) = delete;
    Connection &operator=(const Connection &) = delete;

    void close();
    bool isOpen() const { return m_database != nullptr; }
    storage::Database &database() const;
    storage::Table &table(const QString &name) const; ///< 3078 if there is none

    /// Reads a query or action statement and makes SQLite know the tables that it names, as they are now.
    SqlText translate(const QString &sql);
    /// `sql` is the text's own or its query for addresses.
    StatementHandle prepare(const SqlText &text, const QByteArray &sql);
    /// Moves to the statement's next row; false at its end.
    bool step(sqlite3_stmt *statement);

    /// Runs an action statement in a write scope of its own; returns the number of rows affected.
    int run(const SqlText &text);

    /// Runs `write` as one whole: it happens, or nothing of it does.
    template <typename Write> void atomically(Write write)
    {
        alone([&] {
            const auto scope = database().beginWrite();
            write();
            scope->commit();
        });
    }

    /// Runs `write` while no cursor is open.
    template <typename Write> void alone(Write write)
    {
        database().requireWritable();
        finishReading();
        releaseCursors();
        write();
    }

    /// A place for a cursor that stays between calls: it is emptied by every write, and when the database closes.
    std::shared_ptr<HeldCursor> holdCursor();

    // For the callbacks that SQLite calls.
    void keepFault(std::exception_ptr fault) { m_fault = std::move(fault); }
    const std::vector<int> &insertColumns() const { return m_insertColumns; }
    void countChange() { ++m_changes; }

private:
    void finishReading();
    void releaseCursors();
    void declare(const QString &name);
    void simply(const QByteArray &sql);
    [[noreturn]] void fail(const SqlText *text);

    std::unique_ptr<storage::Database> m_database;
    std::unique_ptr<sqlite3, int (*)(sqlite3 *)> m_sqlite;
    std::map<QString, std::vector<storage::Column>> m_declared; // what SQLite was told, by table name
    std::vector<int> m_insertColumns;
    int m_changes = 0;
    std::vector<std::weak_ptr<HeldCursor>> m_heldCursors;
    std::exception_ptr m_fault;
};

/// Runs a callback's body: no exception may cross SQLite's frames, so the connection keeps it.
template <typename Body> int guarded(Connection &connection, Body body) noexcept
{
    try {
        body();
        return SQLITE_OK;
    } catch (...) {
        connection.keepFault(std::current_exception());
        return SQLITE_ERROR;
    }
}

} // namespace dao
