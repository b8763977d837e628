#include "RawTable.h"

using namespace Qt::StringLiterals;
using storage::StorageError;
using storage::Type;
using Table = CustomersTest;

TEST_F(Table, ShowsItsRecords)
{
    EXPECT_EQ(database->tableNames(), QStringList{u"KUNDEN"_s});
    EXPECT_EQ(rowsOf(*table), (QStringList{u"Müller|12.5|37316|ja|schön"_s, u"Grüße|-1|-|nein|-"_s}));
    EXPECT_EQ(table->rowEstimate(), 3);
    const auto walk = table->scan();
    EXPECT_TRUE(walk->next() && walk->rowId() == 1 && walk->next() && walk->rowId() == 3 && !walk->next());
    EXPECT_EQ(table->row(3)->rowId(), 3);
    EXPECT_EQ(table->row(3)->value(0), storage::Value(u"Grüße"_s));
    for (const storage::RowId id : {-1, 0, 2, 4})
        EXPECT_FALSE(table->row(id)) << id;

    const Type types[] = {Type::Text, Type::Double, Type::DateTime, Type::Boolean, Type::Memo};
    const auto &columns = table->schema().columns;
    EXPECT_TRUE(std::ranges::equal(columns, types, {}, &storage::Column::type));
    EXPECT_EQ(columns[0].size, 10);
    EXPECT_EQ(table->schema().find(u"notiz"_s), 4);

    QFile::remove(folder.path(u"KUNDEN.FPT"_s));
    const auto again = folder.open();
    const auto cursor = again->table(u"KUNDEN"_s)->row(1);
    EXPECT_EQ(cursor->value(0), storage::Value(u"Müller"_s)) << "without its memo file it still shows the rest";
    EXPECT_EQ(kindOf([&] { cursor->value(4); }, u"KUNDEN.fpt"_s), StorageError::Missing);
}

TEST(ATable, IsReadInItsCodePage)
{
    const std::pair<int, QString> rows[] = {{0x00, u"„"_s}, {0x03, u"„"_s}, {0x01, u"ä"_s}, {0x02, u"ä"_s}};
    for (const auto &[mark, text] : rows) {
        const Folder folder;
        folder.put(u"T.DBF"_s, rawTable({{"A", 'C', 1}}, {{" ", "\x84"}}, 0x03, mark));
        EXPECT_EQ(rowsOf(*folder.open()->table(u"T"_s)), QStringList{text}) << mark;
    }
}

TEST(ATable, OfOtherKindsIsRefused)
{
    // clang-format off
    struct Row { int version; int codepage; char fieldType; StorageError::Kind kind; QString mention; };
    const Row rows[] = {
        {0x30, 0x03, 'C', StorageError::NotThisFormat, u"Visual FoxPro"_s},
        {0x02, 0x03, 'C', StorageError::NotThisFormat, u"Kennbyte 02"_s},
        {0x43, 0x03, 'C', StorageError::NotThisFormat, u"Kennbyte 43"_s},
        {0x03, 0x03, 'G', StorageError::Unsupported,   u"A ist von der Art „G“"_s},
        {0x03, 0xC8, 'C', StorageError::Unsupported,   u"Zeichensatz"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        const Folder folder;
        folder.put(u"T.DBF"_s, rawTable({{"A", row.fieldType, 10}}, {}, row.version, row.codepage));
        EXPECT_EQ(kindOf([&] { folder.open()->table(u"T"_s); }, row.mention), row.kind) << qPrintable(row.mention);
    }
}

TEST(ATable, ReadsTheMemosOfDBase)
{
    const QByteArray dBase3 = QByteArray(512, '\0') + QByteArray(600, 'x') + "\x1A\x1A";
    const QByteArray dBase4 = QByteArray(20, '\0') + littleEndian(1024, 2) + QByteArray(1002, '\0') + "\xFF\xFF\x08"
        + '\0' + littleEndian(608, 4) + QByteArray(600, 'x');
    for (const auto &[version, memos] : {std::pair(0x83, dBase3), std::pair(0x8B, dBase4)}) {
        SCOPED_TRACE(version);
        const Folder folder;
        folder.put(u"T.DBF"_s,
                   rawTable({{"A", 'C', 1}, {"M", 'M', 10}}, {{" ", "a", "0000000001"}, {" ", "b"}}, version));
        folder.put(u"T.dbt"_s, memos);
        const auto database = folder.open();
        storage::Table *table = database->table(u"T"_s);
        EXPECT_EQ(rowsOf(*table), (QStringList{u"a|"_s + QString(600, u'x'), u"b|-"_s}));
        // Other fields and the emptying of a memo are no reason to refuse.
        table->update(2, {{{0, u"c"_s}, {1, storage::Value()}}});
        EXPECT_EQ(kindOf([&] { table->update(1, {{{0, u"d"_s}, {1, u"neu"_s}}}); }), StorageError::Unsupported);
        EXPECT_EQ(rowsOf(*table), (QStringList{u"a|"_s + QString(600, u'x'), u"c|-"_s}));
    }
}

TEST(ATable, IsWalkedAcrossBlocks)
{
    // Some 260 records of 1001 bytes fill a block; the last of each hundred is deleted.
    std::vector<QByteArrayList> records;
    QStringList rows;
    for (int i = 1; i <= 1000; ++i) {
        records.push_back({i % 100 == 0 ? "*" : " ", QByteArray::number(i)});
        if (i % 100 != 0)
            rows += u"%1|-|-|-"_s.arg(i);
    }
    const Folder folder;
    folder.put(u"T.DBF"_s, rawTable({{"A", 'C', 250}, {"B", 'C', 250}, {"C", 'C', 250}, {"D", 'C', 250}}, records));
    const auto database = folder.open();
    EXPECT_EQ(rowsOf(*database->table(u"T"_s)), rows);
    EXPECT_EQ(database->table(u"T"_s)->row(999)->value(0), storage::Value(u"999"_s));
}
