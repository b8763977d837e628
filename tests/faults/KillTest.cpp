// The program ends, or the power fails, between any two operations on files: what the next one finds.
#include <algorithm>

#include "platform/jet/JetDatabase.h"
#include "platform/storage/NewFile.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;

namespace {

/// Opens and closes what an interruption has left; afterwards there is the client alone, in the state before or after
/// the statement that ran.
void expectWhole(const Course &course, const ClientFolder &folder, std::size_t returned)
{
    jet::JetDriver().open({folder.path()});
    const FolderContent after = folder.content();
    EXPECT_TRUE(after == course.content(returned)
                || (returned < course.size() && after == course.content(returned + 1)))
        << after.size() << " files, statement " << returned;
}

class Kill : public CourseTest
{
protected:
    /// Checks what the folder may hold after each so many operations: of what was not flushed nothing is there, all of
    /// it, all but half of the last write, and some of it.
    void killIn(const Recording &recording, unsigned outcomes, const std::function<void(std::size_t done)> &check)
    {
        for (std::size_t done = 0; done <= recording.size(); ++done) {
            for (unsigned outcome = 0; outcome < outcomes; ++outcome) {
                SCOPED_TRACE(testing::Message() << done << " operations, outcome " << outcome);
                folder.setContent(recording.afterPowerLoss(done, outcome));
                check(done);
                if (HasFailure())
                    return;
            }
        }
    }
    void killIn(const Course &course, unsigned outcomes)
    {
        killIn(course.recording(), outcomes,
               [&](std::size_t done) { expectWhole(course, folder, course.returnedAfter(done)); });
    }
};
using NightlyKill = Kill;

INSTANTIATE_TEST_SUITE_P(Files, Kill, bothVersions, testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Files, NightlyKill, bothVersions, testing::PrintToStringParamName());

} // namespace

/// What the others compare with.
TEST_P(Kill, FindsSoundStatesWithAllOldRows)
{
    for (const Course *course : {&transfer, &definitions}) {
        for (std::size_t i = 0; i <= course->size(); ++i) {
            folder.setContent(course->content(i));
            ASSERT_EQ(faultsOf(folder.path()), QString()) << i;
        }
    }
    for (std::size_t i = 0; i <= transfer.size(); ++i) {
        QStringList rows = transfer.rows(i);
        rows.removeIf([](const QString &row) { return row.contains(u"D123457"_s); });
        ASSERT_EQ(rows, transfer.rows(0)) << i;
        ASSERT_TRUE(i == 0 || transfer.rows(i) != transfer.rows(i - 1)) << i;
    }
}

TEST_P(Kill, LeavesEveryStatementOfATransferWholeOrAbsent)
{
    killIn(transfer, 5);
}

TEST_P(Kill, LeavesEveryDefinitionWholeOrAbsent)
{
    killIn(definitions, 5);
}

TEST_P(NightlyKill, LeavesEveryStatementWholeOrAbsent)
{
    killIn(transfer, 40);
    killIn(definitions, 40);
}

TEST_P(Kill, LeavesANewDatabaseWholeOrAbsent)
{
    FaultyFiles files;
    const Recording &recording = files.record(folder.folder.path());
    engineOver(files)->CreateDatabase(folder.path(), {}, GetParam())->Close();
    killIn(recording, 6, [&](std::size_t done) {
        const bool isThere = QFile::exists(folder.path());
        EXPECT_TRUE(isThere || done < recording.size());
        (isThere ? folder.open(*engine) : engine->CreateDatabase(folder.path(), {}, GetParam()))->Close();
        EXPECT_EQ(faultsOf(folder.path()), QString());
        EXPECT_EQ(folder.content().size(), 1U) << qPrintable(folder.content().rbegin()->first);
    });
}

/// As many statements as it takes to make it: only what is whole gets the name, and nothing else is waited for.
TEST_P(Kill, LeavesANewDatabaseWithTablesWholeOrAbsent)
{
    FaultyFiles files;
    const Recording &recording = files.record(folder.folder.path());
    const auto make = [&](storage::FileSystem &system) {
        storage::NewFile made(system, folder.path(), jet::PageFile::besides());
        const auto database = engineOver(made.files())->CreateDatabase(made.path(), {}, GetParam());
        for (std::size_t i = 0; i < 4; ++i)
            database->Execute(definitions.statement(i));
        database->Close();
        made.finish();
        made.keep();
    };
    make(files);
    const QStringList rows = rowsOf(folder.path());
    EXPECT_EQ(rows.size(), 2);
    using Operation = Recording::Operation;
    EXPECT_EQ(std::ranges::count(recording.operations(), Recording::Kind::Sync, &Operation::kind), 1);
    EXPECT_EQ(std::ranges::count(recording.operations(), Recording::Kind::SyncFolder, &Operation::kind), 1);
    killIn(recording, 2, [&](std::size_t) {
        if (!QFile::exists(folder.path()))
            make(storage::systemFiles());
        EXPECT_EQ(rowsOf(folder.path()), rows);
        EXPECT_EQ(faultsOf(folder.path()), QString());
        EXPECT_EQ(folder.content().size(), 1U) << qPrintable(folder.content().rbegin()->first);
    });
}

/// Whatever interrupts the way back, the next one goes on.
TEST_P(Kill, LeavesARecoveryThatCanBeRepeated)
{
    for (std::size_t done = 0; done <= transfer.recording().size() && !HasFailure(); done += 3) {
        SCOPED_TRACE(done);
        folder.setContent(transfer.recording().afterPowerLoss(done, 3));
        FaultyFiles files;
        const Recording &recovery = files.record(folder.folder.path());
        jet::JetDriver(files).open({folder.path()});
        killIn(recovery, 5, [&](std::size_t) { expectWhole(transfer, folder, transfer.returnedAfter(done)); });
    }
}
