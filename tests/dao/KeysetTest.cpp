// Recordsets that find only the rows that are asked for.
#include <gtest/gtest.h>

#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;

namespace {

class Keyset : public testing::Test
{
protected:
    Keyset()
    {
        t.run({u"CREATE TABLE t (Nr TEXT(10) PRIMARY KEY, Art LONG, Stufe LONG, Betrag CURRENCY, Frei LONG)",
               u"CREATE INDEX iArt ON t (Art, Nr)", u"CREATE UNIQUE INDEX iFrei ON t (Frei)",
               u"CREATE INDEX iStufe ON t (Stufe)"});
        for (int i = 0; i < 60; ++i) {
            t.db->Execute(u"INSERT INTO t VALUES ('D%1', %2, %3, %4, Null)"_s.arg(i, 2, 10, QLatin1Char('0'))
                              .arg(i % 2)
                              .arg(i % 3)
                              .arg(i));
        }
        t.jet->scans = t.jet->steps = 0;
    }

    TestEngine t;
};

const QString fewOdd = u"SELECT * FROM t WHERE Art = 1 AND Nr >= 'D51' ORDER BY Nr DESC"_s; // D59 D57 D55 D53 D51

} // namespace

TEST_F(Keyset, ShowsTheSameInEveryOrderOfCalls)
{
    const std::pair<QString, QString> rows[] = {
        {u"CLC"_s, u"1 D51 5"_s},
        {u"LFCNC"_s, u"D51 D59 5 D57 5"_s},
        {u"LNCF"_s, u"D51 - 5 D59"_s},
        {u"NCLCFNN"_s, u"D57 2 D51 5 D59 D57 D55"_s},
        {u"LSCF"_s, u"D51 D51 5 D59"_s},
        {u"NNNNNC"_s, u"D57 D55 D53 D51 - 5"_s},
        {u"LLFFLC"_s, u"D51 D51 D59 D59 D51 5"_s},
        {u"SNLSFN"_s, u"D59 D57 D51 D51 D59 D57"_s},
    };
    for (const auto &[calls, expected] : rows)
        EXPECT_EQ(TestEngine::trace(*t.db->OpenRecordset(fewOdd), calls), expected) << calls.toStdString();
    EXPECT_EQ(t.rows(u"SELECT Nr FROM t WHERE Stufe = 9 ORDER BY Nr"_s), u"D51;D59"_s);
}

TEST_F(Keyset, EndsWhereTheFullWalkEnds)
{
    const QString queries[] = {
        // without ties
        u"SELECT Nr FROM t WHERE Art=1  AND Nr >= 'D00'  ORDER BY Nr DESC"_s,
        u"SELECT * FROM t ORDER BY t.Nr"_s,
        u"SELECT Nr, Art FROM t AS a WHERE a.Art = 1 ORDER BY a.Art, a!Nr ASC"_s,
        u"SELECT Nr FROM t WHERE Art = 0 AND Betrag < 53 AND Betrag > 7 ORDER BY Nr"_s,
        u"SELECT Nr FROM t WHERE Betrag < 53 AND Betrag > 7 ORDER BY Nr DESC"_s,
        u"SELECT Nr FROM t WHERE Nr = 'D07' ORDER BY Nr"_s,
        u"SELECT Nr FROM t WHERE Nr In ('D07', 'D03', 'D05') ORDER BY Nr DESC"_s,
        u"SELECT Nr FROM t ORDER BY Stufe DESC, Nr"_s,
        // with ties, or another order than the names say
        u"SELECT Nr FROM t"_s,
        u"SELECT Nr FROM t ORDER BY Stufe"_s,
        u"SELECT Nr FROM t ORDER BY Stufe DESC"_s,
        u"SELECT Nr FROM t WHERE Art = 1 ORDER BY Art"_s, // walks forwards either way
        u"SELECT Nr FROM t WHERE Art = 1 ORDER BY Frei"_s,
        u"SELECT TOP 5 Nr FROM t ORDER BY Nr"_s,
        u"SELECT t.Nr, Art AS Nr FROM t ORDER BY Nr"_s,
        u"SELECT Betrag, Art AS Nr FROM t ORDER BY Nr"_s,
        u"SELECT Nr FROM t ORDER BY Left(Nr, 2), Stufe"_s,
    };
    for (const QString &query : queries) {
        SCOPED_TRACE(query.toStdString());
        const QStringList all = t.rows(query).split(u';');
        const auto records = t.db->OpenRecordset(query);
        records->MoveLast();
        EXPECT_EQ(dao::textOf(records->Fields(0).Value()), all.last().section(u',', 0, 0));
        EXPECT_EQ(records->RecordCount(), all.size());
    }
    const auto none = t.db->OpenRecordset(u"SELECT Nr FROM t WHERE Stufe = 7 ORDER BY Nr"_s);
    EXPECT_EQ(TestEngine::errorOf([&] { none->MoveLast(); }), 3021);
    EXPECT_EQ(none->RecordCount(), 0);
}

TEST_F(Keyset, ReadsOnlyTheRowsThatAreShown)
{
    const auto records = t.db->OpenRecordset(u"SELECT Nr FROM t WHERE Art=1  AND Nr >= 'D00'  ORDER BY Nr DESC"_s);
    EXPECT_EQ(TestEngine::trace(*records, u"LF"_s), u"D01 D59"_s);
    EXPECT_LE(t.jet->steps, 2);
    EXPECT_EQ(t.jet->scans, 0);
    EXPECT_EQ(records->RecordCount(), 30);
    EXPECT_GT(t.jet->steps, 30);
}

TEST_F(Keyset, IsCompleteBeforeAnythingIsWritten)
{
    const auto records = t.db->OpenRecordset(fewOdd);
    const auto closed = t.db->OpenRecordset(fewOdd);
    closed->Close();
    t.run({u"INSERT INTO t (Nr, Art) VALUES ('D570', 1)", u"UPDATE t SET Art = 0 WHERE Nr = 'D53'"});
    EXPECT_EQ(TestEngine::trace(*records, u"NNNNC"_s), u"D57 D55 D53 D51 5"_s);
    EXPECT_EQ(TestEngine::trace(*t.db->OpenRecordset(fewOdd), u"LCN"_s), u"D51 5 -"_s);
}

TEST_F(Keyset, KeepsWhatWasShownWhenAnotherProgramWrites)
{
    const auto records = t.db->OpenRecordset(fewOdd);
    EXPECT_EQ(TestEngine::trace(*records, u"L"_s), u"D51"_s);
    t.otherProgram()->table(u"t"_s)->insert(std::vector<storage::Assignment>{{0, u"E00"_s}, {1, std::int64_t{1}}});
    EXPECT_EQ(TestEngine::trace(*records, u"CFNLN"_s), u"6 D59 E00 D51 -"_s);
}

TEST_F(Keyset, IsNotCutShortByAFault)
{
    const auto records = t.db->OpenRecordset(fewOdd);
    EXPECT_EQ(TestEngine::trace(*records, u"L"_s), u"D51"_s);
    t.jet->fault = storage::StorageError(storage::StorageError::Damaged, u"page 7"_s);
    for (int attempt = 0; attempt < 2; ++attempt)
        EXPECT_EQ(TestEngine::errorOf([&] { records->RecordCount(); }), 3428);
    EXPECT_EQ(t.executeError(u"INSERT INTO t (Nr) VALUES ('D99')"_s), 3428) << "the set would change";
    t.jet->fault.reset();
    EXPECT_EQ(TestEngine::trace(*records, u"CFN"_s), u"5 D59 D57"_s);
}
