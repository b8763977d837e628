// Journals that are cut off, damaged or another file's.
#include <iostream>

#include <QtEndian>

#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;

namespace {

/// A client at whose statement the program was interrupted, before the client was touched or in the middle.
struct Interrupted {
    Interrupted(const Course &course, std::size_t statement)
    {
        const auto &operations = course.recording().operations();
        std::size_t done = 0;
        while (course.returnedAfter(done) < statement)
            ++done;
        while (operations[done].kind != Recording::Kind::Sync)
            ++done;
        untouched = course.recording().afterPowerLoss(++done, 0); // the journal is there
        while (operations[done].kind != Recording::Kind::Sync)
            ++done;
        halfway = course.recording().afterPowerLoss(done - 1, 2); // all but the last page and some sectors
    }

    FolderContent untouched;
    FolderContent halfway;
};

class Journals : public CourseTest
{
protected:
    FolderContent opened(const FolderContent &content) const
    {
        folder.setContent(content);
        folder.open(*engine)->Close();
        return folder.content();
    }
    /// The number with which a client refuses to be changed.
    int refusal() const
    {
        const auto database = folder.open(*engine);
        return told([&] { transfer.run(*database, 0); }).first;
    }

    const QString client = transfer.content(0).begin()->first;
    const QString journal = client + u".vjn"_s;
};

INSTANTIATE_TEST_SUITE_P(Files, Journals, bothVersions, testing::PrintToStringParamName());

} // namespace

TEST_P(Journals, ThatAreCutOffOrDamagedAreNeverUsed)
{
    Interrupted left(transfer, 0);
    const QByteArray file = left.untouched.at(journal);
    constexpr qsizetype head = 40; // in a sector of its own
    constexpr qsizetype record = 512;
    const QByteArray whole = file.first(record + qFromLittleEndian<qsizetype>(file.constData() + 24));
    std::vector<QByteArray> bad;
    for (qsizetype size = 0; size < whole.size(); size += size < 200 ? 7 : 61)
        bad.push_back(whole.first(size));
    for (qsizetype at = 0; at < whole.size(); at += at < head ? 3 : 37) {
        if (at >= head && at < record)
            continue;
        bad.push_back(whole);
        bad.back()[at] = static_cast<char>(bad.back()[at] ^ (1 << (at % 8)));
    }
    constexpr int damaged = 3428;
    for (const QByteArray &content : bad) {
        SCOPED_TRACE(content.size());
        left.untouched[journal] = left.halfway[journal] = content;
        // The usual reason: the power failed before it was whole.
        ASSERT_EQ(opened(left.untouched), transfer.content(0));
        // A disk that breaks what was flushed: the client can no longer be taken back, and says so.
        ASSERT_EQ(opened(left.halfway), (FolderContent{{client, left.halfway.at(client)}}));
        ASSERT_EQ(refusal(), damaged);
    }
    std::cout << "journals: " << bad.size() << " cut off or damaged" << std::endl;
}

TEST_P(Journals, OfOtherFilesAreKeptAndNotUsed)
{
    int files = 0;
    for (std::size_t statement = 0; statement < transfer.size(); ++statement) {
        FolderContent left = Interrupted(transfer, statement).halfway;
        for (const Course *other : {&transfer, &definitions}) {
            for (std::size_t i = 0; i <= other->size(); ++i) {
                if (other->content(i) == transfer.content(statement)
                    || other->content(i) == transfer.content(statement + 1))
                    continue;
                SCOPED_TRACE(testing::Message() << "journal of " << statement << ", client of " << i);
                left[client] = other->content(i).at(client);
                ASSERT_TRUE(opened(left)
                            == (FolderContent{{client, left.at(client)}, {journal + u".fremd"_s, left.at(journal)}}));
                ++files;
            }
        }
    }
    std::cout << "journals: " << files << " of other files" << std::endl;
}

TEST_P(Journals, AreUsedByReadersToo)
{
    folder.setContent(Interrupted(transfer, 0).halfway);
    EXPECT_EQ(rowsOf(folder.path()), transfer.rows(0));
    EXPECT_EQ(folder.content(), transfer.content(0));
}
