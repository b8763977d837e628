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
        t.run({u"CREATE TABLE t (Nr LONG PRIMARY KEY, Name TEXT(10), Limit_ CURRENCY, Datum DATETIME, Aktiv YESNO,"
               u" Satz SINGLE, Stufe BYTE, Tage SHORT, Wert DECIMAL(28,4), Kennung COUNTER, Bild LONGBINARY)",
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
    for (const QString &source : {u"t"_s, u"SELECT Nr FROM t"_s, u"SELECT Nr * 2 FROM t"_s}) {
        SCOPED_TRACE(source.toStdString());
        const auto records = open(source);
        EXPECT_EQ(records->RecordCount(), 1);
        records->MoveNext();
        EXPECT_EQ(records->RecordCount(), 2);
        records->MoveLast();
        EXPECT_EQ(records->RecordCount(), 3);
        EXPECT_FALSE(records->Eof());
        records->MoveFirst();
        EXPECT_EQ(records->RecordCount(), 3);
        for (int i = 0; i < 3; ++i)
            records->MoveNext();
        EXPECT_TRUE(records->Eof());
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
    EXPECT_EQ(records->FieldCount(), 3);
    EXPECT_EQ(records->Fields(0).Name(), u"Wer"_s);
    EXPECT_EQ(records->Fields(1).Name(), u"Nr"_s) << "as the table spells it";
    EXPECT_EQ(records->Fields(2).Name(), u"Expr1002"_s);
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
    const auto records = open(u"SELECT * FROM t WHERE Nr = 1"_s);
    const QDateTime moment(QDate(2003, 12, 24), QTime(18, 30, 15));
    const std::pair<QString, QVariant> values[] = {
        {u"Name"_s, u"Größe €"_s},
        {u"Limit_"_s, QVariant::fromValue(storage::Currency{-922337203685477580})},
        {u"Datum"_s, moment},
        {u"Aktiv"_s, true},
        {u"Satz"_s, 0.1F},
        {u"Stufe"_s, QVariant::fromValue<uchar>(255)},
        {u"Tage"_s, QVariant::fromValue<short>(-32768)},
        {u"Wert"_s, QVariant::fromValue(storage::Decimal{u"123456789012345678901234.5678"_s})},
        {u"Bild"_s, QByteArray("\0\1\2", 3)},
    };
    records->Edit();
    for (const auto &[name, value] : values)
        records->Fields(name).setValue(value);
    records->Update();
    const auto again = open(u"t"_s);
    for (const auto &[name, value] : values) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_EQ(records->Fields(name).Value(), value);
        EXPECT_EQ(again->Fields(name).Value(), value);
        EXPECT_EQ(again->Fields(name).Value().typeId(), value.typeId());
    }
    EXPECT_EQ(again->Fields(u"Limit_"_s).Type(), dao::dbCurrency);
    EXPECT_EQ(again->Fields(u"Wert"_s).Type(), dao::dbNumeric);
}

TEST_F(Recordset, WritesOnlyOnUpdate)
{
    const auto records = open(u"SELECT Name, Tage, Kennung, Nr FROM t ORDER BY Nr"_s);
    EXPECT_EQ(errorOf([&] { records->Fields(0).setValue(u"x"_s); }), 3020);
    EXPECT_EQ(errorOf([&] { records->Update(); }), 3020);
    records->Edit();
    records->Fields(0).setValue(u"neu"_s);
    EXPECT_EQ(records->Fields(0).Value(), u"neu"_s);
    records->MoveNext(); // drops what was set
    EXPECT_EQ(t.rows(u"SELECT Name FROM t"_s), u"eins;zwei;-"_s);

    records->MoveFirst();
    records->Edit();
    records->Fields(0).setValue(u"neu"_s);
    EXPECT_EQ(errorOf([&] { records->Fields(1).setValue(u"vier"_s); }), 3421);
    EXPECT_EQ(errorOf([&] { records->Fields(1).setValue(70000); }), 3421);
    EXPECT_EQ(errorOf([&] { records->Fields(0).setValue(u"viel zu lang"_s); }), 3163);
    EXPECT_EQ(errorOf([&] { records->Fields(2).setValue(9); }), 3164);
    records->Fields(1).setValue(u"12"_s);
    records->Update();
    EXPECT_EQ(t.rows(u"SELECT Name, Tage FROM t WHERE Nr = 1"_s), u"neu,12"_s);

    records->Edit();
    records->Fields(0).setValue(QVariant());
    records->Fields(3).setValue(2);
    EXPECT_EQ(errorOf([&] { records->Update(); }), 3022);
    EXPECT_EQ(t.rows(u"SELECT Name FROM t WHERE Nr = 1"_s), u"neu"_s) << "nothing of a refused update stays";
}

TEST_F(Recordset, SeesOtherWrites)
{
    const auto records = open(u"SELECT Name FROM t"_s);
    EXPECT_EQ(records->Fields(0).Value(), u"eins"_s);
    t.run({u"UPDATE t SET Name = 'anders' WHERE Nr = 1", u"DELETE FROM t WHERE Nr = 2"});
    EXPECT_EQ(records->Fields(0).Value(), u"anders"_s);
    records->MoveNext();
    EXPECT_EQ(errorOf([&] { records->Fields(0).Value(); }), 3167);
    records->MoveNext();
    EXPECT_FALSE(records->Fields(0).Value().isValid());
}

TEST_F(Recordset, RefusesEditsOfComputedRows)
{
    for (const QString &source : {u"SELECT Count(*) FROM t"_s, u"SELECT DISTINCT Name FROM t"_s,
                                  u"SELECT a.Nr FROM t AS a, t AS b"_s, u"SELECT Nr FROM t UNION SELECT Nr FROM t"_s}) {
        SCOPED_TRACE(source.toStdString());
        EXPECT_EQ(errorOf([&] { open(source)->Edit(); }), 3027);
    }
    const auto typed = open(u"SELECT DISTINCT Aktiv, Datum, Limit_ FROM t"_s);
    EXPECT_EQ(typed->Fields(0).Value(), false);
    EXPECT_EQ(typed->Fields(2).Type(), dao::dbCurrency);
}
