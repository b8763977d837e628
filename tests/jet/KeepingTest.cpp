// Whole tables under random changes, against a model in memory.
#include <map>
#include <random>

#include <QUuid>

#include <gmock/gmock.h>

#include "platform/storage/StorageError.h"
#include "tests/jet/TestFile.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::Column;
using storage::RowId;
using storage::StorageError;
using storage::Type;
using storage::Value;

namespace {

using Row = std::vector<Value>;
using Rows = std::map<RowId, Row>;

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

    QString text(std::size_t longest)
    {
        static const QString alphabet = u"aAbcdeEgmnrstuzZ 019-'.,&ßäÄöüÜéèñÆœ€"_s;
        QString made;
        for (std::size_t length = below(longest + 1); length > 0; --length)
            made += alphabet[static_cast<qsizetype>(below(static_cast<std::size_t>(alphabet.size())))];
        return made;
    }

    QByteArray bytes(std::size_t longest)
    {
        QByteArray made(static_cast<qsizetype>(1 + below(longest)), '\0');
        for (char &byte : made)
            byte = static_cast<char>(below(256));
        return made;
    }

    Value value(const Column &column)
    {
        if (column.type != Type::Boolean && !column.required && below(8) == 0)
            return {};
        switch (column.type) {
        case Type::Boolean:
            return below(2) == 1;
        case Type::Byte:
            return between(0, 255);
        case Type::Integer:
            return between(-32768, 32767);
        case Type::Long:
            return between(-3000, 3000);
        case Type::Currency:
            return storage::Currency{between(-99999999, 99999999)};
        case Type::Single:
            return static_cast<double>(between(-9999, 9999)) / 8;
        case Type::Double:
            return static_cast<double>(between(-99999, 99999)) / 7;
        case Type::DateTime:
            return storage::DateTime{static_cast<double>(between(-400000, 400000)) / 8};
        case Type::Binary:
            return bytes(static_cast<std::size_t>(column.size));
        case Type::Text:
            return text(below(10) == 0 ? static_cast<std::size_t>(column.size) : 12);
        case Type::Memo:
            return text(below(10) == 0 ? 6000 : below(3) == 0 ? 300 : 20);
        case Type::LongBinary:
            return bytes(below(10) == 0 ? 5000 : 60);
        case Type::Guid:
            return QUuid(static_cast<uint>(below(1U << 30)), 1, 2, 3, 4, 5, 6, 7, 8, 9, 10).toString();
        case Type::Numeric:
            return storage::Decimal{u"%1.%2"_s.arg(between(-9999, 9999)).arg(between(10, 99))};
        }
        Q_UNREACHABLE();
    }

private:
    std::mt19937 m_random;
};

/// A column of each type, named by a letter.
std::vector<Column> allColumns(bool jet4)
{
    std::vector<Column> columns{
        {.name = u"A"_s, .type = Type::Long},
        {.name = u"B"_s, .type = Type::Boolean},
        {.name = u"C"_s, .type = Type::Byte},
        {.name = u"D"_s, .type = Type::Integer},
        {.name = u"E"_s, .type = Type::Currency},
        {.name = u"F"_s, .type = Type::Single},
        {.name = u"G"_s, .type = Type::Double},
        {.name = u"H"_s, .type = Type::DateTime},
        {.name = u"I"_s, .type = Type::Binary, .size = 40},
        {.name = u"J"_s, .type = Type::Text, .size = 60},
        {.name = u"K"_s, .type = Type::Text, .size = 255},
        {.name = u"L"_s, .type = Type::Guid},
        {.name = u"M"_s, .type = Type::Memo},
        {.name = u"N"_s, .type = Type::LongBinary},
    };
    if (jet4)
        columns.push_back({.name = u"O"_s, .type = Type::Numeric, .size = 18, .scale = 2});
    return columns;
}

/// A table and what should be in it.
class Pair
{
public:
    Pair(storage::Database &database, const QString &name, const QString &plan, bool jet4)
        : m_name(name)
    {
        storage::TableSchema schema{.name = name, .columns = allColumns(jet4)};
        for (const QString &word : plan.split(u' ')) {
            storage::Index index{.name = u"i%1"_s.arg(schema.indexes.size()), .columns = {}};
            for (const QChar letter : word) {
                if (letter == u'!')
                    index.unique = true;
                else
                    index.columns.push_back({*schema.find(letter.toUpper()), letter.isLower()});
            }
            if (index.unique)
                m_uniqueColumn = index.columns.front().column;
            schema.indexes.push_back(index);
        }
        database.createTable(schema);
        m_columns = schema.columns;
        m_indexes = schema.indexes.size();
    }

    Rows rows{};

    void change(storage::Database &database, Chance &chance, unsigned insertShare)
    {
        storage::Table &table = *database.table(m_name);
        if (rows.empty() || chance.below(100) < insertShare)
            return insert(table, chance);
        const auto row = std::next(rows.begin(), static_cast<std::ptrdiff_t>(chance.below(rows.size())));
        if (chance.below(2) == 0)
            return update(table, *row, chance);
        table.remove(row->first);
        rows.erase(row);
    }

    void compare(storage::Database &database)
    {
        storage::Table &table = *database.table(m_name);
        Rows found;
        for (const auto cursor = table.scan(); cursor->next();) {
            Row row;
            for (std::size_t i = 0; i < m_columns.size(); ++i)
                row.push_back(cursor->value(static_cast<int>(i)));
            found.emplace(cursor->rowId(), row);
        }
        ASSERT_EQ(found.size(), rows.size());
        for (const auto &[id, row] : rows)
            ASSERT_TRUE(found.at(id) == row) << "row " << id << " of " << qPrintable(m_name);
        for (std::size_t i = 0; i < m_indexes; ++i) {
            if (!table.schema().indexes[i].usable)
                continue;
            std::size_t count = 0;
            for (const auto cursor = table.range({.index = static_cast<int>(i)}); cursor->next();)
                ++count;
            ASSERT_EQ(count, rows.size()) << "index " << i << " of " << qPrintable(m_name);
        }
    }

private:
    bool isTaken(const Row &row, RowId self) const
    {
        if (!m_uniqueColumn || storage::isNull(row[static_cast<std::size_t>(*m_uniqueColumn)]))
            return false;
        const auto column = static_cast<std::size_t>(*m_uniqueColumn);
        return std::any_of(rows.begin(), rows.end(), [&](const auto &other) {
            return other.first != self && other.second[column] == row[column];
        });
    }

    void insert(storage::Table &table, Chance &chance)
    {
        Row row;
        std::vector<Assignment> values;
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            row.push_back(chance.value(m_columns[i]));
            values.push_back({static_cast<int>(i), row.back()});
        }
        if (isTaken(row, -1)) {
            EXPECT_THROW(table.insert(values), StorageError);
            return;
        }
        rows.emplace(table.insert(values), row);
    }

    void update(storage::Table &table, Rows::value_type &row, Chance &chance)
    {
        Row changed = row.second;
        std::vector<Assignment> values;
        for (std::size_t count = 1 + chance.below(4); count > 0; --count) {
            const std::size_t column = chance.below(m_columns.size());
            changed[column] = chance.value(m_columns[column]);
        }
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            if (!(changed[i] == row.second[i]))
                values.push_back({static_cast<int>(i), changed[i]});
        }
        if (isTaken(changed, row.first)) {
            EXPECT_THROW(table.update(row.first, values), StorageError);
            return;
        }
        table.update(row.first, values);
        row.second = changed;
    }

    QString m_name;
    std::vector<Column> m_columns{};
    std::size_t m_indexes = 0;
    std::optional<int> m_uniqueColumn{};
};

struct Kind {
    const char *name;
    storage::FileVersion version;
    bool encrypted;
};

class Keeping : public testing::TestWithParam<Kind>
{ };

INSTANTIATE_TEST_SUITE_P(Files, Keeping,
                         testing::Values(Kind{"Jet3", storage::FileVersion::Jet3, false},
                                         Kind{"Jet3Encrypted", storage::FileVersion::Jet3, true},
                                         Kind{"Jet4", storage::FileVersion::Jet4, false},
                                         Kind{"Jet4Encrypted", storage::FileVersion::Jet4, true}),
                         [](const auto &kind) { return kind.param.name; });

} // namespace

TEST_P(Keeping, OfTablesAndIndexesAgreesWithTheModel)
{
    constexpr int changes = 20000;
    constexpr int changesPerScope = 50;
    constexpr int changesPerCheck = 500;
    const bool jet4 = GetParam().version == storage::FileVersion::Jet4;
    const TestFile file(GetParam().version);
    std::vector<Pair> tables;
    {
        const auto database = file.open();
        const QStringList plans{u"!A"_s, u"K j"_s, u"B c D"_s, u"JdA e F g"_s,
                                jet4 ? u"H i L o Mk"_s : u"H i L M bJ"_s};
        for (const QString &plan : plans)
            tables.emplace_back(*database, u"T%1"_s.arg(tables.size()), plan, jet4);
    }
    if (GetParam().encrypted)
        file.encrypt(0x12345678);
    Chance chance(GetParam().encrypted ? 815 : 4711);
    auto database = file.open();
    for (int done = 0; done < changes; done += changesPerScope) {
        const auto before = tables;
        {
            const auto scope = database->beginWrite();
            const unsigned insertShare = done < changes / 2 ? 60 : 40;
            for (int i = 0; i < changesPerScope; ++i)
                tables[chance.below(tables.size())].change(*database, chance, insertShare);
            if (chance.below(10) == 0)
                tables = before; // undone at the scope's end
            else
                scope->commit();
        }
        if ((done + changesPerScope) % changesPerCheck != 0)
            continue;
        ASSERT_EQ(file.faults(), QString()) << "after " << done + changesPerScope << " changes";
        for (Pair &table : tables)
            ASSERT_NO_FATAL_FAILURE(table.compare(*database));
    }
    database.reset();
    database = file.open(true);
    for (Pair &table : tables)
        ASSERT_NO_FATAL_FAILURE(table.compare(*database));
}
