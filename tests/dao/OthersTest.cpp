// What programs see of each other's writes through recordsets and statements.
#include <gtest/gtest.h>

#include "platform/dbf/DbfDriver.h"
#include "platform/jet/JetDatabase.h"
#include "tests/dao/TestDatabase.h"
#include "tests/fakes/FaultyFiles.h"

using namespace Qt::StringLiterals;

namespace {

/// The numbers from the current row on; # for one that is gone, ? for one whose text is not its own.
QString rest(dao::Recordset &records)
{
    QStringList shown;
    for (; !records.Eof(); records.MoveNext()) {
        const int failed = TestEngine::errorOf([&] {
            const QString number = records.Fields(0).Value().toString();
            const QString text = QString(3000, QChar(u'a' + number.toInt() % 26));
            shown += records.Fields(1).Value() == text ? number : u"?"_s;
        });
        if (failed != 0)
            shown += failed == 3167 ? u"#"_s : QString::number(failed);
    }
    return shown.join(u' ');
}

} // namespace

TEST(Others, MayWriteBetweenTheStepsOfARecordset)
{
    // clang-format off
    struct Row { QString query; QStringList otherProgram; QString rest; };
    // The other program comes after the first row was seen. A set of rows is found when more than its first or last
    // row is asked for.
    const Row rows[] = {
        {u"t"_s, {u"DELETE FROM t WHERE Nr = 2"_s}, u"0 1 # 3 4 5"_s},
        {u"SELECT * FROM t ORDER BY Nr"_s, {u"DELETE FROM t WHERE Nr = 0"_s}, u"# 1 2 3 4 5"_s},
        {u"SELECT * FROM t WHERE Nr >= 2 ORDER BY Nr DESC"_s, {u"INSERT INTO t VALUES (7, 'neu')"_s,
         u"DELETE FROM t WHERE Nr = 3"_s, u"UPDATE t SET Text = Text WHERE Nr = 4"_s}, u"5 ? 4 2"_s},
        {u"SELECT * FROM t WHERE Nr < 3"_s, {u"DROP TABLE t"_s}, u"3078 3078 3078"_s},
        {u"SELECT * FROM t"_s, {u"DROP TABLE t"_s, u"CREATE TABLE t (Text MEMO, Nr LONG)"_s,
         u"INSERT INTO t VALUES ('x', 1)"_s}, u"3078 # # # # #"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.query.toStdString());
        TestEngine t;
        t.run({u"CREATE TABLE t (Nr LONG PRIMARY KEY, Text MEMO)"});
        for (int i = 0; i < 6; ++i)
            t.db->Execute(u"INSERT INTO t VALUES (%1, '%2')"_s.arg(i).arg(QString(3000, QChar(u'a' + i))));
        const auto records = t.db->OpenRecordset(row.query);
        static_cast<void>(records->Fields(1).Value());
        const auto other = t.engine->OpenDatabase(t.path, 0, false, {});
        for (const QString &statement : row.otherProgram)
            other->Execute(statement);
        EXPECT_EQ(rest(*records).toStdString(), row.rest.toStdString());
    }
}

TEST(Others, ShowTheirWritesWhenTheRecordsetComesToTheRowAgain)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (Nr LONG)", u"INSERT INTO t VALUES (1)"});
    const auto records = t.db->OpenRecordset(u"t"_s);
    EXPECT_EQ(records->Fields(0).Value(), 1);
    t.engine->OpenDatabase(t.path, 0, false, {})->Execute(u"UPDATE t SET Nr = 2"_s);
    records->MoveFirst();
    EXPECT_EQ(records->Fields(0).Value(), 2);
}

// A look at the file is two calls: the commit area, and the length.
TEST(Others, AreLookedForOnceForEachRowAndForEachLongValue)
{
    const QTemporaryDir folder;
    FaultyFiles files;
    dao::EmbeddedEngine engine(std::make_unique<jet::JetDriver>(files), std::make_unique<dbf::DbfDriver>(files));
    const auto db = engine.CreateDatabase(folder.filePath(u"Muster.PCK"_s), {}, dao::DBEngine::dbVersion40);
    QStringList columns;
    for (int i = 0; i < 40; ++i)
        columns += u"S%1 %2"_s.arg(i).arg(i % 2 == 0 ? u"LONG"_s : u"TEXT(10)"_s);
    db->Execute(u"CREATE TABLE t (%1, Langes MEMO)"_s.arg(columns.join(u", "_s)));
    for (int i = 0; i < 50; ++i)
        db->Execute(u"INSERT INTO t (S0, S1, Langes) VALUES (%1, 'x', 'y')"_s.arg(i));

    const auto records = db->OpenRecordset(u"t"_s);
    for (const auto &[fields, readings] : {std::pair(40, 2), std::pair(41, 4)}) {
        records->MoveFirst();
        files.start();
        for (int row = 0; row < 50; ++row, records->MoveNext()) {
            for (int field = 0; field < fields; ++field)
                static_cast<void>(records->Fields(field).Value());
        }
        EXPECT_EQ(files.readings(), 50 * readings) << fields << " fields";
    }
}
