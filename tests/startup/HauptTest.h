#pragma once

#include <QApplication>
#include <gmock/gmock.h>

#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/fakes/FakeAct.h"
#include "tests/startup/Gestartet.h"

/// A program folder with a good ini file and something in place of the mapping, beside an ACT! with one contact:
/// start-up gets as far as the mapping.
class HauptTest : public testing::Test
{
protected:
    HauptTest()
    {
        m_act.contacts = {{{1, QStringLiteral("KONTAKT00001")}}};
        beispiel::schreibe(m_ordner.filePath(QStringLiteral("veldrak.piz")), "keine Datenbank");
        beispiel::erzeugeIni(m_ordner.path(), QStringLiteral("/pck/"), true, true);
    }

    /// Puts a good mapping in the place of the bad one.
    void legeMappingAn()
    {
        const QString mapping = m_ordner.filePath(QStringLiteral("veldrak.piz"));
        ASSERT_TRUE(QFile::remove(mapping) && QFile::copy(gemeinsamesMapping(*m_engine), mapping));
    }

    /// The status window of the program that is starting; nullptr if none is to be seen.
    static frmStatus *status()
    {
        for (QWidget *fenster : QApplication::topLevelWidgets()) {
            if (auto *status = dynamic_cast<frmStatus *>(fenster); status && status->isVisible())
                return status;
        }
        return nullptr;
    }
    static QString statustext() { return status() ? status()->lbStatus() : QString(); }

    /// Runs the start-up of another program in the same place; it has to end the program.
    std::unique_ptr<Haupt> starte()
    {
        auto haupt = std::make_unique<Haupt>(m_haupt.umgebung());
        EXPECT_THROW(haupt->Main({}), ProgrammBeendet);
        return haupt;
    }

    QTemporaryDir m_ordner;
    FakeDesktop m_desktop;
    FakeAct m_act;
    std::unique_ptr<dao::DBEngine> m_engine = dao::makeEmbeddedEngine();
    Haupt m_haupt{umgebung(m_act, *m_engine, m_desktop, m_ordner.path())};
    /// What the mapping's box says.
    const QString m_keinMapping
        = QStringLiteral("Fehler: 3343:%1: Unbekanntes Datenbankformat. Die Datei ist keine Jet-Datenbank.")
              .arg(m_ordner.filePath(QStringLiteral("veldrak.piz")));
};
