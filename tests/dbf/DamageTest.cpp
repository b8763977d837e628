#include <random>

#include "RawTable.h"
#include "platform/dbf/Table.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace {

constexpr int headerLength = 32 + 5 * 32 + 1;

/// Reads all there is, through the records' own addresses, too.
void readAll(const Folder &folder)
{
    const auto database = folder.open();
    storage::Table *table = database->table(u"KUNDEN"_s);
    rowsOf(*table);
    table->row(1);
}

} // namespace

TEST(Damage, IsReportedWithItsPlace)
{
    const int first = headerLength; // record 1
    // clang-format off
    struct Row { int at; QByteArray bytes; QString mention; };
    const Row table[] = {
        {8, littleEndian(0, 2), u"Kopf"_s},             {8, littleEndian(60000, 2), u"Kopf"_s},
        {8, littleEndian(100, 2), u"Feldliste"_s},      {10, littleEndian(37, 2), u"36 Bytes lang, ein Satz aber 37"_s},
        {10, littleEndian(0, 2), u"Satz"_s},            {4, littleEndian(4, 4), u"4 Sätze"_s},
        {headerLength - 1, " ", u"Feldliste"_s},        {4, "\xFF\xFF\xFF\xFF", u"4294967295 Sätze"_s},
        {0, "\x03", u"Memodatei"_s}, // but there are memos
        // fields: none, widths and decimals, names
        {32, "\x0D", u"kein Feld"_s},                   {32 + 16, littleEndian(0, 1), u"Feld NAME"_s},
        {32 + 16, littleEndian(11, 1), u"37 Bytes lang"_s}, {64 + 17, littleEndian(6, 1), u"Feld ZAHL"_s},
        {32, QByteArray(1, '\0'), u"Feld 1"_s},         {64, "NAME", u"zweimal"_s},
        // the first record
        {first, "x", u"Satz 1"_s},                      {first + 12, "z", u"Satz 1: Der Inhalt von Feld ZAHL"_s},
        {first + 17, "20021301", u"Feld TAG"_s},        {first + 25, "Q", u"Feld JA"_s},
        {first + 35, "?", u"Feld NOTIZ"_s},             {first + 26, "         9", u"Block 9"_s},
        {first + 35, "7", u"Block 7"_s},                {first + 26, "9999999999", u"Block 9999999999"_s},
    };
    const Row memos[] = {
        {6, QByteArray(2, '\0'), u"Blockgröße"_s},      {512 + 4, "\0\0\0\x39"_ba, u"57 Bytes"_s},
        {512, "\x20", u"kein Memo"_s},                  {512 + 4, "\xFF\xFF\xFF\xFF", u"4294967295 Bytes"_s},
    };
    // clang-format on
    const Folder folder;
    putCustomers(folder);
    const auto check = [&](const QString &file, const Row &row) {
        SCOPED_TRACE(qPrintable(row.mention));
        const QByteArray whole = folder.get(file);
        folder.put(file, QByteArray(whole).replace(row.at, row.bytes.size(), row.bytes));
        EXPECT_EQ(kindOf([&] { readAll(folder); }, row.mention), StorageError::Damaged);
        EXPECT_EQ(kindOf([&] { readAll(folder); }, folder.path(u"KUNDEN."_s)), StorageError::Damaged);
        folder.put(file, whole);
    };
    for (const Row &row : table)
        check(u"KUNDEN.DBF"_s, row);
    for (const Row &row : memos)
        check(u"KUNDEN.FPT"_s, row);
}

TEST(Damage, NoCutFileLosesRowsSilently)
{
    const Folder folder;
    putCustomers(folder);
    for (const QString &file : {u"KUNDEN.DBF"_s, u"KUNDEN.FPT"_s}) {
        const QByteArray whole = folder.get(file);
        const qsizetype needed = file.endsWith(u"DBF"_s) ? whole.size() - 1 : 512 + 8 + 5;
        for (qsizetype size = 0; size < needed; ++size) {
            folder.put(file, whole.first(size));
            ASSERT_EQ(kindOf([&] { readAll(folder); }, file), StorageError::Damaged) << size;
        }
        folder.put(file, whole.first(needed));
        EXPECT_EQ(kindOf([&] { readAll(folder); }), std::nullopt) << "only the mark of the end is missing";
        folder.put(file, whole);
    }
}

/// The writer ended between adding records and counting them.
TEST(Damage, NoHeadThatCountsTooFewHidesOrLosesRecords)
{
    constexpr int length = 11;
    constexpr int head = 32 + 32 + 1;
    std::vector<QByteArrayList> records;
    for (int i = 1; i <= 60; ++i)
        records.push_back({i == 59 ? "*" : " ", QByteArray::number(i)});
    const QByteArray whole = rawTable({{"NAME", 'C', length - 1}}, records);
    const QString abgeschnitten = u"Hinter Satz %1 steht der Anfang eines weiteren, 4 von 11"_s;
    // clang-format off
    struct Row { const char *name; qsizetype size; QByteArray behind; int rows; QStringList faults; };
    const Row rows[] = {
        {"with the end's mark",     head + 60 * length, "\x1A",      59, {u"57 Sätze, die Datei enthält 60"_s}},
        {"without",                 head + 60 * length, {},          59, {u"57 Sätze, die Datei enthält 60"_s}},
        {"the last one cut off",    head + 60 * length, " neu",      59, {u"enthält 60"_s, abgeschnitten.arg(60)}},
        {"only the first, cut off", head + 57 * length, "*weg",      57, {abgeschnitten.arg(57)}},
        {"records of old times",    head + 57 * length, "\x1A" + QByteArray(2 * length, ' '), 57, {}},
        {"room for more",           head + 57 * length, QByteArray(512, '\0'), 57, {}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const Folder folder;
        folder.put(u"T.DBF"_s, whole.first(4) + littleEndian(57, 4) + whole.sliced(8, row.size - 8) + row.behind);
        const auto database = folder.open();
        auto &table = dynamic_cast<dbf::Table &>(*database->table(u"T"_s));
        QStringList expected = rowsOf(table);
        EXPECT_EQ(expected.size(), row.rows);
        const QStringList faults = table.headFaults();
        ASSERT_EQ(faults.size(), row.faults.size());
        for (qsizetype i = 0; i < faults.size(); ++i)
            EXPECT_TRUE(faults[i].contains(row.faults[i])) << qPrintable(faults[i]);

        table.insert({{{0, u"neu"_s}}});
        EXPECT_EQ(rowsOf(table), expected << u"neu"_s);
        EXPECT_EQ(table.headFaults(), QStringList());
        const qsizetype end = row.size + length;
        EXPECT_EQ(folder.get(u"T.DBF"_s).sliced(end - length, length + 1),
                  QByteArray(" neu").leftJustified(length) + '\x1A');
    }
}

TEST(Damage, OfDBaseMemosIsReported)
{
    const QByteArray head4 = QByteArray(20, '\0') + littleEndian(512, 2) + QByteArray(490, '\0');
    // clang-format off
    struct Row { const char *name; int version; QByteArray memos; };
    const Row rows[] = {
        {"no end",            0x83, QByteArray(2000, 'x')},
        {"too short for one", 0x83, QByteArray(512, '\0')},
        {"no mark",           0x8B, head4 + QByteArray(100, 'x')},
        {"cut mark",          0x8B, head4 + "\xFF\xFF"},
        {"longer than file",  0x8B, head4 + QByteArray("\xFF\xFF\x08\0", 4) + littleEndian(500, 4) + "abc"},
        {"shorter than mark", 0x8B, head4 + QByteArray("\xFF\xFF\x08\0", 4) + littleEndian(7, 4) + "abc"},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const Folder folder;
        folder.put(u"KUNDEN.DBF"_s, rawTable({{"M", 'M', 10}}, {{" ", "         1"}}, row.version));
        folder.put(u"KUNDEN.DBT"_s, row.memos);
        EXPECT_EQ(kindOf([&] { readAll(folder); }, u"KUNDEN.DBT"_s), StorageError::Damaged);
    }
}

TEST(Damage, AnywhereIsSurvived)
{
    const Folder folder;
    putCustomers(folder);
    std::mt19937 random(4711); // the same damages in every run
    for (int round = 0; round < 2000; ++round) {
        const QString file = round % 3 == 0 ? u"KUNDEN.FPT"_s : u"KUNDEN.DBF"_s;
        const QByteArray whole = folder.get(file);
        QByteArray bytes = whole;
        for (int i = 0; i <= round % 4; ++i)
            bytes[qsizetype(random() % std::uint32_t(bytes.size()))] = static_cast<char>(random());
        folder.put(file, bytes);
        // Reading or refusing are both fine; anything but a StorageError ends the test.
        kindOf([&] { readAll(folder); });
        kindOf([&] { folder.open()->table(u"KUNDEN"_s)->update(1, {{{0, u"x"_s}, {4, QString(99, u'm')}}}); });
        putCustomers(folder);
    }
}
