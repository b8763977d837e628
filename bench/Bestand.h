#pragma once

#include <memory>
#include <vector>

#include <QTemporaryDir>

#include "mapping/clSyncFelder.h"
#include "platform/dao/Dao.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeAct.h"
#include "tests/fakes/FakeDesktop.h"

/// Sample files to measure on, made once per object in a folder of their own: mapping, ini file, one client, and a
/// contact table of the wanted size.
class Bestand
{
public:
    explicit Bestand(int kontakte);

    QString pfad(const QString &name) const { return m_ordner.filePath(name); }
    QString ordner() const { return m_ordner.path(); }
    QString kontakttabelle() const { return m_tabelle; }

    std::unique_ptr<dao::DBEngine> engine;
    FakeDesktop desktop;
    FakeAct act; ///< its current contact is the table's first
    Konfiguration konfiguration;

private:
    QTemporaryDir m_ordner;
    QString m_tabelle;
};
