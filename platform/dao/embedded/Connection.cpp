// The SQLite side of an open database: statements run here, faults of the drivers come out whole.
#include "platform/dao/embedded/Connection.h"

#include <algorithm>
#include <utility>

#include "platform/dao/embedded/Errors.h"
#include "platform/dao/embedded/SqlFunctions.h"
#include "platform/dao/embedded/SqliteErrors.h"
#include "platform/dao/embedded/VirtualTable.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

bool sameShape(const std::vector<storage::Column> &left, const std::vector<storage::Column> &right)
{
    return std::ranges::equal(left, right, [](const storage::Column &a, const storage::Column &b) {
        return a.name == b.name && a.type == b.type;
    });
}

} // namespace

Connection::Connection(std::unique_ptr<storage::Database> database)
    : m_database(std::move(database))
    , m_sqlite(nullptr, sqlite3_close)
{
    sqlite3 *handle = nullptr;
    const int result = sqlite3_open_v2(":memory:", &handle, SQLITE_OPEN_READWRITE | SQLITE_OPEN_MEMORY, nullptr);
    m_sqlite.reset(handle);
    if (result != SQLITE_OK)
        throw DaoError(number::Unmapped, QString::fromUtf8(sqlite3_errstr(result)));
    simply("PRAGMA encoding = 'UTF-16le'"); // what QString holds: texts pass unconverted
    registerFunctions(*this, handle);
    registerTables(*this, handle);
}

Connection::~Connection() = default;

std::shared_ptr<HeldCursor> Connection::holdCursor()
{
    std::erase_if(m_heldCursors, [](const auto &held) { return held.expired(); });
    auto held = std::make_shared<HeldCursor>();
    m_heldCursors.push_back(held);
    return held;
}

void Connection::finishReading()
{
    for (const auto &known : m_heldCursors) {
        if (const auto held = known.lock(); held && held->beforeWrite)
            held->beforeWrite();
    }
}

void Connection::releaseCursors()
{
    for (const auto &known : m_heldCursors) {
        if (const auto held = known.lock())
            held->cursor.reset();
    }
}

void Connection::close()
{
    releaseCursors();
    m_sqlite.reset();
    m_database.reset();
}

storage::Database &Connection::database() const
{
    if (!m_database)
        throw daoError(DaoError::ObjectClosed);
    return *m_database;
}

storage::Table &Connection::table(const QString &name) const
{
    storage::Table *table = database().table(name);
    if (table == nullptr)
        throw daoError(DaoError::UnknownTable, name);
    return *table;
}

SqlText Connection::translate(const QString &sql)
{
    storage::Database &stored = database();
    const std::vector<Token> tokens = tokensOf(sql);
    SqlText text = sqlText(tokens, [&](const QString &name) -> const storage::TableSchema * {
        const storage::Table *table = stored.table(name);
        return table == nullptr ? nullptr : &table->schema();
    });
    for (auto known = m_declared.begin(); known != m_declared.end();) { // gone since?
        if (stored.table(known->first) != nullptr) {
            ++known;
            continue;
        }
        simply("DROP TABLE " + bracketed(known->first));
        known = m_declared.erase(known);
    }
    for (const QString &name : text.tables)
        declare(name);
    return text;
}

/// Makes SQLite see a table as it is now.
void Connection::declare(const QString &name)
{
    const std::vector<storage::Column> &columns = table(name).schema().columns;
    const auto known = m_declared.find(name);
    if (known != m_declared.end() && sameShape(known->second, columns))
        return;
    if (known != m_declared.end())
        simply("DROP TABLE " + bracketed(name));
    m_declared.erase(name);
    simply("CREATE VIRTUAL TABLE " + bracketed(name) + " USING " + tableModule + '(' + bracketed(name) + ')');
    m_declared.emplace(name, columns);
}

StatementHandle Connection::prepare(const SqlText &text, const QByteArray &sql)
{
    sqlite3_stmt *statement = nullptr;
    const int result
        = sqlite3_prepare_v2(m_sqlite.get(), sql.constData(), static_cast<int>(sql.size()), &statement, nullptr);
    StatementHandle handle(statement, sqlite3_finalize);
    if (result != SQLITE_OK)
        fail(&text);
    return handle;
}

bool Connection::step(sqlite3_stmt *statement)
{
    const int result = sqlite3_step(statement);
    if (m_fault || (result != SQLITE_ROW && result != SQLITE_DONE))
        fail(nullptr);
    return result == SQLITE_ROW;
}

int Connection::run(const SqlText &text)
{
    const StatementHandle statement = prepare(text, text.sql);
    m_insertColumns = text.insertColumns;
    m_changes = 0;
    atomically([&] { step(statement.get()); });
    return m_changes;
}

void Connection::simply(const QByteArray &sql)
{
    if (sqlite3_exec(m_sqlite.get(), sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
        fail(nullptr);
}

void Connection::fail(const SqlText *text)
{
    if (const std::exception_ptr fault = std::exchange(m_fault, nullptr))
        std::rethrow_exception(fault);
    if (sqlite3_errcode(m_sqlite.get()) == SQLITE_NOMEM)
        throw daoError(number::OutOfMemory);
    const QString message = QString::fromUtf8(sqlite3_errmsg(m_sqlite.get()));
    throw sqliteError(message, sqlite3_error_offset(m_sqlite.get()), text);
}

} // namespace dao
