// Any operation on files fails: the number that is told, and that the same open database works on afterwards.
#include <algorithm>
#include <iostream>
#include <numeric>

#include "platform/dao/DaoError.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;
using dao::DaoError;

namespace {

constexpr int opensDamaged = 3049;
constexpr int worksDamaged = 3428;

struct Failure {
    const char *name;
    Fault::Of of;
    int error;
    std::vector<int> numbers; ///< that may be told
};

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
    { }

    /// Whether the fault came to happen.
    bool fails(const Fault &fault, const std::vector<int> &numbers)
    {
        m_folder.setContent(m_course.content(m_statement));
        m_files.start(fault);
        const int number = told([this] {
                               m_database = m_folder.open(*m_engine);
                               run();
                           }).first;
        const bool struck = m_files.hasStruck();
        m_files.start();
        if (number == DaoError::CannotLock)
            m_database.reset(); // without a lock file it was opened for reading only
        if (number != 0) {
            EXPECT_TRUE(std::ranges::find(numbers, number) != numbers.end()) << number;
            expectWorksOn();
        }
        expectDone();
        return struck;
    }

private:
    void run()
    {
        m_course.run(*m_database, m_statement);
        m_database->Close();
        m_database.reset();
    }

    void expectWorksOn()
    {
        const auto [number, text] = told([this] {
            if (!m_database)
                m_database = m_folder.open(*m_engine);
            EXPECT_EQ(m_database->OpenRecordset(u"Waehrung"_s)->Eof(), false);
            EXPECT_TRUE(rowsOf(m_folder.path()) == m_course.rows(m_statement)) << "not as before";
            run();
        });
        EXPECT_EQ(number, 0) << "does not work on: " << qPrintable(text);
        m_database.reset();
    }

    void expectDone()
    {
        m_folder.open(*m_engine)->Close();
        EXPECT_EQ(m_folder.content().size(), 1U) << qPrintable(m_folder.content().rbegin()->first);
        EXPECT_TRUE(rowsOf(m_folder.path()) == m_course.rows(m_statement + 1)) << "other rows than expected";
        EXPECT_EQ(faultsOf(m_folder.path()), QString());
    }

    const Course &m_course;
    std::size_t m_statement;
    ClientFolder m_folder{};
    FaultyFiles m_files{};
    std::unique_ptr<dao::DBEngine> m_engine = engineOver(m_files);
    std::shared_ptr<dao::Database> m_database{};
};

/// At each operation, or at each so many of them.
void failAtOperations(const Course &course, const std::vector<std::size_t> &statements, int step)
{
    int faults = 0;
    for (const std::size_t statement : statements) {
        Attempt attempt(course, statement);
        for (const Failure &failure : failures) {
            for (const auto &[lasting, partly] :
                 {std::pair(false, false), {true, false}, {false, true}, {true, true}}) {
                if (partly && failure.of != Fault::Of::Changes)
                    continue;
                for (int at = 1 + faults % step;; at += step, ++faults) {
                    SCOPED_TRACE(testing::Message()
                                 << qPrintable(course.statement(statement).left(60)) << ": " << failure.name << " at "
                                 << at << (lasting ? ", lasting" : "") << (partly ? ", partly" : ""));
                    if (!attempt.fails({failure.of, at, failure.error, lasting, partly}, failure.numbers))
                        break;
                    if (testing::Test::HasFailure())
                        return;
                }
            }
        }
    }
    std::cout << "failed: " << faults << " faults in " << statements.size() << " statements" << std::endl;
}

using Failing = CourseTest;
using NightlyFailing = CourseTest;

INSTANTIATE_TEST_SUITE_P(Files, Failing, bothVersions, testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Files, NightlyFailing, bothVersions, testing::PrintToStringParamName());

} // namespace

// The account, its Recordset.Update, a table and a long text.
TEST_P(Failing, TellsTheCauseAndWorksOn)
{
    failAtOperations(transfer, {0, 1}, 23);
    failAtOperations(definitions, {0, 2}, 23);
}

TEST_P(NightlyFailing, TellsTheCauseAndWorksOn)
{
    failAtOperations(transfer, {0, 1}, 1);
    failAtOperations(definitions, {0, 2}, 1);
    for (const Course *course : {&transfer, &definitions}) {
        std::vector<std::size_t> all(course->size());
        std::iota(all.begin(), all.end(), 0U);
        failAtOperations(*course, all, 7);
    }
}
