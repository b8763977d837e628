// A disk that is really full or read-only, and a folder in which a user may not write.
#include <iostream>

#include <QFile>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/dao/DaoError.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;
using dao::DaoError;

namespace {

class RealDisk : public CourseTest
{
protected:
    ~RealDisk() override
    {
        if (m_mounted)
            ::umount(name().constData());
    }
    /// Makes the folder a small disk of its own.
    bool mount() { return m_mounted = ::mount("tmpfs", name().constData(), "tmpfs", 0, "size=2m") == 0; }
    void remount(unsigned long flags)
    {
        ASSERT_EQ(::mount("tmpfs", name().constData(), "tmpfs", MS_REMOUNT | flags, nullptr), 0);
    }

private:
    QByteArray name() const { return QFile::encodeName(folder.folder.path()); }

    bool m_mounted = false;
};

INSTANTIATE_TEST_SUITE_P(Files, RealDisk, bothVersions, testing::PrintToStringParamName());

/// Runs a check as another user than root in a process of its own; its result is 0 if all is well.
int asOrdinaryUser(const std::function<int()> &check)
{
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        const bool changed = ::getuid() != 0 || (::setgid(nobody) == 0 && ::setuid(nobody) == 0);
        ::_exit(changed ? check() : 99);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

} // namespace

TEST_P(RealDisk, ThatIsFullIsNamedAndNothingIsLost)
{
    if (!mount())
        GTEST_SKIP() << "needs the right to mount a tmpfs";
    beispiel::erzeugeMandant(*engine, folder.path(), {}, GetParam());
    // Another file takes all but some kilobytes, so that the disk is full now at the journal, now at the client.
    int failures = 0;
    for (qint64 room = 0; room <= 128 * 1024; room += 4096) {
        SCOPED_TRACE(room);
        const auto database = folder.open(*engine);
        database->Execute(u"UPDATE Waehrung SET WhrgName='Euro' WHERE WhrgNr=1"_s); // lock file and journal are there
        QFile ballast(folder.path(u"ballast"_s));
        ASSERT_TRUE(ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray block(4096, 'x');
        while (ballast.write(block) == block.size()) { }
        ASSERT_TRUE(ballast.resize(std::max<qint64>(0, ballast.size() - room)));
        int accounts = 0;
        const auto insert = [&] {
            const QString sql = u"INSERT INTO sPersKto (PersKtoNummer, PersKtoBemerkung) VALUES ('D%1', '%2')"_s;
            database->Execute(sql.arg(accounts).arg(QString(20000, u'x')));
            ++accounts;
        };
        std::pair<int, QString> answer;
        for (int i = 0; i < 20 && answer.first == 0; ++i)
            answer = told(insert);
        if (answer.first != 0) {
            ++failures;
            EXPECT_EQ(answer.first, int(DaoError::DiskFull)) << qPrintable(answer.second);
            EXPECT_TRUE(answer.second.startsWith(u"Auf dem Datenträger ist nicht genug Platz."_s))
                << qPrintable(answer.second);
        }
        EXPECT_EQ(beispiel::zeilen(*engine, folder.path(), u"SELECT PersKtoNummer FROM sPersKto"_s).size(), accounts);
        ASSERT_TRUE(ballast.remove());
        EXPECT_EQ(told(insert).first, 0) << "works on";
        database->Execute(u"DELETE FROM sPersKto"_s);
        database->Close();
        ASSERT_EQ(faultsOf(folder.path()), QString());
        ASSERT_EQ(folder.content().size(), 1U);
    }
    EXPECT_GT(failures, 0);
    std::cout << "full disk: " << failures << " times" << std::endl;
}

TEST_P(RealDisk, ThatIsReadOnlyIsReadAndNamed)
{
    if (!mount())
        GTEST_SKIP() << "needs the right to mount a tmpfs";
    folder.setContent(transfer.content(0));
    remount(MS_RDONLY);
    EXPECT_EQ(rowsOf(folder.path()), transfer.rows(0));
    auto answer = told([&] { transfer.run(*folder.open(*engine), 0); });
    EXPECT_EQ(answer.first, int(DaoError::ReadOnly));
    EXPECT_TRUE(answer.second.startsWith(u"Aktualisieren nicht möglich. Die Datenbank oder das Objekt ist schreib"_s));
    answer = told([&] { engine->CreateDatabase(folder.path(u"Neu.PCK"_s), {}, GetParam()); });
    EXPECT_EQ(answer.first, int(DaoError::CannotLock)) << qPrintable(answer.second);

    // Interrupted in the middle of a commit: half a change is neither shown nor lost.
    remount(0);
    std::size_t done = 0;
    while (transfer.recording().operations()[done].kind != Recording::Kind::Sync)
        ++done;
    folder.setContent(transfer.recording().afterPowerLoss(done + 3, 1));
    remount(MS_RDONLY);
    answer = told([&] { folder.open(*engine); });
    EXPECT_EQ(answer.first, int(DaoError::ReadOnly)) << qPrintable(answer.second);
    remount(0);
    folder.open(*engine)->Close();
    EXPECT_EQ(folder.content(), transfer.content(0));
}

TEST_P(RealDisk, WithAFolderOrFileOfOthersIsReadAndNamed)
{
    struct Row {
        const char *name;
        mode_t folder;
        mode_t file;
        int opening; ///< 0: it is read
        int writing;
    };
    const Row rows[] = {
        {"folder read-only", 0555, 0666, 0, DaoError::CannotLock},
        {"file read-only", 0777, 0444, 0, DaoError::ReadOnly},
        {"both read-only", 0555, 0444, 0, DaoError::ReadOnly},
        {"file forbidden", 0777, 0000, DaoError::CannotOpen, 0},
        {"folder forbidden", 0000, 0666, DaoError::CannotOpen, 0},
        {"all allowed", 0777, 0666, 0, 0},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        folder.setContent(transfer.content(0));
        const QByteArray folderName = QFile::encodeName(folder.folder.path());
        ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), row.file), 0);
        ASSERT_EQ(::chmod(folderName.constData(), row.folder), 0);
        const int result = asOrdinaryUser([&] {
            std::shared_ptr<dao::Database> database;
            if (told([&] { database = folder.open(*engine); }).first != row.opening)
                return 1;
            if (!database)
                return 0;
            if (database->OpenRecordset(u"sPersKto"_s)->RecordCount() == 0)
                return 2;
            const auto writing = told([&] { transfer.run(*database, 0); });
            std::cerr << (writing.first == row.writing ? "" : qPrintable(writing.second));
            return writing.first == row.writing ? 0 : 3;
        });
        EXPECT_EQ(result, 0) << "1: opening, 2: reading, 3: writing, 99: no other user";
        ASSERT_EQ(::chmod(folderName.constData(), 0777), 0);
        EXPECT_EQ(readFolder(folder.folder.path()).at(transfer.content(0).begin()->first),
                  transfer.content(row.writing || row.opening ? 0 : 1).begin()->second);
    }
}
