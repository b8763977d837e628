// ACT! failing at every call of a transfer: docs/act-faults.md is the expectation, and this is where it comes from.
#include <gmock/gmock.h>

#include <QFile>
#include <QRegularExpression>

#include "platform/automation/dbus/DBusAutomation.h"
#include "tests/act_faults/Stoerfall.h"
#include "tests/automation/PrivateBus.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Fehler = Stoerfall::Fehler;

namespace {

struct Abschnitt {
    Fehler fehler;
    QString ueberschrift;
};

const Abschnitt abschnitte[] = {
    {Fehler::Stirbt, u"## ACT! dies"_s},
    {Fehler::Haengt, u"## ACT! hangs for good"_s},
    {Fehler::HaengtEinmal, u"## ACT! is late once"_s},
};

std::string zellen(const Ausgang &ausgang)
{
    return QStringList{ausgang.mandant, ausgang.act, ausgang.gesehen, ausgang.weiter}.join(u" | "_s).toStdString();
}

QString alsBereiche(const QList<int> &aufrufe)
{
    QStringList bereiche;
    for (qsizetype i = 0; i < aufrufe.size();) {
        const int von = aufrufe[i];
        int bis = von;
        while (++i < aufrufe.size() && aufrufe[i] == bis + 1)
            ++bis;
        bereiche += bis == von ? QString::number(von) : u"%1–%2"_s.arg(von).arg(bis);
    }
    return bereiche.join(u", "_s);
}

QList<int> ausBereichen(const QString &bereiche)
{
    QList<int> aufrufe;
    for (const QString &bereich : bereiche.split(u", "_s)) {
        for (int k = bereich.section(u'–', 0, 0).toInt(); k <= bereich.section(u'–', -1).toInt(); ++k)
            aufrufe += k;
    }
    return aufrufe;
}

/// One row of the table: calls with the same outcome.
QString zeile(const QList<int> &aufrufe, const QStringList &namen, const QString &rest)
{
    QStringList gerufen;
    for (const int k : aufrufe)
        gerufen += namen[k - 1];
    gerufen.removeDuplicates();
    return u"| %1 | %2 | %3 |"_s.arg(alsBereiche(aufrufe), gerufen.join(u", "_s), rest);
}

QStringList dokumentierteZeilen(const QString &ueberschrift)
{
    QFile datei(QStringLiteral(ACT_FAULTS));
    EXPECT_TRUE(datei.open(QFile::ReadOnly));
    QStringList zeilen = QString::fromUtf8(datei.readAll()).split(u'\n');
    zeilen = zeilen.mid(zeilen.indexOf(ueberschrift) + 1);
    QStringList tabelle;
    for (const QString &text : zeilen) {
        if (text.startsWith(u"## "_s))
            break;
        if (text.startsWith(u"| "_s) && text[2].isDigit())
            tabelle += text;
    }
    return tabelle;
}

} // namespace

TEST(ActFaults, AreDocumentedForEveryCall)
{
    Stoerfall stoerfall;
    for (const auto &[fehler, ueberschrift] : abschnitte) {
        SCOPED_TRACE(ueberschrift.toStdString());
        QList<int> dokumentiert;
        for (const QString &text : dokumentierteZeilen(ueberschrift)) {
            const QList<int> aufrufe = ausBereichen(text.section(u'|', 1, 1).trimmed());
            dokumentiert += aufrufe;
            const QString rest = text.section(u'|', 3, 6).trimmed();
            EXPECT_EQ(zeile(aufrufe, stoerfall.aufrufe(), rest).toStdString(), text.toStdString());
            const int k = aufrufe[aufrufe.size() / 2];
            EXPECT_EQ(zellen(stoerfall.beiAufruf(k, fehler)), rest.toStdString()) << "call " << k;
        }
        std::sort(dokumentiert.begin(), dokumentiert.end());
        EXPECT_EQ(alsBereiche(dokumentiert).toStdString(), u"1–%1"_s.arg(stoerfall.aufrufe().size()).toStdString());
    }
}

TEST(ActFaults, AreMendedByHandWhereTheNextRunCannot)
{
    Stoerfall stoerfall;
    const auto verknuepfe = [&] { stoerfall.gruppe().verknuepfeHauptkontakt(stoerfall.nummer()); };
    const auto loesche = [&] { stoerfall.gruppe().loescheKonto(stoerfall.nummer()); };
    EXPECT_EQ(stoerfall.beiAufruf(35, Fehler::Stirbt, loesche).weiter, u"new: “Transfer” does it all"_s);
    for (const int k : {41, 44, 45, 46})
        EXPECT_EQ(stoerfall.beiAufruf(k, Fehler::Stirbt, verknuepfe).weiter, u"known: “Fertig” completes it"_s) << k;
}

// The stand-in over a bus, at calls of every kind: a real process that dies or is busy, or hangs with a real time-out.
TEST(ActFaults, AreTheSameWithRealProcesses)
{
    Stoerfall stoerfall;
    const PrivateBus bus;
    const auto neben = [&](int k, const QString &option, const QStringList &weitere, std::chrono::seconds frist) {
        const QString kontakt = Zehnergruppe::kennung(1);
        return stoerfall.neben(k, [&] {
            QProcess act;
            EXPECT_TRUE(
                bus.start(act, QStringLiteral(ACTHOST),
                          QStringList{stoerfall.gruppe().tabelle(), u"--kontakt"_s, kontakt, option, QString::number(k)}
                              + weitere));
            DBusAutomation automation({frist, bus.address()});
            const Ablauf ablauf = stoerfall.gruppe().uebertrage(automation);
            PrivateBus::end(act);
            return ablauf;
        });
    };
    const int letzter = static_cast<int>(stoerfall.aufrufe().size());
    for (const int k : {1, 3, 20, 37, 44, 45, 46, 150, letzter}) {
        SCOPED_TRACE(k);
        EXPECT_EQ(zellen(neben(k, u"--stirbt-bei"_s, {}, 15s)), zellen(stoerfall.beiAufruf(k, Fehler::Stirbt)));
    }
    EXPECT_EQ(zellen(neben(44, u"--haengt-bei"_s, {}, 3s)), zellen(stoerfall.beiAufruf(44, Fehler::Haengt)));

    Ausgang beschaeftigt = neben(71, u"--beschaeftigt-bei"_s, {}, 3s);
    const Ausgang tot = stoerfall.beiAufruf(71, Fehler::Stirbt);
    EXPECT_TRUE(beschaeftigt.gesehen.contains(u"ist beschäftigt"_s)) << qPrintable(beschaeftigt.gesehen);
    beschaeftigt.gesehen = tot.gesehen;
    EXPECT_EQ(zellen(beschaeftigt), zellen(tot));
    for (const int k : {1, 40}) {
        SCOPED_TRACE(k);
        EXPECT_EQ(zellen(neben(k, u"--beschaeftigt-bei"_s, {u"--beschaeftigt"_s, u"1"_s}, 15s)),
                  "everything | all members | nothing | nothing to do");
    }
}

// The whole table anew. A difference prints the section as it would have to be.
TEST(Nightly, ActFailsAtEveryCall)
{
    Stoerfall stoerfall;
    for (const auto &[fehler, ueberschrift] : abschnitte) {
        QStringList ausgaenge;
        QMap<QString, QList<int>> aufrufe;
        for (int k = 1; k <= stoerfall.aufrufe().size(); ++k) {
            SCOPED_TRACE(u"%1, call %2"_s.arg(ueberschrift).arg(k).toStdString());
            const QString ausgang = QString::fromStdString(zellen(stoerfall.beiAufruf(k, fehler)));
            if (!aufrufe.contains(ausgang))
                ausgaenge += ausgang;
            aufrufe[ausgang] += k;
        }
        QStringList tabelle;
        for (const QString &ausgang : ausgaenge)
            tabelle += zeile(aufrufe[ausgang], stoerfall.aufrufe(), ausgang);
        EXPECT_EQ(tabelle.join(u'\n').toStdString(), dokumentierteZeilen(ueberschrift).join(u'\n').toStdString());
    }
}
