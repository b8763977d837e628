#pragma once

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "contacts/clKontakt.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeAct.h"
#include "tests/fakes/FakeProgrammlauf.h"
#include "tests/fakes/MitschreibendeEngine.h"
#include "util/coding.h"

/// Contacts over a real mapping of twelve fields.
class KontaktTest : public testing::Test
{
protected:
    KontaktTest() { m_SyncFelder.init(beispiel::erzeugeMapping(m_engine, m_ordner.path()), coding::mappingZugriff()); }

    clKontakt neuerKontakt()
    {
        clKontakt kontakt(m_konfiguration, m_programm);
        kontakt.init(m_SyncFelder);
        return kontakt;
    }

    QTemporaryDir m_ordner;
    FakeDesktop m_tisch;
    FakeAct m_act;
    FakeProgrammlauf m_programm{m_tisch};
    MitschreibendeEngine m_engine{dao::makeEmbeddedEngine()};
    clSyncFelder m_SyncFelder{m_engine};
    Konfiguration m_konfiguration = beispiel::konfiguration(QStringLiteral("PCK/"));
};
