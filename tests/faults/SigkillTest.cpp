// A process that writes is really killed, again and again, in the same client.
#include <csignal>
#include <iostream>
#include <random>

#include <sys/wait.h>
#include <unistd.h>

#include "tests/fakes/Beispieldaten.h"
#include "tests/faults/Course.h"

using namespace Qt::StringLiterals;

namespace {

/// Inserts accounts until it is ended, and says each number once its statement has returned.
[[noreturn]] void writeFrom(int number, const ClientFolder &folder, int reports)
{
    const auto engine = engineOver();
    const auto database = folder.open(*engine);
    for (;; ++number) {
        database->Execute(
            u"INSERT INTO sPersKto (PersKtoNummer, PersKtoArt, PersKtoName) VALUES ('K%1', 75, 'Getötet')"_s.arg(
                number));
        if (::write(reports, &number, sizeof number) != sizeof number)
            ::abort();
    }
}

/// The number of the last account that was reported; `before` if none was.
int killedWhileWriting(const ClientFolder &folder, int before, std::mt19937 &random)
{
    int reports[2];
    if (::pipe(reports) != 0)
        return -1;
    const pid_t writer = ::fork();
    if (writer == 0)
        writeFrom(before + 1, folder, reports[1]);
    ::close(reports[1]);
    int last = before;
    int number = 0;
    if (::read(reports[0], &number, sizeof number) == sizeof number) {
        last = number;
        ::usleep(static_cast<useconds_t>(random() % 60000));
    }
    ::kill(writer, SIGKILL);
    ::waitpid(writer, nullptr, 0);
    while (::read(reports[0], &number, sizeof number) == sizeof number)
        last = number;
    ::close(reports[0]);
    return last;
}

void killAgainAndAgain(Version version, int times)
{
    const ClientFolder folder;
    const auto engine = engineOver();
    beispiel::erzeugeMandant(*engine, folder.path(), {}, version);
    std::mt19937 random(4711);
    int last = 100000;
    int hot = 0;
    for (int i = 0; i < times; ++i) {
        const int reported = killedWhileWriting(folder, last, random);
        ASSERT_GT(reported, last) << "the writer does not write";
        hot += folder.content()[u"Muster.PCK.vjn"_s].startsWith("VELDRAK") ? 1 : 0;
        const QStringList rows = beispiel::zeilen(*engine, folder.path(), u"SELECT PersKtoNummer FROM sPersKto"_s);
        // Those before, those reported, and perhaps the one that was not reported any more.
        last = 100000 + static_cast<int>(rows.size());
        ASSERT_TRUE(last == reported || last == reported + 1) << last << ", reported " << reported;
        for (int account = 100001; account <= last; ++account)
            ASSERT_TRUE(rows.contains(u"K%1"_s.arg(account))) << account;
        ASSERT_EQ(faultsOf(folder.path()), QString());
        ASSERT_EQ(folder.content().size(), 1U) << "lock file or journal left";
    }
    std::cout << "SIGKILL: " << times << " times, " << last - 100000 << " accounts, " << hot << " commits interrupted"
              << std::endl;
}

} // namespace

TEST(Sigkill, LosesNoReportedAccount)
{
    for (const Version version : {dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40})
        killAgainAndAgain(version, 5);
}

TEST(NightlySigkill, LosesNoReportedAccount)
{
    for (const Version version : {dao::DBEngine::dbVersion30, dao::DBEngine::dbVersion40})
        killAgainAndAgain(version, 200);
}
