// The direct search over many contacts, against reading the same file plainly.
#include <chrono>

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

double sekundenFuerBlossesLesen(const QString &pfad)
{
    double beste = 1e9;
    for (int versuch = 0; versuch < 5; ++versuch) {
        const auto beginn = std::chrono::steady_clock::now();
        QFile datei(pfad);
        if (!datei.open(QIODevice::ReadOnly))
            throw std::runtime_error("contact table cannot be read");
        QByteArray block(256 * 1024, Qt::Uninitialized);
        while (datei.read(block.data(), block.size()) > 0)
            benchmark::DoNotOptimize(block.data());
        const std::chrono::duration<double> dauer = std::chrono::steady_clock::now() - beginn;
        beste = std::min(beste, dauer.count());
    }
    return beste;
}

} // namespace

static void suche(benchmark::State &state, const QString &begriff)
{
    Bestand &bestand = grosserBestand();
    Ungestoert programm;
    clSyncFelder felder(*bestand.engine);
    felder.init(bestand.pfad(u"veldrak.piz"_s), coding::mappingZugriff());
    ActDBF actDBF(programm, bestand.konfiguration, felder, *bestand.engine, bestand.desktop, bestand.desktop);
    const auto actApp = bestand.act.CreateObject({});
    const double plain = sekundenFuerBlossesLesen(bestand.kontakttabelle());
    const long speicherVorher = gipfelSpeicherKiB();

    int treffer = 0;
    const auto beginn = std::chrono::steady_clock::now();
    for (auto _ : state) {
        QString text = begriff;
        const auto zeilen = actDBF.SucheInActDB(*actApp, text, u""_s, u""_s);
        if (zeilen->RecordCount() > 0)
            zeilen->MoveLast();
        treffer = zeilen->RecordCount();
        zeilen->Close();
        actDBF.schliessen();
    }
    const std::chrono::duration<double> dauer = std::chrono::steady_clock::now() - beginn;
    const auto laeufe = static_cast<double>(state.iterations());
    state.counters["contacts/s"] = benchmark::Counter(alleKontakte * laeufe, benchmark::Counter::kIsRate);
    state.counters["hits"] = treffer;
    state.counters["plain_reads"] = dauer.count() / laeufe / plain;
    state.counters["MiB_file"] = static_cast<double>(QFile(bestand.kontakttabelle()).size()) / (1024 * 1024);
    state.counters["MiB_more_memory"] = static_cast<double>(gipfelSpeicherKiB() - speicherVorher) / 1024;
    felder.Kill();
}
BENCHMARK_CAPTURE(suche, seltenerName, u"Gärt"_s)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(suche, einTreffer, u"Nr. 77777 "_s)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(suche, alle, u"a"_s)->Unit(benchmark::kMillisecond);
