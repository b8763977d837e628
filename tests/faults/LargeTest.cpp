// Statements that change more than there is room for in memory: interrupted, failing, and with little memory left.
#include <fstream>
#include <iostream>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/dao/DaoError.h"
#include "platform/jet/JetDatabase.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 MiB = 1 << 20;
constexpr int outOfMemory = 7;

/// A client with a table of about so many MiB, in which one statement changes every row.
class Large : public CourseTest
{
protected:
    void fill(qint64 size) const
    {
        engine->CreateDatabase(folder.path(), {}, GetParam())->Close();
        const auto database = jet::JetDriver().open({folder.path()});
        database->createTable({u"Voll"_s, {{u"Nr"_s, storage::Type::Long}, {u"Inhalt"_s, storage::Type::Binary, 255}}});
        const auto scope = database->beginWrite();
        for (std::int64_t number = 0; number < size / 256; ++number) {
            const storage::Assignment row[] = {{0, number}, {1, QByteArray(230, static_cast<char>('a' + number % 26))}};
            database->table(u"Voll"_s)->insert(row);
        }
        scope->commit();
    }
    int change(storage::FileSystem &files = storage::systemFiles()) const
    {
        return told([&] {
                   const auto database = folder.open(*engineOver(files));
                   database->Execute(u"UPDATE Voll SET Nr = Nr + 1000000"_s);
                   database->Close();
               })
            .first;
    }
    /// With room for so many bytes more than are in use. The number that is told.
    int changeWith(qint64 room) const
    {
        const pid_t child = ::fork();
        if (child == 0) {
            const rlim_t most = static_cast<rlim_t>(bytesInUse() + room);
            const rlimit limit{most, most};
            ::_exit(::setrlimit(RLIMIT_AS, &limit) == 0 ? change() : 99);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
    }
    static qint64 bytesInUse()
    {
        qint64 pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        return pages * ::sysconf(_SC_PAGESIZE);
    }
    /// Sanitizers take more room than any machine has.
    static bool canLimit() { return bytesInUse() < 1024 * 1024 * MiB; }
    QByteArray file() const { return folder.content().at(u"Muster.PCK"_s); }
};

INSTANTIATE_TEST_SUITE_P(Statements, Large, bothVersions, testing::PrintToStringParamName());

} // namespace

TEST_P(Large, TakeLittleMemory)
{
    if (!canLimit())
        GTEST_SKIP() << "needs a limit of memory";
    fill(48 * MiB);
    const QByteArray before = file();
    EXPECT_EQ(changeWith(48 * MiB), 0);
    EXPECT_NE(file(), before);
    EXPECT_EQ(faultsOf(folder.path()), QString());
}

TEST_P(Large, FailWholeWhereThereIsNoMemory)
{
    if (!canLimit())
        GTEST_SKIP() << "needs a limit of memory";
    fill(12 * MiB);
    const FolderContent before = folder.content();
    std::map<int, int> results;
    for (qint64 room = 0; room < 40 * MiB; room += 3 * MiB / 2) {
        SCOPED_TRACE(room);
        const int result = changeWith(room);
        ++results[result];
        ASSERT_TRUE(result == 0 || result == outOfMemory) << result;
        folder.open(*engine)->Close();
        ASSERT_EQ(folder.content() == before, result != 0);
        folder.setContent(before);
    }
    EXPECT_GT(results[0], 0);
    EXPECT_GT(results[outOfMemory], 0);
}

TEST_P(Large, AreWholeOrAbsentAfterAFailureOrALossOfPower)
{
    fill(12 * MiB);
    const FolderContent before = folder.content();
    FaultyFiles files;
    const Recording &recording = files.record(folder.folder.path());
    ASSERT_EQ(change(files), 0);
    const QByteArray after = file();
    const std::size_t all = recording.size();
    int absent = 0;
    const auto check = [&](bool returned) {
        folder.open(*engine)->Close();
        const FolderContent now = folder.content();
        ASSERT_EQ(now.size(), 1U);
        const bool isAbsent = now == before;
        absent += isAbsent ? 1 : 0;
        ASSERT_TRUE((isAbsent && !returned) || now.begin()->second == after);
    };
    // Not at each page, but at each of the last operations, which are those of the commit.
    for (std::size_t done = 0; done <= all; done += all - done > 250 ? 211 : 4) {
        for (const unsigned outcome : {1U, 5U}) {
            SCOPED_TRACE(testing::Message() << done << " of " << all << ", outcome " << outcome);
            folder.setContent(recording.afterPowerLoss(done, outcome));
            check(false);
        }
    }
    FaultyFiles faulty;
    for (std::size_t at = 1; at <= all; at += all - at > 250 ? 211 : 6) {
        SCOPED_TRACE(testing::Message() << "disk full at " << at << " of " << all);
        folder.setContent(before);
        faulty.start({.at = static_cast<int>(at), .error = ENOSPC, .partly = true});
        const int told = change(faulty);
        EXPECT_TRUE(told == 0 || told == dao::DaoError::DiskFull) << told;
        check(told == 0);
        if (HasFatalFailure())
            return;
    }
    EXPECT_GT(absent, 20);
    std::cout << "large: " << all << " operations" << std::endl;
}
