#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QSet>

#include "RawTable.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace {

constexpr qint64 base = 0x40000000;
constexpr qint64 firstRecord = base + 32 + 5 * 32 + 1;
constexpr qint64 thirdRecord = firstRecord + 2 * 36;

using Lock = CustomersTest;

/// Another program that locks one byte of a file.
struct Stranger {
    Stranger(const Folder &folder, const QString &name, qint64 position)
        : file(folder.path(name))
    {
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        struct flock lock = {.l_type = F_WRLCK, .l_whence = SEEK_SET, .l_start = position, .l_len = 1, .l_pid = 0};
        got = fcntl(file.handle(), F_SETLK, &lock) == 0;
    }

    QFile file;
    bool got = false;
};

} // namespace

TEST_F(Lock, OfAnotherProgramIsRespected)
{
    {
        const Stranger holder(folder, u"KUNDEN.DBF"_s, thirdRecord);
        EXPECT_EQ(kindOf([&] { table->update(3, {{{0, u"x"_s}}}); }, u"Satz 3"_s), StorageError::Locked);
        table->update(1, {{{0, u"frei"_s}}});
        EXPECT_EQ(rowsOf(*table).size(), 2);
    }
    {
        const Stranger holder(folder, u"KUNDEN.DBF"_s, base);
        EXPECT_EQ(kindOf([&] { table->insert({{{0, u"x"_s}}}); }, u"KUNDEN.DBF"_s), StorageError::Locked);
    }
    {
        const Stranger holder(folder, u"KUNDEN.FPT"_s, base);
        EXPECT_EQ(kindOf([&] { table->insert({{{4, u"x"_s}}}); }, u"Memodatei"_s), StorageError::Locked);
    }
    EXPECT_EQ(rowsOf(*table), (QStringList{u"frei|12.5|37316|ja|schön"_s, u"Grüße|-1|-|nein|-"_s}));
}

TEST_F(Lock, IsHeldUntilTheWritesAreDone)
{
    const auto canLock = [&](qint64 position) { return Stranger(folder, u"KUNDEN.DBF"_s, position).got; };
    auto scope = database->beginWrite();
    table->update(1, {{{0, u"x"_s}}});
    table->insert({{{0, u"x"_s}}});
    EXPECT_FALSE(canLock(base));
    EXPECT_FALSE(canLock(firstRecord));
    EXPECT_TRUE(canLock(thirdRecord));
    scope.reset();
    EXPECT_TRUE(canLock(base));
    EXPECT_TRUE(canLock(firstRecord));
}

// One of them is killed again and again, and both lose nothing that was done.
TEST_F(Lock, LetsTwoProgramsAppendAtOnce)
{
    const auto append = [](storage::Table &to, int number) {
        to.insert({{{0, u"neu"_s}, {4, QString(100, u'x') + QString::number(number)}}});
    };
    for (int round = 0; round < 25; ++round) {
        int done[2];
        ASSERT_EQ(pipe(done), 0);
        const pid_t child = fork();
        if (child == 0) {
            const auto failed = kindOf([&] {
                const auto theirs = folder.open();
                for (int i = 1; i <= 10; ++i) {
                    append(*theirs->table(u"KUNDEN"_s), 100 * i + round);
                    EXPECT_EQ(write(done[1], "x", 1), 1);
                }
            });
            _exit(failed ? 1 : 0);
        }
        close(done[1]);
        // Killed somewhere in the insertion behind the one it tells of; in every fifth round it gets to its end.
        const int toldOf = round % 5;
        char byte = 0;
        for (int i = 0; i < toldOf; ++i)
            EXPECT_EQ(read(done[0], &byte, 1), 1);
        for (int i = 1; i <= 4; ++i)
            append(*table, 10'000 * i + round);
        usleep(useconds_t(round * 17));
        if (toldOf != 0)
            kill(child, SIGKILL);
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
        while (read(done[0], &byte, 1) == 1) { }
        close(done[0]);
        const QStringList rows = rowsOf(*table);
        EXPECT_EQ(rows.size(), QSet<QString>(rows.begin(), rows.end()).size());
        const auto expectThere = [&](int count, int step) {
            for (int i = 1; i <= count; ++i)
                EXPECT_TRUE(rows.contains(u"neu|-|-|-|%1%2"_s.arg(QString(100, u'x')).arg(step * i + round)));
        };
        expectThere(4, 10'000);
        expectThere(toldOf == 0 ? 10 : toldOf, 100);
    }
}

TEST_F(Lock, KeepsTheJournalAsLongAsItIsUsed)
{
    const QString journal = folder.path(u"Tabellen.vjn"_s);
    for (const bool readOnly : {false, true}) {
        folder.put(u"Tabellen.vjn"_s, {}); // a killed program's
        const auto next = folder.open(readOnly);
        EXPECT_FALSE(QFile::exists(journal)) << readOnly;
    }
    auto second = folder.open();
    for (storage::Database *user : {database.get(), second.get()})
        user->table(u"KUNDEN"_s)->insert({{{0, u"neu"_s}}});
    folder.open(true);
    EXPECT_TRUE(QFile::exists(journal)) << "in use";
    second.reset();
    EXPECT_TRUE(QFile::exists(journal)) << "not the last one";
    database.reset();
    EXPECT_FALSE(QFile::exists(journal));
}

TEST_F(Lock, IsNoObstacleToReadingWhatOthersWrote)
{
    const auto ours = folder.open(true);
    storage::Table *read = ours->table(u"KUNDEN"_s);
    EXPECT_EQ(rowsOf(*read).size(), 2);
    table->insert({{{0, u"neu"_s}}});
    table->remove(3);
    EXPECT_EQ(rowsOf(*read), (QStringList{u"Müller|12.5|37316|ja|schön"_s, u"neu|-|-|-|-"_s}));
    EXPECT_TRUE(read->row(4));
}
