// Pieces of texts, numbers in texts, and the scrambled constants.
#include <cmath>

#include <QLocale>
#include <gmock/gmock.h>

#include "tests/fakes/Fehlernummer.h"
#include "util/Zahlen.h"
#include "util/Zeichenketten.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

TEST(Teile, AreCountedFromTheSecondCharacterOn)
{
    // clang-format off
    struct Row { const char *name; QString text; QStringList teile; };
    const Row rows[] = {
        {"an empty text has no piece",             u""_s,       {}},
        {"no separator: the whole text",           u"a b"_s,    {u"a b"_s}},
        {"two separators: three pieces",           u"a|b|c"_s,  {u"a"_s, u"b"_s, u"c"_s}},
        {"one behind: an empty last piece",        u"a|"_s,     {u"a"_s, u""_s}},
        {"one in front hides the last piece",      u"|a|b"_s,   {u""_s, u"a"_s}},
        {"only a separator: one empty piece",      u"|"_s,      {u""_s}},
        {"blanks belong to the piece",             u" a | b"_s, {u" a "_s, u" b"_s}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(AnzahlTeile(row.text, u'|'), row.teile.size());
        for (int k = 0; k <= row.teile.size() + 1; ++k)
            EXPECT_EQ(Teil(row.text, u'|', k), row.teile.value(k - 1)) << k;
    }
    EXPECT_EQ(Token(u" 60 | PCK_NUMMER "_s, 2), u"PCK_NUMMER"_s);
}

TEST(Val, ReadsTheLeadingNumber)
{
    // clang-format off
    const std::pair<QString, double> rows[] = {
        {u""_s, 0},           {u"abc"_s, 0},        {u"12abc"_s, 12},     {u"  -7 "_s, -7},   {u"1 2 3"_s, 123},
        {u"4,9"_s, 4},        {u"4.9"_s, 4.9},      {u".5"_s, 0.5},       {u"+3"_s, 3},       {u"1e3"_s, 1000},
        {u"1e"_s, 1},         {u"1e+"_s, 1},        {u"2E-1x"_s, 0.2},    {u"-"_s, 0},        {u"."_s, 0},
        {u"1.2.3"_s, 1.2},    {u"0001"_s, 1},       {u"2 - Gruppe"_s, 2}, {u"D000123"_s, 0},  {u"--1"_s, 0},
    };
    // clang-format on
    for (const auto &[text, zahl] : rows)
        EXPECT_EQ(Val(text), zahl) << qPrintable(text);
}

TEST(Rounding, GoesHalfToEvenAndOverflowsWithItsNumber)
{
    EXPECT_EQ(CInt(0.5), 0);
    EXPECT_EQ(CInt(1.5), 2);
    EXPECT_EQ(CInt(-2.5), -2);
    EXPECT_EQ(CInt(32767.4), 32767);
    EXPECT_EQ(CLng(2147483647.0), 2147483647);
    for (double zuGross : {32767.5, -32769.0, 1e300, std::nan("")})
        EXPECT_EQ(fehlernummer([zuGross] { CInt(zuGross); }), 6) << zuGross;
    EXPECT_EQ(fehlernummer([] { CLng(2147483648.0); }), 6);
}

TEST(Zahlenwert, TakesTheUsersNotationOrTheGermanOneOfTheProgramsOwnTexts)
{
    // clang-format off
    struct Row { QString text; std::optional<double> deutsch; std::optional<double> englisch; };
    const Row rows[] = {
        {u"12,5"_s,  12.5, 12.5},   {u"12.5"_s, {}, 12.5}, {u"0,00"_s, 0.0, 0.0}, {u" 100 "_s, 100.0, 100.0},
        {u"1.000"_s, 1000.0, 1.0},  {u"-3"_s, -3.0, -3.0}, {u""_s, {}, {}},       {u"12a"_s, {}, {}},
        {u"1,2,3"_s, {}, {}},
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
    using testing::MatchesRegex;
    EXPECT_THAT(coding::workgroupDatei().toStdString(), MatchesRegex("[A-Za-z0-9.]{12}"));
    EXPECT_THAT(coding::benutzer().toStdString(), MatchesRegex("[A-Za-z0-9.]{11}"));
    EXPECT_THAT(coding::kennwort().toStdString(), MatchesRegex("[A-Za-z0-9.]{7}"));
    EXPECT_THAT(coding::mappingZugriff().toStdString(), MatchesRegex("[A-Za-z0-9.]{12}"));
}
