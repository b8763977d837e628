// Phone forms, the field list, the contact table by field numbers and the rules of a lookup.
#include <gmock/gmock.h>

#include <QDir>
#include <QTemporaryDir>

#include "acthost/ContactBook.h"
#include "acthost/Lookup.h"
#include "acthost/Options.h"
#include "acthost/PhoneForms.h"
#include "platform/dbf/DbfDriver.h"
#include "platform/errors/RunTimeError.h"
#include "tests/acthost/Samples.h"

using namespace Qt::StringLiterals;
using namespace acthost;

namespace {

template <typename Action> std::pair<int, QString> failureOf(const Action &action)
{
    try {
        action();
    } catch (const RunTimeError &error) {
        return {error.Number(), error.Description()};
    }
    return {0, {}};
}

TEST(PhoneForms, NumbersAreLaidOutByTheirMask)
{
    // clang-format off
    struct Row { const char *name; QString given, stored, automation; };
    const Row rows[] = {
        {"three groups",          u"[49]40 552 9950"_s,         u"49|40|@@@@AD5529950"_s,   u"[49] 40 552 9950"_s},
        {"blanks around",         u" [ 49 ]  40  552 9950 "_s,  u"49|40|@@@@AD5529950"_s,   u"[49] 40 552 9950"_s},
        {"two groups",            u"[49]171 3920001"_s,         u"49|171|@@@@@H3920001"_s,  u"[49] 171 3920001"_s},
        {"one group is the area", u"[49]405529950"_s,           u"49|405529950|@@@@@@"_s,   u"[49] 405529950"_s},
        {"extension",             u"[43]512 55667-0"_s,         u"43|512|@@@@@H55667-0"_s,  u"[43] 512 55667-0"_s},
        {"blank at the end",      u"49|40|@@@@HD55"_s,          u"49|40|@@@@HD55"_s,        u"[49] 40 55"_s},
        {"no country",            u"|441|@@@@@@5555"_s,         u"|441|@@@@@@5555"_s,       u"4415555"_s},
        {"empty country",         u"[] 40 1"_s,                 u"[] 40 1"_s,               u"[] 40 1"_s},
        {"country alone",         u"[49] "_s,                   u"[49] "_s,                 u"[49] "_s},
        {"bar inside",            u"[49]40|1"_s,                u"[49]40|1"_s,              u"[49]40|1"_s},
        {"plain",                 u"0441 / 55 55-0"_s,          u"0441 / 55 55-0"_s,        u"0441 / 55 55-0"_s},
        {"mask cut off",          u"49|40|@@@"_s,               u"49|40|@@@"_s,             u"49|40|@@@"_s},
        {"empty",                 u""_s,                        u""_s,                      u""_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(storedPhone(row.given), row.stored);
        EXPECT_EQ(automationPhone(row.stored), row.automation);
        const QString card = QString(row.automation).replace(u'[', u'+').remove(u']');
        EXPECT_EQ(cardPhone(row.stored), row.automation == row.stored ? row.stored : card);
    }
    const QString farBlank = u"[49]"_s + QString(34, u'1') + u" 2 3"_s;
    EXPECT_EQ(automationPhone(storedPhone(farBlank)), u"[49] "_s + QString(34, u'1') + u" 23"_s)
        << "the blank at place 37 is beyond the mask";
}

TEST(FieldListTest, FaultyListsAreRefusedByLine)
{
    // clang-format off
    struct Row { const char *name; QByteArray text; QString complaint; };
    const Row rows[] = {
        {"two parts",     "1|UNIQUE_ID",                      u"Zeile 1"_s},
        {"no number",     "1|UNIQUE_ID|x\nzwei|COMPANY|x",    u"Zeile 2"_s},
        {"beyond 16 bit", "1|UNIQUE_ID|x\n32768|COMPANY|x",   u"32768"_s},
        {"number twice",  "1|UNIQUE_ID|x\n1|COMPANY|x",       u"schon"_s},
        {"column twice",  "1|UNIQUE_ID|x\n2|unique_id|x",     u"schon"_s},
        {"no identifier", "2|COMPANY|Firma",                  u"Kennung"_s},
        {"not UTF-8",     "1|UNIQUE_ID|Stra\xdf" "e",         u"UTF-8"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const auto [number, text] = failureOf([&] { FieldList::parse(row.text); });
        EXPECT_EQ(number, 5);
        EXPECT_TRUE(text.contains(row.complaint)) << text.toStdString();
    }
    const QString folder = QDir::tempPath();
    EXPECT_EQ(failureOf([&] { FieldList::read(folder); }),
              std::pair(53, u"Die Feldliste kann nicht gelesen werden: %1 ist keine Datei"_s.arg(folder)));
}

TEST(OptionsTest, TheCommandLineIsChecked)
{
    const Options options = Options::parse({u"--hinweis"_s, u"/db/A.B.DBF"_s, u"--kontakt"_s, u"-x"_s});
    EXPECT_EQ(options.fieldList, u"/db/A.B.felder"_s);
    EXPECT_EQ(options.uniqueId, u"-x"_s);
    EXPECT_TRUE(options.noticeOpen);
    for (const QString &arguments : {u""_s, u"a b"_s, u"a --neu"_s, u"a --felder"_s, u"a --stirbt-bei"_s,
                                     u"a --stirbt-bei 0"_s, u"a --beschaeftigt lang"_s})
        EXPECT_EQ(failureOf([&] { Options::parse(arguments.split(u' ', Qt::SkipEmptyParts)); }).first, 5)
            << arguments.toStdString();
}

class BookTest : public testing::Test
{
protected:
    storage::RowId row(const QString &id) const { return book.find(id).value(); }

    QTemporaryDir folder;
    QString path = makeContacts(folder.filePath(u"Büro"_s));
    dbf::DbfDriver driver;
    ContactBook book{driver, path, FieldList::read(folder.filePath(u"Büro/KONTAKTE.felder"_s))};
};

TEST_F(BookTest, FieldsAreReadInTheirKind)
{
    const storage::RowId anna = row(u"id-1"_s);
    // clang-format off
    struct Row { int number; QVariant value; QString text; };
    const Row rows[] = {
        {1,  u"id-1"_s,             u"id-1"_s},
        {2,  u"Bäckerei Groß"_s,    u"Bäckerei Groß"_s},
        {11, u"[49] 40 552 9950"_s, u"+49 40 552 9950"_s},
        {22, 12.5,                  u"12,5"_s},
        {23, u"1980-01-01"_s,       u"01.01.1980"_s},
        {24, u"Ja"_s,               u"Ja"_s},
        {62, u""_s,                 u""_s},
    };
    // clang-format on
    for (const Row &expected : rows) {
        SCOPED_TRACE(expected.number);
        EXPECT_EQ(book.value(anna, expected.number), expected.value);
        EXPECT_EQ(book.text(anna, expected.number), expected.text);
    }
    EXPECT_EQ(failureOf([&] { book.value(anna, 99); }).first, 5);
}

TEST_F(BookTest, WritesArriveInTheTableOrChangeNothing)
{
    // clang-format off
    struct Row { const char *name; int number; QString written; int error; QVariant read; };
    const Row rows[] = {
        {"text",              2,  u"Zimmer & Söhne"_s,    0,  u"Zimmer & Söhne"_s},
        {"too long",          2,  QString(31, u'x'),      5,  u"Zimmer & Söhne"_s},
        {"not in code page",  2,  u"Ω"_s,                 5,  u"Zimmer & Söhne"_s},
        {"bracketed phone",   11, u"[49]40 1234"_s,       0,  u"[49] 40 1234"_s},
        {"phone too long",    11, u"[49]40 "_s + QString(30, u'1'), 5, u"[49] 40 1234"_s},
        {"number, comma",     22, u"1,25"_s,              0,  1.25},
        {"number, point",     22, u"-7.5"_s,              0,  -7.5},
        {"no number",         22, u"viel"_s,              13, -7.5},
        {"number emptied",    22, u""_s,                  0,  u""_s},
        {"date",              23, u"1.2.2003"_s,          0,  u"2003-02-01"_s},
        {"no date",           23, u"30.2.2003"_s,         13, u"2003-02-01"_s},
        {"truth",             24, u"nein"_s,              0,  u"Nein"_s},
        {"no truth",          24, u"vielleicht"_s,        13, u"Nein"_s},
        {"memo",              21, u"erste\r\nzweite"_s,   0,  u"erste\r\nzweite"_s},
        {"bracket in a memo", 21, u"[49]40 1"_s,          0,  u"[49]40 1"_s},
        {"own identifier",    1,  u"id-3        "_s,      0,  u"id-3"_s},
        {"other identifier",  1,  u"id-4"_s,              5,  u"id-3"_s},
    };
    // clang-format on
    for (const Row &expected : rows) {
        SCOPED_TRACE(expected.name);
        const auto [number, text] = failureOf([&] { book.write(row(u"id-3"_s), expected.number, expected.written); });
        EXPECT_EQ(number, expected.error) << text.toStdString();
        const ContactBook reopened(driver, path, book.fields());
        EXPECT_EQ(reopened.value(reopened.find(u"id-3"_s).value(), expected.number), expected.read);
    }
    EXPECT_TRUE(failureOf([&] { book.write(row(u"id-3"_s), 62, u"HN"_s); }).second.contains(u"„Art“ (PCK_TYP)"_s));
}

TEST_F(BookTest, WhatIsNoContactDatabaseIsRefused)
{
    const auto open = [&](const QString &file, const QByteArray &list) {
        return failureOf([&] { ContactBook(driver, file, FieldList::parse(list)); });
    };
    EXPECT_EQ(open(folder.filePath(u"nichts.dbf"_s), "1|UNIQUE_ID|x").first, 75);
    EXPECT_TRUE(open(path, "1|UNIQUE_ID|x\n5|FEHLT|Ding").second.contains(u"FEHLT"_s));
    EXPECT_NE(open(folder.filePath(u"Büro/KONTAKTE.felder"_s), "1|NAME|x").first, 0);
}

TEST_F(BookTest, ALookupKnowsItsContactsAndTheCurrentOne)
{
    Lookup lookup(book, row(u"kurz"_s));
    EXPECT_EQ(lookup.count(), 3);
    lookup.all();
    EXPECT_EQ(lookup.current(), row(u"kurz"_s)) << "the current contact stays";
    lookup.only(u"id-3        "_s);
    EXPECT_EQ(lookup.count(), 1);
    EXPECT_EQ(lookup.requireCurrent(), row(u"id-3"_s));
    lookup.only(u"ID-3"_s);
    EXPECT_EQ(lookup.count(), 0) << "identifiers are case-sensitive";
    EXPECT_EQ(failureOf([&] { lookup.requireCurrent(); }).first, 3021);
    lookup.all();
    EXPECT_EQ(lookup.requireCurrent(), row(u"kurz"_s)) << "the first in the order of companies";
}

} // namespace
