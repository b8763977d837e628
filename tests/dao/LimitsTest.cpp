// What no column, row or index takes is refused before anything is written, whichever way it comes.
#include <gmock/gmock.h>

#include <QDir>
#include <QFile>
#include <QLocale>

#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;
using dao::DBEngine;

namespace {

enum Format { Jet3 = 1, Jet4 = 2, Jet = 3, DBase = 4, All = 7 };

struct Limit {
    int formats;
    QString columns; // of the table, "Ziel" among them; "more" statements behind ";"
    QString good; // a value for Ziel in SQL's words, and one that it does not take; empty: there are no such words
    QString bad;
    int number; // 3349 is 3421 in a recordset
    QStringList mention; // what the description says beside the name of the column
    QVariant value{}; // the bad one in a recordset, where SQL's words do not tell it
};

/// The text or number of SQL's words.
QVariant meant(const QString &words)
{
    bool whole = false;
    const int number = words.toInt(&whole);
    return words.startsWith(u'\'') ? QVariant(words.chopped(1).mid(1)) : whole ? number : QVariant(words.toDouble());
}

/// Columns F0 and so on that no statement names and yet every row is full of.
QString fullColumns(int count, QChar letter)
{
    QString columns;
    for (int i = 0; i < count; ++i)
        columns += u"F%1 TEXT(250) DEFAULT '%2', "_s.arg(i).arg(QString(250, letter));
    return columns;
}

class LimitsTest : public testing::TestWithParam<Format>
{
protected:
    LimitsTest()
    {
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        const QString path = m_folder.filePath(u"Muster.PCK"_s);
        if (GetParam() == DBase)
            m_db = m_engine->OpenDatabase(m_folder.path(), 0, false, u"FoxPro 2.6;"_s);
        else
            m_db = m_engine->CreateDatabase(path, {},
                                            GetParam() == Jet3 ? DBEngine::dbVersion30 : DBEngine::dbVersion40);
    }
    ~LimitsTest() override { QLocale::setDefault(QLocale::system()); }

    QByteArray content() const
    {
        QByteArray all;
        const QStringList names = QDir(m_folder.path()).entryList({u"*.PCK"_s, u"*.DBF"_s, u"*.FPT"_s});
        for (const QString &name : names) {
            QFile file(m_folder.filePath(name));
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            all += name.toUtf8() + file.readAll();
        }
        return all;
    }

    QTemporaryDir m_folder;
    std::unique_ptr<DBEngine> m_engine = dao::makeEmbeddedEngine();
    std::shared_ptr<dao::Database> m_db;
};

} // namespace

TEST_P(LimitsTest, AreKeptBeforeTheWrite)
{
    const QString quoted = u'\'' + QString(255, u'ä') + u'\'';
    const QDateTime morning(QDate(2003, 1, 1), QTime(6, 0));
    // clang-format off
    const Limit limits[] = {
        {All, u"Ziel TEXT(10)"_s, u"'zehn Zei.'"_s, u"'elf Zeichen'"_s, 3163, {u"'elf Zeichen'"_s, u"11"_s, u"10"_s}},
        {All, u"Ziel TEXT(1)"_s, u"'ß'"_s, u"'ßß'"_s, 3163, {u"2 Zeichen"_s, u"sind 1"_s}},
        {All, u"Ziel TEXT(3)"_s, u"999"_s, u"1000"_s, 3163, {u"4 Zeichen"_s}},
        // letters that the code page lacks, of one unit and of two; the mark of compressed text
        {Jet3 | DBase, u"Ziel TEXT(10)"_s, u"'é'"_s, u"'aЖ'"_s, 3421, {u"Ж"_s, u"U+0416"_s, u"Windows-1252"_s}},
        {Jet3 | DBase, u"Ziel MEMO"_s, u"'é'"_s, u"'aЖ'"_s, 3421, {u"Ж"_s, u"U+0416"_s}},
        {Jet3 | DBase, u"Ziel TEXT(10)"_s, u"'é'"_s, u"'\U0001F600'"_s, 3421, {u"U+1F600"_s}},
        {Jet4, u"Ziel TEXT(10)"_s, u"'a\uFEFF'"_s, u"'\uFEFFa'"_s, 3421, {u"U+FEFF"_s}},
        {Jet, u"Ziel BYTE"_s, u"255"_s, u"256"_s, 3349, {u"'256'"_s, u"0 bis 255"_s}},
        {Jet, u"Ziel BYTE"_s, u"0"_s, u"-1"_s, 3349, {u"0 bis 255"_s}},
        {Jet, u"Ziel SHORT"_s, u"32767"_s, u"32768"_s, 3349, {u"-32768 bis 32767"_s}},
        {Jet, u"Ziel SHORT"_s, u"'-32768'"_s, u"'-32769'"_s, 3349, {u"-32768"_s}},
        {Jet, u"Ziel SHORT"_s, u"32767.4"_s, u"32767.5"_s, 3349, {u"32767,5"_s}}, // rounded first
        {Jet, u"Ziel LONG"_s, u"-2147483648"_s, u"2147483648"_s, 3349, {u"2147483647"_s}},
        {Jet, u"Ziel LONG"_s, u"0"_s, u"1E400"_s, 3349, {}, 1e300},
        {Jet, u"Ziel CURRENCY"_s, u"922337203685477"_s, u"922337203685478"_s, 3349, {u"922337203685477,5807"_s}},
        {Jet, u"Ziel CURRENCY"_s, u"-922337203685477"_s, u"-922337203685478"_s, 3349, {u"-922337203685477,5808"_s},
         QVariant::fromValue(storage::Decimal{u"-922337203685478"_s})},
        {Jet, u"Ziel SINGLE"_s, u"3.4E38"_s, u"-3.5E38"_s, 3349, {u"±3,4"_s}},
        {Jet, u"Ziel DOUBLE"_s, u"1.7E308"_s, u"1E309"_s, 3349, {}, HUGE_VAL},
        {Jet4, u"Ziel DECIMAL(5, 1)"_s, u"9999.9"_s, u"10000.5"_s, 3349, {u"5 Stellen"_s, u"1 hinter dem Komma"_s}},
        {Jet, u"Ziel DATETIME"_s, u"2958465"_s, u"2958466"_s, 3349, {u"31.12.9999"_s}},
        {Jet, u"Ziel DATETIME"_s, u"-657434"_s, u"-657435"_s, 3349, {u"01.01.100"_s}},
        {All, u"Ziel DATETIME"_s, u"'24.12.2003'"_s, u"'31.02.2003'"_s, 3421, {u"'31.02.2003'"_s}},
        {Jet, u"Ziel BINARY(10)"_s, {}, {}, 3163, {u"11 Bytes"_s, u"10"_s}, QByteArray(11, 'b')},
        {Jet3, fullColumns(7, u'x') + u"Ziel TEXT(255)"_s, u"''"_s, quoted, 3047, {u"2048 Bytes"_s, u"2012"_s}},
        {Jet4, fullColumns(15, u'x') + u"Ziel TEXT(255)"_s, u"''"_s, quoted, 3047, {u"4096 Bytes"_s, u"4060"_s}},
        {Jet3, fullColumns(2, u'ä') + u"Ziel TEXT(255); CREATE INDEX i ON t (F0, F1, Ziel)"_s, u"''"_s, quoted, 3163,
         {u"Index i"_s, u"896"_s}},
        {Jet4, fullColumns(3, u'ä') + u"Ziel TEXT(255); CREATE INDEX i ON t (F0, F1, F2, Ziel)"_s, u"''"_s, quoted,
         3163, {u"Index i"_s, u"1804"_s}},
        {DBase, u"Ziel SHORT"_s, u"-99999"_s, u"-100000.0"_s, 3349, {u"6 Stellen"_s}},
        {DBase, u"Ziel DECIMAL(5, 2)"_s, u"999.99"_s, u"99999.5"_s, 3349, {u"7 Stellen"_s, u"2 hinter dem Komma"_s}},
        {DBase, u"Ziel DATETIME"_s, u"37316"_s, u"37316.5"_s, 3349, {u"Uhrzeit"_s}, morning},
    };
    // clang-format on
    for (const Limit &limit : limits) {
        if ((limit.formats & GetParam()) == 0)
            continue;
        const QStringList parts = limit.columns.split(u"; "_s);
        m_db->Execute(u"CREATE TABLE t (Nr LONG, "_s + parts[0] + u')');
        for (const QString &more : parts.mid(1))
            m_db->Execute(more);
        m_db->Execute(u"INSERT INTO t (Nr) VALUES (1)"_s);
        m_db->Execute(u"INSERT INTO t (Nr) VALUES (2)"_s);
        const auto refuses = [&](const char *way, int number, const std::function<void()> &work) {
            SCOPED_TRACE(way);
            QString description;
            EXPECT_EQ(TestEngine::errorOf(work, &description), number) << qPrintable(description);
            EXPECT_TRUE(description.contains(u"Ziel"_s, Qt::CaseInsensitive)) << qPrintable(description);
            for (const QString &mention : limit.mention)
                EXPECT_TRUE(description.contains(mention)) << qPrintable(description);
        };
        SCOPED_TRACE(qPrintable(parts[0].right(20) + u" = "_s + limit.bad));
        const auto record = m_db->OpenRecordset(u"SELECT * FROM t WHERE Nr = 2"_s);
        const QByteArray before = content();
        if (!limit.bad.isEmpty()) {
            const QString second = u"IIf(Nr = 1, %1, %2)"_s.arg(limit.good, limit.bad);
            refuses("INSERT", limit.number,
                    [&] { m_db->Execute(u"INSERT INTO t (Nr, Ziel) VALUES (3, %1)"_s.arg(limit.bad)); });
            refuses("UPDATE", limit.number, [&] { m_db->Execute(u"UPDATE t SET Ziel = "_s + second); });
            refuses("INSERT SELECT", limit.number,
                    [&] { m_db->Execute(u"INSERT INTO t (Nr, Ziel) SELECT Nr, "_s + second + u" FROM t"_s); });
        }
        refuses("Recordset", limit.number == 3349 ? 3421 : limit.number, [&] {
            record->Edit();
            record->Fields(u"Ziel"_s).setValue(limit.value.isValid() ? limit.value : meant(limit.bad));
            record->Update();
        });
        EXPECT_TRUE(content() == before);
        if (!limit.good.isEmpty()) {
            EXPECT_EQ(m_db->Execute(u"UPDATE t SET Ziel = "_s + limit.good), 2);
            EXPECT_FALSE(content() == before);
        }
        record->Close();
        m_db->Execute(u"DROP TABLE t"_s);
    }
}

TEST(Limits, MemoFilesEndWhereTheirProgramsNoLongerReach)
{
    const QTemporaryDir folder;
    const auto engine = dao::makeEmbeddedEngine();
    const auto db = engine->OpenDatabase(folder.path(), 0, false, u"FoxPro 2.6;"_s);
    db->Execute(u"CREATE TABLE t (Nr LONG, Notiz MEMO)"_s);
    db->Execute(u"INSERT INTO t (Nr) VALUES (1)"_s);
    QFile memos(folder.filePath(u"T.FPT"_s));
    const qint64 nearlyFull = 0x7FFFFF80; // mostly a hole, which takes no room on the disk
    ASSERT_TRUE(memos.resize(nearlyFull));
    const QString update = u"UPDATE t SET Notiz = '%1'"_s;
    QString description;
    EXPECT_EQ(TestEngine::errorOf([&] { db->Execute(update.arg(QString(100, u'x'))); }, &description), 3036);
    EXPECT_TRUE(description.contains(memos.fileName())) << qPrintable(description);
    EXPECT_EQ(memos.size(), nearlyFull);
    EXPECT_EQ(db->Execute(update.arg(QString(50, u'x'))), 1);
}

INSTANTIATE_TEST_SUITE_P(Formats, LimitsTest, testing::Values(Jet3, Jet4, DBase), [](const auto &format) {
    return std::string(format.param == Jet3 ? "Jet3" : format.param == Jet4 ? "Jet4" : "DBase");
});
