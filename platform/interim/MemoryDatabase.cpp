// Tables as plain maps of rows; indexes are sorted afresh for each walk.
#include "platform/interim/MemoryDatabase.h"

#include <algorithm>

#include <QDateTime>

using namespace Qt::StringLiterals;

namespace storage {

namespace {

using Row = std::vector<Value>;

int sign(auto left, auto right)
{
    return left < right ? -1 : left > right ? 1 : 0;
}

int compareValues(const Database &database, const Value &left, const Value &right)
{
    if (left.index() != right.index() || isNull(left))
        return sign(!isNull(left), !isNull(right));
    if (const auto *text = std::get_if<QString>(&left))
        return database.compareTexts(*text, std::get<QString>(right));
    if (const auto *amount = std::get_if<Currency>(&left))
        return sign(amount->tenThousandths, std::get<Currency>(right).tenThousandths);
    if (const auto *moment = std::get_if<DateTime>(&left))
        return sign(moment->days, std::get<DateTime>(right).days);
    if (const auto *decimal = std::get_if<Decimal>(&left))
        return sign(decimal->text.toDouble(), std::get<Decimal>(right).text.toDouble());
    if (const auto *number = std::get_if<double>(&left))
        return sign(*number, std::get<double>(right));
    if (const auto *number = std::get_if<std::int64_t>(&left))
        return sign(*number, std::get<std::int64_t>(right));
    if (const auto *yes = std::get_if<bool>(&left))
        return sign(!*yes, !std::get<bool>(right));
    return sign(std::get<QByteArray>(left), std::get<QByteArray>(right));
}

Value defaultOf(const Column &column)
{
    const QString &text = column.defaultValue;
    if (text.isEmpty())
        return column.type == Type::Boolean ? Value(false) : Value();
    if (text.startsWith(u'"'))
        return text.mid(1, text.size() - 2).replace(u"\"\""_s, u"\""_s);
    const bool isYes
        = text.compare(u"True"_s, Qt::CaseInsensitive) == 0 || text.compare(u"Yes"_s, Qt::CaseInsensitive) == 0;
    switch (column.type) {
    case Type::Boolean:
        return isYes || text.toInt() != 0;
    case Type::Currency:
        return Currency{static_cast<std::int64_t>(text.toDouble() * 10000)};
    case Type::DateTime:
        return DateTime{static_cast<double>(QDate(1899, 12, 30).daysTo(QDate::currentDate()))};
    case Type::Single:
    case Type::Double:
        return text.toDouble();
    case Type::Numeric:
        return Decimal{text};
    case Type::Text:
    case Type::Memo:
        return text;
    default:
        return std::int64_t{text.toLongLong()};
    }
}

class RowWalk : public Cursor
{
public:
    RowWalk(const MemoryContent::Rows &table, std::vector<RowId> ids, bool stands)
        : m_table(table)
        , m_ids(std::move(ids))
        , m_at(stands ? 0 : -1)
    { }

    bool next() override { return ++m_at < static_cast<std::ptrdiff_t>(m_ids.size()); }
    RowId rowId() const override { return m_ids[static_cast<std::size_t>(m_at)]; }
    Value value(int column) const override { return m_table.rows.at(rowId())[static_cast<std::size_t>(column)]; }

private:
    const MemoryContent::Rows &m_table;
    std::vector<RowId> m_ids;
    std::ptrdiff_t m_at;
};

class MemoryTable : public Table
{
public:
    MemoryTable(MemoryDatabase &database, const QString &key)
        : m_database(database)
        , m_key(key)
    { }

    const TableSchema &schema() const override { return content().schema; }
    std::int64_t rowEstimate() const override { return static_cast<std::int64_t>(content().rows.size()); }

    std::unique_ptr<Cursor> scan() override
    {
        std::vector<RowId> ids;
        for (const auto &[id, row] : content().rows)
            ids.push_back(id);
        return std::make_unique<RowWalk>(content(), std::move(ids), false);
    }

    std::unique_ptr<Cursor> range(const KeyRange &range) override
    {
        const Index &index = schema().indexes[static_cast<std::size_t>(range.index)];
        std::vector<RowId> ids;
        for (const auto &[id, row] : content().rows) {
            const Row key = keyOf(index, row);
            const int fromLower = range.lower ? compareKeys(index, key, range.lower->key) : 1;
            const int fromUpper = range.upper ? compareKeys(index, key, range.upper->key) : -1;
            const bool isLeftOut = index.ignoreNulls && std::ranges::all_of(key, isNull);
            if (!isLeftOut && (fromLower > 0 || (fromLower == 0 && range.lower->inclusive))
                && (fromUpper < 0 || (fromUpper == 0 && range.upper->inclusive)))
                ids.push_back(id);
        }
        std::ranges::stable_sort(ids, [&](RowId left, RowId right) {
            return compareKeys(index, keyOf(index, content().rows.at(left)), keyOf(index, content().rows.at(right)))
                < 0;
        });
        if (range.backwards)
            std::ranges::reverse(ids);
        return std::make_unique<RowWalk>(content(), std::move(ids), false);
    }

    std::unique_ptr<Cursor> row(RowId id) override
    {
        if (!content().rows.contains(id))
            return nullptr;
        return std::make_unique<RowWalk>(content(), std::vector{id}, true);
    }

    RowId insert(std::span<const Assignment> values) override
    {
        Row row;
        for (const Column &column : schema().columns)
            row.push_back(column.autonumber ? Value(content().autonumber + 1) : defaultOf(column));
        const RowId id = content().next;
        store(id, std::move(row), values);
        ++content().next;
        ++content().autonumber;
        return id;
    }

    void update(RowId id, std::span<const Assignment> values) override
    {
        if (!content().rows.contains(id))
            throw StorageError(StorageError::RowGone, {}, schema().name);
        store(id, content().rows.at(id), values);
    }

    void remove(RowId id) override { content().rows.erase(id); }

private:
    MemoryContent::Rows &content() const { return m_database.content.tables.at(m_key); }

    static Row keyOf(const Index &index, const Row &row)
    {
        Row key;
        for (const IndexColumn &column : index.columns)
            key.push_back(row[static_cast<std::size_t>(column.column)]);
        return key;
    }

    int compareKeys(const Index &index, const Row &left, const Row &right) const
    {
        for (std::size_t i = 0; i < std::min(left.size(), right.size()); ++i) {
            if (const int order = compareValues(m_database, left[i], right[i]))
                return index.columns[i].descending ? -order : order;
        }
        return 0;
    }

    void store(RowId id, Row row, std::span<const Assignment> values)
    {
        for (const Assignment &assignment : values)
            row[static_cast<std::size_t>(assignment.column)] = assignment.value;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const Column &column = schema().columns[i];
            const auto *text = std::get_if<QString>(&row[i]);
            if (column.required && isNull(row[i]))
                throw StorageError(StorageError::Required, {}, column.name);
            if (!column.zeroLengthAllowed && text != nullptr && text->isEmpty())
                throw StorageError(StorageError::ZeroLength, {}, column.name);
        }
        for (const Index &index : schema().indexes) {
            const Row key = keyOf(index, row);
            if (index.required && std::ranges::any_of(key, isNull))
                throw StorageError(StorageError::Required, {}, index.name);
            for (const auto &[other, content] : content().rows) {
                if (index.unique && other != id && !std::ranges::any_of(key, isNull)
                    && compareKeys(index, key, keyOf(index, content)) == 0)
                    throw StorageError(StorageError::Duplicate, u"Index: %1"_s.arg(index.name), schema().name);
            }
        }
        content().rows[id] = std::move(row);
    }

    MemoryDatabase &m_database;
    QString m_key;
};

} // namespace

class MemoryScope : public WriteScope
{
public:
    explicit MemoryScope(MemoryDatabase &database)
        : m_database(database)
        , m_before(database.content)
    { }

    ~MemoryScope() override
    {
        if (!m_committed)
            m_database.content = m_before;
    }

    void commit() override
    {
        m_database.save();
        m_committed = true;
    }

private:
    MemoryDatabase &m_database;
    MemoryContent m_before;
    bool m_committed = false;
};

MemoryDatabase::MemoryDatabase(bool readOnly, bool caseSensitive)
    : m_readOnly(readOnly)
    , m_caseSensitive(caseSensitive)
{ }

MemoryDatabase::~MemoryDatabase() = default;

QStringList MemoryDatabase::tableNames() const
{
    QStringList names;
    for (const auto &[key, table] : content.tables)
        names.append(table.schema.name);
    return names;
}

Table *MemoryDatabase::table(const QString &name)
{
    const QString key = name.toCaseFolded();
    if (!content.tables.contains(key))
        return nullptr;
    auto &table = m_tables[key];
    if (!table)
        table = std::make_unique<MemoryTable>(*this, key);
    return table.get();
}

int MemoryDatabase::compareTexts(QStringView left, QStringView right) const
{
    return left.compare(right, m_caseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
}

std::unique_ptr<WriteScope> MemoryDatabase::beginWrite()
{
    return std::make_unique<MemoryScope>(*this);
}

void MemoryDatabase::createTable(const TableSchema &schema)
{
    if (!content.tables.try_emplace(schema.name.toCaseFolded(), MemoryContent::Rows{schema}).second)
        throw StorageError(StorageError::AlreadyExists, {}, schema.name);
}

void MemoryDatabase::createIndex(const QString &table, const Index &index)
{
    auto &indexes = content.tables.at(table.toCaseFolded()).schema.indexes;
    if (std::ranges::find(indexes, index.name, &Index::name) != indexes.end())
        throw StorageError(StorageError::AlreadyExists, {}, index.name);
    indexes.push_back(index);
}

void MemoryDatabase::createRelationship(const Relationship &relationship)
{
    content.relationships.push_back(relationship);
}

void MemoryDatabase::dropTable(const QString &name)
{
    if (content.tables.erase(name.toCaseFolded()) == 0)
        throw StorageError(StorageError::NoSuchTable, {}, name);
}

std::vector<Relationship> MemoryDatabase::relationships() const
{
    return content.relationships;
}

} // namespace storage
