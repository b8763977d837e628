#pragma once

#include <memory>
#include <optional>

#include <QString>
#include <QVariant>

#include "platform/automation/Automation.h"
#include "platform/dao/Dao.h"

/// The field mapping between ACT! and PC-Kaufmann: a database that is opened once and only read.
///
/// Fields are rows of its table Felder, addressed by ID (from 1, without gaps) or by one of three names: ACT!'s, the
/// PC-Kaufmann column, or the neutral "Sync" name. Composed fields are rows of its table VELDRAK. A missing row is
/// answered with a fixed value, given with each method; an error of the database reaches the caller as DaoError.
class clSyncFelder
{
public:
    explicit clSyncFelder(dao::DBEngine &engine);

    /// Opens the database and counts its fields.
    void init(const QString &Pfad, const QString &Passwort);
    /// Closes the database. RunTimeError 91 if it is not open.
    void Kill();
    bool istOffen() const { return m_db != nullptr; }

    qint16 FelderAnzahl() const { return m_FelderAnzahl; }

    /// ACT! name of a field, by ID or by one of the two other names (never by its ACT! name); else "ERROR".
    QString ActFeldname(const QVariant &schluessel) const;
    /// PC-Kaufmann column, likewise.
    QString OLFeldname(const QVariant &schluessel) const;
    /// Neutral name, likewise.
    QString SyncFeldname(const QVariant &schluessel) const;

    QString OLTabelle(qint16 ID) const; ///< PC-Kaufmann table; else "ERROR"
    bool IsSyncH(qint16 ID) const; ///< transferred for the main contact; else false
    bool IsSyncN(qint16 ID) const; ///< transferred for a secondary contact; else false
    qint16 Typ(qint16 ID) const; ///< always text: every mapped field is written as text

    /// ACT! field number, by ID or by PC-Kaufmann or neutral name; else -1.
    qint16 ActFeldID(const QVariant &schluessel) const;
    bool NachActH(qint16 ID) const; ///< goes back to ACT! for the main contact; else false
    bool NachActN(qint16 ID) const; ///< goes back to ACT! for a secondary contact; else false
    qint16 SyncID(const QString &name) const; ///< ID of a neutral name; else -1

    int VELDRAK_Anzahl() const; ///< number of composed fields
    /// The text of a composed field, put together from the fields of an ACT! record; else "ERROR".
    QString VELDRAK_ActString(AutomationObject &Kontakt, qint16 ID) const;
    QString VELDRAK_OLTabelle(qint16 ID) const; ///< target table of a composed field; else "ERROR"
    QString VELDRAK_OLFeld(qint16 ID) const; ///< target column of a composed field; else "ERROR"

    bool IsKomH(qint16 ID) const; ///< communication entry of the main contact; else false
    bool IsKomN(qint16 ID) const; ///< communication entry of a secondary contact; else false

    /// The template row of a new account. The caller closes the recordset.
    std::shared_ptr<dao::Recordset> get_sPersKto() const;

private:
    /// First column of the query's first row; nothing if there is no row.
    std::optional<QVariant> einzelwert(const QString &abfrage) const;
    QString text(const QString &abfrage) const;
    bool wahr(const QString &abfrage) const;
    qint16 zahl(const QString &abfrage) const;
    dao::Database &db() const;

    dao::DBEngine &m_engine;
    std::shared_ptr<dao::Database> m_db;
    QString m_MappingPfad;
    qint16 m_FelderAnzahl = 0;
};
