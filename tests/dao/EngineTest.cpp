// Sessions, opening and closing, connect strings, and the numbers of every failure.
#include <gtest/gtest.h>

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
    EXPECT_TRUE(dao::connectStringOf(u"dbase iv;"_s).isDBase);
}

TEST(Engine, HandsTheRequestToTheRightDriver)
{
    TestEngine t;
    QString description;
    const auto open = [&](const QString &name, const QString &connect) {
        return TestEngine::errorOf([&] { t.engine->OpenDatabase(name, 0, false, connect); }, &description);
    };
    const QString lastPart = t.path.section(u'/', -1).toUpper();
    t.engine->OpenDatabase(t.path.chopped(lastPart.size()).replace(u'/', u'\\') + lastPart, 0, true,
                           u";DATABASE=b;PWD="_s);
    EXPECT_EQ(t.jet->lastRequest.path, t.path);
    EXPECT_TRUE(t.jet->lastRequest.readOnly);
    EXPECT_EQ(t.engine->OpenDatabase({}, 0, false, u";DATABASE="_s + t.path)->Name(), t.path);
    EXPECT_EQ(open(u"x\\b"_s, u";PWD=geheim"_s), 3024);
    EXPECT_TRUE(description.contains(u"x/b"_s) && !description.contains(u"''"_s)) << description.toStdString();
    EXPECT_EQ(t.jet->lastRequest.password, u"geheim"_s);
    EXPECT_EQ(open(t.folder.path(), u"FoxPro 2.6;"_s), 0);
    EXPECT_EQ(t.dbase->lastRequest.path, t.folder.path());
    EXPECT_EQ(open(t.folder.filePath(u"fehlt"_s), u"FoxPro 2.6;"_s), 3024);
    EXPECT_EQ(open(u"x"_s, u"Excel 8.0;"_s), 3170);
    EXPECT_EQ(TestEngine::errorOf([&] { t.engine->CreateDatabase(t.path, {}, dao::DBEngine::dbVersion40); }), 3204);
}

TEST(Engine, EndsWhatWasOpenedThroughAnObject)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a LONG)", u"INSERT INTO t VALUES (1)"});
    const auto append = [&] { t.engine->AppendWorkspace(t.engine->CreateWorkspace(u"test"_s, {}, {})); };
    const auto workspace = t.engine->CreateWorkspace(u"TEST"_s, u"wer"_s, u"wie"_s);
    t.engine->AppendWorkspace(workspace);
    EXPECT_EQ(TestEngine::errorOf(append), 3367);
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
        EXPECT_EQ(TestEngine::errorOf(use), 3420) << &use - uses;
    append();

    const auto kept = t.db->OpenRecordset(u"t"_s);
    t.db.reset(); // only dropped
    EXPECT_EQ(kept->Fields(0).Value(), 1) << "the same file by another session";
    kept->Close();
    EXPECT_EQ(TestEngine::errorOf([&] { kept->RecordCount(); }), 3420);
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
        int working;
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
    for (const auto &[kind, opening, working] : rows) {
        const dao::DaoError error = dao::daoError({kind, u"Ursache und Ort"_s, u"Sache"_s}, dao::Doing::Open);
        EXPECT_EQ(error.Number(), opening);
        EXPECT_EQ(dao::daoError({kind, {}}, dao::Doing::Work).Number(), working);
        const QString end = kind == StorageError::WrongPassword ? u"Kein zulässiges Kennwort."_s : u"Ursache und Ort"_s;
        EXPECT_TRUE(error.Description().endsWith(end)) << error.Description().toStdString();
    }
}

TEST(Engine, ReportsDamageByWhatItWasDoing)
{
    TestEngine t;
    t.run({u"CREATE TABLE t (a LONG)", u"INSERT INTO t VALUES (1)", u"INSERT INTO t VALUES (2)"});
    t.jet->fault = StorageError(StorageError::Damaged, u"Seite 7"_s);
    QString description;
    for (const QString &source : {u"t"_s, u"SELECT a FROM t"_s, u"SELECT Count(*) FROM t"_s}) {
        EXPECT_EQ(t.openError(source, &description), 3428);
        EXPECT_TRUE(description.contains(u"Seite 7"_s));
    }
    EXPECT_EQ(t.executeError(u"DELETE FROM t"_s), 3428);
    EXPECT_EQ(TestEngine::errorOf([&] { t.engine->OpenDatabase(t.path, 0, false, {}); }), 3049);
    t.jet->fault.reset();
    EXPECT_EQ(t.rows(u"t"_s), u"1;2"_s);
}
