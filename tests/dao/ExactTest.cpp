// Amounts and decimals in SQL: no digit is lost on the way, and types that do not go together are refused.
#include <gtest/gtest.h>

#include <QLocale>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/ExactNumber.h"
#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;

namespace {

class Exact : public testing::Test
{
protected:
    Exact()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        t.run({u"CREATE TABLE k (Nr LONG CONSTRAINT p PRIMARY KEY, A CURRENCY, B CURRENCY, N NUMERIC(18,4), D DOUBLE, "
               u"J YESNO, T TEXT(40), W DATETIME)",
               u"CREATE INDEX iA ON k (A)", u"CREATE INDEX iN ON k (N DESC)",
               u"INSERT INTO k VALUES (1, 12345678901234.5678, 922337203685477.5807, 12345678901234.5678, 0.1, Yes, "
               u"'x', 37000)",
               u"INSERT INTO k VALUES (2, 12345678901234.5677, -922337203685477.5808, -12345678901234.5678, 2, No, "
               u"'y', 1)",
               u"INSERT INTO k (Nr, A, B, N, D) VALUES (3, 0.1, 0, 7, 7)", u"INSERT INTO k (Nr) VALUES (4)"});
    }

    TestEngine t;
};

} // namespace

TEST(ExactNumber, BytesSortAsTheNumbersDoAndComeBack)
{
    const char16_t *const ascending[] = {u"-922337203685477.5808",
                                         u"-10",
                                         u"-9.99",
                                         u"-0.123",
                                         u"-0.12",
                                         u"-0.0001",
                                         u"0",
                                         u"0.0001",
                                         u"0.1",
                                         u"0.12",
                                         u"9",
                                         u"10",
                                         u"10.5",
                                         u"12345678901234.5677",
                                         u"12345678901234.5678",
                                         u"9999999999999999999999999999"};
    QByteArray before;
    for (const char16_t *text : ascending) {
        const QString plain = QString::fromUtf16(text);
        const QByteArray bytes = dao::exactBytes(plain);
        EXPECT_EQ(dao::exactDecimal(bytes), plain);
        EXPECT_LT(before, bytes) << qPrintable(plain);
        EXPECT_EQ(dao::addedDecimals(plain, dao::negatedDecimal(plain)).remove(u'0').remove(u'.'), QString());
        before = bytes;
    }
    EXPECT_EQ(dao::exactBytes(u"-0.00"_s), dao::exactBytes(u"0"_s));
    EXPECT_EQ(dao::exactBytes(u"007.50"_s), dao::exactBytes(u"7.5"_s));
    for (const QByteArray &other : {QByteArray(), QByteArray("exact"), before.chopped(28), before + 'x'})
        EXPECT_EQ(dao::exactDecimal(other), std::nullopt);
    EXPECT_EQ(dao::addedDecimals(u"99.9"_s, u"-100"_s), u"-0.1"_s);
    EXPECT_EQ(dao::addedDecimals(u"999999999999999999999999.99"_s, u"0.011"_s), u"1000000000000000000000000.001"_s);
}

TEST_F(Exact, AmountsKeepTheirDigitsOnTheirWay)
{
    EXPECT_EQ(t.rows(u"SELECT A, B, N FROM k WHERE Nr < 3"_s),
              u"12345678901234,5678,922337203685477,5807,12345678901234,5678;"
              u"12345678901234,5677,-922337203685477,5808,-12345678901234,5678"_s);
    EXPECT_EQ(t.db->Execute(u"UPDATE k SET A = B, k.N = -A + 0.0001 WHERE Nr <= 2"_s), 2);
    EXPECT_EQ(t.rows(u"SELECT A, N FROM k WHERE Nr <= 2"_s),
              u"922337203685477,5807,-12345678901234,5677;-922337203685477,5808,-12345678901234,5676"_s);
    EXPECT_EQ(t.db->Execute(u"INSERT INTO k (Nr, A, T) SELECT Nr + 10, B, A FROM k WHERE Nr = 1"_s), 1);
    EXPECT_EQ(t.rows(u"SELECT A, T FROM k WHERE Nr = 11"_s), u"922337203685477,5807,922337203685477,5807"_s);
    EXPECT_EQ(t.db->Execute(u"UPDATE k SET D = A WHERE Nr = 3"_s), 1);
    EXPECT_EQ(t.rows(u"SELECT D FROM k WHERE Nr = 3"_s), u"0,1"_s);
    EXPECT_EQ(t.executeError(u"UPDATE k SET A = B + 0.0001 WHERE Nr = 1"_s), 3349);
}

TEST_F(Exact, ConditionsTellNeighboursApart)
{
    const std::pair<QString, QString> conditions[] = {
        {u"A = 12345678901234.5678"_s, u"1"_s},
        {u"12345678901234.5678 > A AND A > 1"_s, u"2"_s},
        {u"N <= -12345678901234.5678"_s, u"2"_s},
        {u"N < -12345678901234.5678"_s, u""_s},
        {u"A = N"_s, u"1"_s},
        {u"N = D"_s, u"3"_s},
        {u"A BETWEEN 12345678901234.5678 AND 12345678901235"_s, u"1"_s},
        {u"A In (.1, 12345678901234.5678) ORDER BY Nr"_s, u"1;3"_s},
        {u"A In (SELECT D FROM k)"_s, u"3"_s},
        {u"D In (SELECT A FROM k)"_s, u"1"_s},
        {u"A = (SELECT Max(A) FROM k)"_s, u"1"_s},
        {u"(A) > 5 AND NOT A < 12345678901234.5678"_s, u"1"_s},
        {u"A - B = A + -922337203685477.5807"_s, u"1"_s},
        {u"A AND Not A > 1"_s, u"3"_s},
        {u"A Like '0*'"_s, u"3"_s},
        {u"A*2 = 0.2 OR A IS NULL OR A = Null"_s, u"3;4"_s},
        {u"IIf(J, A, 5) > 5"_s, u"1"_s},
    };
    for (const auto &[condition, expected] : conditions)
        EXPECT_EQ(t.rows(u"SELECT Nr FROM k WHERE "_s + condition), expected) << condition.toStdString();
    const std::pair<QString, QString> queries[] = {
        {u"SELECT Sum(A), Sum(B), Min(A), Count(A), Sum(Nr), Sum(A + B) FROM k"_s,
         u"24691357802469,2355,-0,0001,0,1,3,10,24691357802469,2354"_s},
        {u"SELECT Sum(A) AS S FROM k GROUP BY J HAVING Sum(A) > 1 ORDER BY Sum(A) DESC"_s,
         u"12345678901234,6677;12345678901234,5678"_s},
        {u"SELECT S FROM (SELECT Sum(A) AS S FROM k) AS q WHERE S > 24691357802469.2354 AND S < 24691357802469.2356"_s,
         u"24691357802469,2355"_s},
        {u"SELECT A FROM (SELECT Count(*) AS A FROM k) AS q WHERE A > 3 AND A + 1 < 6 AND Not A = 5"_s, u"4"_s},
        {u"SELECT x.Nr, y.A FROM (k AS x INNER JOIN k AS y ON x.A = y.N) INNER JOIN k AS z ON z.Nr = x.Nr"_s,
         u"1,12345678901234,5678"_s},
        {u"SELECT DISTINCT A FROM k WHERE A > 1 ORDER BY A DESC"_s, u"12345678901234,5678;12345678901234,5677"_s},
        {u"SELECT A FROM k WHERE Nr < 3 UNION SELECT N FROM k WHERE Nr < 3"_s,
         u"-12345678901234,5678;12345678901234,5677;12345678901234,5678"_s},
        {u"SELECT 1 - A, -A, A / 2, 9007199254740993.25 FROM k WHERE Nr = 3"_s, u"0,9,-0,1,0,05,9007199254740993,25"_s},
    };
    for (const auto &[query, expected] : queries)
        EXPECT_EQ(t.rows(query), expected) << query.toStdString();
    EXPECT_EQ(t.db->OpenRecordset(u"SELECT Sum(A) FROM k"_s)->Fields(0).Type(), dao::dbCurrency);
}

TEST_F(Exact, TypesThatDoNotGoTogetherAreRefusedBeforeAnyRowIsRead)
{
    const std::pair<QString, QString> refused[] = {
        // conditions, and the column that is named
        {u"J = 'x'"_s, u"J"_s},
        {u"Nr = 77 AND (T Like 'q' OR (D = 'x' AND Nr = 1))"_s, u"D"_s},
        {u"'x' < A"_s, u"A"_s},
        {u"T In ('x', 5)"_s, u"T"_s},
        {u"NOT (T Between 1 And 2)"_s, u"T"_s},
        {u"Nr = T"_s, u"Nr"_s},
        {u"W = '24.12.2003'"_s, u"W"_s},
        {u"T = True"_s, u"T"_s},
        {u"IIf(Nr = 'x', 1, 0) = 1"_s, u"Nr"_s},
        {u"EXISTS (SELECT 1 FROM k AS z WHERE z.D = 'x')"_s, u"D"_s},
    };
    t.run({u"DELETE FROM k"});
    for (const auto &[condition, column] : refused) {
        QString description;
        EXPECT_EQ(t.openError(u"SELECT Nr FROM k WHERE "_s + condition, &description), 3464) << condition.toStdString();
        EXPECT_TRUE(description.contains(u"'%1'"_s.arg(column))) << description.toStdString();
    }
    EXPECT_EQ(t.executeError(u"UPDATE k SET Nr = 1 WHERE D = 'x'"_s), 3464);
    EXPECT_EQ(t.openError(u"SELECT k.Nr FROM k INNER JOIN k AS z ON k.Nr = z.T"_s), 3464);
    for (const QString &fine : {u"Nr Like 'x'"_s, u"T = '5' OR T = Null OR Left(T, 1) > 'x' OR J = True"_s, u"W > 5"_s})
        EXPECT_EQ(t.openError(u"SELECT Nr FROM k WHERE "_s + fine), 0) << fine.toStdString();
    for (const QString &deep : {QString(100000, u'('), u"Not "_s.repeated(100000), u"- "_s.repeated(100000)})
        EXPECT_EQ(t.openError(u"SELECT Nr FROM k WHERE "_s + deep + u"1"_s), 3075);
    for (const QString &open : {u"A ="_s, u"A = k."_s, u"A + "_s, u"A = EXISTS"_s, u"A In ("_s, u"A Between 1"_s})
        EXPECT_EQ(t.openError(u"SELECT Nr FROM k WHERE "_s + open), 3075) << open.toStdString();
    EXPECT_EQ(t.executeError(u"UPDATE k SET Nr = '5', T = 5 WHERE W = #1/1/2003#"_s), 0) << "no comparison";

    t.exact->Execute(u"CREATE TABLE KONTAKTE (ID CHAR(12), MANDANT CHAR(40), VISITS DOUBLE, AKTIV LOGICAL)"_s);
    t.db = t.exact;
    for (const QString &field : {u"Visits"_s, u"AKTIV"_s}) {
        const QString query = u"SELECT [KONTAKTE].ID FROM [KONTAKTE] WHERE ([KONTAKTE].%1 Like '*x*' Or "
                              u"[KONTAKTE].ID Like '*x*' Or ([KONTAKTE].MANDANT = 'm' AND [KONTAKTE].%1 = 'n'))"_s;
        EXPECT_EQ(t.openError(query.arg(field)), 3464) << field.toStdString();
    }
}

TEST_F(Exact, DatesBecomeTextsAndTheLargestSingleIsOne)
{
    t.run({u"CREATE TABLE d (Nr LONG, T TEXT(40), W DATETIME, S SINGLE)",
           u"INSERT INTO d VALUES (1, #12/24/2003#, #12/24/2003 10:30:00#, 3.4028235e38)",
           u"INSERT INTO d (W, T, Nr) VALUES (#12/24/2003#, #12/24/2003 10:30:00#, 2)",
           u"INSERT INTO d (Nr, T, W) SELECT Nr + 2, W, W FROM d WHERE Nr = 1",
           u"INSERT INTO d (Nr, W) VALUES (4, 37979)", u"UPDATE d SET d.T = W WHERE Nr = 4"});
    EXPECT_EQ(t.rows(u"SELECT Nr, T, W FROM d"_s),
              u"1,24.12.2003,24.12.2003 10:30:00;2,24.12.2003 10:30:00,24.12.2003;"
              u"3,24.12.2003 10:30:00,24.12.2003 10:30:00;4,24.12.2003,24.12.2003"_s);
    EXPECT_EQ(t.rows(u"SELECT Nr FROM d WHERE S > 3.4028234e38"_s), u"1"_s);
    EXPECT_EQ(t.executeError(u"UPDATE d SET S = 3.4028236e38"_s), 3349);
    EXPECT_EQ(t.executeError(u"UPDATE d SET S = -3.4028236e38"_s), 3349);
}

TEST_F(Exact, ANameGivenToAColumnIsSpeltAsWritten)
{
    const std::pair<QString, QString> named[] = {{u"SELECT Count(*) AS n FROM k"_s, u"n"_s},
                                                 {u"SELECT Count(*) n FROM k"_s, u"n"_s},
                                                 {u"SELECT Nr AS [a] FROM k"_s, u"a"_s},
                                                 {u"SELECT nr FROM k"_s, u"Nr"_s}};
    for (const auto &[query, name] : named)
        EXPECT_EQ(t.db->OpenRecordset(query)->Fields(0).Name(), name) << query.toStdString();
}
