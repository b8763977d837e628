// Jet files by themselves: a full scan beside another reader of the same file, and inserts with many indexes.
#include <QCoreApplication>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>

#include "bench/Messung.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/jet/JetDatabase.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int zeilen = 100'000;
constexpr int spalten = 40;

// Texts, whole numbers, amounts, dates and yes/no in turn.
storage::Type spaltentyp(int spalte)
{
    constexpr storage::Type typen[] = {storage::Type::Text, storage::Type::Long, storage::Type::Currency,
                                       storage::Type::DateTime, storage::Type::Boolean};
    return typen[spalte % 5];
}

storage::Value wert(int zeile, int spalte)
{
    switch (spaltentyp(spalte)) {
    case storage::Type::Text:
        return u"Straße %1 in Ort %2"_s.arg(zeile).arg(spalte);
    case storage::Type::Long:
        return std::int64_t(zeile) * spalte;
    case storage::Type::Currency:
        return storage::Currency{zeile * 12'345LL};
    case storage::Type::DateTime:
        return storage::DateTime{36'000.0 + zeile % 10'000};
    default:
        return zeile % 2 == 0;
    }
}

storage::TableSchema breiteTabelle(int anzahlSpalten)
{
    storage::TableSchema schema{u"Breit"_s, {}};
    for (int spalte = 0; spalte < anzahlSpalten; ++spalte) {
        storage::Column eine{u"Spalte%1"_s.arg(spalte), spaltentyp(spalte)};
        if (eine.type == storage::Type::Text)
            eine.size = 50;
        schema.columns.push_back(eine);
    }
    return schema;
}

void fuelle(storage::Database &datenbank, int anzahl, int anzahlSpalten)
{
    storage::Table &tabelle = *datenbank.table(u"Breit"_s);
    const auto schreibend = datenbank.beginWrite();
    std::vector<storage::Assignment> werte(static_cast<std::size_t>(anzahlSpalten));
    for (int zeile = 0; zeile < anzahl; ++zeile) {
        for (int spalte = 0; spalte < anzahlSpalten; ++spalte)
            werte[static_cast<std::size_t>(spalte)] = {spalte, wert(zeile, spalte)};
        tabelle.insert(werte);
    }
    schreibend->commit();
}

const QString &grosseDatei()
{
    static QTemporaryDir ordner;
    static const QString pfad = [] {
        const QString neue = ordner.filePath(u"gross.mdb"_s);
        const auto datenbank = jet::JetDriver().create({neue}, storage::FileVersion::Jet4);
        datenbank->createTable(breiteTabelle(spalten));
        fuelle(*datenbank, zeilen, spalten);
        return neue;
    }();
    return pfad;
}

} // namespace

static void tabelleLesen(benchmark::State &state)
{
    const QString &pfad = grosseDatei();
    const long speicherVorher = gipfelSpeicherKiB();
    const double plain = rechenzeitFuerBlossesLesen(pfad);
    const double beginn = rechenzeit();
    for (auto _ : state) {
        const auto datenbank = jet::JetDriver().open({pfad, {}, true});
        const auto cursor = datenbank->table(u"Breit"_s)->scan();
        int gelesen = 0;
        for (; cursor->next(); ++gelesen) {
            for (int spalte = 0; spalte < spalten; ++spalte)
                benchmark::DoNotOptimize(cursor->value(spalte));
        }
        if (gelesen != zeilen)
            state.SkipWithError("rows are missing");
    }
    state.counters["rows/s"]
        = benchmark::Counter(zeilen * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
    state.counters["plain_reads"] = (rechenzeit() - beginn) / static_cast<double>(state.iterations()) / plain;
    state.counters["MiB_more_memory"] = static_cast<double>(gipfelSpeicherKiB() - speicherVorher) / 1024;
}
BENCHMARK(tabelleLesen)->Unit(benchmark::kMillisecond)->UseRealTime();

// Row after row of the same table through a recordset, every field of it.
static void satzLesen(benchmark::State &state)
{
    const auto datenbank = dao::makeEmbeddedEngine()->OpenDatabase(grosseDatei(), 0, true, {});
    const auto saetze = datenbank->OpenRecordset(u"Breit"_s);
    const Zaehler vorher = aufrufe();
    for (auto _ : state) {
        for (int feld = 0; feld < spalten; ++feld)
            benchmark::DoNotOptimize(saetze->Fields(feld).Value());
        saetze->MoveNext();
        if (saetze->Eof())
            saetze->MoveFirst();
    }
    state.counters["read_calls"]
        = static_cast<double>(aufrufe().lesen - vorher.lesen) / static_cast<double>(state.iterations());
}
BENCHMARK(satzLesen)->Unit(benchmark::kMicrosecond);

// The same table as text through a program: ours, and mdb-export where it is installed.
static void tabelleAlsText(benchmark::State &state, const QString &programm, const QStringList &vorher)
{
    const QString gefunden = QStandardPaths::findExecutable(programm, {QCoreApplication::applicationDirPath()});
    const QString ausfuehrbar = gefunden.isEmpty() ? QStandardPaths::findExecutable(programm) : gefunden;
    if (ausfuehrbar.isEmpty()) {
        state.SkipWithError("not installed");
        return;
    }
    const QStringList argumente = vorher + QStringList{grosseDatei(), u"Breit"_s};
    for (auto _ : state) {
        QProcess prozess;
        prozess.setStandardOutputFile(QProcess::nullDevice());
        prozess.start(ausfuehrbar, argumente);
        if (!prozess.waitForFinished(-1) || prozess.exitCode() != 0)
            state.SkipWithError("the program failed");
    }
    state.counters["rows/s"]
        = benchmark::Counter(zeilen * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK_CAPTURE(tabelleAlsText, veldrakDb, u"veldrak-db"_s, {u"dump"_s})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(tabelleAlsText, mdbExport, u"mdb-export"_s, {})->Unit(benchmark::kMillisecond)->UseRealTime();

static void zeilenMitSiebenIndizes(benchmark::State &state)
{
    constexpr int anzahl = 10'000;
    for (auto _ : state) {
        state.PauseTiming();
        QTemporaryDir ordner;
        const auto datenbank = jet::JetDriver().create({ordner.filePath(u"neu.mdb"_s)}, storage::FileVersion::Jet4);
        datenbank->createTable(breiteTabelle(10));
        for (int i = 0; i < 7; ++i)
            datenbank->createIndex(u"Breit"_s, {u"i%1"_s.arg(i), {{i, i % 2 == 1}}});
        state.ResumeTiming();
        fuelle(*datenbank, anzahl, 10);
    }
    state.counters["rows/s"]
        = benchmark::Counter(anzahl * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}
BENCHMARK(zeilenMitSiebenIndizes)->Unit(benchmark::kMillisecond)->UseRealTime();
