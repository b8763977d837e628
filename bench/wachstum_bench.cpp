// How the cost of a row grows with their number: added by one statement, looked up by key, read one after the other.
// The same statement is run on a file of SQLite's own beside it.
#include <random>

#include <QFile>
#include <QTemporaryDir>
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include "bench/Messung.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "platform/jet/JetDatabase.h"

using namespace Qt::StringLiterals;

namespace {

const QString kopieren = u"INSERT INTO Ziel (Nr, Folge, Name) SELECT Nr, Folge, Name FROM Quelle"_s;

/// Spread over the whole range, each number once.
std::int64_t verteilt(int zeile, int anzahl)
{
    return std::int64_t(zeile) * 7919 % anzahl;
}

QString name(int zeile)
{
    return u"Firma Nummer %1"_s.arg(zeile);
}

/// A database with the rows in "Quelle", and an empty "Ziel" with a key in order and one in none.
class Zeilen
{
public:
    explicit Zeilen(int anzahl)
        : m_anzahl(anzahl)
    {
        const auto datenbank = jet::JetDriver().create({vorlage()}, storage::FileVersion::Jet4);
        const std::vector<storage::Column> spalten{
            {u"Nr"_s, storage::Type::Long}, {u"Folge"_s, storage::Type::Long}, {u"Name"_s, storage::Type::Text, 40}};
        datenbank->createTable({u"Quelle"_s, spalten});
        const storage::Index schluessel{.name = u"PrimaryKey"_s, .columns = {{0}}, .unique = true, .primary = true};
        datenbank->createTable({u"Ziel"_s, spalten, {schluessel, {.name = u"iFolge"_s, .columns = {{1}}}}});
        storage::Table &quelle = *datenbank->table(u"Quelle"_s);
        const auto schreibend = datenbank->beginWrite();
        for (int zeile = 0; zeile < anzahl; ++zeile) {
            const storage::Assignment werte[]
                = {{0, std::int64_t(zeile)}, {1, verteilt(zeile, anzahl)}, {2, name(zeile)}};
            quelle.insert(werte);
        }
        schreibend->commit();
    }

    QString vorlage() const { return m_ordner.filePath(u"vorlage.mdb"_s); }
    QString neueKopie() const
    {
        const QString kopie = m_ordner.filePath(u"kopie.mdb"_s);
        QFile::remove(kopie);
        if (!QFile::copy(vorlage(), kopie))
            throw std::runtime_error("no copy");
        return kopie;
    }
    /// With the rows in "Ziel", too.
    QString gefuellt()
    {
        if (m_gefuellt.isEmpty()) {
            m_gefuellt = m_ordner.filePath(u"gefuellt.mdb"_s);
            QFile::rename(neueKopie(), m_gefuellt);
            dao::makeEmbeddedEngine()->OpenDatabase(m_gefuellt, 0, false, {})->Execute(kopieren);
        }
        return m_gefuellt;
    }
    int anzahl() const { return m_anzahl; }

private:
    QTemporaryDir m_ordner;
    int m_anzahl;
    QString m_gefuellt{};
};

/// Kept for the next measurement of the same number.
Zeilen &zeilen(const benchmark::State &state)
{
    static std::unique_ptr<Zeilen> letzte;
    const auto anzahl = static_cast<int>(state.range(0));
    if (!letzte || letzte->anzahl() != anzahl)
        letzte = std::make_unique<Zeilen>(anzahl);
    return *letzte;
}

void zeigeJeZeile(benchmark::State &state)
{
    state.counters["per_row"]
        = benchmark::Counter(static_cast<double>(state.range(0)),
                             benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// A database of SQLite's with the same two tables; closed with the object.
class SqliteZeilen
{
public:
    explicit SqliteZeilen(int anzahl)
    {
        if (sqlite3_open(QFile::encodeName(m_ordner.filePath(u"vergleich.db"_s)).constData(), &m_sqlite) != SQLITE_OK)
            throw std::runtime_error("no database");
        fuehreAus("CREATE TABLE Quelle (Nr INTEGER, Folge INTEGER, Name TEXT);"
                  "CREATE TABLE Ziel (Nr INTEGER, Folge INTEGER, Name TEXT);"
                  "CREATE UNIQUE INDEX PrimaryKey ON Ziel (Nr); CREATE INDEX iFolge ON Ziel (Folge); BEGIN");
        for (int zeile = 0; zeile < anzahl; ++zeile) {
            fuehreAus(u"INSERT INTO Quelle VALUES (%1, %2, '%3')"_s.arg(zeile)
                          .arg(verteilt(zeile, anzahl))
                          .arg(name(zeile))
                          .toUtf8());
        }
        fuehreAus("COMMIT");
    }
    ~SqliteZeilen() { sqlite3_close(m_sqlite); }
    SqliteZeilen(const SqliteZeilen &) = delete;
    SqliteZeilen &operator=(const SqliteZeilen &) = delete;

    void fuehreAus(const QByteArray &sql)
    {
        if (sqlite3_exec(m_sqlite, sql.constData(), nullptr, nullptr, nullptr) != SQLITE_OK)
            throw std::runtime_error(sqlite3_errmsg(m_sqlite));
    }

private:
    QTemporaryDir m_ordner;
    sqlite3 *m_sqlite = nullptr;
};

} // namespace

static void einfuegen(benchmark::State &state)
{
    const Zeilen &alle = zeilen(state);
    const auto engine = dao::makeEmbeddedEngine();
    for (auto _ : state) {
        state.PauseTiming();
        const auto datenbank = engine->OpenDatabase(alle.neueKopie(), 0, false, {});
        state.ResumeTiming();
        if (datenbank->Execute(kopieren) != alle.anzahl())
            state.SkipWithError("rows are missing");
    }
    zeigeJeZeile(state);
}

static void einfuegenSqlite(benchmark::State &state)
{
    SqliteZeilen datenbank(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        datenbank.fuehreAus(kopieren.toUtf8());
        state.PauseTiming();
        datenbank.fuehreAus("DELETE FROM Ziel");
        state.ResumeTiming();
    }
    zeigeJeZeile(state);
}

static void nachschlagen(benchmark::State &state)
{
    Zeilen &alle = zeilen(state);
    const auto engine = dao::makeEmbeddedEngine();
    const auto datenbank = engine->OpenDatabase(alle.gefuellt(), 0, true, {});
    std::minstd_rand zufall(4711); // NOLINT: the same in every run
    const Zaehler vorher = aufrufe();
    for (auto _ : state) {
        const auto nr = static_cast<int>(zufall() % static_cast<unsigned>(alle.anzahl()));
        const auto satz = datenbank->OpenRecordset(u"SELECT Nr, Name FROM Ziel WHERE Nr = %1"_s.arg(nr));
        if (satz->Eof() || satz->Fields(1).Value().toString() != name(nr))
            state.SkipWithError("wrong row");
    }
    state.counters["read_calls"]
        = static_cast<double>(aufrufe().lesen - vorher.lesen) / static_cast<double>(state.iterations());
}

static void durchlaufen(benchmark::State &state)
{
    const auto datenbank = jet::JetDriver().open({zeilen(state).gefuellt(), {}, true});
    for (auto _ : state) {
        std::int64_t gelesen = 0;
        for (const auto cursor = datenbank->table(u"Ziel"_s)->scan(); cursor->next(); ++gelesen) {
            for (int spalte = 0; spalte < 3; ++spalte)
                benchmark::DoNotOptimize(cursor->value(spalte));
        }
        if (gelesen != state.range(0))
            state.SkipWithError("rows are missing");
    }
    zeigeJeZeile(state);
}

static const auto einheit = benchmark::kMillisecond;
BENCHMARK(einfuegen)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(einheit);
BENCHMARK(einfuegenSqlite)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(einheit);
BENCHMARK(nachschlagen)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(durchlaufen)->Arg(1'000)->Arg(10'000)->Arg(100'000)->Unit(einheit);
// Not in a run without a filter (see main).
BENCHMARK(einfuegen)->Name("million/einfuegen")->Arg(1'000'000)->Iterations(1)->Unit(einheit);
BENCHMARK(einfuegenSqlite)->Name("million/einfuegenSqlite")->Arg(1'000'000)->Iterations(1)->Unit(einheit);
BENCHMARK(nachschlagen)->Name("million/nachschlagen")->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
BENCHMARK(durchlaufen)->Name("million/durchlaufen")->Arg(1'000'000)->Unit(einheit);
