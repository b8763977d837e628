#pragma once

#include <QLocale>
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "pck/clPCK.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeProgrammlauf.h"
#include "tests/fakes/Fehlernummer.h"
#include "tests/fakes/MitschreibendeEngine.h"

/// Answers the question for a password from a list; gives up when the list is empty.
struct FakeKennwortabfrage : Kennwortabfrage {
    QStringList antworten;
    QStringList gefragt;
    QString kennwort;

    void zeige(const QString &Mandant) override
    {
        gefragt += Mandant;
        flagKennwortAbbruch = antworten.isEmpty();
        kennwort = antworten.value(0);
        antworten = antworten.mid(1);
    }
    QString Kennwort() const override { return kennwort; }
};

/// Clients in a folder, in real files.
class PckTest : public testing::Test
{
protected:
    /// Creates and opens a client, after which nothing is on record.
    void oeffneNeuen(const QStringList &anweisungen = {}, dao::DBEngine::Version version = dao::DBEngine::dbVersion40)
    {
        beispiel::erzeugeMandant(m_engine.dahinter(), m_mandant, {}, version);
        fuehreAus(anweisungen);
        m_pck.init(m_ordner.path() + u'/');
        QVariant mandant = 0;
        ASSERT_TRUE(m_pck.open_Mandant(mandant));
        m_engine.protokoll.clear();
    }
    /// On the client, past the record.
    void fuehreAus(const QStringList &anweisungen) { beispiel::fuehreAus(m_engine.dahinter(), m_mandant, anweisungen); }
    QStringList zeilen(const QString &abfrage) { return beispiel::zeilen(m_engine.dahinter(), m_mandant, abfrage); }
    /// The texts of all boxes since the last time.
    QStringList neueBoxen()
    {
        const QStringList texte = m_tisch.boxTexts();
        m_tisch.boxes.clear();
        return texte;
    }

    QTemporaryDir m_ordner;
    QString m_mandant = m_ordner.filePath(QStringLiteral("Muster.PCK"));
    FakeDesktop m_tisch;
    FakeProgrammlauf m_programm{m_tisch};
    MitschreibendeEngine m_engine{dao::makeEmbeddedEngine()};
    FakeKennwortabfrage m_abfrage;
    clPCK m_pck{{m_programm, m_engine, m_tisch, m_tisch, m_tisch, m_abfrage}};
};
