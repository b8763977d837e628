// Other users of a file: who sees whom, and who waits for whom.
#include <chrono>
#include <thread>

#include <QFile>
#include <QSysInfo>
#include <fcntl.h>
#include <unistd.h>

#include "tests/fakes/FaultyFiles.h"
#include "tests/jet/JetFileTest.h"

using namespace Qt::StringLiterals;
using Kind = storage::StorageError::Kind;
using storage::ByteRange;

namespace {

constexpr qint64 userLocks = 0x10000000;
constexpr int entries = 255;

ByteRange entryLock(int entry)
{
    return {userLocks + entry, 1};
}

/// Another program that holds an ordinary record lock.
class Stranger
{
public:
    Stranger(const QString &path, ByteRange range, int type = F_WRLCK)
        : m_file(::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT, 0666))
    {
        // A lock of the file handle, since those of a process never keep the process itself out.
        struct flock wanted = {};
        wanted.l_type = static_cast<short>(type);
        wanted.l_start = range.first;
        wanted.l_len = range.size;
        m_got = fcntl(m_file, F_OFD_SETLK, &wanted) == 0;
    }
    ~Stranger() { ::close(m_file); }
    Stranger(const Stranger &) = delete;
    Stranger &operator=(const Stranger &) = delete;

    bool got() const { return m_got; }

private:
    int m_file;
    bool m_got = false;
};

/// A table of rows that are all alike.
class Office : public TestFile
{
public:
    Office()
        : TestFile(plainKinds[1])
    {
        open()->createTable({.name = u"T"_s, .columns = {{.name = u"A"_s, .type = storage::Type::Long}}});
    }
    QString lockFile() const { return path().chopped(4) + u".ldb"_s; }
    bool isFree(int entry) const { return Stranger(lockFile(), entryLock(entry)).got(); }

    static std::size_t rows(storage::Database &database) { return count(*database.table(u"T"_s)->scan()); }
    static void insert(storage::Database &database) { database.table(u"T"_s)->insert({{{0, std::int64_t{1}}}}); }
};

struct Case {
    const char *name;
    const char *file; ///< whose ending it is
    ByteRange lock;
    int type = F_WRLCK;
    std::optional<Kind> opening{};
    std::optional<Kind> writing = Kind::Locked;
    int milliseconds = 0; ///< 0: it stays
};

void PrintTo(const Case &row, std::ostream *out)
{
    *out << row.name;
}

const Case cases[] = {
    {"OnlyAnEntry", "ldb", entryLock(1)},
    {"TheLastEntry", "ldb", entryLock(entries)},
    {"EntryWithSharedLock", "ldb", entryLock(3), F_RDLCK},
    {"AllEntries", "ldb", {userLocks + 1, entries}, F_WRLCK, Kind::Locked},
    {"LockOfAPage", "ldb", {0x2000A601, 1}, F_RDLCK},
    {"LockOfATable", "ldb", {0x6FF800FF, 1}},
    {"TheWholeDatabase", "mdb", {0, 0}, F_WRLCK, Kind::Locked},
    {"PartOfTheDatabase", "mdb", {4096, 10}, F_RDLCK},
    {"EntryForAMoment", "ldb", entryLock(1), F_WRLCK, {}, {}, 300},
    {"AllEntriesForAMoment", "ldb", {userLocks + 1, entries}, F_WRLCK, {}, {}, 300},
    {"TheWholeDatabaseForAMoment", "mdb", {0, 0}, F_WRLCK, {}, {}, 300},
    {"NothingOfOurs", "ldb", {0, 1000}, F_WRLCK, {}, {}},
};

class Others : public testing::TestWithParam<Case>
{ };

INSTANTIATE_TEST_SUITE_P(Hold, Others, testing::ValuesIn(cases), testing::PrintToStringParamName());

} // namespace

TEST_P(Others, KeepUsOutAsFarAsTheyMust)
{
    const Case &row = GetParam();
    const Office office;
    // Where they have taken our entry, we come later.
    auto database = row.lock.first == userLocks + 1 ? nullptr : office.open();
    auto stranger
        = std::make_unique<Stranger>(office.path().chopped(3) + QLatin1StringView(row.file), row.lock, row.type);
    ASSERT_TRUE(stranger->got());
    std::jthread leaving;
    if (row.milliseconds != 0) {
        leaving = std::jthread([&] {
            std::this_thread::sleep_for(std::chrono::milliseconds(row.milliseconds));
            stranger.reset();
        });
    }
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(kindOf([&] { EXPECT_EQ(Office::rows(*office.open()), 0U); }), row.opening);
    if (!database && !row.opening)
        database = office.open();
    if (database) {
        EXPECT_EQ(Office::rows(*database), 0U);
        EXPECT_EQ(kindOf([&] { Office::insert(*database); }), row.writing);
    }
    const std::chrono::duration<double> waited = std::chrono::steady_clock::now() - begin;
    EXPECT_GE(waited.count(), row.writing ? 1.9 : 0.0);
}

TEST(OthersSee, OurEntryAndOnlyAsLongAsWeAreIn)
{
    const Office office;
    const QByteArray ours
        = (QSysInfo::machineHostName().toLatin1().left(31).leftJustified(32, '\0') + "Admin").leftJustified(64, '\0');
    const auto lockFile = [&] { return readFolder(QFileInfo(office.path()).path()).at(u"test.ldb"_s); };
    auto first = office.open();
    auto second = office.open(true);
    EXPECT_EQ(lockFile(), ours + ours);
    EXPECT_TRUE(!office.isFree(1) && !office.isFree(2) && office.isFree(3));
    first.reset();
    EXPECT_TRUE(office.isFree(1) && !office.isFree(2));
    second.reset();
    EXPECT_FALSE(QFile::exists(office.lockFile()));

    const Stranger stranger(office.lockFile(), entryLock(1));
    first = office.open();
    EXPECT_EQ(lockFile().mid(64), ours);
    first.reset();
    EXPECT_TRUE(QFile::exists(office.lockFile()));
}

TEST(OthersSee, NoFreeEntryWhileWeWrite)
{
    const Office office;
    const auto database = office.open();
    const auto freeEntries = [&] {
        const int looked[] = {1, 2, 3, 100, entries};
        return std::ranges::count_if(looked, [&](int entry) { return office.isFree(entry); });
    };
    EXPECT_EQ(freeEntries(), 4);
    {
        const auto scope = database->beginWrite();
        EXPECT_EQ(freeEntries(), 0);
        for (const qint64 byte : {0, 0x7FFFFFFE})
            EXPECT_FALSE(Stranger(office.path(), {byte, 1}, F_RDLCK).got());
    }
    EXPECT_EQ(freeEntries(), 4);
}

TEST(OthersLeft, EntriesThatMeanNothing)
{
    for (const QString &name : {u"test.ldb"_s, u"TEST.LDB"_s}) {
        const Office office;
        const QString path = office.path().chopped(8) + name;
        QFile stale(path);
        ASSERT_TRUE(stale.open(QFile::WriteOnly));
        stale.write(QByteArray("RECHNER7").leftJustified(32, '\0') + QByteArray("Admin").leftJustified(32, '\0'));
        stale.write(QByteArray(64 * 3, 'x'));
        stale.close();
        auto database = office.open();
        Office::insert(*database);
        EXPECT_EQ(QFile::exists(office.lockFile()), name == u"test.ldb"_s);
        EXPECT_EQ(QFileInfo(path).size(), 64 * 4);
        database.reset();
        EXPECT_FALSE(QFile::exists(path));
        EXPECT_EQ(office.faults(), QString());
    }
}

TEST(OthersLeft, AnEmptyJournalThatTheNextOneTakesAway)
{
    const Office office;
    const QString journal = office.path() + u".vjn"_s;
    for (const bool readOnly : {false, true}) {
        ASSERT_TRUE(QFile(journal).open(QFile::WriteOnly));
        const auto next = office.open(readOnly);
        EXPECT_FALSE(QFile::exists(journal)) << readOnly;
    }
    auto writer = office.open();
    Office::insert(*writer);
    auto second = office.open();
    EXPECT_TRUE(QFile::exists(journal)) << "in use";
    writer.reset();
    EXPECT_TRUE(QFile::exists(journal)) << "not the last one";
    second.reset();
    EXPECT_FALSE(QFile::exists(journal));
}

TEST(OthersChange, WhatAReaderSees)
{
    const Office office;
    const auto reader = office.open(true);
    EXPECT_EQ(Office::rows(*reader), 0U);
    const auto writer = office.open();
    Office::insert(*writer);
    EXPECT_EQ(Office::rows(*reader), 1U);
    EXPECT_EQ(kindOf([&] { Office::insert(*reader); }), Kind::ReadOnly);
    const auto other = office.open();
    Office::insert(*other);
    EXPECT_EQ(Office::rows(*writer), 2U);
    const auto scope = writer->beginWrite();
    Office::insert(*writer);
    EXPECT_EQ(Office::rows(*reader), 2U);
    EXPECT_EQ(Office::rows(*writer), 3U);
    EXPECT_EQ(kindOf([&] { Office::insert(*other); }), Kind::Locked);
}
