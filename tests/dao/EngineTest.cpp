// Sessions, opening and closing, connect strings, and the numbers of every failure.
#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

#include "platform/dao/embedded/ConnectString.h"
#include "platform/dao/embedded/Errors.h"
#include "tests/dao/TestDatabase.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

TEST(ConnectString, IsTakenApart)
{
    const auto jet = dao::connectStringOf(u";DATABASE=C:\\Daten\\a.PCK;PWD=Ge=heim 01"_s);
    EXPECT_TRUE(jet.isJet && !jet.isDBase);
    EXPECT_EQ(jet.database, u"C:\\Daten\\a.PCK"_s);
    EXPECT_EQ(jet.password, u"Ge=heim 01"_s);
    EXPECT_EQ(dao::connectStringOf(u";database=a;pwd=;"_s).password, QString());
    EXPECT_TRUE(dao::connectStringOf({}).isJet);
    EXPECT_TRUE(dao::connectStringOf(u"FoxPro 2.6;"_s).isDBase);
    EXPECT_TRUE(dao::connectStringOf(u"dbase iv;"_s).isDBase);
    EXPECT_FALSE(dao::connectStringOf(u"Excel 8.0;"_s).isJet);
}

TEST(Engine, HandsTheRequestToTheRightDriver)
{
    TestEngine t;
    const QString lastPart = t.path.section(u'/', -1).toUpper();
    t.engine->OpenDatabase(t.path.chopped(lastPart.size()).replace(u'/', u'\\') + lastPart, 0, true,
                           u";DATABASE=b;PWD="_s);
    EXPECT_EQ(t.jet->lastRequest.path, t.path);
    EXPECT_TRUE(t.jet->lastRequest.readOnly);
    EXPECT_EQ(t.engine->OpenDatabase({}, 0, false, u";DATABASE="_s + t.path)->Name(), t.path);
    QString description;
    EXPECT_EQ(TestEngine::errorOf([&] { t.engine->OpenDatabase(u"x\\b"_s, 0, false, u";PWD=geheim"_s); }, &description),
              3024);
    EXPECT_TRUE(description.contains(u"x/b"_s) && !description.contains(u"''"_s)) << description.toStdString();
    EXPECT_EQ(t.jet->lastRequest.password, u"geheim"_s);
    t.engine->OpenDatabase(t.folder.path(), 0, false, u"FoxPro 2.6;"_s);
    EXPECT_EQ(t.dbase->lastRequest.path, t.folder.path());
    EXPECT_EQ(TestEngine::errorOf([&] { t.engine->OpenDatabase(u"x"_s, 0, false, u"Excel 8.0;"_s); }), 3170);
    EXPECT_EQ(TestEngine::errorOf([&] { t.engine->CreateDatabase(t.path, {}, dao::DBEngine::dbVersion40); }), 3204);
}

TEST(Engine, EndsWhatWasOpenedThroughAnObject)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a LONG)", u"INSERT INTO t VALUES (1)"});
    const auto workspace = t.engine->CreateWorkspace(u"TEST"_s, u"wer"_s, u"wie"_s);
    t.engine->AppendWorkspace(workspace);
    EXPECT_EQ(TestEngine::errorOf([&] { t.engine->AppendWorkspace(t.engine->CreateWorkspace(u"test"_s, {}, {})); }),
              3367);
    const auto first = workspace->OpenDatabase(t.path, 0, false, {});
    const auto second = workspace->OpenDatabase(t.path, 0, false, {});
    const auto records = first->OpenRecordset(u"t"_s);
    const auto others = second->OpenRecordset(u"SELECT a + 1 FROM t"_s);
    records->Edit();
    first->Close();
    workspace->Close();
    const std::function<void()> uses[] = {
        [&] { records->Eof(); },
        [&] { records->Fields(0).Value(); },
        [&] { records->Fields(0).Name(); },
        [&] { records->Update(); },
        [&] { records->Close(); },
        [&] { others->MoveLast(); },
        [&] { first->Close(); },
        [&] { first->Name(); },
        [&] { second->Execute(u"DELETE FROM t"_s); },
        [&] { second->OpenRecordset(u"t"_s); },
        [&] { workspace->OpenDatabase(t.path, 0, false, {}); },
        [&] { workspace->Close(); },
    };
    for (const auto &use : uses)
        EXPECT_EQ(TestEngine::errorOf(use), 3420);
    EXPECT_EQ(t.rows(u"t"_s), u"1"_s) << "the same file by another session";
    t.engine->AppendWorkspace(t.engine->CreateWorkspace(u"TEST"_s, {}, {}));
}

TEST(Engine, KeepsARecordsetWhoseDatabaseWasOnlyDropped)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a LONG)", u"INSERT INTO t VALUES (1)"});
    const auto records = t.db->OpenRecordset(u"t"_s);
    t.db.reset();
    EXPECT_EQ(records->Fields(0).Value(), 1);
    records->Close();
    EXPECT_EQ(TestEngine::errorOf([&] { records->RecordCount(); }), 3420);
}

TEST(Engine, RefusesWritesToAReadOnlyDatabase)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a LONG)", u"INSERT INTO t VALUES (1)"});
    t.db = t.engine->OpenDatabase(t.path, 0, true, {});
    EXPECT_EQ(t.executeError(u"UPDATE t SET a = 2"_s), 3027);
    EXPECT_EQ(t.executeError(u"DROP TABLE t"_s), 3027);
    EXPECT_EQ(t.openError(u"SELECT a FROM fehlt"_s), 3078);
    EXPECT_EQ(TestEngine::errorOf([&] { t.db->OpenRecordset(u"t"_s)->Edit(); }), 3027);
    EXPECT_EQ(t.rows(u"t"_s), u"1"_s);
}

TEST(Engine, NumbersEveryFailureOfADriver)
{
    struct Row {
        StorageError::Kind kind;
        int opening;
        int writing;
    };
    const Row rows[] = {
        {StorageError::Missing, 3024, 3024},       {StorageError::NotThisFormat, 3343, 3343},
        {StorageError::WrongPassword, 3031, 3031}, {StorageError::Damaged, 3049, 3428},
        {StorageError::ReadOnly, 3027, 3027},      {StorageError::FolderReadOnly, 3050, 3050},
        {StorageError::NoPermission, 3051, 3051},  {StorageError::Locked, 3045, 3260},
        {StorageError::DiskFull, 3026, 3026},      {StorageError::FileFull, 3036, 3036},
        {StorageError::InputOutput, 3040, 3040},   {StorageError::ConnectionLost, 3043, 3043},
        {StorageError::NoSuchTable, 3078, 3078},   {StorageError::NoSuchColumn, 3409, 3409},
        {StorageError::NoSuchIndex, 3015, 3015},   {StorageError::AlreadyExists, 3204, 3012},
        {StorageError::Duplicate, 3022, 3022},     {StorageError::Required, 3314, 3314},
        {StorageError::ZeroLength, 3315, 3315},    {StorageError::TooLong, 3163, 3163},
        {StorageError::RowTooLong, 3047, 3047},    {StorageError::OutOfRange, 3349, 3349},
        {StorageError::NotEncodable, 3421, 3421},  {StorageError::WrongType, 3421, 3421},
        {StorageError::RuleViolated, 3317, 3317},  {StorageError::ParentMissing, 3201, 3201},
        {StorageError::ChildrenExist, 3200, 3200}, {StorageError::RowGone, 3167, 3167},
        {StorageError::Unsupported, 3251, 3251},
    };
    TestEngine t;
    t.run({u"CREATE TABLE t (a LONG)"});
    for (const Row &row : rows) {
        SCOPED_TRACE(row.writing);
        const StorageError error(row.kind, u"Ursache und Ort"_s, u"Sache"_s);
        QString description;
        t.jet->failOnOpen = error;
        EXPECT_EQ(TestEngine::errorOf([&] { t.engine->OpenDatabase(u"x"_s, 0, false, {}); }, &description),
                  row.opening);
        if (row.kind == StorageError::WrongPassword)
            EXPECT_EQ(description, u"Kein zulässiges Kennwort."_s);
        else
            EXPECT_TRUE(description.endsWith(u"Ursache und Ort"_s)) << description.toStdString();
        t.jet->failOnOpen.reset();
        t.jet->failOnWrite = error;
        EXPECT_EQ(t.executeError(u"INSERT INTO t VALUES (1)"_s), row.writing);
        t.jet->failOnWrite.reset();
    }
    t.run({u"INSERT INTO t VALUES (1)"}); // no failure lingers
}

TEST(Engine, ReportsDamageFoundWhileReading)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a LONG)", u"INSERT INTO t VALUES (1)", u"INSERT INTO t VALUES (2)"});
    t.jet->failOnRead = StorageError(StorageError::Damaged, u"Seite 7"_s);
    QString description;
    for (const QString &source : {u"t"_s, u"SELECT a FROM t"_s, u"SELECT Count(*) FROM t"_s}) {
        EXPECT_EQ(t.openError(source, &description), 3428);
        EXPECT_TRUE(description.contains(u"Seite 7"_s));
    }
    EXPECT_EQ(t.executeError(u"DELETE FROM t"_s), 3428);
    t.jet->failOnRead.reset();
    EXPECT_EQ(t.rows(u"t"_s), u"1;2"_s);
}

TEST(Engine, OpensRealFiles)
{
    const QTemporaryDir folder;
    const auto engine = dao::makeEmbeddedEngine();
    const QString path = folder.filePath(u"Mandant.PCK"_s);
    engine->CreateDatabase(path, u";PWD=geheim"_s, dao::DBEngine::dbVersion40)
        ->Execute(u"CREATE TABLE t (a TEXT(5))"_s);
    const auto open = [&](const QString &name, const QString &connect) {
        return TestEngine::errorOf([&] { engine->OpenDatabase(name, 0, false, connect); });
    };
    EXPECT_EQ(open(path, u";DATABASE=Mandant.PCK;PWD=geheim"_s), 0);
    EXPECT_EQ(open(folder.filePath(u"MANDANT.pck"_s).replace(u'/', u'\\'), u";PWD=geheim"_s), 0);
    EXPECT_EQ(open(path, u";PWD=Geheim"_s), 3031);
    EXPECT_EQ(open(path, {}), 3031);
    EXPECT_EQ(open(folder.filePath(u"fehlt.PCK"_s), {}), 3024);
    QFile other(folder.filePath(u"Brief.PCK"_s));
    ASSERT_TRUE(other.open(QIODevice::WriteOnly));
    other.write("Sehr geehrte Damen und Herren, dies ist keine Datenbank.");
    other.close();
    EXPECT_EQ(open(other.fileName(), {}), 3343);
    const auto tables = engine->OpenDatabase(folder.path(), 0, false, u"FoxPro 2.6;"_s);
    tables->Execute(u"CREATE TABLE KONTAKTE (NAME CHAR(20))"_s);
    EXPECT_EQ(tables->Execute(u"INSERT INTO kontakte VALUES ('Müller')"_s), 1);
    EXPECT_EQ(tables->OpenRecordset(u"SELECT name FROM Kontakte WHERE NAME Like 'M*'"_s)->Fields(0).Value(),
              u"Müller"_s);
    EXPECT_EQ(open(folder.filePath(u"fehlt"_s), u"FoxPro 2.6;"_s), 3024);
}
