// The program ends, or the power fails, between any two operations on files: what the next one finds.
#include <iostream>

#include <gtest/gtest.h>

#include "platform/jet/JetDatabase.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;

namespace {

std::string text(const FolderContent &folder)
{
    QStringList names;
    for (const auto &[name, content] : folder)
        names += name;
    return names.join(u' ').toStdString();
}

/// Opens and closes what an interruption has left; afterwards there is the client alone, in the state before or after
/// the statement that ran.
void expectWhole(const Course &course, const QTemporaryDir &folder, const FolderContent &left, std::size_t returned)
{
    writeFolder(folder.path(), left);
    jet::JetDriver().open({folder.filePath(Course::fileName())});
    const FolderContent after = readFolder(folder.path());
    ASSERT_EQ(text(after), Course::fileName().toStdString());
    const QByteArray &content = after.at(Course::fileName());
    if (content == course.content(returned))
        return;
    ASSERT_LT(returned, course.size());
    ASSERT_TRUE(content == course.content(returned + 1)) << qPrintable(course.statement(returned));
}

void killAtEveryOperation(const Course &course, unsigned outcomes)
{
    const QTemporaryDir folder;
    const Recording &recording = course.recording();
    int states = 0;
    for (std::size_t done = 0; done <= recording.size(); ++done) {
        const std::size_t returned = course.returnedAfter(done);
        for (unsigned outcome = 0; outcome < outcomes; ++outcome, ++states) {
            SCOPED_TRACE(testing::Message() << done << " operations, outcome " << outcome);
            const FolderContent left = recording.afterPowerLoss(done, outcome);
            ASSERT_NO_FATAL_FAILURE(expectWhole(course, folder, left, returned));
        }
    }
    std::cout << "killed: " << recording.size() << " operations, " << states << " states of " << course.size()
              << " statements" << std::endl;
}

class Kill : public testing::TestWithParam<Version>
{ };
using NightlyKill = Kill;

std::string nameOf(const testing::TestParamInfo<Version> &version)
{
    return versionName(version.param);
}

INSTANTIATE_TEST_SUITE_P(Files, Kill, testing::Values(dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40), nameOf);
INSTANTIATE_TEST_SUITE_P(Files, NightlyKill, testing::Values(dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40),
                         nameOf);

} // namespace

/// What the others compare with.
TEST_P(Kill, FindsSoundStatesWithAllOldRows)
{
    const QTemporaryDir folder;
    for (const Course *course : {&Course::transfer(GetParam()), &Course::definitions(GetParam())}) {
        for (std::size_t i = 0; i <= course->size(); ++i) {
            writeFolder(folder.path(), {{Course::fileName(), course->content(i)}});
            ASSERT_EQ(faultsOf(folder.filePath(Course::fileName())), QString()) << i;
        }
    }
    const Course &transfer = Course::transfer(GetParam());
    for (std::size_t i = 0; i <= transfer.size(); ++i) {
        QStringList rows = transfer.rows(i);
        rows.removeIf([](const QString &row) { return row.contains(u"D000000"_s); });
        ASSERT_EQ(rows, transfer.rows(0)) << i;
        ASSERT_TRUE(i == 0 || transfer.rows(i) != transfer.rows(i - 1)) << i;
    }
}

// The outcomes: nothing that was not flushed is there, all of it, all but half of the last write, and some of it.
TEST_P(Kill, LeavesEveryStatementOfATransferWholeOrAbsent)
{
    killAtEveryOperation(Course::transfer(GetParam()), 5);
}

TEST_P(Kill, LeavesEveryDefinitionWholeOrAbsent)
{
    killAtEveryOperation(Course::definitions(GetParam()), 5);
}

TEST_P(NightlyKill, LeavesEveryStatementWholeOrAbsent)
{
    killAtEveryOperation(Course::transfer(GetParam()), 40);
    killAtEveryOperation(Course::definitions(GetParam()), 40);
}

TEST_P(Kill, LeavesANewDatabaseWholeOrAbsent)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(Course::fileName());
    FaultyFiles files;
    const Recording &recording = files.record(folder.path());
    const auto engine = Course::engineOver(files);
    engine->CreateDatabase(path, {}, GetParam())->Close();
    int states = 0;
    for (std::size_t done = 0; done <= recording.size(); ++done) {
        for (unsigned outcome = 0; outcome < 6; ++outcome, ++states) {
            SCOPED_TRACE(testing::Message() << done << " operations, outcome " << outcome);
            writeFolder(folder.path(), recording.afterPowerLoss(done, outcome));
            const bool isThere = storage::systemFiles().exists(path);
            ASSERT_TRUE(isThere || done < recording.size());
            const auto next = Course::engineOver(storage::systemFiles());
            (isThere ? Course::open(*next, folder) : next->CreateDatabase(path, {}, GetParam()))->Close();
            ASSERT_EQ(faultsOf(path), QString());
            ASSERT_EQ(text(readFolder(folder.path())), Course::fileName().toStdString());
        }
    }
    std::cout << "killed: " << recording.size() << " operations, " << states << " states of a new file" << std::endl;
}

/// Whatever interrupts the way back, the next one goes on.
TEST_P(Kill, LeavesARecoveryThatCanBeRepeated)
{
    const QTemporaryDir folder;
    const Course &course = Course::transfer(GetParam());
    int states = 0;
    for (std::size_t done = 0; done <= course.recording().size(); done += 3) {
        const FolderContent left = course.recording().afterPowerLoss(done, 3);
        writeFolder(folder.path(), left);
        FaultyFiles files;
        const Recording &recovery = files.record(folder.path());
        jet::JetDriver(files).open({folder.filePath(Course::fileName())});
        for (std::size_t again = 0; again <= recovery.size(); ++again) {
            for (unsigned outcome = 0; outcome < 5; ++outcome, ++states) {
                SCOPED_TRACE(testing::Message() << done << ", " << again << " operations, outcome " << outcome);
                const FolderContent leftAgain = recovery.afterPowerLoss(again, outcome);
                ASSERT_NO_FATAL_FAILURE(expectWhole(course, folder, leftAgain, course.returnedAfter(done)));
            }
        }
    }
    std::cout << "recovery killed: " << states << " states" << std::endl;
}
