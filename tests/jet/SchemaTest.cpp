// Tables, indexes and relationships: making them, keeping them, removing them.
#include <algorithm>
#include <tuple>

#include "platform/jet/CatalogWriter.h"
#include "platform/jet/PageFile.h"
#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using storage::Type;
using Kind = storage::StorageError::Kind;

namespace {

class SchemaTest : public JetFileTest
{
protected:
    static storage::TableSchema simple(const QString &name)
    {
        return {name, {{u"Nr"_s, Type::Text, 10}, {u"Lfd"_s, Type::Long}, {u"Text"_s, Type::Memo}}};
    }

    /// Konten and Verbindungen, joined by the number.
    void makeFamily(bool cascades)
    {
        storage::TableSchema parent = simple(u"Konten"_s);
        parent.indexes = {{.name = u"PrimaryKey"_s, .columns = {{0}}, .primary = true}};
        database->createTable(parent);
        storage::TableSchema child = simple(u"Verbindungen"_s);
        child.indexes = {{.name = u"PrimaryKey"_s, .columns = {{0}, {1}}, .primary = true}};
        database->createTable(child);
        database->createRelationship(
            {u"KontenVerbindungen"_s, u"Konten"_s, {u"Nr"_s}, u"Verbindungen"_s, {u"Nr"_s}, true, cascades, cascades});
        const auto scope = database->beginWrite();
        for (const QString &number : {u"D1"_s, u"D2"_s}) {
            parents.push_back(table(u"Konten"_s).insert({{{0, number}}}));
            for (std::int64_t i = 0; i < 40; ++i)
                table(u"Verbindungen"_s).insert({{{0, number}, {1, i}, {2, QString(300, u'x')}}});
        }
        scope->commit();
    }
    void rename(const QString &number) { table(u"Konten"_s).update(parents[0], {{{0, number}}}); }
    std::size_t childrenOf(const QString &number)
    {
        const storage::Bound bound{{number}};
        return count(*table(u"Verbindungen"_s).range({0, bound, bound}));
    }

    std::vector<storage::RowId> parents;
};

INSTANTIATE_TEST_SUITE_P(Files, SchemaTest, testing::ValuesIn(fileKinds), testing::PrintToStringParamName());

auto allOf(const storage::Column &c)
{
    return std::tie(c.name, c.type, c.size, c.scale, c.required, c.zeroLengthAllowed, c.autonumber, c.defaultValue,
                    c.validationRule, c.validationText);
}

} // namespace

TEST_P(SchemaTest, KeepsEveryTypeWithAllItsWishes)
{
    storage::TableSchema schema{u"Alle Typen"_s, {}};
    for (int i = 0; i < static_cast<int>(Type::Numeric) + (GetParam().jet4() ? 1 : 0); ++i) {
        const auto type = static_cast<Type>(i);
        const bool text = type == Type::Text || type == Type::Memo;
        schema.columns.push_back({.name = u"Spalte %1 ä"_s.arg(i),
                                  .type = type,
                                  .size = type == Type::Text || type == Type::Binary ? 200 : 0,
                                  .required = i % 2 == 0,
                                  .zeroLengthAllowed = i % 3 == 0 || !text});
        if (i < 10)
            schema.indexes.push_back({.name = u"i%1"_s.arg(i), .columns = {{i, i % 2 == 1}}});
    }
    if (GetParam().jet4()) {
        schema.columns.back().size = 18;
        schema.columns.back().scale = 4;
    }
    schema.columns[1].defaultValue = u"7"_s;
    schema.columns[2].validationRule = u">3"_s;
    schema.columns[2].validationText = u"zu klein"_s;
    schema.columns[3].autonumber = true;
    schema.indexes[3].primary = schema.indexes[3].unique = true;
    schema.indexes[5].ignoreNulls = true;
    schema.indexes[7].unique = true;
    database->createTable(schema);
    database = file.open();
    const storage::TableSchema &read = table(u"alle typen"_s).schema();
    ASSERT_EQ(read.columns.size(), schema.columns.size());
    for (std::size_t i = 0; i < schema.columns.size(); ++i)
        EXPECT_EQ(allOf(read.columns[i]), allOf(schema.columns[i])) << i;
    for (const storage::Index &wished : schema.indexes) {
        const auto kept = std::ranges::find(read.indexes, wished.name, &storage::Index::name);
        ASSERT_NE(kept, read.indexes.end());
        EXPECT_EQ(kept->columns[0].column, wished.columns[0].column);
        EXPECT_EQ(kept->columns[0].descending, wished.columns[0].descending);
        EXPECT_EQ(std::tie(kept->primary, kept->unique, kept->ignoreNulls),
                  std::tie(wished.primary, wished.unique, wished.ignoreNulls));
    }
}

TEST_P(SchemaTest, ShowsWhichColumnsMakeTheirOwnValues)
{
    database->createTable({u"T"_s,
                           {{.name = u"Nr"_s, .type = Type::Long, .autonumber = true},
                            {.name = u"Made"_s, .type = Type::Guid, .required = true, .defaultValue = u"GenGUID()"_s},
                            {.name = u"Plain"_s, .type = Type::Guid}}});
    database = file.open();
    const auto &columns = table(u"T"_s).schema().columns;
    EXPECT_TRUE(columns[0].autonumber && columns[1].autonumber && !columns[2].autonumber);
    const auto first = table(u"T"_s).row(table(u"T"_s).insert({}));
    const auto second = table(u"T"_s).row(table(u"T"_s).insert({}));
    EXPECT_TRUE(std::holds_alternative<QString>(first->value(1)));
    EXPECT_NE(first->value(1), second->value(1));
    EXPECT_EQ(second->value(0), storage::Value(std::int64_t{2}));
    EXPECT_EQ(kindOf([&] { table(u"T"_s).update(first->rowId(), {{{1, storage::Value()}}}); }), Kind::Required);
}

TEST_P(SchemaTest, HidesTheRelationshipsOfSystemTables)
{
    makeFamily(false);
    const storage::Relationship hidden{.name = u"MSys"_s,
                                       .table = u"MSysObjects"_s,
                                       .columns = {u"Id"_s},
                                       .foreignTable = u"MSysACEs"_s,
                                       .foreignColumns = {u"ObjectId"_s}};
    {
        jet::PageFile pages(storage::systemFiles(), {file.path(), GetParam().password});
        const jet::TextCodec codec = GetParam().jet4() ? jet::TextCodec::jet4() : jet::TextCodec::jet3(1252);
        jet::PageScope scope(pages);
        jet::CatalogWriter(pages, codec)
            .addRelationshipPair({hidden.name, 0, 1, 0, hidden.foreignTable, hidden.foreignColumns.front(),
                                  hidden.table, hidden.columns.front()});
        scope.commit();
    }
    ASSERT_EQ(database->relationships().size(), 1U);
    EXPECT_EQ(database->relationships().front().name, u"KontenVerbindungen"_s);
    storage::Relationship other = database->relationships().front();
    other.name = u"msys"_s;
    EXPECT_EQ(kindOf([&] { database->createRelationship(other); }), Kind::AlreadyExists);
}

TEST_P(SchemaTest, MakesAndDropsTablesWithoutLosingPages)
{
    storage::TableSchema wide{u"Breit"_s, {}};
    for (int i = 0; i < 200; ++i)
        wide.columns.push_back({u"Eine Spalte mit langem Namen %1"_s.arg(i), i % 20 == 0 ? Type::Memo : Type::Byte});
    for (int i = 0; i < 30; ++i) {
        if (i != 19) // no indexes of memos
            wide.indexes.push_back({.name = u"Index %1"_s.arg(i), .columns = {{i + 21}, {i + 61, true}}});
    }
    qsizetype length = 0;
    for (int round = 0; round < 4; ++round) {
        database->createTable(wide);
        for (std::int64_t i = 0; i < 50; ++i)
            table(u"Breit"_s).insert({{{0, QString(5000, u'x')}, {21, i}}});
        EXPECT_EQ(file.faults(), QString());
        EXPECT_EQ(kindOf([&] { database->createTable(wide); }), Kind::AlreadyExists);
        database->dropTable(u"breit"_s);
        EXPECT_EQ(database->table(u"Breit"_s), nullptr);
        EXPECT_TRUE(round == 0 || file.content().size() == length);
        length = file.content().size();
    }
    EXPECT_TRUE(database->tableNames().isEmpty());
    EXPECT_EQ(kindOf([&] { database->dropTable(u"Breit"_s); }), Kind::NoSuchTable);
}

TEST_P(SchemaTest, AddsIndexesToTablesWithRows)
{
    database->createTable(simple(u"T"_s));
    for (int i = 0; i < 500; ++i)
        table(u"T"_s).insert({{{0, QString::number(i % 100)}, {1, std::int64_t{i}}}});
    database->createIndex(u"T"_s, {.name = u"eindeutig"_s, .columns = {{1, true}}, .unique = true});
    EXPECT_EQ(count(*table(u"T"_s).range({.upper = storage::Bound{{std::int64_t{490}}}})), 10U);
    const QByteArray before = file.content();
    const storage::Index second{.name = u"nicht eindeutig"_s, .columns = {{0}}, .unique = true};
    EXPECT_EQ(kindOf([&] { database->createIndex(u"T"_s, second); }), Kind::Duplicate);
    EXPECT_EQ(kindOf([&] { database->createIndex(u"T"_s, {u"EINDEUTIG"_s, {{0}}}); }), Kind::AlreadyExists);
    EXPECT_EQ(kindOf([&] { database->createIndex(u"X"_s, second); }), Kind::NoSuchTable);
    EXPECT_EQ(file.content(), before);
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
             t.columns[1] = {u"Lfd"_s, Type::Numeric, 29};
         },
         GetParam().jet4() ? Kind::OutOfRange : Kind::Unsupported},
        {"index without columns",
         [](auto &t) {
             t.indexes = {{u"i"_s, {}}};
         },
         Kind::OutOfRange},
    };
    const QByteArray before = file.content();
    for (const Row &row : rows) {
        storage::TableSchema schema = simple(u"T"_s);
        row.change(schema);
        EXPECT_EQ(kindOf([&] { database->createTable(schema); }), row.error) << row.name;
    }
    EXPECT_EQ(file.content(), before);
}

TEST_P(SchemaTest, CascadesAlongRelationships)
{
    makeFamily(true);
    rename(u"D9"_s);
    EXPECT_EQ(childrenOf(u"D1"_s), 0U);
    EXPECT_EQ(childrenOf(u"D9"_s), 40U);
    EXPECT_EQ(kindOf([&] { rename(u"d2"_s); }), Kind::Duplicate);
    table(u"Konten"_s).remove(parents[0]);
    EXPECT_EQ(childrenOf(u"D9"_s), 0U);
    EXPECT_EQ(childrenOf(u"D2"_s), 40U);
    database = file.open();
    const auto relationships = database->relationships();
    ASSERT_EQ(relationships.size(), 1U);
    EXPECT_EQ(relationships[0].foreignTable, u"Verbindungen"_s);
    EXPECT_TRUE(relationships[0].cascadeUpdates && relationships[0].cascadeDeletes && relationships[0].enforced);
}

TEST_P(SchemaTest, KeepsChildrenFromLosingTheirParent)
{
    makeFamily(false);
    storage::Table &konten = table(u"Konten"_s);
    const QByteArray before = file.content();
    EXPECT_EQ(kindOf([&] { konten.remove(parents[0]); }), Kind::ChildrenExist);
    EXPECT_EQ(kindOf([&] { rename(u"D9"_s); }), Kind::ChildrenExist);
    EXPECT_EQ(kindOf([&] {
                  table(u"Verbindungen"_s).insert({{{0, u"D3"_s}, {1, std::int64_t{1}}}});
              }),
              Kind::ParentMissing);
    EXPECT_EQ(kindOf([&] { database->dropTable(u"Konten"_s); }), Kind::Unsupported);
    EXPECT_EQ(file.content(), before);
    konten.update(parents[0], {{{0, u"d1"_s}, {2, u"klein"_s}}});
    EXPECT_EQ(childrenOf(u"D1"_s), 40U);

    storage::Relationship again{u"Zweite"_s, u"Konten"_s, {u"Lfd"_s}, u"Verbindungen"_s, {u"Lfd"_s}};
    EXPECT_EQ(kindOf([&] { database->createRelationship(again); }), Kind::NoSuchIndex);
    again.columns = again.foreignColumns = {u"Nr"_s};
    again.foreignTable = u"Konten"_s;
    database->createRelationship(again); // a table's relationship with itself
    EXPECT_EQ(database->relationships().size(), 2U);
}
