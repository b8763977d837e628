// ACT! failing at every call of a transfer: docs/act-faults.md is the expectation, and this is where it comes from.
#include <gmock/gmock.h>

#include <numeric>

#include <QRegularExpression>

#include "platform/automation/dbus/DBusAutomation.h"
#include "tests/act_faults/Stoerfall.h"
#include "tests/automation/PrivateBus.h"
#include "tests/fakes/Beispieldaten.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

const std::pair<Fehler, QString> abschnitte[] = {
    {Fehler::Stirbt, u"## ACT! dies"_s},
    {Fehler::Haengt, u"## ACT! hangs for good"_s},
    {Fehler::HaengtEinmal, u"## ACT! is late once"_s},
};

std::string zellen(const Ausgang &ausgang)
{
    return QStringList{ausgang.mandant, ausgang.act, ausgang.gesehen, ausgang.weiter}.join(u" | "_s).toStdString();
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

QStringList dokumentierteZeilen(const QString &ueberschrift)
{
    const QString abschnitt = QString::fromUtf8(beispiel::lies(QStringLiteral(ACT_FAULTS))).section(ueberschrift, 1, 1);
    static const QRegularExpression zeilenanfang(u"^\\| \\d"_s);
    return abschnitt.section(u"\n## "_s, 0, 0).split(u'\n').filter(zeilenanfang);
}

/// Compares every row with what its calls leave: all of them, or the one in the middle.
void pruefeTabellen(bool alle)
{
    Stoerfall stoerfall;
    for (const auto &[fehler, ueberschrift] : abschnitte) {
        SCOPED_TRACE(ueberschrift.toStdString());
        QList<int> dokumentiert;
        for (const QString &text : dokumentierteZeilen(ueberschrift)) {
            const QList<int> aufrufe = ausBereichen(text.section(u'|', 1, 1).trimmed());
            dokumentiert += aufrufe;
            QStringList namen;
            for (const int k : aufrufe)
                namen += stoerfall.aufrufe().value(k - 1);
            namen.removeDuplicates();
            EXPECT_EQ(text.section(u'|', 2, 2).trimmed().toStdString(), namen.join(u", "_s).toStdString());
            const std::string rest = text.section(u'|', 3, 6).trimmed().toStdString();
            for (const int k : alle ? aufrufe : aufrufe.mid(aufrufe.size() / 2, 1))
                EXPECT_EQ(zellen(stoerfall.beiAufruf(k, fehler)), rest) << "call " << k;
        }
        std::sort(dokumentiert.begin(), dokumentiert.end());
        QList<int> jeder(stoerfall.aufrufe().size());
        std::iota(jeder.begin(), jeder.end(), 1);
        EXPECT_EQ(dokumentiert, jeder);
    }
}

} // namespace

TEST(ActFaults, AreDocumentedForEveryCall)
{
    pruefeTabellen(false);
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

TEST(Nightly, ActFailsAtEveryCall)
{
    pruefeTabellen(true);
}
