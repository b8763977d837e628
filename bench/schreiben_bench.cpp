// Writing: single statements that are on the disk when they return, beside SQLite in the same folder, and the memory
// that a large statement takes. TMPDIR says on which disk; one in memory measures nothing of flushes.
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <QCoreApplication>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include "bench/Messung.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/jet/JetDatabase.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int einfuegungen = 5'000;
constexpr int indizes = 7;

/// The statements that make the table, as both engines understand them.
QStringList anlegen()
{
    QStringList sql{u"CREATE TABLE Konto (Nr LONG, Name TEXT(50), Ort TEXT(50), Strasse TEXT(50), Betrag CURRENCY, "
                    "Datum DATETIME, Aktiv YESNO, Art LONG, Gruppe TEXT(20), Telefon TEXT(50))"_s};
    const QString spalten[indizes] = {u"Nr"_s, u"Name"_s, u"Ort"_s, u"Betrag"_s, u"Art"_s, u"Gruppe"_s, u"Telefon"_s};
    for (const QString &spalte : spalten)
        sql += u"CREATE INDEX i%1 ON Konto (%1)"_s.arg(spalte);
    return sql;
}

QString einfuegen(int nr)
{
    return u"INSERT INTO Konto (Nr, Name, Ort, Strasse, Betrag, Art, Gruppe, Telefon) VALUES "
           "(%1, 'Firma %2', 'Ort %3', 'Gasse %1', %4.25, %5, 'Gruppe %6', '+49 40 %2')"_s.arg(nr)
               .arg(nr * 7919 % 100'003)
               .arg(nr % 500)
               .arg(nr % 9000)
               .arg(nr % 7)
               .arg(nr % 40);
}

/// One statement after the other, each with what it does to the disk.
template <typename Ausfuehren> void fuegeEin(benchmark::State &state, const Ausfuehren &ausfuehren)
{
    int nr = 0;
    const Zaehler vorher = aufrufe();
    for (auto _ : state)
        ausfuehren(einfuegen(++nr));
    const Zaehler nachher = aufrufe();
    const auto jeAnweisung = [&](std::int64_t anzahl) { return static_cast<double>(anzahl) / nr; };
    state.counters["reads"] = jeAnweisung(nachher.lesen - vorher.lesen);
    state.counters["writes"] = jeAnweisung(nachher.schreiben - vorher.schreiben);
    state.counters["flushes"] = jeAnweisung(nachher.flushes - vorher.flushes);
}

/// `fuellung` MiB of rows.
void fuelle(const QString &pfad, std::int64_t fuellung)
{
    const auto datenbank = jet::JetDriver().create({pfad}, storage::FileVersion::Jet4);
    datenbank->createTable({u"Voll"_s, {{u"Nr"_s, storage::Type::Long}, {u"Text"_s, storage::Type::Text, 255}}});
    storage::Table &tabelle = *datenbank->table(u"Voll"_s);
    constexpr std::int64_t jeMiB = 4096; // rows of about 256 bytes
    for (std::int64_t nr = 0; nr < fuellung * jeMiB;) {
        const auto schreibend = datenbank->beginWrite();
        for (int i = 0; i < 20'000 && nr < fuellung * jeMiB; ++i, ++nr) {
            const QChar buchstabe(static_cast<char16_t>(u'a' + nr % 26));
            tabelle.insert(std::vector<storage::Assignment>{{0, nr}, {1, QString(230, buchstabe)}});
        }
        schreibend->commit();
    }
}

/// Runs veldrak-db to its end; the most memory that it had, in KiB.
long gipfelVon(const QStringList &argumente)
{
    const QString programm = QCoreApplication::applicationDirPath() + u"/veldrak-db"_s;
    std::vector<QByteArray> texte{programm.toLocal8Bit()};
    for (const QString &argument : argumente)
        texte.push_back(argument.toLocal8Bit());
    std::vector<char *> zeiger;
    for (QByteArray &text : texte)
        zeiger.push_back(text.data());
    zeiger.push_back(nullptr);
    pid_t kind = 0;
    int ergebnis = -1;
    rusage verbrauch{};
    if (posix_spawn(&kind, texte.front().constData(), nullptr, nullptr, zeiger.data(), environ) != 0
        || wait4(kind, &ergebnis, 0, &verbrauch) != kind || ergebnis != 0)
        return -1;
    return verbrauch.ru_maxrss;
}

} // namespace

static void einzelnEingefuegt(benchmark::State &state)
{
    const QTemporaryDir ordner;
    dao::EmbeddedEngine engine(std::make_unique<jet::JetDriver>(), nullptr);
    const auto datenbank = engine.CreateDatabase(ordner.filePath(u"neu.mdb"_s), {}, dao::DBEngine::dbVersion40);
    for (const QString &sql : anlegen())
        datenbank->Execute(sql);
    fuegeEin(state, [&](const QString &sql) { datenbank->Execute(sql); });
}
BENCHMARK(einzelnEingefuegt)->Iterations(einfuegungen)->Unit(benchmark::kMicrosecond)->UseRealTime();

static void einzelnEingefuegtSqlite(benchmark::State &state, const char *journal)
{
    const QTemporaryDir ordner;
    sqlite3 *offen = nullptr;
    sqlite3_open(ordner.filePath(u"neu.db"_s).toUtf8().constData(), &offen);
    const std::unique_ptr<sqlite3, int (*)(sqlite3 *)> datenbank(offen, sqlite3_close);
    const auto ausfuehren = [&](const QString &sql) {
        if (sqlite3_exec(offen, sql.toUtf8().constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            state.SkipWithError(sqlite3_errmsg(offen));
    };
    ausfuehren(u"PRAGMA journal_mode = %1"_s.arg(QLatin1StringView(journal)));
    ausfuehren(u"PRAGMA synchronous = FULL"_s);
    for (const QString &sql : anlegen())
        ausfuehren(sql);
    fuegeEin(state, ausfuehren);
}
BENCHMARK_CAPTURE(einzelnEingefuegtSqlite, Full, "DELETE")
    ->Iterations(einfuegungen)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(einzelnEingefuegtSqlite, Wal, "WAL")
    ->Iterations(einfuegungen)
    ->Unit(benchmark::kMicrosecond)
    ->UseRealTime();

// Every row of a table of so many MiB, in one statement.
static void allesGeaendert(benchmark::State &state)
{
    const QTemporaryDir ordner;
    const QString pfad = ordner.filePath(u"voll.mdb"_s);
    fuelle(pfad, state.range(0));
    long gipfel = 0;
    for (auto _ : state)
        gipfel = gipfelVon({u"sql"_s, pfad, u"UPDATE Voll SET Nr = Nr + 1000000"_s});
    if (gipfel < 0)
        state.SkipWithError("the statement failed");
    state.counters["MiB_memory"] = static_cast<double>(gipfel) / 1024;
}
BENCHMARK(allesGeaendert)->Arg(40)->Arg(400)->Iterations(1)->Unit(benchmark::kSecond)->UseRealTime();
