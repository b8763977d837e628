// Two databases on one file: one writes while the other is in the middle of reading.
#include <sys/wait.h>
#include <unistd.h>

#include "platform/storage/StorageError.h"
#include "tests/jet/TestFile.h"
#include "tests/jet/TwoDatabases.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace {

/// Reads one of the tables that come and go; what it must never find is damage.
class PassingReader
{
public:
    explicit PassingReader(storage::Database &database)
        : m_database(database)
    { }
    void forget() { m_cursor.reset(); }
    void step(two::Chance &chance)
    {
        try {
            if (!m_cursor) {
                storage::Table *table = m_database.table(u"S%1"_s.arg(two::below(chance, 3)));
                if (table)
                    m_cursor = two::below(chance, 2) == 0 ? table->scan() : table->range({});
            }
            if (!m_cursor || !m_cursor->next())
                return forget();
            m_cursor->value(0);
            m_cursor->value(1);
        } catch (const StorageError &error) {
            using Kind = StorageError::Kind;
            const Kind kinds[] = {Kind::NoSuchTable, Kind::Locked, Kind::RowGone};
            EXPECT_TRUE(std::ranges::find(kinds, error.kind()) != std::end(kinds)) << error.what();
            forget();
        }
    }

private:
    storage::Database &m_database;
    std::unique_ptr<storage::Cursor> m_cursor{};
};

/// A program with several walks on the way.
class Program
{
public:
    explicit Program(const TestFile &file)
        : m_database(file.open())
    { }

    storage::Database &database() { return *m_database; }
    void read(two::Chance &chance)
    {
        std::unique_ptr<two::Walk> &walk = m_walks[two::below(chance, std::size(m_walks))];
        if (!walk)
            walk = std::make_unique<two::Walk>(*m_database, chance);
        for (std::size_t count = 1 + two::below(chance, 25); count > 0 && walk; --count) {
            if (!walk->step())
                walk.reset();
        }
        m_passing.step(chance);
    }
    /// A write of one's own ends the cursors.
    void write(two::Model &model, two::Chance &chance)
    {
        for (auto &walk : m_walks)
            walk.reset();
        m_passing.forget();
        two::changeSomething(*m_database, model, chance);
    }

private:
    std::unique_ptr<storage::Database> m_database;
    std::unique_ptr<two::Walk> m_walks[3];
    PassingReader m_passing{*m_database};
};

class TwoDatabases : public testing::TestWithParam<storage::FileVersion>
{
protected:
    void takeTurns(int steps)
    {
        two::Chance chance(20260 + static_cast<unsigned>(GetParam()));
        const TestFile file(GetParam());
        two::makeTable(*file.open(), chance);
        two::Model model;
        Program programs[] = {Program(file), Program(file)};
        for (int step = 0; step < steps && !HasFailure(); ++step) {
            SCOPED_TRACE(step);
            Program &program = programs[two::below(chance, 2)];
            const std::size_t dice = two::below(chance, 10);
            if (dice == 0)
                program.write(model, chance);
            else if (dice == 1)
                two::readByAddress(program.database(), model, chance);
            else
                program.read(chance);
            if ((step + 1) % 5000 == 0) {
                EXPECT_EQ(file.faults(), QString());
            }
        }
    }

    /// The child writes, we read.
    void sideBySide(int writes)
    {
        two::Chance chance(4000 + static_cast<unsigned>(GetParam()));
        const TestFile file(GetParam());
        two::makeTable(*file.open(), chance);
        const pid_t child = fork();
        if (child == 0) {
            {
                two::Model model;
                const auto database = file.open();
                for (int i = 0; i < writes && !HasFailure(); ++i)
                    two::changeSomething(*database, model, chance);
            }
            _exit(HasFailure() ? 1 : 0);
        }
        int status = 0;
        int reads = 0;
        {
            Program program(file);
            while (waitpid(child, &status, WNOHANG) == 0) {
                if (!HasFailure())
                    program.read(chance);
                ++reads;
            }
        }
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        EXPECT_GT(reads, 10);
        EXPECT_EQ(file.faults(), QString());
    }
};

using NightlyTwoDatabases = TwoDatabases;

const auto versions = testing::Values(storage::FileVersion::Jet3, storage::FileVersion::Jet4);
INSTANTIATE_TEST_SUITE_P(Jet, TwoDatabases, versions);
INSTANTIATE_TEST_SUITE_P(Jet, NightlyTwoDatabases, versions);

} // namespace

TEST_P(TwoDatabases, TakeTurns)
{
    takeTurns(20000);
}

TEST_P(TwoDatabases, WorkSideBySide)
{
    sideBySide(500);
}

TEST_P(NightlyTwoDatabases, TakeTurns)
{
    takeTurns(500000);
}

TEST_P(NightlyTwoDatabases, WorkSideBySide)
{
    sideBySide(20000);
}
