#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

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

TEST(Lock, LetsTwoProgramsAppendAtOnce)
{
    const Folder folder;
    putCustomers(folder);
    const auto ours = folder.open();
    storage::Table *table = ours->table(u"KUNDEN"_s);
    const auto append = [](storage::Table &to) {
        for (int i = 0; i < 100; ++i)
            to.insert({{{0, u"neu"_s}, {4, QString::number(i)}}});
    };
    const pid_t child = fork();
    if (child == 0) {
        const auto failed = kindOf([&] { append(*folder.open()->table(u"KUNDEN"_s)); });
        _exit(failed ? 1 : 0);
    }
    append(*table);
    int status = -1;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    QStringList rows = rowsOf(*table);
    EXPECT_EQ(rows.size(), 202);
    for (int i = 0; i < 100; ++i)
        EXPECT_EQ(rows.count(u"neu|-|-|-|%1"_s.arg(i)), 2) << i;
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
