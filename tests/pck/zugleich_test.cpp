// Several processes at once make accounts in one client; some of them die while doing so.
#include <chrono>
#include <iostream>
#include <random>
#include <set>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <QDir>
#include <QSet>

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

class Zugleich : public testing::Test
{
protected:
    void SetUp() override
    {
        const auto engine = dao::makeEmbeddedEngine();
        beispiel::erzeugeMandant(*engine, m_mandant);
        m_mapping = beispiel::erzeugeMapping(*engine, m_ordner.path());
        ASSERT_EQ(pipe(m_rohr), 0);
    }
    ~Zugleich() override
    {
        for (const pid_t kind : m_kinder) { // only after a failed assertion
            kill(kind, SIGKILL);
            waitpid(kind, nullptr, 0);
        }
    }

    pid_t starte(int wer, int konten)
    {
        const pid_t kind = fork();
        if (kind == 0) {
            close(m_rohr[0]);
            _exit(legeAn(wer, konten));
        }
        m_kinder.insert(kind);
        return kind;
    }
    void beende(pid_t kind)
    {
        kill(kind, SIGKILL);
        waitpid(kind, nullptr, 0);
        m_kinder.erase(kind);
    }
    /// Waits until a process has made its accounts.
    void erwarte(pid_t kind)
    {
        int ergebnis = 0;
        ASSERT_EQ(waitpid(kind, &ergebnis, 0), kind);
        m_kinder.erase(kind);
        EXPECT_TRUE(WIFEXITED(ergebnis) && WEXITSTATUS(ergebnis) == 0) << "a process gave up";
    }
    /// What the processes have told until now; to be called again before the pipe is full.
    void leseMeldungen(bool alle)
    {
        if (alle)
            close(m_rohr[1]);
        Meldung meldung;
        while ((alle || wartet()) && read(m_rohr[0], &meldung, sizeof meldung) == sizeof meldung) {
            EXPECT_TRUE(m_angelegt.insert(meldung.nummer).second) << "twice: " << meldung.nummer;
            ++m_anzahl[meldung.wer];
        }
    }

    /// Whether the client holds every account that was told, whole, and no more than one half one for each death.
    void pruefe(int tode)
    {
        const auto engine = dao::makeEmbeddedEngine();
        std::set<int> ganz;
        const QStringList zeilen = beispiel::zeilen(
            *engine, m_mandant, u"SELECT PersKtoNummer, PersKtoArt, PersKtoGruppe, PersKtoBemerkung FROM sPersKto"_s);
        QSet<QString> nummern;
        for (const QString &zeile : zeilen) {
            nummern += zeile.section(u'|', 0, 0);
            if (zeile.section(u'|', 1) == u"68|ACT|Aus der Kontaktverwaltung übernommen."_s)
                ganz.insert(zeile.section(u'|', 0, 0).mid(1).toInt());
            else
                EXPECT_EQ(zeile.section(u'|', 1), u"68|-|-"_s);
        }
        EXPECT_TRUE(std::ranges::includes(ganz, m_angelegt)) << "an account is lost";
        EXPECT_LE(static_cast<std::size_t>(zeilen.size()), m_angelegt.size() + static_cast<std::size_t>(tode));
        EXPECT_EQ(nummern.size(), zeilen.size()) << "a number came twice";
        {
            jet::PageFile datei(storage::systemFiles(), {m_mandant, {}, true});
            const jet::VerifyReport bericht = jet::verify(datei);
            EXPECT_TRUE(bericht.faults.empty()) << qPrintable(bericht.faults.front());
            EXPECT_EQ(bericht.entries, bericht.equalEntries);
        }
        EXPECT_EQ(QDir(m_ordner.path()).entryList({u"*.ldb"_s, u"*.vjn*"_s}), QStringList()) << "left behind";
    }

    /// Two processes make accounts side by side; one of them, if wanted, is killed again and again meanwhile.
    void zweiLegenAn(int konten, int tode)
    {
        std::mt19937 zufall(static_cast<unsigned>(konten));
        const auto beginn = std::chrono::steady_clock::now();
        const pid_t ruhig = starte(1, konten);
        for (int tod = 0; tod < tode; ++tod) {
            const pid_t opfer = starte(2, 1000000);
            usleep(static_cast<useconds_t>(zufall() % 60000));
            beende(opfer);
            leseMeldungen(false);
        }
        const pid_t letzter = starte(2, konten);
        for (const pid_t kind : {ruhig, letzter})
            erwarte(kind);
        leseMeldungen(true);
        const std::chrono::duration<double> dauer = std::chrono::steady_clock::now() - beginn;
        std::cout << m_angelegt.size() << " accounts in " << dauer.count() << " s\n";
        EXPECT_EQ(m_anzahl[1], konten);
        EXPECT_GE(m_anzahl[2], konten);
        pruefe(tode);
    }

private:
    bool wartet() const
    {
        pollfd rohr{m_rohr[0], POLLIN, 0};
        return poll(&rohr, 1, 0) == 1;
    }

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
        for (int angelegt = 0; angelegt < konten;) {
            const QString nummer = pck.NeueNummer(0, u"D"_s, 1);
            tisch.boxes.clear();
            try {
                if (!pck.neueAdresse(nummer, *vorlage))
                    continue;
            } catch (const dao::DaoError &fehler) {
                // The other one was faster between our looking and writing.
                if (fehler.Number() != dao::DaoError::DuplicateKey)
                    throw;
                continue;
            }
            ++angelegt;
            const Meldung meldung{wer, nummer.mid(1).toInt()};
            if (write(m_rohr[1], &meldung, sizeof meldung) != sizeof meldung)
                return 1;
        }
        pck.close_Mandant();
        return 0;
    } catch (const std::exception &fehler) {
        std::cerr << "process " << wer << ": " << fehler.what() << '\n';
        return 1;
    }

    QTemporaryDir m_ordner;
    QString m_mandant = m_ordner.filePath(u"Muster.PCK"_s);
    QString m_mapping;
    int m_rohr[2]{};
    std::set<pid_t> m_kinder;
    std::set<int> m_angelegt;
    std::map<int, int> m_anzahl;
};

using NightlyZugleich = Zugleich;

} // namespace

TEST_F(Zugleich, TwoMakeAccounts)
{
    zweiLegenAn(50, 0);
}

TEST_F(Zugleich, OneDiesAgainAndAgain)
{
    zweiLegenAn(50, 5);
}

TEST_F(NightlyZugleich, TwoMakeAccounts)
{
    zweiLegenAn(1000, 0);
}

TEST_F(NightlyZugleich, OneDiesAgainAndAgain)
{
    zweiLegenAn(1000, 50);
}
