#include <QDir>

#include "RawTable.h"
#include "tests/fakes/FaultyFiles.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace {

struct Statement {
    const char *name;
    std::function<void(storage::Database &)> run;
};

storage::Table &customers(storage::Database &database)
{
    return *database.table(u"KUNDEN"_s);
}

// clang-format off
const Statement statements[] = {
    {"insert", [](auto &database) { customers(database).insert({{{0, u"neu"_s}, {4, QString(700, u'n')}}}); }},
    {"update of several rows", [](auto &database) {
         const auto scope = database.beginWrite();
         customers(database).update(1, {{{1, 1.0}, {4, u"anders"_s}}});
         customers(database).update(3, {{{0, u"drei"_s}}});
         customers(database).insert({{{0, u"vier"_s}}});
         scope->commit();
     }},
    {"update with a longer memo", [](auto &database) { customers(database).update(1, {{{4, QString(700, u'm')}}}); }},
    {"delete", [](auto &database) { customers(database).remove(3); }},
    {"create table", [](auto &database) { database.createTable({u"NEU"_s, {{u"M"_s, storage::Type::Memo}}}); }},
    {"drop table", [](auto &database) { database.dropTable(u"KUNDEN"_s); }},
};
// clang-format on

/// What belongs to tables. The date of the last change says nothing about rows.
FolderContent tablesOf(const FolderContent &content)
{
    FolderContent tables;
    for (const auto &[name, bytes] : content) {
        if (name.endsWith(u".DBF"_s))
            tables[name] = bytes.first(1) + bytes.sliced(4);
        else if (name.endsWith(u".FPT"_s) && content.contains(name.chopped(3) + u"DBF"_s))
            tables[name] = bytes;
    }
    return tables;
}

/// A folder with a statement's state before and after it.
class Course
{
public:
    explicit Course(const Statement &statement)
        : m_statement(statement)
    {
        putCustomers(folder);
        before = readFolder(folder.path());
        run();
        m_after = readFolder(folder.path());
    }
    void reset() const { writeFolder(folder.path(), before); }
    void run(storage::FileSystem &files = storage::systemFiles()) const
    {
        m_statement.run(*dbf::DbfDriver(files).open({.path = folder.path()}));
    }
    /// From the state before it, with a fault. Whether it told a failure.
    bool failsWith(FaultyFiles &files, const Fault &fault) const
    {
        reset();
        files.start(fault);
        return kindOf([&] { run(files); }).has_value();
    }
    /// Reopens the folder, as whoever comes next.
    void reopen(storage::FileSystem &files) const
    {
        const auto database = dbf::DbfDriver(files).open({.path = folder.path()});
        for (const QString &name : database->tableNames())
            rowsOf(*database->table(name));
    }
    /// The same. Whether the statement has happened; neither whole nor absent fails.
    bool hasHappened() const
    {
        reopen(storage::systemFiles());
        const FolderContent now = tablesOf(readFolder(folder.path()));
        const bool whole = now == tablesOf(m_after);
        EXPECT_TRUE(whole || now == tablesOf(before));
        return whole;
    }
    /// Whether some, but not all of it stands in the files, from which its journal leads back.
    bool isHalfDone() const
    {
        const FolderContent now = readFolder(folder.path());
        const auto journal = now.find(u"Tabellen.vjn"_s);
        return journal != now.end() && journal->second.startsWith("VELDRAK") && tablesOf(now) != tablesOf(m_after);
    }
    /// Nothing is left that would be in the statement's way.
    void expectToWork() const
    {
        run();
        EXPECT_EQ(readFolder(folder.path()), m_after);
    }

    Folder folder;
    FolderContent before;

private:
    const Statement &m_statement;
    FolderContent m_after;
};

} // namespace

TEST(Fault, LeavesEachStatementWholeOrAbsent)
{
    // clang-format off
    const Fault faults[] = {
        {.error = ENOSPC}, {.error = EIO}, {.error = EACCES},
        {.error = ENOSPC, .lasting = true}, {.error = EIO, .lasting = true}, {.error = EACCES, .lasting = true},
        {.error = ENOSPC, .partly = true}, {.error = EIO, .partly = true, .kill = true}, {.error = EIO, .kill = true},
    };
    // clang-format on
    int count = 0;
    for (const Statement &statement : statements) {
        const Course course(statement);
        for (Fault fault : faults) {
            fault.of = Fault::Of::All;
            FaultyFiles files;
            do {
                SCOPED_TRACE(testing::Message()
                             << statement.name << ", operation " << ++fault.at << ", error " << fault.error
                             << (fault.lasting ? ", lasting" : "") << (fault.kill ? ", killed" : ""));
                const bool failed = course.failsWith(files, fault);
                const bool happened = course.hasHappened();
                EXPECT_TRUE(failed || happened) << "lost without a word";
                if (!happened)
                    course.expectToWork();
                ++count;
                ASSERT_FALSE(testing::Test::HasFailure());
            } while (files.hasStruck());
        }
    }
    std::printf("%d faults\n", count);
}

TEST(Fault, OfPowerLeavesEachStatementWholeOrAbsent)
{
    int count = 0;
    for (const Statement &statement : statements) {
        const Course course(statement);
        course.reset();
        FaultyFiles files;
        const Recording &recording = files.record(course.folder.path());
        course.run(files);
        for (std::size_t operations = 0; operations <= recording.size(); ++operations) {
            for (unsigned seed = 0; seed < 20; ++seed, ++count) {
                SCOPED_TRACE(testing::Message() << statement.name << ", after " << operations << ", seed " << seed);
                writeFolder(course.folder.path(), recording.afterPowerLoss(operations, seed));
                course.hasHappened();
                ASSERT_FALSE(testing::Test::HasFailure());
            }
        }
    }
    std::printf("%d failures of power\n", count);
}

TEST(Fault, OfTheWayBackIsNoneForTheNextOne)
{
    const Course course(statements[1]);
    FaultyFiles files;
    int count = 0;
    bool struck = true;
    for (Fault fault{.at = 1, .kill = true}; struck && !testing::Test::HasFailure(); ++fault.at) {
        course.failsWith(files, fault);
        struck = files.hasStruck();
        const FolderContent left = readFolder(course.folder.path());
        Fault again{.kill = true};
        do {
            ++again.at;
            writeFolder(course.folder.path(), left);
            files.start(again);
            kindOf([&] { course.reopen(files); });
            ++count;
            course.hasHappened();
        } while (files.hasStruck());
    }
    std::printf("%d faults on the way back\n", count);
}

TEST(Fault, OfOursLeavesTheWorkOfOthers)
{
    constexpr qsizetype recordLength = 36;
    constexpr qsizetype thirdRecord = 32 + 5 * 32 + 1 + 2 * recordLength;
    // Flips the case of a letter, as some other program might.
    const auto changeAt = [](qsizetype at) {
        return [at](QByteArray table) {
            table[at] = static_cast<char>(table[at] ^ 0x20);
            return table;
        };
    };
    const auto append = [](const QByteArray &table) {
        return table.first(4) + littleEndian(4, 4) + table.sliced(8, thirdRecord + recordLength - 8)
            + QByteArray(" fremd").leftJustified(recordLength, ' ') + '\x1A';
    };
    const QString first = u"Müller|12.5|37316|ja|schön"_s;
    const QString third = u"Grüße|-1|-|nein|-"_s;
    // clang-format off
    using Other = std::function<QByteArray(QByteArray)>;
    struct Row { const char *name; int statement; Other other; QStringList rows; bool foreign; };
    const Row rows[] = {
        {"other record",          2, changeAt(thirdRecord + 1), {first, u"grüße|-1|-|nein|-"_s}, false},
        {"appended to a change",  3, append,      {first, third, u"fremd|-|-|-|-"_s}, false},
        {"appended to an append", 0, append,      {first, third, u"fremd|-|-|-|-"_s}, true},
        {"date",                  2, changeAt(3), {first, third}, false},
    };
    // clang-format on
    for (const Row &row : rows) {
        const Course course(statements[row.statement]);
        int taken = 0;
        FaultyFiles files;
        for (Fault fault{.at = 1, .kill = true}; course.failsWith(files, fault), files.hasStruck(); ++fault.at) {
            if (!course.isHalfDone())
                continue;
            SCOPED_TRACE(testing::Message() << row.name << ' ' << fault.at);
            course.folder.put(u"KUNDEN.DBF"_s, row.other(course.folder.get(u"KUNDEN.DBF"_s)));
            EXPECT_EQ(rowsOf(customers(*course.folder.open())), row.rows);
            EXPECT_EQ(QFile::exists(course.folder.path(u"Tabellen.vjn.fremd"_s)), row.foreign);
            ++taken;
        }
        EXPECT_GT(taken, 1) << row.name;
    }
}
