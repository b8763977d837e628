// The direct search over many contacts, against reading the same file plainly.
#include <QFile>
#include <benchmark/benchmark.h>

#include "bench/Bestand.h"
#include "bench/Messung.h"
#include "contacts/ActDBF.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int alleKontakte = 100'000;

Bestand &grosserBestand()
{
    static Bestand bestand(alleKontakte);
    return bestand;
}

void liesAlle(dao::Recordset &zeilen)
{
    for (zeilen.MoveFirst(); !zeilen.Eof(); zeilen.MoveNext()) {
        for (int feld = 0; feld < zeilen.FieldCount(); ++feld)
            benchmark::DoNotOptimize(zeilen.Fields(feld).Value());
    }
}

} // namespace

/// With `lesen` all fields of the hits are read as well.
static void suche(benchmark::State &state, const QString &begriff, bool lesen)
{
    Bestand &bestand = grosserBestand();
    Ungestoert programm;
    clSyncFelder felder(*bestand.engine);
    felder.init(bestand.pfad(u"veldrak.piz"_s), coding::mappingZugriff());
    ActDBF actDBF(programm, bestand.konfiguration, felder, *bestand.engine, bestand.desktop, bestand.desktop);
    const auto actApp = bestand.act.CreateObject({});
    const double plain = rechenzeitFuerBlossesLesen(bestand.kontakttabelle());
    const long speicherVorher = gipfelSpeicherKiB();

    int treffer = 0;
    const double beginn = rechenzeit();
    for (auto _ : state) {
        QString text = begriff;
        const auto zeilen = actDBF.SucheInActDB(*actApp, text, u""_s, u""_s);
        if (zeilen->RecordCount() > 0)
            zeilen->MoveLast();
        treffer = zeilen->RecordCount();
        if (lesen)
            liesAlle(*zeilen);
        zeilen->Close();
        actDBF.schliessen();
    }
    const double dauer = rechenzeit() - beginn;
    const auto laeufe = static_cast<double>(state.iterations());
    state.counters["contacts/s"] = benchmark::Counter(alleKontakte * laeufe, benchmark::Counter::kIsRate);
    state.counters["hits"] = treffer;
    state.counters["plain_reads"] = dauer / laeufe / plain;
    state.counters["MiB_file"] = static_cast<double>(QFile(bestand.kontakttabelle()).size()) / (1024 * 1024);
    state.counters["MiB_more_memory"] = static_cast<double>(gipfelSpeicherKiB() - speicherVorher) / 1024;
    felder.Kill();
}
BENCHMARK_CAPTURE(suche, seltenerName, u"Gärt"_s, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(suche, einTreffer, u"Nr. 77777 "_s, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(suche, alle, u"a"_s, false)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(suche, trefferLesen, u"Gärt"_s, true)->Unit(benchmark::kMillisecond);
