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
constexpr qint64 headerLength = 32 + 5 * 32 + 1;
constexpr qint64 recordLength = 36;

/// Another program that locks one byte of a file.
class Stranger
{
public:
    Stranger(const Folder &folder, const QString &file, qint64 position)
        : m_file(folder.path(file))
    {
        EXPECT_TRUE(m_file.open(QIODevice::ReadWrite));
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        lock.l_start = position;
        lock.l_len = 1;
        m_got = fcntl(m_file.handle(), F_SETLK, &lock) == 0;
    }
    bool got() const { return m_got; }

private:
    QFile m_file;
    bool m_got = false;
};

} // namespace

TEST(Lock, OfAnotherProgramIsRespected)
{
    const Folder folder;
    putCustomers(folder);
    const auto database = folder.open();
    storage::Table *table = database->table(u"KUNDEN"_s);
    {
        const Stranger holder(folder, u"KUNDEN.DBF"_s, base + headerLength + 2 * recordLength);
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

TEST(Lock, IsHeldUntilTheWritesAreDone)
{
    const Folder folder;
    putCustomers(folder);
    const auto database = folder.open();
    const auto canLock = [&](qint64 position) { return Stranger(folder, u"KUNDEN.DBF"_s, position).got(); };
    auto scope = database->beginWrite();
    database->table(u"KUNDEN"_s)->update(1, {{{0, u"x"_s}}});
    database->table(u"KUNDEN"_s)->insert({{{0, u"x"_s}}});
    EXPECT_FALSE(canLock(base));
    EXPECT_FALSE(canLock(base + headerLength));
    EXPECT_TRUE(canLock(base + headerLength + 2 * recordLength));
    scope.reset();
    EXPECT_TRUE(canLock(base));
    EXPECT_TRUE(canLock(base + headerLength));
}

// One of them is killed again and again, and both lose nothing that was done.
TEST(Lock, LetsTwoProgramsAppendAtOnce)
{
    const Folder folder;
    putCustomers(folder);
    const auto ours = folder.open();
    storage::Table *table = ours->table(u"KUNDEN"_s);
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
        char byte = 0;
        for (int i = 0; i < round % 5; ++i)
            EXPECT_EQ(read(done[0], &byte, 1), 1);
        for (int i = 0; i < 4; ++i)
            append(*table, 10'000 * (i + 1) + round);
        usleep(useconds_t(round * 17));
        if (round % 5 != 0)
            kill(child, SIGKILL);
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
        while (read(done[0], &byte, 1) == 1) { }
        close(done[0]);
        const QStringList rows = rowsOf(*table);
        EXPECT_EQ(rows.size(), QSet<QString>(rows.begin(), rows.end()).size());
        for (int i = 0; i < 4; ++i)
            EXPECT_TRUE(rows.contains(u"neu|-|-|-|%1%2"_s.arg(QString(100, u'x')).arg(10'000 * (i + 1) + round)));
        for (int i = 1; i <= (round % 5 == 0 ? 10 : round % 5); ++i)
            EXPECT_TRUE(rows.contains(u"neu|-|-|-|%1%2"_s.arg(QString(100, u'x')).arg(100 * i + round)));
    }
}

TEST(Lock, IsNoObstacleToReadingWhatOthersWrote)
{
    const Folder folder;
    putCustomers(folder);
    const auto ours = folder.open(true);
    const auto theirs = folder.open();
    storage::Table *table = ours->table(u"KUNDEN"_s);
    EXPECT_EQ(rowsOf(*table).size(), 2);
    theirs->table(u"KUNDEN"_s)->insert({{{0, u"neu"_s}}});
    theirs->table(u"KUNDEN"_s)->remove(3);
    EXPECT_EQ(rowsOf(*table), (QStringList{u"Müller|12.5|37316|ja|schön"_s, u"neu|-|-|-|-"_s}));
    EXPECT_TRUE(table->row(4));
}
