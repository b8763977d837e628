// Pieces of texts, numbers in texts, and the scrambled constants.
#include <cmath>

#include <QLocale>
#include <gmock/gmock.h>

#include "platform/errors/RunTimeError.h"
#include "util/Zahlen.h"
#include "util/Zeichenketten.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

TEST(Teile, AreCountedFromTheSecondCharacterOn)
{
    // clang-format off
    struct Row { const char *name; QString text; int anzahl; QStringList teile; };
    const Row rows[] = {
        {"an empty text has no piece",             u""_s,       0, {}},
        {"no separator: the whole text",           u"a b"_s,    1, {u"a b"_s}},
        {"two separators: three pieces",           u"a|b|c"_s,  3, {u"a"_s, u"b"_s, u"c"_s}},
        {"one behind: an empty last piece",        u"a|"_s,     2, {u"a"_s, u""_s}},
        {"one in front hides the last piece",      u"|a|b"_s,   2, {u""_s, u"a"_s}},
        {"only a separator: one empty piece",      u"|"_s,      1, {u""_s}},
        {"blanks belong to the piece",             u" a | b"_s, 2, {u" a "_s, u" b"_s}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(AnzahlTeile(row.text, u'|'), row.anzahl);
        for (int k = 1; k <= row.anzahl; ++k)
            EXPECT_EQ(Teil(row.text, u'|', k), row.teile.value(k - 1));
        EXPECT_EQ(Teil(row.text, u'|', 0), u""_s);
        EXPECT_EQ(Teil(row.text, u'|', row.anzahl + 1), u""_s);
    }
    EXPECT_EQ(Token(u" 60 | PCK_NUMMER "_s, 2), u"PCK_NUMMER"_s);
}

TEST(Val, ReadsTheLeadingNumber)
{
    // clang-format off
    struct Row { QString text; double zahl; };
    const Row rows[] = {
        {u""_s, 0},           {u"abc"_s, 0},        {u"12abc"_s, 12},     {u"  -7 "_s, -7},   {u"1 2 3"_s, 123},
        {u"4,9"_s, 4},        {u"4.9"_s, 4.9},      {u".5"_s, 0.5},       {u"+3"_s, 3},       {u"1e3"_s, 1000},
        {u"1e"_s, 1},         {u"1e+"_s, 1},        {u"2E-1x"_s, 0.2},    {u"-"_s, 0},        {u"."_s, 0},
        {u"1.2.3"_s, 1.2},    {u"0001"_s, 1},       {u"2 - Gruppe"_s, 2}, {u"D000123"_s, 0},  {u"--1"_s, 0},
    };
    // clang-format on
    for (const Row &row : rows)
        EXPECT_EQ(Val(row.text), row.zahl) << qPrintable(row.text);
}

TEST(Rounding, GoesHalfToEvenAndOverflowsWithItsNumber)
{
    EXPECT_EQ(CInt(0.5), 0);
    EXPECT_EQ(CInt(1.5), 2);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(32767.4), 32767);
    EXPECT_EQ(CLng(2147483647.0), 2147483647);
    for (double zuGross : {32767.5, -32769.0, 1e300, std::nan("")}) {
        try {
            CInt(zuGross);
            ADD_FAILURE() << zuGross;
        } catch (const RunTimeError &fehler) {
            EXPECT_EQ(fehler.Number(), 6);
        }
    }
    EXPECT_THROW(CLng(2147483648.0), RunTimeError);
}

TEST(Zahlenwert, TakesTheUsersNotationOrTheGermanOneOfTheProgramsOwnTexts)
{
    // clang-format off
    struct Row { QString text; std::optional<double> deutsch; std::optional<double> englisch; };
    const Row rows[] = {
        {u"12,5"_s,  12.5,         12.5},
        {u"12.5"_s,  std::nullopt, 12.5},
        {u"0,00"_s,  0.0,          0.0},
        {u" 100 "_s, 100.0,        100.0},
        {u"1.000"_s, 1000.0,       1.0},
        {u"-3"_s,    -3.0,         -3.0},
        {u""_s,      std::nullopt, std::nullopt},
        {u"12a"_s,   std::nullopt, std::nullopt},
        {u"1,2,3"_s, std::nullopt, std::nullopt},
    };
    // clang-format on
    const QLocale vorher;
    for (const Row &row : rows) {
        SCOPED_TRACE(qPrintable(row.text));
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        EXPECT_EQ(Zahlenwert(row.text), row.deutsch);
        QLocale::setDefault(QLocale(QLocale::English, QLocale::UnitedStates));
        EXPECT_EQ(Zahlenwert(row.text), row.englisch);
    }
    QLocale::setDefault(vorher);
}

TEST(Coding, PutsCredentialsOfTheRightLengthTogether)
{
    EXPECT_EQ(coding::workgroupDatei().size(), 12);
    EXPECT_EQ(coding::benutzer().size(), 11);
    EXPECT_EQ(coding::kennwort().size(), 7);
    EXPECT_EQ(coding::mappingZugriff().size(), 12);
    for (const QString &klar :
         {coding::workgroupDatei(), coding::benutzer(), coding::kennwort(), coding::mappingZugriff()})
        EXPECT_THAT(klar.toStdString(), testing::MatchesRegex("[A-Za-z0-9.]+"));
}
