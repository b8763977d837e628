// Tables, indexes and relationships: making them, keeping them, removing them.
#include <algorithm>

#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::StorageError;
using storage::Type;
using storage::Value;

namespace {

using Kind = StorageError::Kind;

class SchemaTest : public JetFileTest
{
protected:
    static storage::TableSchema simple(const QString &name)
    {
        storage::TableSchema schema{name, {}};
        schema.columns.resize(3);
        schema.columns[0].name = u"Nr"_s;
        schema.columns[0].size = 10;
        schema.columns[1].name = u"Lfd"_s;
        schema.columns[1].type = Type::Long;
        schema.columns[2].name = u"Text"_s;
        schema.columns[2].type = Type::Memo;
        return schema;
    }

    /// Konten and Verbindungen, joined by the number.
    void makeFamily(bool cascades)
    {
        storage::TableSchema parent = simple(u"Konten"_s);
        parent.indexes = {primaryKey(0)};
        database().createTable(parent);
        storage::TableSchema child = simple(u"Verbindungen"_s);
        storage::Index key = index(u"PrimaryKey"_s, {{0, false}, {1, false}});
        key.primary = true;
        child.indexes = {key};
        database().createTable(child);
        database().createRelationship(
            {u"KontenVerbindungen"_s, u"Konten"_s, {u"Nr"_s}, u"Verbindungen"_s, {u"Nr"_s}, true, cascades, cascades});
        for (const QString &number : {u"D1"_s, u"D2"_s}) {
            m_parents.push_back(table(u"Konten"_s).insert(std::vector<Assignment>{{0, number}}));
            for (std::int64_t i = 0; i < 40; ++i)
                table(u"Verbindungen"_s).insert(std::vector<Assignment>{{0, number}, {1, i}, {2, QString(300, u'x')}});
        }
    }
    std::size_t childrenOf(const QString &number)
    {
        storage::KeyRange range{0};
        range.lower = range.upper = storage::Bound{{number}, true};
        return count(*table(u"Verbindungen"_s).range(range));
    }

    std::vector<storage::RowId> m_parents;
};

} // namespace

TEST_P(SchemaTest, KeepsEveryTypeWithAllItsWishes)
{
    storage::TableSchema schema{u"Alle Typen"_s, {}};
    for (int i = 0; i <= static_cast<int>(Type::Numeric); ++i) {
        storage::Column column;
        column.name = u"Spalte %1 ä"_s.arg(i);
        column.type = static_cast<Type>(i);
        if (column.type == Type::Numeric && !GetParam().jet4())
            continue;
        if (column.type == Type::Text || column.type == Type::Binary)
            column.size = 200;
        if (column.type == Type::Numeric) {
            column.size = 18;
            column.scale = 4;
        }
        column.required = i % 2 == 0;
        column.zeroLengthAllowed = i % 3 == 0;
        column.defaultValue = i == 1 ? u"7"_s : QString();
        column.validationRule = i == 2 ? u">3"_s : QString();
        column.validationText = i == 2 ? u"zu klein"_s : QString();
        schema.columns.push_back(column);
    }
    schema.columns[3].autonumber = true;
    for (int i = 0; i < 10; ++i)
        schema.indexes.push_back(index(u"i%1"_s.arg(i), {{i, i % 2 == 1}}));
    schema.indexes[3].primary = true;
    schema.indexes[5].ignoreNulls = true;
    schema.indexes[7].unique = true;
    database().createTable(schema);
    reopen();
    const storage::TableSchema &read = table(u"alle typen"_s).schema();
    ASSERT_EQ(read.columns.size(), schema.columns.size());
    for (std::size_t i = 0; i < schema.columns.size(); ++i) {
        const storage::Column &wished = schema.columns[i];
        const storage::Column &kept = read.columns[i];
        const bool text = wished.type == Type::Text || wished.type == Type::Memo;
        EXPECT_EQ(kept.name, wished.name);
        EXPECT_EQ(kept.type, wished.type);
        EXPECT_EQ(kept.size, wished.size);
        EXPECT_EQ(kept.scale, wished.scale);
        EXPECT_EQ(kept.required, wished.required);
        EXPECT_EQ(kept.zeroLengthAllowed, wished.zeroLengthAllowed || !text);
        EXPECT_EQ(kept.autonumber, wished.autonumber);
        EXPECT_EQ(kept.defaultValue, wished.defaultValue);
        EXPECT_EQ(kept.validationRule, wished.validationRule);
        EXPECT_EQ(kept.validationText, wished.validationText);
    }
    for (const storage::Index &wished : schema.indexes) {
        const auto kept = std::ranges::find(read.indexes, wished.name, &storage::Index::name);
        ASSERT_NE(kept, read.indexes.end());
        EXPECT_EQ(kept->columns[0].column, wished.columns[0].column);
        EXPECT_EQ(kept->columns[0].descending, wished.columns[0].descending);
        EXPECT_EQ(kept->primary, wished.primary);
        EXPECT_EQ(kept->unique, wished.unique || wished.primary);
        EXPECT_EQ(kept->ignoreNulls, wished.ignoreNulls);
    }
}

TEST_P(SchemaTest, MakesAndDropsTablesWithoutLosingPages)
{
    storage::TableSchema wide{u"Breit"_s, {}};
    wide.columns.resize(200);
    for (std::size_t i = 0; i < wide.columns.size(); ++i) {
        wide.columns[i].name = u"Eine Spalte mit langem Namen %1"_s.arg(i);
        wide.columns[i].type = i % 20 == 0 ? Type::Memo : Type::Byte;
    }
    for (int i = 0; i < 30; ++i)
        wide.indexes.push_back(index(u"Index %1"_s.arg(i), {{i + 21, false}, {i + 61, true}}));
    wide.indexes.erase(std::remove_if(wide.indexes.begin(), wide.indexes.end(),
                                      [](const storage::Index &i) {
                                          return i.columns[0].column % 20 == 0 || i.columns[1].column % 20 == 0;
                                      }),
                       wide.indexes.end());
    qsizetype length = 0;
    for (int round = 0; round < 4; ++round) {
        database().createTable(wide);
        for (int i = 0; i < 50; ++i)
            table(u"Breit"_s).insert(std::vector<Assignment>{{0, QString(5000, u'x')}, {21, std::int64_t{i}}});
        expectSound();
        EXPECT_EQ(errorOf([&] { database().createTable(wide); }).kind(), Kind::AlreadyExists);
        database().dropTable(u"breit"_s);
        EXPECT_EQ(database().table(u"Breit"_s), nullptr);
        EXPECT_TRUE(round == 0 || content().size() == length);
        length = content().size();
    }
    EXPECT_TRUE(database().tableNames().isEmpty());
    EXPECT_EQ(errorOf([&] { database().dropTable(u"Breit"_s); }).kind(), Kind::NoSuchTable);
}

TEST_P(SchemaTest, AddsIndexesToTablesWithRows)
{
    database().createTable(simple(u"T"_s));
    for (int i = 0; i < 500; ++i)
        table(u"T"_s).insert(std::vector<Assignment>{{0, QString::number(i % 100)}, {1, std::int64_t{i}}});
    storage::Index unique = index(u"eindeutig"_s, {{1, true}});
    unique.unique = true;
    database().createIndex(u"T"_s, unique);
    storage::KeyRange range{0};
    range.upper = storage::Bound{{std::int64_t{490}}, true};
    EXPECT_EQ(count(*table(u"T"_s).range(range)), 10U);
    const QByteArray before = content();
    unique.name = u"nicht eindeutig"_s;
    unique.columns = {{0, false}};
    EXPECT_EQ(errorOf([&] { database().createIndex(u"T"_s, unique); }).kind(), Kind::Duplicate);
    EXPECT_EQ(errorOf([&] {
                  database().createIndex(u"T"_s, index(u"EINDEUTIG"_s, {{0, false}}));
              }).kind(),
              Kind::AlreadyExists);
    EXPECT_EQ(errorOf([&] { database().createIndex(u"X"_s, unique); }).kind(), Kind::NoSuchTable);
    EXPECT_EQ(content(), before);
}

TEST_P(SchemaTest, RefusesTablesThatCannotBe)
{
    struct Row {
        const char *name;
        std::function<void(storage::TableSchema &)> change;
        Kind error;
    };
    const Row rows[] = {
        {"no name", [](auto &t) { t.name.clear(); }, Kind::Unsupported},
        {"name with a point", [](auto &t) { t.name = u"a.b"_s; }, Kind::Unsupported},
        {"no columns", [](auto &t) { t.columns.clear(); }, Kind::OutOfRange},
        {"too many columns", [](auto &t) { t.columns.resize(256); }, Kind::OutOfRange},
        {"column twice", [](auto &t) { t.columns[1].name = u"NR"_s; }, Kind::AlreadyExists},
        {"text of no length", [](auto &t) { t.columns[0].size = 0; }, Kind::OutOfRange},
        {"text too long", [](auto &t) { t.columns[0].size = 256; }, Kind::OutOfRange},
        {"autonumber text", [](auto &t) { t.columns[0].autonumber = true; }, Kind::Unsupported},
        {"too many digits",
         [](auto &t) {
             t.columns[1].type = Type::Numeric;
             t.columns[1].size = 29;
         },
         GetParam().jet4() ? Kind::OutOfRange : Kind::Unsupported},
        {"index without columns",
         [](auto &t) {
             t.indexes.push_back({});
             t.indexes[0].name = u"i"_s;
         },
         Kind::OutOfRange},
    };
    const QByteArray before = content();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        storage::TableSchema schema = simple(u"T"_s);
        row.change(schema);
        EXPECT_EQ(errorOf([&] { database().createTable(schema); }).kind(), row.error);
    }
    EXPECT_EQ(content(), before);
}

TEST_P(SchemaTest, CascadesAlongRelationships)
{
    makeFamily(true);
    table(u"Konten"_s).update(m_parents[0], std::vector<Assignment>{{0, u"D9"_s}});
    EXPECT_EQ(childrenOf(u"D1"_s), 0U);
    EXPECT_EQ(childrenOf(u"D9"_s), 40U);
    EXPECT_EQ(errorOf([&] {
                  table(u"Konten"_s).update(m_parents[0], std::vector<Assignment>{{0, u"d2"_s}});
              }).kind(),
              Kind::Duplicate);
    table(u"Konten"_s).remove(m_parents[0]);
    EXPECT_EQ(childrenOf(u"D9"_s), 0U);
    EXPECT_EQ(childrenOf(u"D2"_s), 40U);
    reopen();
    const auto relationships = database().relationships();
    ASSERT_EQ(relationships.size(), 1U);
    EXPECT_EQ(relationships[0].foreignTable, u"Verbindungen"_s);
    EXPECT_TRUE(relationships[0].cascadeUpdates && relationships[0].cascadeDeletes && relationships[0].enforced);
}

TEST_P(SchemaTest, KeepsChildrenFromLosingTheirParent)
{
    makeFamily(false);
    storage::Table &parents = table(u"Konten"_s);
    storage::Table &children = table(u"Verbindungen"_s);
    const QByteArray before = content();
    EXPECT_EQ(errorOf([&] { parents.remove(m_parents[0]); }).kind(), Kind::ChildrenExist);
    EXPECT_EQ(errorOf([&] {
                  parents.update(m_parents[0], std::vector<Assignment>{{0, u"D9"_s}});
              }).kind(),
              Kind::ChildrenExist);
    EXPECT_EQ(errorOf([&] {
                  children.insert(std::vector<Assignment>{{0, u"D3"_s}, {1, std::int64_t{1}}});
              }).kind(),
              Kind::ParentMissing);
    EXPECT_EQ(errorOf([&] { database().dropTable(u"Konten"_s); }).kind(), Kind::Unsupported);
    EXPECT_EQ(content(), before);
    parents.update(m_parents[0], std::vector<Assignment>{{0, u"d1"_s}, {2, u"klein"_s}});
    EXPECT_EQ(childrenOf(u"D1"_s), 40U);

    storage::Relationship again{u"Zweite"_s, u"Konten"_s, {u"Lfd"_s}, u"Verbindungen"_s, {u"Lfd"_s}};
    EXPECT_EQ(errorOf([&] { database().createRelationship(again); }).kind(), Kind::NoSuchIndex);
    again.columns = again.foreignColumns = {u"Nr"_s};
    again.foreignTable = u"Konten"_s;
    database().createRelationship(again); // a table's relationship with itself
    EXPECT_EQ(database().relationships().size(), 2U);
}

INSTANTIATE_TEST_SUITE_P(Files, SchemaTest, testing::ValuesIn(fileKinds()), kindName);
