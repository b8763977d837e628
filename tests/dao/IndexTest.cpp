// Which queries walk an index, and that they still find every row.
#include <gtest/gtest.h>

#include "tests/dao/TestDatabase.h"
#include "tests/jet/OthersKeys.h"

using namespace Qt::StringLiterals;

namespace {

class IndexUse : public testing::Test
{
protected:
    IndexUse()
    {
        t.run({u"CREATE TABLE t (Art LONG, Nr TEXT(10), Preis CURRENCY, Satz SINGLE, Da YESNO, Datum DATETIME, Frei "
               u"LONG)",
               u"CREATE INDEX iArt ON t (Art, Nr)", u"CREATE INDEX iNr ON t (Nr)", u"CREATE INDEX iPreis ON t (Preis)",
               u"CREATE INDEX iSatz ON t (Satz)", u"CREATE INDEX iDa ON t (Da)",
               u"CREATE INDEX iDatum ON t (Datum DESC)", u"CREATE INDEX iFrei ON t (Frei) WITH IGNORE NULL"});
        for (int i = 0; i < 40; ++i) {
            t.db->Execute(u"INSERT INTO t VALUES (%1, 'D%2', %3.1, %3.1, %4, %3, %5)"_s.arg(i % 4)
                              .arg(i, 2, 10, QLatin1Char('0'))
                              .arg(i)
                              .arg(i % 2 == 0 ? u"Yes"_s : u"No"_s, i % 5 == 0 ? QString::number(i) : u"Null"_s));
        }
        t.jet->scans = 0;
    }

    TestEngine t;
};

} // namespace

TEST_F(IndexUse, WalksAnIndexWhereOneHelps)
{
    // clang-format off
    const std::pair<QString, QString> byIndex[] = { // conditions
        {u"Nr = 'd07'"_s, u"D07"_s},            {u"'D07' = Nr"_s, u"D07"_s},
        {u"Art = 3 AND Nr >= 'D30' ORDER BY Nr DESC"_s, u"D39;D35;D31"_s},
        {u"Art = 3 AND Nr > 'D31' AND Nr < 'D39'"_s, u"D35"_s},
        {u"Art = 2.5"_s, u""_s},                {u"Nr BETWEEN 'D01' AND 'D02'"_s, u"D01;D02"_s},
        {u"Art = 99999999999"_s, u""_s},        {u"Art > 2.5 AND Nr < 'D04'"_s, u"D03"_s},
        {u"Art = Null"_s, u""_s},               {u"Preis <= 1.10001 ORDER BY Preis"_s, u"D00;D01"_s},
        {u"Preis = 7.1"_s, u"D07"_s},           {u"Satz > 37.1 AND Satz < 38.2 AND Nr <> 'D37'"_s, u"D38"_s},
        {u"Da = 1"_s, u""_s},                   {u"Da = True AND Nr < 'D03'"_s, u"D00;D02"_s},
        {u"Datum > 37"_s, u"D39;D38"_s},        {u"Datum <= 1 ORDER BY Datum"_s, u"D00;D01"_s},
        {u"Frei > 30"_s, u"D35"_s},             {u"Frei < 5 ORDER BY Frei"_s, u"D00"_s},
        {u"Nr In ('D01', 'D39')"_s, u"D01;D39"_s}, {u"Nr = 'D01' OR Art = 77"_s, u"D01"_s},
    };
    // clang-format on
    for (const auto &[condition, expected] : byIndex) {
        EXPECT_EQ(t.rows(u"SELECT Nr FROM t WHERE "_s + condition), expected) << condition.toStdString();
        EXPECT_EQ(t.jet->scans, 0) << condition.toStdString();
    }
    for (const QString &condition : {u"Nr Like 'D39'"_s, u"Nr <> 'x' AND Left(Nr, 3) = 'D39'"_s})
        EXPECT_EQ(t.rows(u"SELECT Nr FROM t WHERE "_s + condition), u"D39"_s) << condition.toStdString();
    EXPECT_EQ(t.rows(u"SELECT Nr FROM t WHERE Frei IS NULL AND Left(Nr, 2) = 'D0' AND Da"_s), u"D02;D04;D06;D08"_s);
    EXPECT_EQ(t.jet->scans, 3);
}

TEST_F(IndexUse, TakesTheOrderFromTheIndex)
{
    const std::pair<QString, QString> orders[] = {
        {u"Art, Nr"_s, u"D00;D04"_s}, {u"Art DESC, Nr DESC"_s, u"D39;D35"_s}, {u"Art DESC, Nr"_s, u"D03;D07"_s},
        {u"Datum"_s, u"D00;D01"_s},   {u"Frei, Nr"_s, u"D01;D02"_s},          {u"Frei DESC"_s, u"D35;D30"_s},
    };
    for (const auto &[order, expected] : orders)
        EXPECT_EQ(t.rows(u"SELECT TOP 2 Nr FROM t ORDER BY "_s + order), expected) << order.toStdString();
    t.rows(u"SELECT Nr FROM t WHERE Art = 2 ORDER BY Art, Nr DESC"_s);
    EXPECT_TRUE(t.jet->lastRange.backwards);
    EXPECT_EQ(t.jet->lastRange.index, 0);
}

TEST_F(IndexUse, FindsTheRowsOfUpdatesAndJoins)
{
    EXPECT_EQ(t.db->Execute(u"UPDATE t SET Nr = 'E07' WHERE Nr = 'D07'"_s), 1);
    EXPECT_EQ(t.db->Execute(u"DELETE FROM t WHERE Art = 3 AND Nr >= 'D35'"_s), 3);
    EXPECT_EQ(t.jet->scans, 0);
    EXPECT_EQ(t.rows(u"SELECT a.Nr FROM t AS a INNER JOIN t AS b ON a.Nr = b.Nr WHERE b.Preis > 37.5"_s), u"D38"_s);
    EXPECT_EQ(t.db->Execute(u"UPDATE t SET Art = Art + 1 WHERE Art >= 2"_s), 17) << "no row is met twice";
}

TEST(IndexOfOthers, GivesCandidatesAndTheValuesDecide)
{
    TestEngine t;
    t.run({u"CREATE TABLE k (Nr LONG CONSTRAINT p PRIMARY KEY, Name TEXT(50))", u"CREATE INDEX iName ON k (Name)",
           u"INSERT INTO k VALUES (1, 'Bäckerei Großmann & Sôhne')", u"INSERT INTO k VALUES (2, 'Bäckerei Großmann')",
           u"INSERT INTO k VALUES (3, 'Bäckerei Grossmann & Söhne')", u"INSERT INTO k VALUES (4, 'Zoë')",
           u"CREATE TABLE m (Name TEXT(50))", u"INSERT INTO m VALUES ('BÄCKEREI GROSSMANN & SÔHNE')"});
    ASSERT_EQ(writeOthersKeys(t.path), 1U);
    t.jet->scans = 0;
    const std::pair<QString, QString> queries[] = {
        {u"WHERE Name = 'Bäckerei Großmann & Sôhne'"_s, u"1"_s},
        {u"WHERE Name >= 'Bäckerei Grossmann & Sôhne' ORDER BY Name"_s, u"1;3;4"_s},
        {u"WHERE Name > 'Bäckerei Großmann & Sôhne' ORDER BY Name"_s, u"3;4"_s},
        {u"WHERE Name < 'Bäckerei Großmann & Söhne' ORDER BY Name DESC"_s, u"1;2"_s},
        {u"WHERE Name BETWEEN 'bäckerei großmann & sôhne' AND 'Y' ORDER BY Name DESC"_s, u"3;1"_s},
    };
    for (const auto &[condition, expected] : queries)
        EXPECT_EQ(t.rows(u"SELECT Nr FROM k "_s + condition), expected) << condition.toStdString();
    EXPECT_EQ(t.jet->scans, 0);
    EXPECT_EQ(t.rows(u"SELECT Nr FROM k ORDER BY Name DESC"_s), u"4;3;1;2"_s);
    EXPECT_EQ(t.rows(u"SELECT k.Nr FROM m INNER JOIN k ON m.Name = k.Name"_s), u"1"_s);
    EXPECT_EQ(t.db->Execute(u"DELETE FROM k WHERE Name = 'Bäckerei Großmann & Sôhne'"_s), 1);
    EXPECT_EQ(t.rows(u"SELECT Nr FROM k ORDER BY Name"_s), u"2;3;4"_s);
}
