#pragma once

#include <QFile>
#include <QTemporaryDir>

#include "startup/Haupt.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeDesktop.h"
#include "util/coding.h"

/// The ports of a program on the tests' desktop.
inline Umgebung umgebung(Automation &act, dao::DBEngine &engine, FakeDesktop &tisch, const QString &ordner)
{
    return {act, engine, tisch, tisch, tisch, tisch, tisch, tisch, tisch, tisch, ordner};
}

/// The mapping that all programs share, since it is only read and making it costs more than a test. The icons are
/// beside.
inline QString gemeinsamesMapping(dao::DBEngine &engine)
{
    static const QTemporaryDir ordner;
    static const QString mapping = beispiel::erzeugeMapping(engine, ordner.path());
    static const bool bilder = QFile::link(QStringLiteral(VELDRAK_BILDER), ordner.filePath(QStringLiteral("bilder")));
    Q_ASSERT(bilder);
    return mapping;
}

/// A program as start-up leaves it, beside an ACT! whose window was 800 by 600.
inline std::unique_ptr<Haupt> gestarteterHaupt(FakeAct &act, dao::DBEngine &engine, FakeDesktop &tisch,
                                               const QString &pckPfad)
{
    const QString mapping = gemeinsamesMapping(engine);
    auto haupt = std::make_unique<Haupt>(umgebung(act, engine, tisch, mapping.section(u'/', 0, -2)));
    haupt->ActApp = act.CreateObject({});
    haupt->ActKontaktfenster = act.contactWindow();
    haupt->ActFensterBreite = 800;
    haupt->ActFensterHoehe = 600;
    haupt->konfiguration = beispiel::konfiguration(pckPfad);
    haupt->SyncFelder.init(mapping, coding::mappingZugriff());
    return haupt;
}

/// What the program knows of the contact on ACT!'s screen.
inline KontaktPtr gelesenerKontakt(Haupt &haupt)
{
    auto kontakt = std::make_shared<clKontakt>(haupt.konfiguration, haupt);
    kontakt->init(haupt.SyncFelder);
    kontakt->lese_OLE_Werte(*haupt.ActKontaktfenster);
    return kontakt;
}
