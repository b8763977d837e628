// Clients of the size of a large office: proposing a number, opening, and whole transfers.
#include <benchmark/benchmark.h>

#include "bench/Bestand.h"
#include "bench/Messung.h"
#include "pck/clPCK.h"
#include "platform/jet/JetDatabase.h"
#include "transfer/Eintragung.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int vieleKonten = 200'000;
constexpr int vieleEintraege = 60'000;

class KeineFrage : public Kennwortabfrage
{
public:
    void zeige(const QString &Mandant) override { throw std::runtime_error(Mandant.toStdString()); }
    QString Kennwort() const override { return {}; }
};

template <typename Zeile> void fuelle(const QString &pfad, const QString &tabelle, int anzahl, const Zeile &zeile)
{
    const auto datenbank = jet::JetDriver().open({pfad});
    storage::Table &ziel = *datenbank->table(tabelle);
    constexpr int jeSchritt = 10'000;
    for (int nr = 0; nr < anzahl; nr += jeSchritt) {
        const auto schreibend = datenbank->beginWrite();
        for (int i = nr; i < std::min(anzahl, nr + jeSchritt); ++i)
            ziel.insert(zeile(ziel.schema(), i));
        schreibend->commit();
    }
}

QString kontonummer(int nr)
{
    return u"D%1"_s.arg(nr, 6, 10, QLatin1Char('0'));
}

/// The sample files with a client filled up to a large office's.
class GrosserMandant : public Bestand
{
public:
    GrosserMandant()
        : Bestand(1)
    {
        const QString pfad = this->pfad(u"PCK/Muster.PCK"_s);
        fuelle(pfad, u"sPersKto"_s, vieleKonten, [](const storage::TableSchema &schema, int nr) {
            return std::vector<storage::Assignment>{{*schema.find(u"PersKtoNummer"_s), kontonummer(nr)},
                                                    {*schema.find(u"PersKtoArt"_s), std::int64_t(68)},
                                                    {*schema.find(u"PersKtoName"_s), u"Firma %1"_s.arg(nr)}};
        });
        fuelle(pfad, u"sPersKom"_s, vieleEintraege, [](const storage::TableSchema &schema, int nr) {
            return std::vector<storage::Assignment>{{*schema.find(u"PersKommNummer"_s), kontonummer(nr / 3)},
                                                    {*schema.find(u"PersKommLfdNr"_s), std::int64_t(nr % 3 + 1)},
                                                    {*schema.find(u"PersKommNr"_s), u"+49 40 %1"_s.arg(nr)}};
        });
    }

    clPCK mandanten()
    {
        clPCK pck({programm, *engine, desktop, desktop, desktop, frage});
        if (!pck.init(konfiguration.PckPfad))
            throw std::runtime_error("no client");
        return pck;
    }

    Ungestoert programm;
    KeineFrage frage;
};

GrosserMandant &grosserMandant()
{
    static GrosserMandant bestand;
    return bestand;
}

} // namespace

static void nummerVorschlagen(benchmark::State &state)
{
    clPCK pck = grosserMandant().mandanten();
    const Zaehler vorher = aufrufe();
    QString nummer;
    for (auto _ : state)
        nummer = pck.NeueNummer(0, u"D"_s, 0);
    if (nummer != kontonummer(vieleKonten))
        state.SkipWithError("wrong proposal");
    state.counters["read_calls"]
        = static_cast<double>(aufrufe().lesen - vorher.lesen) / static_cast<double>(state.iterations());
    pck.close_Mandant();
}
BENCHMARK(nummerVorschlagen)->Unit(benchmark::kMillisecond);

static void mandantOeffnen(benchmark::State &state)
{
    clPCK pck = grosserMandant().mandanten();
    for (auto _ : state) {
        QVariant name = u"Muster.PCK"_s;
        if (!pck.open_Mandant(name))
            state.SkipWithError("client does not open");
        pck.close_Mandant();
    }
}
BENCHMARK(mandantOeffnen)->Unit(benchmark::kMillisecond);

// A group of the given size into a client of ordinary size, without the waits for ACT!.
static void gruppeUebertragen(benchmark::State &state)
{
    Bestand bestand(1);
    Haupt haupt(Umgebung{bestand.act, *bestand.engine, bestand.desktop, bestand.desktop, bestand.desktop,
                         bestand.desktop, bestand.desktop, bestand.desktop, bestand.desktop, bestand.desktop,
                         bestand.ordner()});
    haupt.konfiguration = bestand.konfiguration;
    haupt.SyncFelder.init(bestand.pfad(u"veldrak.piz"_s), coding::mappingZugriff());
    haupt.ActApp = bestand.act.CreateObject({});
    haupt.ActKontaktfenster = bestand.act.contactWindow();
    const beispiel::Person vorbild = beispiel::firmengruppe().front();
    bestand.act.contacts.clear();
    for (int i = 0; i < state.range(0); ++i) {
        beispiel::Person person = vorbild;
        person.id = u"G%1"_s.arg(i, 11, 10, QLatin1Char('0'));
        bestand.act.contacts.push_back(beispiel::alsAct(person));
        bestand.act.current = bestand.act.contacts.size() - 1;
        haupt.Mitglieder.push_back(std::make_shared<clKontakt>(haupt.konfiguration, haupt));
        haupt.Mitglieder.back()->init(haupt.SyncFelder);
        haupt.Mitglieder.back()->lese_OLE_Werte(*haupt.ActKontaktfenster);
    }
    haupt.HauptIndex = 1;

    KeineFrage frage;
    clPCK pck({haupt, *bestand.engine, bestand.desktop, bestand.desktop, bestand.desktop, frage});
    pck.init(bestand.konfiguration.PckPfad);
    Zaehler geschrieben;
    qsizetype anweisungen = 0;
    for (auto _ : state) {
        state.PauseTiming();
        for (const KontaktPtr &mitglied : haupt.Mitglieder) {
            mitglied->Nummer.clear();
            mitglied->Mandant.clear();
            mitglied->Typ = mitglied == haupt.Mitglieder.front() ? u"H"_s : u"N"_s;
        }
        bestand.desktop.boxes.clear();
        bestand.desktop.clipboardHistory.clear();
        bestand.act.calls.clear();
        const QString nummer = pck.NeueNummer(0, u"D"_s, 0);
        const Zaehler vorher = aufrufe();
        state.ResumeTiming();
        Eintragung(haupt, pck, *haupt.Mitglieder.front(), {0, u"Muster.PCK"_s, u"D"_s, nummer, 0.0, 49, 0.0, 1.0})
            .fuehreAus();
        const Zaehler nachher = aufrufe();
        geschrieben.schreiben += nachher.schreiben - vorher.schreiben;
        geschrieben.flushes += nachher.flushes - vorher.flushes;
        anweisungen += bestand.desktop.clipboardHistory.size() + 1; // the account is filled through a recordset
    }
    const auto laeufe = static_cast<double>(state.iterations());
    state.counters["statements/s"] = benchmark::Counter(static_cast<double>(anweisungen), benchmark::Counter::kIsRate);
    state.counters["statements"] = static_cast<double>(anweisungen) / laeufe;
    state.counters["writes"] = static_cast<double>(geschrieben.schreiben) / laeufe;
    state.counters["flushes"] = static_cast<double>(geschrieben.flushes) / laeufe;
    state.counters["flushes/statement"]
        = static_cast<double>(geschrieben.flushes) / static_cast<double>(std::max<qsizetype>(anweisungen, 1));
    pck.close_Mandant();
}
BENCHMARK(gruppeUebertragen)->Arg(1)->Arg(10)->Arg(50)->Unit(benchmark::kMillisecond);
