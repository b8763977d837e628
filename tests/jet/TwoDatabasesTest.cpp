// Two databases on one file: one writes while the other is in the middle of reading.
#include <algorithm>

#include <sys/wait.h>
#include <unistd.h>

#include "tests/jet/RandomTable.h"

using namespace Qt::StringLiterals;
using storage::RowId;
using storage::Type;
using Kind = storage::StorageError::Kind;

namespace {

/// The table "T", of which some rows always stay as they are while all others come, change, grow and go.
struct Shared {
    Shared(storage::Database &database, Chance drawn, bool jet4)
        : chance(drawn)
        , table(database, u"T"_s, u"+A K"_s, jet4)
    {
        // Those that stay lie among others.
        while (table.rows().size() < 400)
            table.change(database, chance, 100, 1);
        while (table.rows().size() > 60)
            table.change(database, chance, 0, 1);
        table.keepRows();
        kept = table.rows();
        for (int way = 0; way < 3; ++way) {
            for (const auto cursor = walk(database, way); cursor->next();)
                ways[way].push_back(cursor->rowId());
        }
    }

    /// A scan, or the walk along one of the indexes.
    static std::unique_ptr<storage::Cursor> walk(storage::Database &database, int way, storage::KeyRange range = {})
    {
        range.index = way - 1;
        return way == 0 ? database.table(u"T"_s)->scan() : database.table(u"T"_s)->range(range);
    }

    Chance chance;
    RandomTable table;
    std::map<RowId, RandomTable::Row> kept{};
    std::vector<RowId> ways[3]{};
};

/// A program with several walks on the way.
class Program
{
public:
    Program(const TestFile &file, Shared &shared)
        : m_database(file.open())
        , m_shared(shared)
    { }

    void readAny() { m_shared.table.readAny(*m_database, m_shared.chance); }

    void read()
    {
        Walk &walk = m_walks[draw(std::size(m_walks))];
        if (!walk.cursor)
            walk = newWalk();
        for (std::size_t i = 1 + draw(25); i > 0 && walk.cursor; --i)
            step(walk);
        readPassing();
    }

    /// One to thirty changes within one scope or each in its own, some of them taken back; tables that come and go.
    void write()
    {
        // A write of one's own ends the cursors.
        for (Walk &walk : m_walks)
            walk = {};
        m_passing.reset();
        if (draw(25) == 0)
            return changeTables();
        if (draw(3) != 0)
            return change();
        const RandomTable before = m_shared.table;
        const auto scope = m_database->beginWrite();
        for (std::size_t i = 1 + draw(draw(10) == 0 ? 300 : 30); i > 0; --i)
            change();
        if (draw(8) == 0)
            m_shared.table = before; // undone at the scope's end
        else
            scope->commit();
    }

private:
    struct Walk {
        std::unique_ptr<storage::Cursor> cursor{};
        std::vector<RowId> expected{}; // of the rows that stay, those that have not come yet; the next one is the last
    };

    std::size_t draw(std::size_t limit) { return m_shared.chance.below(limit); }
    void change() { m_shared.table.change(*m_database, m_shared.chance, 40, 12); }

    Walk newWalk()
    {
        const std::size_t way = draw(3);
        Walk walk{.expected = m_shared.ways[way]};
        storage::KeyRange range{.backwards = draw(2) == 0};
        const std::size_t first = draw(walk.expected.size());
        const storage::Value least = m_shared.kept.at(walk.expected[first])[1];
        if (way == 1 && draw(2) == 0 && !storage::isNull(least)) {
            range.lower = storage::Bound{{least}};
            walk.expected.erase(walk.expected.begin(), walk.expected.begin() + static_cast<std::ptrdiff_t>(first));
        }
        if (way == 0 || !range.backwards)
            std::ranges::reverse(walk.expected);
        walk.cursor = Shared::walk(*m_database, static_cast<int>(way), range);
        return walk;
    }

    void step(Walk &walk)
    {
        if (!walk.cursor->next()) {
            EXPECT_TRUE(walk.expected.empty()) << walk.expected.size() << " rows were missed";
            walk.cursor.reset();
            return;
        }
        const RowId id = walk.cursor->rowId();
        const auto kept = m_shared.kept.find(id);
        if (kept == m_shared.kept.end()) {
            const auto failed = kindOf([&] { EXPECT_TRUE(RandomTable::isWhole(*walk.cursor)) << "row " << id; });
            EXPECT_EQ(failed.value_or(Kind::RowGone), Kind::RowGone);
            return;
        }
        ASSERT_TRUE(!walk.expected.empty() && walk.expected.back() == id) << "row " << id << " came at a wrong place";
        walk.expected.pop_back();
        EXPECT_TRUE(m_shared.table.rowOf(*walk.cursor) == kept->second) << "row " << id;
    }

    /// Reads one of the tables that come and go; what it must never find is damage.
    void readPassing()
    {
        bool goesOn = false;
        const auto failed = kindOf([&] {
            storage::Table *table = m_passing ? nullptr : m_database->table(u"S%1"_s.arg(draw(3)));
            if (table)
                m_passing = draw(2) == 0 ? table->scan() : table->range({});
            goesOn = m_passing && m_passing->next();
            for (int column = 0; goesOn && column < 2; ++column)
                m_passing->value(column);
        });
        if (failed || !goesOn)
            m_passing.reset();
        const std::set allowed{Kind::NoSuchTable, Kind::Locked, Kind::RowGone};
        EXPECT_TRUE(!failed || allowed.contains(*failed)) << *failed;
    }

    void changeTables()
    {
        const QString name = u"S%1"_s.arg(draw(3));
        if (m_database->table(name))
            return m_database->dropTable(name);
        // Its columns differ from time to time.
        std::vector<storage::Column> columns{{u"A"_s, Type::Long}, {u"B"_s, Type::Memo}};
        columns.resize(1 + draw(2));
        m_database->createTable({name, columns, {{.name = u"iA"_s, .columns = {{0}}}}});
        for (std::int64_t i = 0; i < 40; ++i) {
            const storage::Assignment values[] = {{0, i}, {1, QString(1000, u'b')}};
            m_database->table(name)->insert(std::span(values).first(columns.size()));
        }
    }

    std::unique_ptr<storage::Database> m_database;
    Shared &m_shared;
    Walk m_walks[3]{};
    std::unique_ptr<storage::Cursor> m_passing{};
};

class TwoDatabases : public testing::TestWithParam<FileKind>
{
protected:
    void TearDown() override { EXPECT_EQ(m_file.faults(), QString()); }

    void takeTurns(int steps)
    {
        Program programs[] = {Program(m_file, m_shared), Program(m_file, m_shared)};
        for (int step = 0; step < steps && !HasFailure(); ++step) {
            SCOPED_TRACE(step);
            Program &program = programs[m_shared.chance.below(2)];
            const std::size_t dice = m_shared.chance.below(10);
            if (dice == 0)
                program.write();
            else if (dice == 1)
                program.readAny();
            else
                program.read();
            EXPECT_EQ((step + 1) % 5000 == 0 ? m_file.faults() : QString(), QString());
        }
        m_shared.table.compare(*m_file.open());
    }

    /// The child writes, we read.
    void sideBySide(int writes)
    {
        const pid_t child = fork();
        if (child == 0) {
            for (Program program(m_file, m_shared); writes > 0 && !HasFailure(); --writes)
                program.write();
            _exit(HasFailure() ? 1 : 0);
        }
        int status = 0;
        int reads = 0;
        Program program(m_file, m_shared);
        for (; waitpid(child, &status, WNOHANG) == 0; ++reads) {
            if (!HasFailure())
                program.read();
        }
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        EXPECT_GT(reads, 10);
    }

private:
    const TestFile m_file{GetParam()};
    Shared m_shared{*m_file.open(), Chance(20260), GetParam().jet4()};
};

using NightlyTwoDatabases = TwoDatabases;

INSTANTIATE_TEST_SUITE_P(Jet, TwoDatabases, testing::ValuesIn(plainKinds), testing::PrintToStringParamName());
INSTANTIATE_TEST_SUITE_P(Jet, NightlyTwoDatabases, testing::ValuesIn(plainKinds), testing::PrintToStringParamName());

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
