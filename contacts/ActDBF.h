#pragma once

#include <memory>

#include <QString>

#include "mapping/clSyncFelder.h"
#include "platform/automation/Automation.h"
#include "platform/dao/Dao.h"
#include "platform/desktop/Desktop.h"
#include "util/Konfiguration.h"
#include "util/Programmlauf.h"

/// Searches ACT!'s contact table directly, past ACT!'s automation.
class ActDBF
{
public:
    ActDBF(Programmlauf &programm, const Konfiguration &konfiguration, const clSyncFelder &SyncFelder,
           dao::DBEngine &engine, const desktop::Files &dateien, desktop::Clipboard &zwischenablage);

    /// The contacts whose search fields contain the text, and those of a client and number. The search text is replaced
    /// by its case pattern. Nothing is escaped. On failure the user is told and the program ends.
    std::shared_ptr<dao::Recordset> SucheInActDB(AutomationObject &ActApp, QString &suchtext, const QString &mandant,
                                                 const QString &nummer);

    /// Closes the database of the last search, if there was one.
    void schliessen();

    /// A Like pattern that finds the text in capitals and small letters: "Ab1" becomes "[Aa][bB]1".
    static QString GrossKleinMuster(const QString &text);

private:
    QString abfrage(const QString &tabelle, const QString &suchmuster, const QString &mandant,
                    const QString &nummer) const;
    [[noreturn]] void meldeFehler(const QString &name, const QString &sql, const dao::DaoError &fehler);

    Programmlauf &m_programm;
    const Konfiguration &m_konfiguration;
    const clSyncFelder &m_SyncFelder;
    dao::DBEngine &m_engine;
    const desktop::Files &m_dateien;
    desktop::Clipboard &m_zwischenablage;
    std::shared_ptr<dao::Database> m_ActDB;
};
