#pragma once

#include <deque>

#include <QLocale>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "pck/clPCK.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeProgrammlauf.h"
#include "tests/fakes/MitschreibendeEngine.h"

/// Answers the question for a password from a list; gives up when the list is empty.
class FakeKennwortabfrage : public Kennwortabfrage
{
public:
    std::deque<QString> antworten;
    QStringList gefragt;

    void zeige(const QString &Mandant) override
    {
        gefragt += Mandant;
        flagKennwortAbbruch = antworten.empty();
        m_kennwort = antworten.empty() ? QString() : antworten.front();
        if (!antworten.empty())
            antworten.pop_front();
    }
    QString Kennwort() const override { return m_kennwort; }

private:
    QString m_kennwort;
};

/// The number of the run-time error that the code throws; 0 if none.
inline int fehlernummer(const std::function<void()> &code)
{
    try {
        code();
    } catch (const RunTimeError &fehler) {
        return fehler.Number();
    }
    return 0;
}

/// Clients in a folder, in real files.
class PckTest : public testing::Test
{
protected:
    QString pfad(const QString &datei) const { return m_ordner.filePath(datei); }

    /// Creates and opens a client, after which nothing is on record.
    void oeffneNeuen(const QStringList &anweisungen = {}, dao::DBEngine::Version version = dao::DBEngine::dbVersion40)
    {
        beispiel::erzeugeMandant(m_engine.dahinter(), m_mandant, {}, version);
        beispiel::fuehreAus(m_engine.dahinter(), m_mandant, anweisungen);
        m_pck.init(m_ordner.path() + u'/');
        QVariant mandant = 0;
        ASSERT_TRUE(m_pck.open_Mandant(mandant));
        m_engine.protokoll.clear();
    }
    QStringList zeilen(const QString &abfrage) { return beispiel::zeilen(m_engine.dahinter(), m_mandant, abfrage); }

    QTemporaryDir m_ordner;
    QString m_mandant = m_ordner.filePath(QStringLiteral("Muster.PCK"));
    FakeDesktop m_tisch;
    FakeProgrammlauf m_programm{m_tisch};
    MitschreibendeEngine m_engine{dao::makeEmbeddedEngine()};
    FakeKennwortabfrage m_abfrage;
    clPCK m_pck{{m_programm, m_engine, m_tisch, m_tisch, m_tisch, m_abfrage}};
};
