// Moving through a recordset, its fields, and editing.
#include <gtest/gtest.h>

#include <QDateTime>
#include <QLocale>

#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;

namespace {

class Recordset : public testing::Test
{
protected:
    Recordset()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        t.run(
            {u"CREATE TABLE t (Nr LONG PRIMARY KEY, Name TEXT(10), Limit_ CURRENCY, Datum DATETIME, Aktiv YESNO,"
             u" Satz SINGLE, Stufe BYTE, Tage SHORT, Wert DECIMAL(28,4), Kennung COUNTER, Bild LONGBINARY, Maß DOUBLE)",
             u"INSERT INTO t (Nr, Name) VALUES (1, 'eins')", u"INSERT INTO t (Nr, Name) VALUES (2, 'zwei')",
             u"INSERT INTO t (Nr, Name) VALUES (3, Null)", u"CREATE TABLE leer (a LONG)"});
    }

    std::shared_ptr<dao::Recordset> open(const QString &source) { return t.db->OpenRecordset(source); }
    static int errorOf(const std::function<void()> &call) { return TestEngine::errorOf(call); }

    TestEngine t;
};

} // namespace

TEST_F(Recordset, CountsWhatWasVisited)
{
    const QString shown = u"1 2 2 3 3 1 3 2 3 -"_s;
    for (const auto &[source, expected] : {std::pair(u"t"_s, shown), std::pair(u"SELECT Nr FROM t"_s, shown),
                                           std::pair(u"SELECT Nr * 2 FROM t"_s, u"1 4 2 6 3 2 3 4 6 -"_s)}) {
        SCOPED_TRACE(source.toStdString());
        const auto records = open(source);
        EXPECT_EQ(TestEngine::trace(*records, u"CNCLCFCNNN"_s), expected);
        EXPECT_EQ(errorOf([&] { records->MoveNext(); }), 3021);
        EXPECT_EQ(errorOf([&] { records->Fields(0).Value(); }), 3021);
        EXPECT_EQ(errorOf([&] { records->Edit(); }), 3021);
    }
    const auto empty = open(u"leer"_s);
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_TRUE(empty->Eof());
    EXPECT_EQ(errorOf([&] { empty->MoveFirst(); }), 3021);
    EXPECT_EQ(errorOf([&] { empty->MoveLast(); }), 3021);
}

TEST_F(Recordset, FindsFieldsByIndexAndName)
{
    const auto records = open(u"SELECT Name AS Wer, t.nr, 1+1 FROM t WHERE Nr = 2"_s);
    QStringList names;
    for (int i = 0; i < records->FieldCount(); ++i)
        names += records->Fields(i).Name();
    EXPECT_EQ(names.join(u' '), u"Wer Nr Expr1002"_s) << "as the table spells it";
    EXPECT_EQ(records->Fields(u"WER"_s).Value(), u"zwei"_s);
    EXPECT_EQ(records->Fields(1).Type(), dao::dbLong);
    EXPECT_EQ(records->Fields(2).Type(), dao::dbLong);
    EXPECT_EQ(records->Fields(2).Value(), 2);
    EXPECT_EQ(errorOf([&] { records->Fields(3); }), 3265);
    EXPECT_EQ(errorOf([&] { records->Fields(-1); }), 3265);
    EXPECT_EQ(errorOf([&] { records->Fields(u"Name"_s); }), 3265);
}

TEST_F(Recordset, KeepsEveryTypeExactly)
{
    // clang-format off
    struct Row { QString name; QVariant value; dao::DataType type; };
    const Row rows[] = {
        {u"Nr"_s,     7, dao::dbLong},
        {u"Name"_s,   u"Größe €"_s, dao::dbText},
        {u"Limit_"_s, QVariant::fromValue(storage::Currency{-922337203685477580}), dao::dbCurrency},
        {u"Datum"_s,  QDateTime(QDate(2003, 12, 24), QTime(18, 30, 15)), dao::dbDate},
        {u"Aktiv"_s,  true, dao::dbBoolean},
        {u"Satz"_s,   0.1F, dao::dbSingle},
        {u"Maß"_s,    0.1, dao::dbDouble},
        {u"Stufe"_s,  QVariant::fromValue<uchar>(255), dao::dbByte},
        {u"Tage"_s,   QVariant::fromValue<short>(-32768), dao::dbInteger},
        {u"Wert"_s,   QVariant::fromValue(storage::Decimal{u"123456789012345678901234.5678"_s}), dao::dbNumeric},
        {u"Bild"_s,   QByteArray("\0\1\2", 3), dao::dbLongBinary},
    };
    // clang-format on
    const auto records = open(u"SELECT * FROM t WHERE Nr = 1"_s);
    records->Edit();
    for (const Row &row : rows)
        records->Fields(row.name).setValue(row.value);
    records->Update();
    const auto again = open(u"t"_s);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name.toStdString());
        EXPECT_EQ(again->Fields(row.name).Value(), row.value);
        EXPECT_EQ(again->Fields(row.name).Value().typeId(), row.value.typeId());
        EXPECT_EQ(again->Fields(row.name).Type(), row.type);
    }
}

TEST_F(Recordset, WritesOnlyOnUpdate)
{
    const auto records = open(u"SELECT Name, Tage, Kennung, Nr FROM t ORDER BY Nr"_s);
    const auto errorOfSetting
        = [&](int field, const QVariant &value) { return errorOf([&] { records->Fields(field).setValue(value); }); };
    EXPECT_EQ(errorOfSetting(0, u"x"_s), 3020);
    EXPECT_EQ(errorOf([&] { records->Update(); }), 3020);
    records->Edit();
    records->Fields(0).setValue(u"neu"_s);
    EXPECT_EQ(records->Fields(0).Value(), u"neu"_s);
    records->MoveNext(); // drops what was set
    EXPECT_EQ(records->Fields(0).Value(), u"zwei"_s);
    EXPECT_EQ(t.rows(u"SELECT Name FROM t"_s), u"eins;zwei;-"_s);

    records->MoveFirst();
    records->Edit();
    EXPECT_EQ(errorOfSetting(0, u"neu"_s), 0);
    EXPECT_EQ(errorOfSetting(1, u"vier"_s), 3421);
    EXPECT_EQ(errorOfSetting(1, 70000), 3421);
    EXPECT_EQ(errorOfSetting(0, u"viel zu lang"_s), 3163);
    EXPECT_EQ(errorOfSetting(2, 9), 3164);
    EXPECT_EQ(errorOfSetting(1, u"12"_s), 0);
    records->Update();
    EXPECT_EQ(t.rows(u"SELECT Name, Tage FROM t WHERE Nr = 1"_s), u"neu,12"_s);
    t.run({u"UPDATE t SET Name = 'anders' WHERE Nr = 1"});
    EXPECT_EQ(records->Fields(0).Value(), u"anders"_s);

    records->Edit();
    records->Fields(0).setValue(QVariant());
    records->Fields(3).setValue(2);
    EXPECT_EQ(errorOf([&] { records->Update(); }), 3022);
    EXPECT_EQ(t.rows(u"SELECT Name FROM t WHERE Nr = 1"_s), u"anders"_s) << "nothing of a refused update stays";
}

TEST_F(Recordset, RefusesEditsOfComputedRows)
{
    for (const QString &source : {u"SELECT Count(*) FROM t"_s, u"SELECT DISTINCT Name FROM t"_s,
                                  u"SELECT a.Nr FROM t AS a, t AS b"_s, u"SELECT Nr FROM t UNION SELECT Nr FROM t"_s})
        EXPECT_EQ(errorOf([&] { open(source)->Edit(); }), 3027) << source.toStdString();
    const auto typed = open(u"SELECT DISTINCT Aktiv, Datum, Limit_ FROM t"_s);
    EXPECT_EQ(typed->Fields(0).Value(), false);
    EXPECT_EQ(typed->Fields(2).Type(), dao::dbCurrency);
}
