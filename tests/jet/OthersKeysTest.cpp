// Files in which another program has made the keys of texts with "ß": every row is found by what it says.
#include <algorithm>

#include "platform/jet/Catalog.h"
#include "platform/jet/IndexCursor.h"
#include "platform/jet/TableDefFile.h"
#include "platform/jet/TextKey.h"
#include "platform/jet/Verifier.h"
#include "tests/jet/JetFileTest.h"
#include "tests/jet/OthersKeys.h"

using namespace Qt::StringLiterals;
using storage::Bound;
using storage::Type;
using storage::Value;
using Kind = storage::StorageError::Kind;

namespace {

class OthersKeys : public testing::TestWithParam<FileKind>
{
protected:
    void create(std::vector<storage::Index> indexes, const QStringList &names)
    {
        const auto database = file.open();
        const auto scope = database->beginWrite();
        database->createTable({.name = u"T"_s,
                               .columns = {{.name = u"Name"_s, .size = 60}, {.name = u"Nr"_s, .type = Type::Long}},
                               .indexes = std::move(indexes)});
        for (const QString &name : names)
            insert(*database, name);
        scope->commit();
    }
    static void insert(storage::Database &database, const QString &name)
    {
        database.table(u"T"_s)->insert({{{0, name}, {1, std::int64_t{1}}}});
    }
    int order(const QString &left, const QString &right) const { return jet::compareTexts(file.jet4(), left, right); }
    jet::VerifyReport report() const
    {
        jet::PageFile pages(storage::systemFiles(), {file.path(), {}, true});
        return jet::verify(pages);
    }

    struct File : TestFile {
        using TestFile::TestFile;
        bool jet4() const { return GetParam().jet4(); }
    };
    const File file{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Files, OthersKeys, testing::ValuesIn(plainKinds), testing::PrintToStringParamName());

const storage::Index unique{.name = u"iName"_s, .columns = {{0}}, .unique = true};

QStringList namesIn(storage::Cursor &cursor)
{
    QStringList names;
    while (cursor.next())
        names += std::get<QString>(cursor.value(0));
    return names;
}

const QStringList names{u"Großmärkte"_s, u"Großmàrkte"_s,  u"Grossmärkte"_s, u"GROSSMÀRKTE"_s,   u"Großmärkter"_s,
                        u"Großmarkte"_s, u"Grossmarkte"_s, u"Grosz"_s,       u"Bäckerei ßä é"_s, u"Bäckerei ssä é"_s,
                        u"æö"_s,         u"aëo"_s,         u"Nuß-Öl"_s,      u"Nuss-Öl"_s,       u"Zoë"_s};

} // namespace

TEST_P(OthersKeys, FindAndSortRowsByTheirValues)
{
    create({{.name = u"1"_s, .columns = {{0}, {1}}},
            {.name = u"2"_s, .columns = {{0, true}}},
            {.name = u"3"_s, .columns = {{1}, {0}}}},
           names);
    EXPECT_GE(writeOthersKeys(file.path()), 15U);
    EXPECT_TRUE(report().faults.empty());
    EXPECT_FALSE(report().notes.empty());
    const auto database = file.open(true);
    storage::Table &table = *database->table(u"T"_s);
    for (const int index : {0, 1, 2}) {
        for (const bool backwards : {false, true}) {
            const bool falls = (index == 1) != backwards;
            const auto isInOrder
                = [&](const QString &a, const QString &b) { return falls ? order(a, b) >= 0 : order(a, b) <= 0; };
            const QStringList all = namesIn(*table.range({.index = index, .backwards = backwards}));
            EXPECT_EQ(all.size(), names.size());
            EXPECT_TRUE(std::ranges::adjacent_find(all, std::not_fn(isInOrder)) == all.end())
                << qPrintable(all.join(u'|'));
            for (const QString &name : names) {
                SCOPED_TRACE(qPrintable(u"%1 %2 %3"_s.arg(name).arg(index).arg(backwards)));
                Bound end{index == 2 ? std::vector<Value>{std::int64_t{1}, name} : std::vector<Value>{name}};
                const auto foundBy = [&](const storage::KeyRange &range, auto isWanted) {
                    QStringList found = namesIn(*table.range(range));
                    EXPECT_TRUE(std::ranges::adjacent_find(found, std::not_fn(isInOrder)) == found.end());
                    return std::ranges::count_if(found, isWanted);
                };
                const auto equals = [&](const QString &other) { return order(other, name) == 0; };
                const auto isLess = [&](const QString &other) { return order(other, name) < 0; };
                EXPECT_EQ(foundBy({index, end, end, backwards}, equals), std::ranges::count_if(names, equals));
                end.inclusive = false;
                const storage::KeyRange below{index, index == 1 ? std::optional(end) : std::nullopt,
                                              index == 1 ? std::nullopt : std::optional(end), backwards};
                EXPECT_EQ(foundBy(below, isLess), std::ranges::count_if(names, isLess));
            }
        }
    }
}

TEST_P(OthersKeys, GoOnBehindTheLastRowWhenAnotherProgramHasWritten)
{
    create({{.name = u"iName"_s, .columns = {{0}}}}, names);
    writeOthersKeys(file.path());
    const auto reader = file.open(true);
    const auto writer = file.open();
    for (const bool backwards : {false, true}) {
        const auto cursor = reader->table(u"T"_s)->range({.index = 0, .backwards = backwards});
        QStringList seen;
        while (cursor->next()) {
            seen += std::get<QString>(cursor->value(0));
            insert(*writer, backwards ? u"zz"_s : u"aa"_s); // where the walk has been
        }
        QStringList sorted = seen;
        std::ranges::stable_sort(
            sorted, [&](const QString &a, const QString &b) { return backwards ? order(a, b) > 0 : order(a, b) < 0; });
        EXPECT_EQ(seen, sorted);
        EXPECT_EQ(std::ranges::count_if(seen, [](const QString &name) { return names.contains(name); }), names.size());
    }
}

TEST_P(OthersKeys, DoNotLetAValueInTwice)
{
    create({unique}, {u"Großmärkte"_s, u"æö"_s, u"Grossmarkt"_s});
    EXPECT_EQ(writeOthersKeys(file.path()), 2U);
    const auto database = file.open();
    storage::Table &table = *database->table(u"T"_s);
    for (const QString &taken : {u"Großmärkte"_s, u"GROSSMÄRKTE"_s, u"Grossmarkt"_s})
        EXPECT_EQ(kindOf([&] { insert(*database, taken); }), Kind::Duplicate) << qPrintable(taken);
    insert(*database, u"aëo"_s); // of which we make the key that stands for "æö"
    insert(*database, u"Grossmarkte"_s);
    const auto rename = [&table](const QString &from, const QString &to) {
        const auto row = table.scan();
        while (row->next() && std::get<QString>(row->value(0)) != from) { }
        table.update(row->rowId(), {{{0, to}}});
    };
    EXPECT_EQ(kindOf([&] { rename(u"Grossmarkte"_s, u"grossmärkte"_s); }), Kind::Duplicate);
    rename(u"Großmärkte"_s, u"GROSSMÄRKTE"_s); // its own value
    EXPECT_TRUE(report().faults.empty());
}

TEST_P(OthersKeys, HideNoPairFromTheCheck)
{
    create({{.name = u"iName"_s, .columns = {{0}}}}, {u"Großmärkte"_s, u"Grossmàrkte"_s});
    writeOthersKeys(file.path());
    insert(*file.open(), u"GROSSMÄRKTE"_s);
    EXPECT_TRUE(report().faults.empty());
    {
        jet::PageFile pages(storage::systemFiles(), {file.path()});
        const jet::TextCodec codec = pages.isJet4() ? jet::TextCodec::jet4() : jet::TextCodec::jet3(1252);
        jet::PageScope scope(pages);
        const auto entries = jet::Catalog(pages, codec).entries();
        jet::TableDef def
            = jet::readTableDef(pages, codec, *std::ranges::find(entries, u"T"_s, &jet::CatalogEntry::name));
        def.indexes.front().flags |= jet::IndexDef::Unique;
        jet::writeTableDef(pages, codec, def);
        scope.commit();
    }
    ASSERT_EQ(report().faults.size(), 1U);
    EXPECT_TRUE(report().faults.front().contains(u"ist doppelt"_s)) << qPrintable(report().faults.front());
}

TEST_P(OthersKeys, KeepParentsAndChildrenTogether)
{
    create({unique}, {u"Großmärkte"_s});
    const auto makeChild = [](storage::Database &database, const QString &name) {
        database.createTable({.name = name, .columns = {{.name = u"Ref"_s, .size = 60}}});
        database.table(name)->insert({{{0, u"GROSSMÄRKTE"_s}}});
    };
    const auto relate = [](storage::Database &database, const QString &child) {
        database.createRelationship({.name = u"r"_s + child,
                                     .table = u"T"_s,
                                     .columns = {u"Name"_s},
                                     .foreignTable = child,
                                     .foreignColumns = {u"Ref"_s},
                                     .cascadeDeletes = true});
    };
    {
        const auto database = file.open();
        makeChild(*database, u"C1"_s);
        relate(*database, u"C1"_s);
    }
    EXPECT_EQ(writeOthersKeys(file.path()), 1U);
    const auto database = file.open();
    makeChild(*database, u"C2"_s);
    relate(*database, u"C2"_s);
    for (const QString &child : {u"C1"_s, u"C2"_s})
        database->table(child)->insert({{{0, u"Grossmärkte"_s}}});
    EXPECT_EQ(kindOf([&] { database->table(u"C1"_s)->insert({{{0, u"Großmàrkte"_s}}}); }), Kind::ParentMissing);
    EXPECT_TRUE(report().faults.empty());
    const auto parent = database->table(u"T"_s)->scan();
    ASSERT_TRUE(parent->next());
    database->table(u"T"_s)->remove(parent->rowId());
    for (const QString &child : {u"C1"_s, u"C2"_s})
        EXPECT_EQ(count(*database->table(child)->scan()), 0U);
}
