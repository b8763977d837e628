#include <QDate>

#include "RawTable.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::StorageError;
using storage::Value;

namespace {

QByteArray filesOf(const Folder &folder)
{
    return folder.get(u"KUNDEN.DBF"_s) + folder.get(u"KUNDEN.FPT"_s);
}

QByteArray today()
{
    const QDate date = QDate::currentDate();
    return littleEndian(quint32(date.year() - 1900 + 256 * date.month() + 65536 * date.day()), 3);
}

} // namespace

TEST(Write, NewTableIsAFoxProFile)
{
    const Folder folder;
    const auto database = folder.open();
    const std::vector<storage::Column> columns{{.name = u"name"_s, .type = storage::Type::Text, .size = 5},
                                               {.name = u"NOTIZ"_s, .type = storage::Type::Memo}};
    database->createTable({.name = u"neu"_s, .columns = columns});
    storage::Table *table = database->table(u"NEU"_s);
    EXPECT_EQ(table->insert({{{0, u"Käse"_s}, {1, u"ab"_s}}}), 1);

    QByteArray expected = rawTable({{"NAME", 'C', 5}, {"NOTIZ", 'M', 10}}, {{" ", "K\xE4se", "         8"}}, 0xF5);
    expected.replace(1, 3, today());
    expected[32 + 12] = 1; // the fields' offsets in the record, which FoxPro keeps
    expected[64 + 12] = 6;
    EXPECT_EQ(folder.get(u"NEU.DBF"_s).toHex(' '), expected.toHex(' '));
    EXPECT_EQ(folder.get(u"NEU.FPT"_s), rawMemos({"ab"}));
}

TEST(Write, ChangesStandInTheFile)
{
    const Folder folder;
    putCustomers(folder);
    {
        const auto database = folder.open();
        storage::Table *table = database->table(u"KUNDEN"_s);
        EXPECT_EQ(table->insert({{{0, u"Neu"_s}}}), 4);
        table->update(1, {{{1, 99.0}, {2, Value()}, {3, false}}});
        table->update(4, {{{2, storage::DateTime{1}}}});
        table->remove(3);
        for (const storage::RowId id : {0, 2, 3, 5}) {
            EXPECT_EQ(kindOf([&] { table->update(id, {{{0, u"x"_s}}}); }), StorageError::RowGone) << id;
            EXPECT_EQ(kindOf([&] { table->remove(id); }), StorageError::RowGone) << id;
        }
    }
    EXPECT_EQ(rowsOf(*folder.open()->table(u"KUNDEN"_s)), (QStringList{u"Müller|99|-|nein|schön"_s, u"Neu|-|1|-|-"_s}));
    const QByteArray file = folder.get(u"KUNDEN.DBF"_s);
    EXPECT_EQ(file.mid(1, 7), today() + littleEndian(4, 4));
    EXPECT_EQ(file.size(), 32 + 5 * 32 + 1 + 4 * 36 + 1);
    EXPECT_TRUE(file.endsWith('\x1A'));
}

TEST(Write, MemosTakeTheirBlocksOrNewOnes)
{
    const Folder folder;
    putCustomers(folder);
    const auto database = folder.open();
    storage::Table *table = database->table(u"KUNDEN"_s);
    const auto memoOf = [&](storage::RowId id) { return std::get<QString>(table->row(id)->value(4)); };
    const auto sizeAfter = [&](storage::RowId id, const Value &text) {
        table->update(id, {{{4, text}}});
        return folder.get(u"KUNDEN.FPT"_s).size();
    };
    EXPECT_EQ(sizeAfter(1, QString(56, u'a')), 512 + 64);
    EXPECT_EQ(sizeAfter(1, QString(57, u'b')), 512 + 3 * 64);
    EXPECT_EQ(sizeAfter(3, QString(1000, u'c')), 512 + 19 * 64);
    EXPECT_EQ(sizeAfter(1, QString(70, u'd')), 512 + 19 * 64);
    EXPECT_EQ(memoOf(1), QString(70, u'd'));
    EXPECT_EQ(memoOf(3), QString(1000, u'c'));
    EXPECT_EQ(folder.get(u"KUNDEN.FPT"_s).first(4), "\0\0\0\x1B"_ba);
    sizeAfter(3, u""_s);
    EXPECT_EQ(table->row(3)->value(4), Value());
}

TEST(Write, WhatIsRefusedChangesNothing)
{
    // clang-format off
    struct Row { const char *name; std::vector<Assignment> values; StorageError::Kind kind; QString mention; };
    const Row rows[] = {
        {"too long",          {{4, u"Memo"_s}, {0, u"Elf Zeichen"_s}}, StorageError::TooLong,      u"NAME"_s},
        {"too large",         {{1, 12345.0}},                         StorageError::OutOfRange,   u"ZAHL"_s},
        {"no such letter",    {{0, u"a☃"_s}},                         StorageError::NotEncodable, u"Feld NAME: Das Zeichen „☃“"_s},
        {"nor in the memo",   {{0, u"a"_s}, {4, u"☃"_s}},             StorageError::NotEncodable, u"NOTIZ"_s},
        {"text for a number", {{1, u"1"_s}},                          StorageError::WrongType,    u"ZAHL"_s},
    };
    // clang-format on
    const Folder folder;
    putCustomers(folder);
    const QByteArray before = filesOf(folder);
    const auto database = folder.open();
    storage::Table *table = database->table(u"KUNDEN"_s);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(kindOf([&] { table->insert(row.values); }, row.mention), row.kind);
        EXPECT_EQ(kindOf([&] { table->update(1, row.values); }, row.mention), row.kind);
        EXPECT_EQ(filesOf(folder), before);
    }
    const auto reading = folder.open(true);
    EXPECT_EQ(kindOf([&] { reading->table(u"KUNDEN"_s)->remove(1); }), StorageError::ReadOnly);
    EXPECT_EQ(kindOf([&] { reading->dropTable(u"KUNDEN"_s); }), StorageError::ReadOnly);

    QByteArray indexed = folder.get(u"KUNDEN.DBF"_s);
    indexed[28] = 1;
    folder.put(u"KUNDEN.DBF"_s, indexed);
    folder.put(u"Kunden.cdx"_s, "index");
    EXPECT_EQ(kindOf([&] { table->insert({{{0, u"a"_s}}}); }, u"Kunden.cdx"_s), StorageError::Unsupported);
    EXPECT_EQ(kindOf([&] { table->remove(1); }, u"Kunden.cdx"_s), StorageError::Unsupported);
    EXPECT_EQ(folder.get(u"KUNDEN.DBF"_s), indexed);
    EXPECT_EQ(rowsOf(*table).size(), 2);
}

TEST(Write, IsUndoneUnlessCommitted)
{
    const auto work = [](storage::Table &table) {
        table.update(1, {{{0, u"anders"_s}, {4, QString(500, u'x')}}});
        table.insert({{{0, u"eins"_s}, {4, u"Memo"_s}}});
        table.insert({{{0, u"zwei"_s}}});
        table.update(1, {{{4, u"kurz"_s}}});
        table.update(4, {{{0, u"EINS"_s}}});
        table.remove(3);
    };
    const Folder folder;
    putCustomers(folder);
    const QByteArray before = filesOf(folder);
    const auto database = folder.open();
    storage::Table *table = database->table(u"KUNDEN"_s);
    {
        const auto scope = database->beginWrite();
        work(*table);
        EXPECT_EQ(rowsOf(*table).size(), 3);
    }
    EXPECT_EQ(filesOf(folder), before);
    {
        const auto scope = database->beginWrite();
        work(*table);
        // A statement that fails takes nothing else along: here the memo file is damaged behind its back.
        const QByteArray memos = folder.get(u"KUNDEN.FPT"_s);
        folder.put(u"KUNDEN.FPT"_s, memos.first(6) + QByteArray(2, '\0') + memos.sliced(8));
        EXPECT_EQ(kindOf([&] { table->insert({{{0, u"drei"_s}, {4, u"Memo"_s}}}); }), StorageError::Damaged);
        folder.put(u"KUNDEN.FPT"_s, memos);
        scope->commit();
    }
    EXPECT_EQ(rowsOf(*folder.open()->table(u"KUNDEN"_s)),
              (QStringList{u"anders|12.5|37316|ja|kurz"_s, u"EINS|-|-|-|Memo"_s, u"zwei|-|-|-|-"_s}));
}
