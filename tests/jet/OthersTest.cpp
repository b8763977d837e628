// Other users of a file: who sees whom, and who waits for whom.
#include <chrono>

#include <QFile>
#include <QSysInfo>

#include "tests/jet/JetFileTest.h"
#include "tests/jet/Stranger.h"

using namespace Qt::StringLiterals;
using storage::Assignment;
using storage::StorageError;

namespace {

constexpr qint64 userLocks = 0x10000000;
constexpr int entries = 255;

storage::ByteRange entryLock(int entry)
{
    return {userLocks + entry, 1};
}

class Office
{
public:
    Office()
    {
        m_file.open()->createTable({.name = u"T"_s, .columns = {{.name = u"A"_s, .type = storage::Type::Long}}});
    }
    const TestFile &file() const { return m_file; }
    QString lockFile() const { return m_file.path().chopped(4) + u".ldb"_s; }
    QByteArray lockFileContent() const
    {
        QFile file(lockFile());
        return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
    }

    static std::size_t rows(storage::Database &database)
    {
        std::size_t count = 0;
        for (const auto cursor = database.table(u"T"_s)->scan(); cursor->next();)
            ++count;
        return count;
    }
    static void insert(storage::Database &database)
    {
        database.table(u"T"_s)->insert(std::vector<Assignment>{{0, std::int64_t{1}}});
    }
    /// "" if `work` can be done, else "locked".
    template <typename Work> static std::string refusal(const Work &work)
    {
        try {
            work();
            return "";
        } catch (const StorageError &error) {
            EXPECT_EQ(error.kind(), StorageError::Locked) << error.what();
            return "locked";
        }
    }

private:
    TestFile m_file{storage::FileVersion::Jet4};
};

struct Case {
    const char *name;
    std::vector<Stranger::Lock> locks; ///< paths are endings: "ldb" or "mdb"
    bool opens = true;
    bool writes = false;
    int milliseconds = 60000;
};

std::vector<Case> cases()
{
    std::vector<Stranger::Lock> all{{u"ldb"_s, {userLocks + 1, entries}}};
    return {
        {"OnlyAnEntry", {{u"ldb"_s, entryLock(1)}}},
        {"TheLastEntry", {{u"ldb"_s, entryLock(entries)}}},
        {"EntryWithSharedLock", {{u"ldb"_s, entryLock(3), F_RDLCK}}},
        {"AllEntries", all, false},
        {"LockOfAPage", {{u"ldb"_s, {0x2000A601, 1}, F_RDLCK}}},
        {"LockOfATable", {{u"ldb"_s, {0x6FF800FF, 1}}}},
        {"TheWholeDatabase", {{u"mdb"_s, {0, 0}}}, false},
        {"PartOfTheDatabase", {{u"mdb"_s, {4096, 10}, F_RDLCK}}},
        {"EntryForAMoment", {{u"ldb"_s, entryLock(1)}}, true, true, 300},
        {"AllEntriesForAMoment", all, true, true, 300},
        {"TheWholeDatabaseForAMoment", {{u"mdb"_s, {0, 0}}}, true, true, 300},
        {"NothingOfOurs", {{u"ldb"_s, {0, 1000}}}, true, true},
    };
}

std::vector<Stranger::Lock> locksBeside(const Office &office, std::vector<Stranger::Lock> locks)
{
    for (Stranger::Lock &lock : locks)
        lock.path = lock.path == u"ldb"_s ? office.lockFile() : office.file().path();
    return locks;
}

class Others : public testing::TestWithParam<Case>
{ };

INSTANTIATE_TEST_SUITE_P(Hold, Others, testing::ValuesIn(cases()), [](const auto &row) { return row.param.name; });

} // namespace

TEST_P(Others, KeepUsOutAsFarAsTheyMust)
{
    const Case &row = GetParam();
    const Office office;
    const auto database = row.locks[0].path == u"ldb"_s && row.locks[0].range.first == userLocks + 1
        ? nullptr // they have taken our entry
        : office.file().open();
    const Stranger stranger(locksBeside(office, row.locks), row.milliseconds);
    ASSERT_TRUE(stranger.got());
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(Office::refusal([&] {
                  const auto second = office.file().open();
                  EXPECT_EQ(Office::rows(*second), 0U);
              }),
              row.opens ? "" : "locked");
    if (database) {
        EXPECT_EQ(Office::rows(*database), 0U);
        EXPECT_EQ(Office::refusal([&] { Office::insert(*database); }), row.writes ? "" : "locked");
    } else if (row.opens) {
        const auto opened = office.file().open();
        EXPECT_EQ(Office::refusal([&] { Office::insert(*opened); }), row.writes ? "" : "locked");
    }
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited.count(), row.writes ? 0.0 : 1.9);
}

TEST(OthersSee, OurEntryAndOnlyAsLongAsWeAreIn)
{
    const Office office;
    const QByteArray ours
        = (QSysInfo::machineHostName().toLatin1().left(31).leftJustified(32, '\0') + "Admin").leftJustified(64, '\0');
    const auto isHeld = [&](int entry) { return !Stranger({{office.lockFile(), entryLock(entry)}}).got(); };
    auto first = office.file().open();
    auto second = office.file().open(true);
    EXPECT_EQ(office.lockFileContent(), ours + ours);
    EXPECT_TRUE(isHeld(1) && isHeld(2) && !isHeld(3));
    first.reset();
    EXPECT_TRUE(!isHeld(1) && isHeld(2));
    second.reset();
    EXPECT_FALSE(QFile::exists(office.lockFile()));

    const Stranger stranger({{office.lockFile(), entryLock(1)}});
    first = office.file().open();
    EXPECT_EQ(office.lockFileContent().mid(64), ours);
    first.reset();
    EXPECT_TRUE(QFile::exists(office.lockFile()));
}

TEST(OthersSee, NoFreeEntryWhileWeWrite)
{
    const Office office;
    const auto database = office.file().open();
    const auto freeEntries = [&] {
        int count = 0;
        for (const int entry : {1, 2, 3, 100, entries})
            count += Stranger({{office.lockFile(), entryLock(entry)}}).got() ? 1 : 0;
        return count;
    };
    EXPECT_EQ(freeEntries(), 4);
    {
        const auto scope = database->beginWrite();
        EXPECT_EQ(freeEntries(), 0);
        EXPECT_FALSE(Stranger({{office.file().path(), {0, 1}, F_RDLCK}}).got());
        EXPECT_FALSE(Stranger({{office.file().path(), {0x7FFFFFFE, 1}, F_RDLCK}}).got());
    }
    EXPECT_EQ(freeEntries(), 4);
}

TEST(OthersLeft, EntriesThatMeanNothing)
{
    for (const QString &name : {u"test.ldb"_s, u"TEST.LDB"_s}) {
        const Office office;
        const QString path = office.lockFile().chopped(8) + name;
        QFile stale(path);
        ASSERT_TRUE(stale.open(QFile::WriteOnly));
        stale.write(QByteArray("RECHNER7").leftJustified(32, '\0') + QByteArray("Admin").leftJustified(32, '\0'));
        stale.write(QByteArray(64 * 3, 'x'));
        stale.close();
        auto database = office.file().open();
        Office::insert(*database);
        EXPECT_EQ(QFile::exists(office.lockFile()), name == u"test.ldb"_s);
        EXPECT_EQ(QFileInfo(path).size(), 64 * 4);
        database.reset();
        EXPECT_FALSE(QFile::exists(path));
        EXPECT_EQ(office.file().faults(), QString());
    }
}

TEST(OthersChange, WhatAReaderSees)
{
    const Office office;
    const auto reader = office.file().open(true);
    EXPECT_EQ(Office::rows(*reader), 0U);
    const auto writer = office.file().open();
    Office::insert(*writer);
    EXPECT_EQ(Office::rows(*reader), 1U);
    try {
        Office::insert(*reader);
        ADD_FAILURE() << "a reader has written";
    } catch (const StorageError &error) {
        EXPECT_EQ(error.kind(), StorageError::ReadOnly);
    }
    const auto scope = writer->beginWrite();
    Office::insert(*writer);
    EXPECT_EQ(Office::rows(*reader), 1U);
    EXPECT_EQ(Office::rows(*writer), 2U);
}
