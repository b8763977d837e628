#include <QDate>

#include "RawTable.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::StorageError;
using storage::Type;
using storage::Value;

namespace {

using Write = CustomersTest;

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

TEST_F(Write, NewTableIsAFoxProFile)
{
    // clang-format off
    struct Row { storage::Column column; Value value; RawField field; QByteArray stored; };
    const Row rows[] = {
        {{u"text"_s, Type::Text, 254}, u"Käse"_s, {"TEXT", 'C', 254}, "K\xE4se"},
        {{u"ZAHL"_s, Type::Numeric, 10, 2}, -1234567.89, {"ZAHL", 'N', 12, 2}, " -1234567.89"},
        {{u"GANZ"_s, Type::Long}, std::int64_t(-2147483648), {"GANZ", 'N', 11}, "-2147483648"},
        {{u"BETRAG"_s, Type::Currency}, storage::Currency{12345}, {"BETRAG", 'N', 20, 4}, "              1.2345"},
        {{u"DOPPELT"_s, Type::Double}, 0.5, {"DOPPELT", 'N', 20, 5}, "             0.50000"},
        {{u"TAG"_s, Type::DateTime}, storage::DateTime{2}, {"TAG", 'D', 8}, "19000101"},
        {{u"JA"_s, Type::Boolean}, true, {"JA", 'L', 1}, "T"},
        {{u"MEMO_10_ZZ"_s, Type::Memo}, u"ab"_s, {"MEMO_10_ZZ", 'M', 10}, "         8"},
    };
    // clang-format on
    storage::TableSchema schema{u"neu"_s, {}};
    std::vector<Assignment> values;
    std::vector<RawField> fields;
    QByteArrayList record{" "};
    for (const Row &row : rows) {
        schema.columns.push_back(row.column);
        values.push_back({int(values.size()), row.value});
        fields.push_back(row.field);
        record += row.stored;
    }
    database->createTable(schema);
    EXPECT_EQ(database->table(u"NEU"_s)->insert(values), 1);
    EXPECT_EQ(rowsOf(*database->table(u"neu"_s)), QStringList{u"Käse|-1234567.89|-2147483648|1.2345|0.5|2|ja|ab"_s});

    QByteArray expected = rawTable(fields, {record}, 0xF5);
    expected.replace(1, 3, today());
    for (int i = 0, offset = 1; i < int(fields.size()); offset += fields[std::size_t(i++)].width)
        expected.replace(32 * (i + 1) + 12, 2, littleEndian(quint32(offset), 2)); // in the record, which FoxPro keeps
    EXPECT_EQ(folder.get(u"NEU.DBF"_s).toHex(' '), expected.toHex(' '));
    EXPECT_EQ(folder.get(u"NEU.FPT"_s), rawMemos({"ab"}));
}

TEST_F(Write, ChangesStandInTheFile)
{
    EXPECT_EQ(table->insert({{{0, u"Neu"_s}}}), 4);
    table->update(1, {{{1, 99.0}, {2, Value()}, {3, false}}});
    table->update(4, {{{2, storage::DateTime{1}}}});
    table->remove(3);
    for (const storage::RowId id : {0, 2, 3, 5}) {
        EXPECT_EQ(kindOf([&] { table->update(id, {{{0, u"x"_s}}}); }), StorageError::RowGone) << id;
        EXPECT_EQ(kindOf([&] { table->remove(id); }), StorageError::RowGone) << id;
    }
    EXPECT_EQ(rowsOf(*folder.open()->table(u"KUNDEN"_s)), (QStringList{u"Müller|99|-|nein|schön"_s, u"Neu|-|1|-|-"_s}));
    const QByteArray file = folder.get(u"KUNDEN.DBF"_s);
    EXPECT_EQ(file.mid(1, 7), today() + littleEndian(4, 4));
    EXPECT_EQ(file.size(), 32 + 5 * 32 + 1 + 4 * 36 + 1);
    EXPECT_TRUE(file.endsWith('\x1A'));
}

TEST_F(Write, MemosTakeTheirBlocksOrNewOnes)
{
    const auto memoOf = [&](storage::RowId id) { return table->row(id)->value(4); };
    const auto sizeAfter = [&](storage::RowId id, const QString &text) {
        table->update(id, {{{4, text}}});
        return folder.get(u"KUNDEN.FPT"_s).size();
    };
    EXPECT_EQ(sizeAfter(1, QString(56, u'a')), 512 + 64);
    EXPECT_EQ(sizeAfter(1, QString(57, u'b')), 512 + 3 * 64);
    EXPECT_EQ(sizeAfter(3, QString(1000, u'c')), 512 + 19 * 64);
    EXPECT_EQ(sizeAfter(1, QString(70, u'd')), 512 + 19 * 64);
    EXPECT_EQ(memoOf(1), Value(QString(70, u'd')));
    EXPECT_EQ(memoOf(3), Value(QString(1000, u'c')));
    EXPECT_EQ(folder.get(u"KUNDEN.FPT"_s).first(4), "\0\0\0\x1B"_ba);
    sizeAfter(3, u""_s);
    EXPECT_EQ(memoOf(3), Value());
}

TEST_F(Write, WhatIsRefusedChangesNothing)
{
    // clang-format off
    struct Row { std::vector<Assignment> values; StorageError::Kind kind; QString mention; };
    const Row rows[] = { // behind what would have been written
        {{{4, u"Memo"_s}, {0, u"Elf Zeichen"_s}}, StorageError::TooLong,      u"NAME"_s},
        {{{0, u"a"_s}, {4, u"☃"_s}},              StorageError::NotEncodable, u"Feld NOTIZ: Das Zeichen „☃“"_s},
    };
    // clang-format on
    const QByteArray before = filesOf(folder);
    for (const Row &row : rows) {
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

TEST_F(Write, IsUndoneUnlessCommitted)
{
    const auto work = [this] {
        table->update(1, {{{0, u"anders"_s}, {4, QString(500, u'x')}}});
        table->insert({{{0, u"eins"_s}, {4, u"Memo"_s}}});
        table->insert({{{0, u"zwei"_s}}});
        table->update(1, {{{4, u"kurz"_s}}});
        table->update(4, {{{0, u"EINS"_s}}});
        table->remove(3);
    };
    const QByteArray before = filesOf(folder);
    {
        const auto scope = database->beginWrite();
        work();
        EXPECT_EQ(rowsOf(*table).size(), 3);
    }
    EXPECT_EQ(filesOf(folder), before);
    {
        const auto scope = database->beginWrite();
        work();
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
