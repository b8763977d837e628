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
        ->createTable({u"t"_s, {{u"a"_s, Type::Boolean}}});
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
    const auto create = [&](const QString &name, const Column &column) {
        return kindOf([&] { database->createTable({name, {column}}); });
    };
    const Column memo{u"M"_s, Type::Memo};
    EXPECT_EQ(create(u"Alles"_s, memo), std::nullopt);
    for (const Column &column :
         {Column{u"ElfZeichen1"_s, Type::Memo}, Column{u"Größe"_s, Type::Memo}, Column{u"A"_s, Type::Text, 255},
          Column{u"A"_s, Type::Guid}, Column{u"A"_s, Type::Memo, 0, 0, true}})
        EXPECT_EQ(create(u"X"_s, column), StorageError::Unsupported) << qPrintable(column.name) << int(column.type);
    EXPECT_EQ(create(u"../X"_s, memo), StorageError::Unsupported);
    EXPECT_EQ(create(u"alles"_s, memo), StorageError::AlreadyExists);
    EXPECT_EQ(kindOf([&] { database->createIndex(u"ALLES"_s, {}); }), StorageError::Unsupported);
    {
        const auto scope = database->beginWrite();
        EXPECT_EQ(kindOf([&] { database->dropTable(u"Alles"_s); }), StorageError::Unsupported);
    }
    EXPECT_EQ(QDir(folder.path()).entryList({u"ALLES*"_s}), (QStringList{u"ALLES.DBF"_s, u"ALLES.FPT"_s}));
    database->dropTable(u"Alles"_s);
    EXPECT_EQ(kindOf([&] { database->dropTable(u"Alles"_s); }), StorageError::NoSuchTable);
    database.reset();
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}
