// Any operation on files fails: the number that is told, and that the same open database works on afterwards.
#include <algorithm>
#include <iostream>
#include <numeric>

#include <gtest/gtest.h>

#include "platform/dao/DaoError.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;
using dao::DaoError;

namespace {

struct Failure {
    const char *name;
    Fault::Of of;
    int error;
    std::vector<int> numbers; ///< that may be told
};

constexpr int opensDamaged = 3049;
constexpr int worksDamaged = 3428;

/// What fails on disks and shares. A file that ends too early is damaged, or no database at all.
const Failure failures[] = {
    {"disk full", Fault::Of::Changes, ENOSPC, {DaoError::DiskFull}},
    {"quota", Fault::Of::Changes, EDQUOT, {DaoError::DiskFull}},
    {"writing fails", Fault::Of::Changes, EIO, {DaoError::DiskFailed}},
    {"no permission to change", Fault::Of::Changes, EACCES, {DaoError::CannotOpen, DaoError::CannotLock}},
    {"reading fails", Fault::Of::Readings, EIO, {DaoError::DiskFailed}},
    {"no permission to read", Fault::Of::Readings, EACCES, {DaoError::CannotOpen, DaoError::CannotLock}},
    {"end too early", Fault::Of::Readings, 0, {opensDamaged, worksDamaged, DaoError::UnrecognisedFormat}},
    {"share gone", Fault::Of::All, ESTALE, {DaoError::ConnectionLost}},
};

/// One statement on a client of its own, from opening to closing, while something fails.
class Attempt
{
public:
    Attempt(const Course &course, std::size_t statement)
        : m_course(course)
        , m_statement(statement)
        , m_engine(Course::engineOver(m_files))
    { }

    /// Whether the fault came to happen.
    bool fails(const Fault &fault, const std::vector<int> &numbers)
    {
        writeFolder(m_folder.path(), {{Course::fileName(), m_course.content(m_statement)}});
        m_files.start(fault);
        const int told = attempt();
        const bool struck = m_files.hasStruck();
        m_files.start();
        if (told == DaoError::CannotLock)
            m_database.reset(); // without a lock file it was opened for reading only
        if (told != 0) {
            EXPECT_TRUE(std::ranges::find(numbers, told) != numbers.end()) << told;
            expectWorksOn();
        }
        expectDone();
        return struck;
    }

private:
    /// The number that is told; 0: all went well.
    int attempt()
    {
        try {
            m_database = Course::open(*m_engine, m_folder);
            m_course.run(*m_database, m_statement);
            m_database->Close();
            m_database.reset();
            return 0;
        } catch (const DaoError &error) {
            return error.Number();
        }
    }

    QString path() const { return m_folder.filePath(Course::fileName()); }

    void expectWorksOn()
    {
        const auto database = m_database ? std::exchange(m_database, nullptr) : Course::open(*m_engine, m_folder);
        try {
            EXPECT_EQ(database->OpenRecordset(u"Waehrung"_s)->Eof(), false);
            EXPECT_TRUE(Course::rowsOf(path()) == m_course.rows(m_statement)) << "not as before";
            m_course.run(*database, m_statement);
            database->Close();
        } catch (const DaoError &error) {
            ADD_FAILURE() << "does not work on: " << error.Number() << ' ' << qPrintable(error.Description());
        }
    }

    void expectDone()
    {
        Course::open(*m_engine, m_folder)->Close();
        const FolderContent folder = readFolder(m_folder.path());
        EXPECT_EQ(folder.size(), 1U) << qPrintable(folder.rbegin()->first);
        EXPECT_TRUE(Course::rowsOf(path()) == m_course.rows(m_statement + 1)) << "other rows than expected";
        EXPECT_EQ(faultsOf(path()), QString());
    }

    const Course &m_course;
    std::size_t m_statement;
    QTemporaryDir m_folder{};
    FaultyFiles m_files{};
    std::unique_ptr<dao::DBEngine> m_engine;
    std::shared_ptr<dao::Database> m_database{};
};

struct Manner {
    bool lasting;
    bool partly;
};

/// At each operation, or at each so many of them.
void failAtOperations(const Course &course, const std::vector<std::size_t> &statements, int step)
{
    int faults = 0;
    for (const std::size_t statement : statements) {
        Attempt attempt(course, statement);
        for (const Failure &failure : failures) {
            for (const Manner manner : {Manner{false, false}, {true, false}, {false, true}, {true, true}}) {
                if (manner.partly && failure.of != Fault::Of::Changes)
                    continue;
                for (int at = 1 + faults % step;; at += step, ++faults) {
                    SCOPED_TRACE(testing::Message()
                                 << qPrintable(course.statement(statement).left(60)) << ": " << failure.name << " at "
                                 << at << (manner.lasting ? ", lasting" : "") << (manner.partly ? ", partly" : ""));
                    if (!attempt.fails({failure.of, at, failure.error, manner.lasting, manner.partly}, failure.numbers))
                        break;
                    if (testing::Test::HasFailure())
                        return;
                }
            }
        }
    }
    std::cout << "failed: " << faults << " faults in " << statements.size() << " statements" << std::endl;
}

std::vector<std::size_t> allOf(const Course &course)
{
    std::vector<std::size_t> all(course.size());
    std::iota(all.begin(), all.end(), 0U);
    return all;
}

class Failing : public testing::TestWithParam<Version>
{ };
using NightlyFailing = Failing;

std::string nameOf(const testing::TestParamInfo<Version> &version)
{
    return versionName(version.param);
}

const auto versions = testing::Values(dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40);
INSTANTIATE_TEST_SUITE_P(Files, Failing, versions, nameOf);
INSTANTIATE_TEST_SUITE_P(Files, NightlyFailing, versions, nameOf);

} // namespace

// The account, its Recordset.Update, a table and a long text.
TEST_P(Failing, TellsTheCauseAndWorksOn)
{
    failAtOperations(Course::transfer(GetParam()), {0, 1}, 23);
    failAtOperations(Course::definitions(GetParam()), {0, 2}, 23);
}

TEST_P(NightlyFailing, TellsTheCauseAndWorksOn)
{
    failAtOperations(Course::transfer(GetParam()), {0, 1}, 1);
    failAtOperations(Course::definitions(GetParam()), {0, 2}, 1);
    failAtOperations(Course::transfer(GetParam()), allOf(Course::transfer(GetParam())), 7);
    failAtOperations(Course::definitions(GetParam()), allOf(Course::definitions(GetParam())), 7);
}
