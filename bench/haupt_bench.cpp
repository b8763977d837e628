// Start-up to the main window, and questions to the mapping.
#include <benchmark/benchmark.h>

#include "bench/Bestand.h"
#include "groupeditor/frmHauptkontakt.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

static void startBisHauptfenster(benchmark::State &state)
{
    Bestand bestand(1);
    for (auto _ : state) {
        Haupt haupt(Umgebung{bestand.act, *bestand.engine, bestand.desktop, bestand.desktop, bestand.desktop,
                             bestand.desktop, bestand.desktop, bestand.desktop, bestand.desktop, bestand.desktop,
                             bestand.ordner()});
        haupt.Main([](Haupt &h) { return std::make_unique<frmHauptkontakt>(h); });
        if (haupt.beendet())
            state.SkipWithError("start-up ended the program");
    }
}
BENCHMARK(startBisHauptfenster)->Unit(benchmark::kMillisecond);

static void mappingFragen(benchmark::State &state)
{
    Bestand bestand(1);
    clSyncFelder felder(*bestand.engine);
    felder.init(bestand.pfad(u"veldrak.piz"_s), coding::mappingZugriff());
    for (auto _ : state) {
        benchmark::DoNotOptimize(felder.ActFeldname(8));
        benchmark::DoNotOptimize(felder.SyncID(u"Firma"_s));
        benchmark::DoNotOptimize(felder.IsKomH(8));
    }
    state.counters["questions/s"]
        = benchmark::Counter(3 * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
    felder.Kill();
}
BENCHMARK(mappingFragen)->Unit(benchmark::kMicrosecond);
