// A stored table as SQLite sees it: every row is read and written where the driver keeps it.
#include "platform/dao/embedded/VirtualTable.h"

#include "platform/dao/embedded/Connection.h"
#include "platform/dao/embedded/Convert.h"
#include "platform/dao/embedded/Errors.h"
#include "platform/dao/embedded/IndexPlan.h"
#include "platform/dao/embedded/SqliteValues.h"

using namespace Qt::StringLiterals;
using storage::Type;

namespace dao {

namespace {

struct StoredTable : sqlite3_vtab {
    Connection &connection;
    QString name;

    StoredTable(Connection &owner, const QString &tableName)
        : sqlite3_vtab{}
        , connection(owner)
        , name(tableName)
    { }

    storage::Table &table() const { return connection.table(name); }
};

struct Walk : sqlite3_vtab_cursor {
    Walk()
        : sqlite3_vtab_cursor{}
    { }

    std::unique_ptr<storage::Cursor> cursor{}; // null: at the end
    bool single = false; // one row found by its address
    QString text{}; // the last that was read

    void advance()
    {
        if (single || !cursor->next())
            cursor.reset();
    }
};

StoredTable &tableOf(sqlite3_vtab *table)
{
    return *static_cast<StoredTable *>(table);
}

StoredTable &tableOf(sqlite3_vtab_cursor *cursor)
{
    return tableOf(cursor->pVtab);
}

Walk &walkOf(sqlite3_vtab_cursor *cursor)
{
    return *static_cast<Walk *>(cursor);
}

const char *declaredType(Type type)
{
    switch (type) {
    case Type::Boolean:
    case Type::Byte:
    case Type::Integer:
    case Type::Long:
        return " INTEGER";
    case Type::Text:
    case Type::Memo:
        return " TEXT COLLATE TEXTS";
    case Type::Guid:
        return " TEXT COLLATE NOCASE";
    case Type::Binary:
    case Type::LongBinary:
    case Type::Currency:
    case Type::Numeric:
        return " BLOB";
    default:
        return " REAL";
    }
}

QByteArray declaration(const storage::TableSchema &schema)
{
    QByteArray columns;
    for (const storage::Column &column : schema.columns)
        columns += (columns.isEmpty() ? "" : ", ") + bracketed(column.name) + declaredType(column.type);
    return "CREATE TABLE stored (" + columns + ')';
}

int connectTable(sqlite3 *sqlite, void *owner, int, const char *const *arguments, sqlite3_vtab **result,
                 char **) noexcept
{
    auto &connection = *static_cast<Connection *>(owner);
    return guarded(connection, [&] {
        auto table = std::make_unique<StoredTable>(connection, QString::fromUtf8(arguments[2]));
        const QByteArray sql = declaration(table->table().schema());
        if (sqlite3_declare_vtab(sqlite, sql.constData()) != SQLITE_OK)
            throw daoError(number::Unmapped, QString::fromUtf8(sqlite3_errmsg(sqlite)));
        *result = table.release(); // disconnectTable takes it back
    });
}

int disconnectTable(sqlite3_vtab *table) noexcept
{
    std::unique_ptr<StoredTable>(&tableOf(table)).reset();
    return SQLITE_OK;
}

int chooseWalk(sqlite3_vtab *table, sqlite3_index_info *info) noexcept
{
    return guarded(tableOf(table).connection, [&] {
        storage::Table &stored = tableOf(table).table();
        const IndexPlan plan = planWalk(info, stored.schema(), stored.rowEstimate());
        info->idxNum = plan.index;
        info->idxStr = sqlite3_mprintf("%s", plan.steps.constData());
        info->needToFreeIdxStr = 1;
    });
}

int openWalk(sqlite3_vtab *table, sqlite3_vtab_cursor **result) noexcept
{
    return guarded(tableOf(table).connection, [&] { *result = std::make_unique<Walk>().release(); });
}

int closeWalk(sqlite3_vtab_cursor *cursor) noexcept
{
    std::unique_ptr<Walk>(&walkOf(cursor)).reset();
    return SQLITE_OK;
}

std::unique_ptr<storage::Cursor> startedCursor(storage::Table &table, const IndexPlan &plan, sqlite3_value **values)
{
    if (plan.index == IndexPlan::Scan)
        return table.scan();
    if (const auto range = rangeOf(plan, table.schema(), values))
        return table.range(*range);
    return nullptr;
}

int startWalk(sqlite3_vtab_cursor *cursor, int index, const char *steps, int, sqlite3_value **values) noexcept
{
    return guarded(tableOf(cursor).connection, [&] {
        Walk &walk = walkOf(cursor);
        storage::Table &table = tableOf(cursor).table();
        walk.single = index == IndexPlan::ByAddress;
        if (walk.single) {
            walk.cursor = table.row(sqlite3_value_int64(values[0]));
            return;
        }
        walk.cursor = startedCursor(table, {index, QByteArray(steps)}, values);
        if (walk.cursor)
            walk.advance();
    });
}

int nextRow(sqlite3_vtab_cursor *cursor) noexcept
{
    return guarded(tableOf(cursor).connection, [&] { walkOf(cursor).advance(); });
}

int isAtEnd(sqlite3_vtab_cursor *cursor) noexcept
{
    return walkOf(cursor).cursor ? 0 : 1;
}

int readColumn(sqlite3_vtab_cursor *cursor, sqlite3_context *context, int column) noexcept
{
    if (sqlite3_vtab_nochange(context) != 0) // an UPDATE that leaves the column alone
        return SQLITE_OK;
    return guarded(tableOf(cursor).connection, [&] {
        Walk &walk = walkOf(cursor);
        if (walk.cursor->readText(column, walk.text))
            giveText(context, walk.text);
        else
            giveResult(context, walk.cursor->value(column));
    });
}

int readAddress(sqlite3_vtab_cursor *cursor, sqlite3_int64 *address) noexcept
{
    return guarded(tableOf(cursor).connection, [&] { *address = walkOf(cursor).cursor->rowId(); });
}

storage::Assignment assignment(const storage::TableSchema &schema, int column, sqlite3_value *value)
{
    return {column, coerced(valueOf(value), schema.columns[static_cast<std::size_t>(column)])};
}

void insertRow(const StoredTable &target, sqlite3_value **values, sqlite3_int64 *address)
{
    storage::Table &table = target.table();
    std::vector<storage::Assignment> content;
    for (const int column : target.connection.insertColumns())
        content.push_back(assignment(table.schema(), column, values[column]));
    *address = table.insert(content);
}

void updateRow(const StoredTable &target, storage::RowId row, sqlite3_value **values)
{
    storage::Table &table = target.table();
    std::vector<storage::Assignment> content;
    for (int column = 0; column < static_cast<int>(table.schema().columns.size()); ++column) {
        if (sqlite3_value_nochange(values[column]) == 0)
            content.push_back(assignment(table.schema(), column, values[column]));
    }
    table.update(row, content);
}

/// SQLite's one call for all writes: the old address (Null: a new row), the new one, then every column.
int write(sqlite3_vtab *table, int count, sqlite3_value **arguments, sqlite3_int64 *address) noexcept
{
    StoredTable &target = tableOf(table);
    return guarded(target.connection, [&] {
        if (count == 1)
            target.table().remove(sqlite3_value_int64(arguments[0]));
        else if (sqlite3_value_type(arguments[0]) == SQLITE_NULL)
            insertRow(target, arguments + 2, address);
        else
            updateRow(target, sqlite3_value_int64(arguments[0]), arguments + 2);
        target.connection.countChange();
    });
}

sqlite3_module moduleOfTables()
{
    sqlite3_module module{};
    module.iVersion = 1;
    module.xCreate = connectTable;
    module.xConnect = connectTable;
    module.xBestIndex = chooseWalk;
    module.xDisconnect = disconnectTable;
    module.xDestroy = disconnectTable;
    module.xOpen = openWalk;
    module.xClose = closeWalk;
    module.xFilter = startWalk;
    module.xNext = nextRow;
    module.xEof = isAtEnd;
    module.xColumn = readColumn;
    module.xRowid = readAddress;
    module.xUpdate = write;
    return module;
}

} // namespace

void registerTables(Connection &connection, sqlite3 *sqlite)
{
    static const sqlite3_module module = moduleOfTables();
    const int result = sqlite3_create_module(sqlite, tableModule, &module, &connection);
    if (result != SQLITE_OK)
        throw daoError(number::Unmapped, QString::fromUtf8(sqlite3_errstr(result)));
}

} // namespace dao
