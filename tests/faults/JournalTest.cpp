// Journals that are cut off, damaged or another file's.
#include <iostream>

#include <gtest/gtest.h>

#include "platform/dao/DaoError.h"
#include "platform/jet/JetDatabase.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;

namespace {

const QString journalName = Course::fileName() + u".vjn"_s;

/// A client whose first statement was interrupted, before the client was touched or in the middle.
struct Interrupted {
    FolderContent untouched;
    FolderContent halfway;
};

Interrupted interrupted(const Course &course, std::size_t statement)
{
    const auto &operations = course.recording().operations();
    std::size_t done = 0;
    while (course.returnedAfter(done) < statement)
        ++done;
    while (operations[done].kind != Recording::Kind::Sync)
        ++done;
    const std::size_t journalIsThere = ++done;
    while (operations[done].kind != Recording::Kind::Sync)
        ++done;
    // All but the last page and some sectors.
    return {course.recording().afterPowerLoss(journalIsThere, 0), course.recording().afterPowerLoss(done - 1, 2)};
}

class Journals : public testing::TestWithParam<Version>
{
protected:
    QString path() const { return m_folder.filePath(Course::fileName()); }
    const Course &course() const { return Course::transfer(GetParam()); }
    const QTemporaryDir &folder() const { return m_folder; }

    FolderContent opened(const FolderContent &content) const
    {
        writeFolder(m_folder.path(), content);
        Course::open(*m_engine, m_folder)->Close();
        return readFolder(m_folder.path());
    }
    /// The number with which a client refuses to be changed; 0: it was changed.
    int refusal() const
    {
        const auto database = Course::open(*m_engine, m_folder);
        try {
            course().run(*database, 0);
            return 0;
        } catch (const dao::DaoError &error) {
            return error.Number();
        }
    }

private:
    QTemporaryDir m_folder{};
    std::unique_ptr<dao::DBEngine> m_engine = Course::engineOver(storage::systemFiles());
};

INSTANTIATE_TEST_SUITE_P(Files, Journals, testing::Values(dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40),
                         [](const auto &version) { return versionName(version.param); });

} // namespace

TEST_P(Journals, ThatAreCutOffOrDamagedAreNeverUsed)
{
    const Interrupted left = interrupted(course(), 0);
    const QByteArray whole = left.untouched.at(journalName);
    std::vector<QByteArray> bad;
    for (qsizetype size = 0; size < whole.size(); size += size < 200 ? 7 : 151)
        bad.push_back(whole.first(size));
    for (qsizetype at = 0; at < whole.size(); at += at < 200 ? 3 : 167) {
        bad.push_back(whole);
        bad.back()[at] = static_cast<char>(bad.back()[at] ^ (1 << (at % 8)));
    }
    constexpr int damaged = 3428;
    for (const QByteArray &journal : bad) {
        SCOPED_TRACE(journal.size());
        // The usual reason: the power failed before it was whole.
        FolderContent untouched = left.untouched;
        untouched[journalName] = journal;
        ASSERT_EQ(opened(untouched), (FolderContent{{Course::fileName(), course().content(0)}}));
        // A disk that breaks what was flushed: the client can no longer be taken back, and says so.
        FolderContent halfway = left.halfway;
        halfway[journalName] = journal;
        const FolderContent after = opened(halfway);
        ASSERT_EQ(after, (FolderContent{{Course::fileName(), halfway.at(Course::fileName())}}));
        ASSERT_EQ(refusal(), damaged);
    }
    std::cout << "journals: " << bad.size() << " cut off or damaged" << std::endl;
}

TEST_P(Journals, OfOtherFilesAreKeptAndNotUsed)
{
    const Course &definitions = Course::definitions(GetParam());
    int files = 0;
    for (std::size_t statement = 0; statement < course().size(); ++statement) {
        const Interrupted left = interrupted(course(), statement);
        for (const Course *other : {&course(), &definitions}) {
            for (std::size_t i = 0; i <= other->size(); ++i) {
                const QByteArray &client = other->content(i);
                if (client == course().content(statement) || client == course().content(statement + 1))
                    continue;
                SCOPED_TRACE(testing::Message() << "journal of " << statement << ", client of " << i);
                FolderContent content = left.halfway;
                content[Course::fileName()] = client;
                const FolderContent after = opened(content);
                ASSERT_TRUE(after.at(Course::fileName()) == client);
                ASSERT_TRUE(after.at(journalName + u".fremd"_s) == content.at(journalName));
                ASSERT_EQ(after.size(), 2U);
                ++files;
            }
        }
    }
    std::cout << "journals: " << files << " of other files" << std::endl;
}

TEST_P(Journals, AreUsedByReadersToo)
{
    writeFolder(folder().path(), interrupted(course(), 0).halfway);
    EXPECT_EQ(Course::rowsOf(path()), course().rows(0));
    EXPECT_EQ(readFolder(folder().path()), (FolderContent{{Course::fileName(), course().content(0)}}));
}
