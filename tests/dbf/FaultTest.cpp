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

const Statement statements[] = {
    {"insert",
     [](auto &database) {
         customers(database).insert({{{0, u"neu"_s}, {4, QString(700, u'n')}}});
     }},
    {"update of several rows",
     [](auto &database) {
         const auto scope = database.beginWrite();
         customers(database).update(1, {{{1, 1.0}, {4, u"anders"_s}}});
         customers(database).update(3, {{{0, u"drei"_s}}});
         customers(database).insert({{{0, u"vier"_s}}});
         scope->commit();
     }},
    {"update with a longer memo",
     [](auto &database) {
         customers(database).update(1, {{{4, QString(700, u'm')}}});
     }},
    {"delete", [](auto &database) { customers(database).remove(3); }},
    {"create table",
     [](auto &database) {
         database.createTable({.name = u"NEU"_s, .columns = {{.name = u"M"_s, .type = storage::Type::Memo}}});
     }},
    {"drop table", [](auto &database) { database.dropTable(u"KUNDEN"_s); }},
};

void runIn(storage::FileSystem &files, const Folder &folder, const Statement &statement)
{
    const auto database = dbf::DbfDriver(files).open({.path = folder.path()});
    statement.run(*database);
}

/// What belongs to tables. The date of the last change says nothing about rows.
FolderContent tablesOf(FolderContent content)
{
    for (auto &[name, bytes] : content) {
        if (name.endsWith(u".DBF"_s))
            bytes.replace(1, 3, "...");
    }
    std::erase_if(content, [all = content](const auto &file) {
        return !all.contains(file.first.chopped(3) + u"DBF"_s)
            || !(file.first.endsWith(u".DBF"_s) || file.first.endsWith(u".FPT"_s));
    });
    return content;
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
        runIn(storage::systemFiles(), folder, statement);
        m_after = readFolder(folder.path());
    }
    void reset() const { writeFolder(folder.path(), before); }

    /// Reopens the folder, as whoever comes next. Whether the statement has happened; neither whole nor absent fails.
    bool hasHappened(storage::FileSystem &files = storage::systemFiles()) const
    {
        reopen(files);
        const FolderContent now = tablesOf(readFolder(folder.path()));
        const bool whole = now == tablesOf(m_after);
        EXPECT_TRUE(whole || now == tablesOf(before)) << m_statement.name;
        return whole;
    }
    /// Whether some, but not all of it stands in the files, from which its journal leads back.
    bool isHalfDone() const
    {
        const FolderContent now = readFolder(folder.path());
        const auto journal = now.find(u"Tabellen.vjn"_s);
        return journal != now.end() && !journal->second.isEmpty() && tablesOf(now) != tablesOf(m_after);
    }
    void reopen(storage::FileSystem &files) const
    {
        const auto database = dbf::DbfDriver(files).open({.path = folder.path()});
        for (const QString &name : database->tableNames())
            rowsOf(*database->table(name));
    }
    /// Nothing is left that would be in the statement's way.
    void expectToWork() const
    {
        runIn(storage::systemFiles(), folder, m_statement);
        EXPECT_EQ(readFolder(folder.path()), m_after);
    }

    Folder folder;
    FolderContent before;

private:
    const Statement &m_statement;
    FolderContent m_after;
};

/// Flips the case of letters, as some other program might.
void change(const Folder &folder, const QString &file, qsizetype at)
{
    QByteArray content = folder.get(file);
    content[at] = static_cast<char>(content[at] ^ 0x20);
    folder.put(file, content);
}

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
                course.reset();
                files.start(fault);
                const auto failed = kindOf([&] { runIn(files, course.folder, statement); });
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
        runIn(files, course.folder, statement);
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
    Fault fault{.kill = true};
    int count = 0;
    do {
        ++fault.at;
        course.reset();
        files.start(fault);
        kindOf([&] { runIn(files, course.folder, statements[1]); });
        const bool struck = files.hasStruck();
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
        if (!struck)
            break;
    } while (!testing::Test::HasFailure());
    std::printf("%d faults on the way back\n", count);
}

TEST(Fault, OfOursLeavesTheWorkOfOthers)
{
    constexpr qsizetype firstRecord = 32 + 5 * 32 + 1;
    constexpr qsizetype recordLength = 36;
    const auto append = [](const Folder &folder) {
        const QByteArray content = folder.get(u"KUNDEN.DBF"_s);
        folder.put(u"KUNDEN.DBF"_s,
                   content.first(4) + littleEndian(4, 4) + content.mid(8, firstRecord + 3 * recordLength - 8)
                       + QByteArray(" fremd").leftJustified(recordLength, ' ') + '\x1A');
    };
    // clang-format off
    struct Row { const char *name; int statement; std::function<void(const Folder &)> other; QStringList rows; bool foreign; };
    const Row rows[] = {
        {"other record", 2, [](auto &f) { change(f, u"KUNDEN.DBF"_s, firstRecord + 2 * recordLength + 1); },
         {u"Müller|12.5|37316|ja|schön"_s, u"grüße|-1|-|nein|-"_s}, false},
        {"appended to a change", 3, append, {u"Müller|12.5|37316|ja|schön"_s, u"Grüße|-1|-|nein|-"_s, u"fremd|-|-|-|-"_s}, false},
        {"appended to an append", 0, append, {u"Müller|12.5|37316|ja|schön"_s, u"Grüße|-1|-|nein|-"_s, u"fremd|-|-|-|-"_s}, true},
        {"date",         2, [](auto &f) { change(f, u"KUNDEN.DBF"_s, 3); },
         {u"Müller|12.5|37316|ja|schön"_s, u"Grüße|-1|-|nein|-"_s}, false},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const Course course(statements[row.statement]);
        int taken = 0;
        FaultyFiles files;
        for (Fault fault{.at = 1, .kill = true};; ++fault.at) {
            course.reset();
            files.start(fault);
            kindOf([&] { runIn(files, course.folder, statements[row.statement]); });
            if (!files.hasStruck())
                break;
            if (!course.isHalfDone())
                continue;
            row.other(course.folder);
            EXPECT_EQ(rowsOf(customers(*course.folder.open())), row.rows) << fault.at;
            EXPECT_EQ(QFile::exists(course.folder.path(u"Tabellen.vjn.fremd"_s)), row.foreign) << fault.at;
            ++taken;
        }
        EXPECT_GT(taken, 1);
    }
}
