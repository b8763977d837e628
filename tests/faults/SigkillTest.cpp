// A process that writes is really killed, again and again, in the same client.
#include <iostream>
#include <random>

#include <QProcess>
#include <QThread>
#include <gtest/gtest.h>

#include "tests/fakes/Beispieldaten.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;

namespace {

/// The number of the last account that was reported; `before` if none was.
int killedWhileWriting(const QString &path, int before, std::mt19937 &random)
{
    QProcess writer;
    writer.start(QStringLiteral(FAULTS_WRITER), {path, QString::number(before + 1)});
    if (!writer.waitForStarted() || !writer.waitForReadyRead(60000))
        return -1;
    QThread::usleep(random() % 60000);
    writer.kill(); // this one process, by SIGKILL
    writer.waitForFinished();
    const QByteArrayList lines = writer.readAllStandardOutput().split('\n');
    return lines.size() < 2 ? before : lines[lines.size() - 2].toInt(); // what follows the last line end is cut off
}

void killAgainAndAgain(Version version, int times)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(Course::fileName());
    const auto engine = Course::engineOver(storage::systemFiles());
    beispiel::erzeugeMandant(*engine, path, {}, version);
    std::mt19937 random(4711);
    int last = 100000;
    int hot = 0;
    for (int i = 0; i < times; ++i) {
        const int reported = killedWhileWriting(path, last, random);
        ASSERT_GT(reported, last) << "the writer does not write";
        hot += readFolder(folder.path())[Course::fileName() + u".vjn"_s].isEmpty() ? 0 : 1;
        const QStringList rows = beispiel::zeilen(*engine, path, u"SELECT PersKtoNummer FROM sPersKto"_s);
        // Those before, those reported, and perhaps the one whose report was cut off.
        last = 100000 + static_cast<int>(rows.size());
        ASSERT_TRUE(last == reported || last == reported + 1) << last << ", reported " << reported;
        for (int number = 100001; number <= last; ++number)
            ASSERT_TRUE(rows.contains(u"K%1"_s.arg(number))) << number;
        ASSERT_EQ(faultsOf(path), QString());
        ASSERT_EQ(readFolder(folder.path()).size(), 1U) << "lock file or journal left";
    }
    std::cout << "SIGKILL: " << times << " times, " << last - 100000 << " accounts, " << hot << " commits interrupted"
              << std::endl;
}

const Version versions[] = {dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40};

} // namespace

TEST(Sigkill, LosesNoReportedAccount)
{
    for (const Version version : versions)
        killAgainAndAgain(version, 5);
}

TEST(NightlySigkill, LosesNoReportedAccount)
{
    for (const Version version : versions)
        killAgainAndAgain(version, 200);
}
