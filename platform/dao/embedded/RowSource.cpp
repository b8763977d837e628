// The two kinds of results: addresses of stored rows, and computed values.
#include "platform/dao/embedded/RowSource.h"

#include <algorithm>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/Convert.h"
#include "platform/dao/embedded/DecimalText.h"
#include "platform/dao/embedded/Errors.h"
#include "platform/dao/embedded/ExactNumber.h"
#include "platform/dao/embedded/SqliteValues.h"

using namespace Qt::StringLiterals;
using storage::RowId;
using storage::Type;
using storage::Value;

namespace dao {

namespace {

class StoredRows : public RowSource
{
public:
    StoredRows(std::shared_ptr<Connection> connection, const QString &table, std::vector<ResultColumn> columns,
               std::unique_ptr<Keyset> rows)
        : RowSource(std::move(columns))
        , m_connection(std::move(connection))
        , m_table(table)
        , m_rows(std::move(rows))
        , m_held(m_connection->holdCursor())
    {
        m_held->beforeWrite = [found = m_rows.get()] { found->collect(); };
    }

    bool has(qsizetype row) const override
    {
        return translated(Doing::Work, [&] { return m_rows->has(row); });
    }
    qsizetype count() const override
    {
        return translated(Doing::Work, [&] { return m_rows->count(); });
    }
    void requireEditable() const override
    {
        translated(Doing::Work, [&] { m_connection->database().requireWritable(); });
    }

    QVariant value(qsizetype row, std::size_t column) const override
    {
        return translated(Doing::Work, [&] {
            const ResultColumn &result = columns()[column];
            return variantOf(cursorFor(row, result).value(result.position), result.stored.type);
        });
    }
    void moved() override { m_held->cursor.reset(); }

    void requireStorable(std::size_t column, const Value &value) const override
    {
        m_connection->table(m_table).requireStorable({columns()[column].position, value});
    }
    void update(qsizetype row, std::span<const storage::Assignment> values) override
    {
        translated(Doing::Work, [&] {
            m_connection->atomically([&] { m_connection->table(m_table).update(m_rows->at(row), values); });
        });
    }

private:
    /// Looks at the file, through the table's name, once for the row and for each value that does not stand in it.
    storage::Cursor &cursorFor(qsizetype row, const ResultColumn &column) const
    {
        const RowId address = m_rows->at(row);
        const bool isThere = m_held->cursor && m_held->cursor->rowId() == address;
        const bool standsInRow = column.stored.type != Type::Memo && column.stored.type != Type::LongBinary;
        if (isThere && standsInRow)
            return *m_held->cursor;
        storage::Table &table = m_connection->table(m_table);
        if (!isThere)
            m_held->cursor = table.row(address);
        if (!m_held->cursor)
            throw daoError(number::RowDeleted);
        return *m_held->cursor;
    }

    std::shared_ptr<Connection> m_connection;
    QString m_table;
    std::unique_ptr<Keyset> m_rows;
    std::shared_ptr<HeldCursor> m_held; // on the row that was read last
};

class ComputedRows : public RowSource
{
public:
    using Row = std::vector<QVariant>;

    ComputedRows(std::vector<ResultColumn> columns, std::vector<Row> rows)
        : RowSource(std::move(columns))
        , m_rows(std::move(rows))
    { }

    bool has(qsizetype row) const override { return row == Keyset::last ? !m_rows.empty() : row < count(); }
    qsizetype count() const override { return static_cast<qsizetype>(m_rows.size()); }
    void requireEditable() const override { throw daoError(DaoError::ReadOnly); }
    QVariant value(qsizetype row, std::size_t column) const override
    {
        return (row == Keyset::last ? m_rows.back() : m_rows[static_cast<std::size_t>(row)])[column];
    }
    void requireStorable(std::size_t, const Value &) const override { requireEditable(); }
    void update(qsizetype, std::span<const storage::Assignment>) override { requireEditable(); }

private:
    std::vector<Row> m_rows;
};

ResultColumn storedColumn(const storage::Table &table, int position)
{
    const storage::Column &column = table.schema().columns[static_cast<std::size_t>(position)];
    return {column.name, dataTypeOf(column.type), column, position};
}

/// The columns as far as they are known before the rows: those of stored tables have their type.
std::vector<ResultColumn> columnsOf(Connection &connection, sqlite3_stmt *statement, const SqlText &text)
{
    std::vector<ResultColumn> columns;
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const QString shown = QString::fromUtf8(sqlite3_column_name(statement, i));
        const char *table = sqlite3_column_table_name(statement, i);
        const char *origin = sqlite3_column_origin_name(statement, i);
        if (table == nullptr || origin == nullptr) {
            const bool isNamed = text.sql.contains("AS " + bracketed(shown));
            columns.push_back({isNamed ? shown : u"Expr%1"_s.arg(1000 + i)});
            continue;
        }
        const storage::Table &stored = connection.table(QString::fromUtf8(table));
        const auto position = stored.schema().find(QString::fromUtf8(origin));
        Q_ASSERT(position);
        columns.push_back(storedColumn(stored, *position));
        columns.back().name = shown;
    }
    return columns;
}

QVariant amountOf(const storage::Decimal &decimal)
{
    bool fits = false;
    const qlonglong scaled = roundedDecimal(decimal.text, 4).remove(u'.').toLongLong(&fits);
    const bool isAmount = fits && exactBytes(decimalFromCurrency({scaled})) == exactBytes(decimal.text);
    return isAmount ? QVariant::fromValue(storage::Currency{scaled}) : QVariant::fromValue(decimal);
}

QVariant computedValue(const Value &value, const ResultColumn &column)
{
    if (column.position >= 0)
        return variantOf(coerced(value, column.stored), column.stored.type);
    if (const auto *decimal = std::get_if<storage::Decimal>(&value)) // an amount if it can be one
        return amountOf(*decimal);
    if (const auto *number = std::get_if<std::int64_t>(&value); number && *number != static_cast<int>(*number))
        return static_cast<double>(*number);
    return variantOf(value, std::holds_alternative<std::int64_t>(value) ? storage::Type::Long : storage::Type::Double);
}

/// A computed column has the type of its first value that is not Null.
int typeOf(const std::vector<ComputedRows::Row> &rows, std::size_t column)
{
    for (const auto &row : rows) {
        if (row[column].typeId() == qMetaTypeId<storage::Currency>())
            return dbCurrency;
        if (row[column].typeId() == qMetaTypeId<storage::Decimal>())
            return dbNumeric;
        switch (row[column].typeId()) {
        case QMetaType::Int:
            return dbLong;
        case QMetaType::Double:
            return dbDouble;
        case QMetaType::QByteArray:
            return dbBinary;
        case QMetaType::QString:
            return dbText;
        default:
            break;
        }
    }
    return dbText;
}

std::unique_ptr<RowSource> computedRows(Connection &connection, sqlite3_stmt *statement,
                                        std::vector<ResultColumn> columns)
{
    std::vector<ComputedRows::Row> rows;
    while (connection.step(statement)) {
        ComputedRows::Row &row = rows.emplace_back();
        for (std::size_t i = 0; i < columns.size(); ++i)
            row.push_back(computedValue(valueOf(sqlite3_column_value(statement, static_cast<int>(i))), columns[i]));
    }
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].position < 0)
            columns[i].type = typeOf(rows, i);
    }
    return std::make_unique<ComputedRows>(std::move(columns), std::move(rows));
}

std::unique_ptr<RowSource> queryRows(const std::shared_ptr<Connection> &connection, const SqlText &text)
{
    const StatementHandle query = connection->prepare(text, text.sql);
    std::vector<ResultColumn> columns = columnsOf(*connection, query.get(), text);
    const bool plain = std::ranges::all_of(columns, [](const ResultColumn &column) { return column.position >= 0; });
    if (text.onlyTable.isEmpty() || !plain)
        return computedRows(*connection, query.get(), std::move(columns));
    auto rows = std::make_unique<Keyset>(*connection, text);
    return std::make_unique<StoredRows>(connection, text.onlyTable, std::move(columns), std::move(rows));
}

std::unique_ptr<RowSource> tableRows(const std::shared_ptr<Connection> &connection, const QString &name)
{
    storage::Table &table = connection->table(name);
    std::vector<ResultColumn> columns;
    for (std::size_t i = 0; i < table.schema().columns.size(); ++i)
        columns.push_back(storedColumn(table, static_cast<int>(i)));
    std::vector<RowId> rows;
    for (const auto cursor = table.scan(); cursor->next();)
        rows.push_back(cursor->rowId());
    return std::make_unique<StoredRows>(connection, table.schema().name, std::move(columns),
                                        std::make_unique<Keyset>(std::move(rows)));
}

/// The word with which a statement begins; empty if `source` is but one name.
QString firstWord(const QString &source)
{
    const auto *end = std::ranges::find_if_not(source, [](QChar c) { return c.isLetter(); });
    return end == source.cend() ? QString() : QString(source.cbegin(), end - source.cbegin());
}

QString withoutBrackets(const QString &name)
{
    return name.startsWith(u'[') && name.endsWith(u']') ? name.mid(1, name.size() - 2) : name;
}

} // namespace

std::unique_ptr<RowSource> openRows(const std::shared_ptr<Connection> &connection, const QString &source)
{
    const QString trimmed = source.trimmed();
    const QString word = firstWord(trimmed);
    if (word.compare(u"SELECT", Qt::CaseInsensitive) == 0)
        return queryRows(connection, connection->translate(source));
    const QStringList actions{u"INSERT"_s, u"UPDATE"_s, u"DELETE"_s, u"CREATE"_s, u"DROP"_s, u"ALTER"_s};
    if (actions.contains(word, Qt::CaseInsensitive))
        throw daoError(number::InvalidOperation);
    return tableRows(connection, withoutBrackets(trimmed));
}

} // namespace dao
