#include <QDir>

#include "RawTable.h"

using namespace Qt::StringLiterals;
using storage::Column;
using storage::StorageError;
using storage::Type;

TEST(Driver, TakesFolders)
{
    dbf::DbfDriver driver;
    const Folder folder;
    folder.put(u"Datei"_s, "x");
    EXPECT_EQ(kindOf([&] { driver.open({.path = folder.path(u"nirgends"_s)}); }, u"nirgends"_s), StorageError::Missing);
    EXPECT_EQ(kindOf([&] { driver.open({.path = folder.path(u"Datei"_s)}); }), StorageError::NotThisFormat);
    EXPECT_EQ(kindOf([&] { driver.create({.path = folder.path()}, storage::FileVersion::Jet4); }),
              StorageError::AlreadyExists);
    driver.create({.path = folder.path(u"Neu"_s)}, storage::FileVersion::Jet4)
        ->createTable({.name = u"t"_s, .columns = {{.name = u"a"_s, .type = Type::Boolean}}});
    const QString written = folder.path().replace(u'/', u'\\') + u"\\NEU\\"_s;
    EXPECT_EQ(driver.open({.path = written})->tableNames(), QStringList{u"T"_s});
}

TEST(Database, FindsTablesWhateverTheirCase)
{
    const Folder folder;
    folder.put(u"Alpha.Dbf"_s, rawTable({{"A", 'C', 1}}, {}));
    folder.put(u"beta.DBF"_s, rawTable({{"A", 'C', 1}}, {}));
    folder.put(u"gamma.txt"_s, "x");
    QDir().mkdir(folder.path(u"delta.dbf"_s));
    const auto database = folder.open();
    EXPECT_EQ(database->tableNames(), (QStringList{u"Alpha"_s, u"beta"_s}));
    EXPECT_TRUE(database->table(u"ALPHA"_s));
    EXPECT_EQ(database->table(u"alpha"_s), database->table(u"Alpha"_s));
    const QString outside = u"../"_s + QDir(folder.path()).dirName() + u"/beta"_s;
    for (const QString &name : {u"gamma"_s, u"delta"_s, u""_s, outside})
        EXPECT_FALSE(database->table(name)) << name.toStdString();
    EXPECT_LT(database->compareTexts(u"Z", u"a"), 0);
}

TEST(Database, MakesAndDropsTables)
{
    const Folder folder;
    auto database = folder.open();
    const std::vector<Column> all{
        {.name = u"TEXT"_s, .type = Type::Text, .size = 254},
        {.name = u"ZAHL"_s, .type = Type::Numeric, .size = 10, .scale = 2},
        {.name = u"GANZ"_s, .type = Type::Long},
        {.name = u"BETRAG"_s, .type = Type::Currency},
        {.name = u"DOPPELT"_s, .type = Type::Double},
        {.name = u"TAG"_s, .type = Type::DateTime},
        {.name = u"JA"_s, .type = Type::Boolean},
        {.name = u"MEMO_10_ZZ"_s, .type = Type::Memo},
    };
    database->createTable({.name = u"Alles"_s, .columns = all});
    storage::Table *table = database->table(u"Alles"_s);
    table->insert({{{0, u"t"_s},
                    {1, -1234567.89},
                    {2, std::int64_t(-2147483648)},
                    {3, storage::Currency{12345}},
                    {4, 0.5},
                    {5, storage::DateTime{2}},
                    {6, true},
                    {7, u"m"_s}}});
    EXPECT_EQ(rowsOf(*table), QStringList{u"t|-1234567.89|-2147483648|1.2345|0.5|2|ja|m"_s});

    const auto create = [&](const Column &column) {
        return kindOf([&] { database->createTable({.name = u"X"_s, .columns = {column}}); });
    };
    EXPECT_EQ(create({.name = u"ElfZeichen1"_s, .type = Type::Memo}), StorageError::Unsupported);
    EXPECT_EQ(create({.name = u"Größe"_s, .type = Type::Memo}), StorageError::Unsupported);
    EXPECT_EQ(create({.name = u"A"_s, .type = Type::Text, .size = 255}), StorageError::Unsupported);
    EXPECT_EQ(create({.name = u"A"_s, .type = Type::Guid}), StorageError::Unsupported);
    EXPECT_EQ(create({.name = u"A"_s, .type = Type::Memo, .required = true}), StorageError::Unsupported);
    EXPECT_EQ(kindOf([&] { database->createTable({.name = u"../X"_s, .columns = all}); }), StorageError::Unsupported);
    EXPECT_EQ(kindOf([&] { database->createTable({.name = u"alles"_s, .columns = all}); }),
              StorageError::AlreadyExists);
    EXPECT_EQ(kindOf([&] { database->createIndex(u"ALLES"_s, {}); }), StorageError::Unsupported);
    {
        const auto scope = database->beginWrite();
        EXPECT_EQ(kindOf([&] { database->dropTable(u"Alles"_s); }), StorageError::Unsupported);
    }
    const QStringList both{u"ALLES.DBF"_s, u"ALLES.FPT"_s};
    EXPECT_EQ(QDir(folder.path()).entryList({u"ALLES*"_s}), both);
    database->dropTable(u"Alles"_s);
    EXPECT_EQ(kindOf([&] { database->dropTable(u"Alles"_s); }), StorageError::NoSuchTable);
    database.reset();
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}
