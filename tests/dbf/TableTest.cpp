#include "RawTable.h"

using namespace Qt::StringLiterals;
using storage::StorageError;
using storage::Type;

TEST(Table, ShowsItsRecords)
{
    const Folder folder;
    putCustomers(folder);
    const auto database = folder.open();
    EXPECT_EQ(database->tableNames(), QStringList{u"KUNDEN"_s});
    storage::Table *table = database->table(u"Kunden"_s);
    ASSERT_TRUE(table);
    EXPECT_EQ(rowsOf(*table), (QStringList{u"Müller|12.5|37316|ja|schön"_s, u"Grüße|-1|-|nein|-"_s}));
    EXPECT_EQ(table->rowEstimate(), 3);
    EXPECT_EQ(table->row(3)->rowId(), 3);
    EXPECT_EQ(table->row(3)->value(0), storage::Value(u"Grüße"_s));
    for (const storage::RowId id : {-1, 0, 2, 4})
        EXPECT_FALSE(table->row(id)) << id;

    const auto &columns = table->schema().columns;
    const Type types[] = {Type::Text, Type::Double, Type::DateTime, Type::Boolean, Type::Memo};
    for (std::size_t i = 0; i < columns.size(); ++i)
        EXPECT_EQ(columns[i].type, types[i]) << columns[i].name.toStdString();
    EXPECT_EQ(columns[0].size, 10);
    EXPECT_EQ(table->schema().find(u"notiz"_s), 4);
}

TEST(Table, IsReadInItsCodePage)
{
    struct Row {
        int mark;
        std::optional<QString> text;
    };
    const Row rows[] = {{0x00, u"„"_s}, {0x03, u"„"_s}, {0x01, u"ä"_s}, {0x02, u"ä"_s}, {0xC8, std::nullopt}};
    for (const Row &row : rows) {
        SCOPED_TRACE(row.mark);
        const Folder folder;
        folder.put(u"T.DBF"_s, rawTable({{"A", 'C', 1}}, {{" ", "\x84"}}, 0x03, row.mark));
        const auto database = folder.open();
        if (row.text)
            EXPECT_EQ(rowsOf(*database->table(u"T"_s)), QStringList{*row.text});
        else
            EXPECT_EQ(kindOf([&] { database->table(u"T"_s); }, u"Zeichensatz"_s), StorageError::Unsupported);
    }
}

TEST(Table, OfOtherKindsIsRefused)
{
    // clang-format off
    struct Row { int version; char fieldType; StorageError::Kind kind; QString mention; };
    const Row rows[] = {
        {0x30, 'C', StorageError::NotThisFormat, u"Visual FoxPro"_s},
        {0x02, 'C', StorageError::NotThisFormat, u"Kennbyte 02"_s},
        {0x43, 'C', StorageError::NotThisFormat, u"Kennbyte 43"_s},
        {0x03, 'G', StorageError::Unsupported,   u"A ist von der Art „G“"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.mention.toStdString());
        const Folder folder;
        folder.put(u"T.DBF"_s, rawTable({{"A", row.fieldType, 10}}, {}, row.version));
        EXPECT_EQ(kindOf([&] { folder.open()->table(u"T"_s); }, row.mention), row.kind);
    }
}

TEST(Table, ReadsTheMemosOfDBase)
{
    const QByteArray dBase3 = QByteArray(512, '\0') + QByteArray(600, 'x') + "\x1A\x1A";
    const QByteArray dBase4 = QByteArray(20, '\0') + littleEndian(1024, 2) + QByteArray(1002, '\0') + "\xFF\xFF\x08"
        + '\0' + littleEndian(608, 4) + QByteArray(600, 'x');
    struct Row {
        int version;
        QByteArray memos;
    };
    for (const Row &row : {Row{0x83, dBase3}, Row{0x8B, dBase4}}) {
        SCOPED_TRACE(row.version);
        const Folder folder;
        folder.put(u"T.DBF"_s,
                   rawTable({{"A", 'C', 1}, {"M", 'M', 10}}, {{" ", "a", "0000000001"}, {" ", "b"}}, row.version));
        folder.put(u"T.dbt"_s, row.memos);
        const auto database = folder.open();
        storage::Table *table = database->table(u"T"_s);
        EXPECT_EQ(rowsOf(*table), (QStringList{u"a|"_s + QString(600, u'x'), u"b|-"_s}));
        // Other fields and the emptying of a memo are no reason to refuse.
        table->update(2, {{{0, u"c"_s}, {1, storage::Value()}}});
        EXPECT_EQ(kindOf([&] { table->update(1, {{{0, u"d"_s}, {1, u"neu"_s}}}); }), StorageError::Unsupported);
        EXPECT_EQ(rowsOf(*table), (QStringList{u"a|"_s + QString(600, u'x'), u"c|-"_s}));
    }
}

TEST(Table, WithoutItsMemoFileStillShowsTheRest)
{
    const Folder folder;
    putCustomers(folder);
    QFile::remove(folder.path(u"KUNDEN.FPT"_s));
    const auto database = folder.open();
    const auto cursor = database->table(u"KUNDEN"_s)->row(1);
    EXPECT_EQ(cursor->value(0), storage::Value(u"Müller"_s));
    EXPECT_EQ(kindOf([&] { cursor->value(4); }, u"KUNDEN.fpt"_s), StorageError::Missing);
}

TEST(Table, IsWalkedAcrossBlocks)
{
    // Some 260 records of 1001 bytes fill a block; the last of each hundred is deleted.
    std::vector<QByteArrayList> records;
    for (int i = 1; i <= 1000; ++i)
        records.push_back({i % 100 == 0 ? "*" : " ", QByteArray::number(i)});
    const Folder folder;
    folder.put(u"T.DBF"_s, rawTable({{"A", 'C', 250}, {"B", 'C', 250}, {"C", 'C', 250}, {"D", 'C', 250}}, records));
    const auto database = folder.open();
    const auto cursor = database->table(u"T"_s)->scan();
    for (int i = 1; i <= 1000; ++i) {
        if (i % 100 == 0)
            continue;
        ASSERT_TRUE(cursor->next());
        ASSERT_EQ(cursor->rowId(), i);
        ASSERT_EQ(cursor->value(0), storage::Value(QString::number(i)));
    }
    EXPECT_FALSE(cursor->next());
}
