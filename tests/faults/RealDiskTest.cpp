// A disk that is really full or read-only, and a folder in which a user may not write.
#include <functional>
#include <iostream>

#include <QFile>
#include <gtest/gtest.h>
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

/// A small disk of its own; unmounted with the object.
class SmallDisk
{
public:
    explicit SmallDisk(const char *options)
        : m_mounted(::mount("tmpfs", name().constData(), "tmpfs", 0, options) == 0)
    { }
    ~SmallDisk()
    {
        if (m_mounted)
            ::umount(name().constData());
    }
    bool isMounted() const { return m_mounted; }
    bool makeReadOnly() { return ::mount(nullptr, name().constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr) == 0; }
    bool makeWritable() { return ::mount(nullptr, name().constData(), nullptr, MS_REMOUNT, nullptr) == 0; }
    const QTemporaryDir &folder() const { return m_folder; }

private:
    QByteArray name() const { return QFile::encodeName(m_folder.path()); }

    QTemporaryDir m_folder{};
    bool m_mounted;
};

/// What an action tells: the number and the German text, or nothing.
std::pair<int, QString> told(const std::function<void()> &action)
{
    try {
        action();
        return {};
    } catch (const DaoError &error) {
        return {error.Number(), error.Description()};
    }
}

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

#define NEED_DISK(disk)                                                                                                \
    if (!(disk).isMounted())                                                                                           \
    GTEST_SKIP() << "needs the right to mount a tmpfs"

class RealDisk : public testing::TestWithParam<Version>
{ };
INSTANTIATE_TEST_SUITE_P(Files, RealDisk, testing::Values(dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40),
                         [](const auto &version) { return versionName(version.param); });

TEST_P(RealDisk, ThatIsFullIsNamedAndNothingIsLost)
{
    const SmallDisk disk("size=2m");
    NEED_DISK(disk);
    const QString path = disk.folder().filePath(Course::fileName());
    const auto engine = Course::engineOver(storage::systemFiles());
    beispiel::erzeugeMandant(*engine, path, {}, GetParam());
    // Another file takes all but some kilobytes, so that the disk is full now at the journal, now at the client.
    int failures = 0;
    int accounts = 0;
    for (qint64 room = 0; room <= 128 * 1024; room += 4096) {
        SCOPED_TRACE(room);
        const auto database = Course::open(*engine, disk.folder());
        database->Execute(u"UPDATE Waehrung SET WhrgName='Euro' WHERE WhrgNr=1"_s); // lock file and journal are there
        QFile ballast(disk.folder().filePath(u"ballast"_s));
        ASSERT_TRUE(ballast.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        const QByteArray block(4096, 'x');
        while (ballast.write(block) == block.size()) { }
        ASSERT_TRUE(ballast.resize(std::max<qint64>(0, ballast.size() - room)));
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
        EXPECT_EQ(beispiel::zeilen(*engine, path, u"SELECT PersKtoNummer FROM sPersKto"_s).size(), accounts);
        ASSERT_TRUE(ballast.remove());
        EXPECT_EQ(told(insert).first, 0) << "works on";
        database->Execute(u"DELETE FROM sPersKto"_s);
        accounts = 0;
        database->Close();
        ASSERT_EQ(faultsOf(path), QString());
        ASSERT_EQ(readFolder(disk.folder().path()).size(), 1U);
    }
    EXPECT_GT(failures, 0);
    std::cout << "full disk: " << failures << " times" << std::endl;
}

TEST_P(RealDisk, ThatIsReadOnlyIsReadAndNamed)
{
    SmallDisk disk("size=4m");
    NEED_DISK(disk);
    const Course &course = Course::transfer(GetParam());
    const QString path = disk.folder().filePath(Course::fileName());
    const auto engine = Course::engineOver(storage::systemFiles());
    writeFolder(disk.folder().path(), {{Course::fileName(), course.content(0)}});
    ASSERT_TRUE(disk.makeReadOnly());
    EXPECT_EQ(Course::rowsOf(path), course.rows(0));
    auto answer = told([&] { course.run(*Course::open(*engine, disk.folder()), 0); });
    EXPECT_EQ(answer.first, int(DaoError::ReadOnly));
    EXPECT_TRUE(answer.second.startsWith(u"Aktualisieren nicht möglich. Die Datenbank oder das Objekt ist schreib"_s));
    answer = told([&] { engine->CreateDatabase(disk.folder().filePath(u"Neu.PCK"_s), {}, GetParam()); });
    EXPECT_EQ(answer.first, int(DaoError::CannotLock)) << qPrintable(answer.second);

    // Interrupted in the middle of a commit: half a change is neither shown nor lost.
    ASSERT_TRUE(disk.makeWritable());
    std::size_t done = 0;
    while (course.recording().operations()[done].kind != Recording::Kind::Sync)
        ++done;
    writeFolder(disk.folder().path(), course.recording().afterPowerLoss(done + 3, 1));
    ASSERT_TRUE(disk.makeReadOnly());
    answer = told([&] { Course::open(*engine, disk.folder()); });
    EXPECT_EQ(answer.first, int(DaoError::ReadOnly)) << qPrintable(answer.second);
    ASSERT_TRUE(disk.makeWritable());
    Course::open(*engine, disk.folder())->Close();
    EXPECT_EQ(readFolder(disk.folder().path()).at(Course::fileName()), course.content(0));
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
    const Course &course = Course::transfer(GetParam());
    const auto engine = Course::engineOver(storage::systemFiles());
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const QTemporaryDir folder;
        const QString path = folder.filePath(Course::fileName());
        writeFolder(folder.path(), {{Course::fileName(), course.content(0)}});
        ASSERT_EQ(::chmod(QFile::encodeName(path).constData(), row.file), 0);
        ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), row.folder), 0);
        const int result = asOrdinaryUser([&] {
            std::shared_ptr<dao::Database> database;
            const int opening = told([&] { database = Course::open(*engine, folder); }).first;
            if (opening != row.opening)
                return 1;
            if (!database)
                return 0;
            if (database->OpenRecordset(u"sPersKto"_s)->RecordCount() == 0)
                return 2;
            const auto writing = told([&] { course.run(*database, 0); });
            std::cerr << (writing.first == row.writing ? "" : qPrintable(writing.second));
            return writing.first == row.writing ? 0 : 3;
        });
        EXPECT_EQ(result, 0) << "1: opening, 2: reading, 3: writing, 99: no other user";
        ASSERT_EQ(::chmod(QFile::encodeName(folder.path()).constData(), 0777), 0);
        EXPECT_EQ(readFolder(folder.path()).at(Course::fileName()), course.content(row.writing || row.opening ? 0 : 1));
    }
}
