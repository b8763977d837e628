// Several processes at once make accounts in one client; some of them die while doing so.
#include <algorithm>
#include <iostream>
#include <random>
#include <set>

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QElapsedTimer>
#include <QFile>

#include "mapping/clSyncFelder.h"
#include "platform/jet/Verifier.h"
#include "tests/pck/PckTest.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

/// What a process tells, in one write: who it is, and the number of the account that it has made.
struct Meldung {
    int wer = 0;
    int nummer = 0;
};

/// The parameter: how many accounts each process makes.
class Zugleich : public testing::TestWithParam<int>
{
protected:
    void SetUp() override
    {
        const auto engine = dao::makeEmbeddedEngine();
        beispiel::erzeugeMandant(*engine, m_mandant);
        m_mapping = beispiel::erzeugeMapping(*engine, m_ordner.path());
    }

    pid_t starte(int wer, int konten)
    {
        const pid_t kind = fork();
        if (kind == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL); // a failed assertion leaves none behind
            _exit(legeAn(wer, konten));
        }
        return kind;
    }

    /// Whether the client holds every account that was told, whole, and no more than one half one for each death.
    void pruefe(const std::set<int> &gemeldet, int tode)
    {
        const auto engine = dao::makeEmbeddedEngine();
        std::set<int> ganz;
        std::set<QString> nummern;
        const QStringList zeilen = beispiel::zeilen(
            *engine, m_mandant, u"SELECT PersKtoNummer, PersKtoArt, PersKtoGruppe, PersKtoBemerkung FROM sPersKto"_s);
        for (const QString &zeile : zeilen) {
            const QString nummer = zeile.section(u'|', 0, 0);
            EXPECT_TRUE(nummern.insert(nummer).second) << qPrintable(nummer) << " came twice";
            if (zeile.section(u'|', 1) == u"68|ACT|Aus der Kontaktverwaltung übernommen."_s)
                ganz.insert(nummer.mid(1).toInt());
            else
                EXPECT_EQ(zeile.section(u'|', 1), u"68|-|-"_s);
        }
        EXPECT_TRUE(std::ranges::includes(ganz, gemeldet)) << "an account is lost";
        EXPECT_LE(nummern.size(), gemeldet.size() + static_cast<std::size_t>(tode));
        {
            jet::PageFile datei(storage::systemFiles(), {m_mandant, {}, true});
            const jet::VerifyReport bericht = jet::verify(datei);
            EXPECT_TRUE(bericht.faults.empty()) << qPrintable(bericht.faults.front());
            EXPECT_EQ(bericht.entries, bericht.equalEntries);
        }
        EXPECT_EQ(QDir(m_ordner.path()).entryList({u"*.ldb"_s, u"*.vjn*"_s}), QStringList()) << "left behind";
    }

    /// Two processes make accounts side by side; one of them, if wanted, is killed again and again meanwhile.
    void zweiLegenAn(int tode)
    {
        std::mt19937 zufall(static_cast<unsigned>(GetParam()));
        QElapsedTimer uhr;
        uhr.start();
        const pid_t ruhig = starte(1, GetParam());
        for (int tod = 0; tod < tode; ++tod) {
            const pid_t opfer = starte(2, 1000000);
            usleep(static_cast<useconds_t>(zufall() % 60000));
            kill(opfer, SIGKILL);
            waitpid(opfer, nullptr, 0);
        }
        for (const pid_t kind : {ruhig, starte(2, GetParam())}) {
            int ergebnis = -1;
            ASSERT_EQ(waitpid(kind, &ergebnis, 0), kind);
            EXPECT_TRUE(WIFEXITED(ergebnis) && WEXITSTATUS(ergebnis) == 0) << "a process gave up";
        }
        QFile meldungen(m_meldungen);
        ASSERT_TRUE(meldungen.open(QIODevice::ReadOnly));
        std::set<int> gemeldet;
        std::map<int, int> anzahl;
        for (Meldung meldung; meldungen.read(reinterpret_cast<char *>(&meldung), sizeof meldung) == sizeof meldung;) {
            EXPECT_TRUE(gemeldet.insert(meldung.nummer).second) << "twice: " << meldung.nummer;
            ++anzahl[meldung.wer];
        }
        std::cout << gemeldet.size() << " accounts in " << uhr.elapsed() << " ms\n";
        EXPECT_EQ(anzahl[1], GetParam());
        EXPECT_GE(anzahl[2], GetParam());
        pruefe(gemeldet, tode);
    }

private:
    /// As a user does who takes the next number when his one was taken; returns the process's exit code.
    int legeAn(int wer, int konten)
    try {
        FakeDesktop tisch;
        FakeProgrammlauf programm{tisch};
        FakeKennwortabfrage abfrage;
        const auto engine = dao::makeEmbeddedEngine();
        clPCK pck{{programm, *engine, tisch, tisch, tisch, abfrage}};
        clSyncFelder felder(*engine);
        felder.init(m_mapping, coding::mappingZugriff());
        const auto vorlage = felder.get_sPersKto();
        pck.init(m_ordner.path() + u'/');
        const int meldungen = open(qPrintable(m_meldungen), O_WRONLY | O_APPEND | O_CREAT, 0600);
        for (int angelegt = 0; angelegt < konten;) {
            const QString nummer = pck.NeueNummer(0, u"D"_s, 1);
            bool neu = false;
            const int fehler = fehlernummer([&] { neu = pck.neueAdresse(nummer, *vorlage); });
            if (fehler == dao::DaoError::DuplicateKey || (fehler == 0 && !neu))
                continue; // the other one was faster, also between our looking and writing
            const Meldung meldung{wer, nummer.mid(1).toInt()};
            if (fehler != 0 || write(meldungen, &meldung, sizeof meldung) != sizeof meldung)
                return 1;
            ++angelegt;
        }
        pck.close_Mandant();
        return 0;
    } catch (const std::exception &fehler) {
        std::cerr << "process " << wer << ": " << fehler.what() << '\n';
        return 1;
    }

    QTemporaryDir m_ordner;
    QString m_mandant = m_ordner.filePath(u"Muster.PCK"_s);
    QString m_meldungen = m_ordner.filePath(u"Meldungen"_s);
    QString m_mapping;
};

} // namespace

TEST_P(Zugleich, TwoMakeAccounts)
{
    zweiLegenAn(0);
}

TEST_P(Zugleich, OneDiesAgainAndAgain)
{
    zweiLegenAn(std::max(5, GetParam() / 20));
}

INSTANTIATE_TEST_SUITE_P(Short, Zugleich, testing::Values(50));
INSTANTIATE_TEST_SUITE_P(Nightly, Zugleich, testing::Values(1000));
