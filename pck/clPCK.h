#pragma once

#include <memory>

#include <QString>
#include <QStringList>
#include <QVariant>

#include "pck/Kennwortabfrage.h"
#include "platform/dao/Dao.h"
#include "platform/desktop/Desktop.h"
#include "util/Programmlauf.h"

/// The only door to the clients of PC-Kaufmann: finds, opens, reads and writes their database files.
///
/// A client is addressed by its file name (a text) or its index (from 0 to PckAnzahl - 1); an index outside, or a name
/// that init did not find, is RunTimeError 9. Passwords are remembered as long as this object lives. Statements that
/// write go to the clipboard before they run.
/// Errors: what is not said to be shown in a box reaches the caller as DaoError. Writing to a client that is not open
/// is RunTimeError 91, unless a method says otherwise.
class clPCK
{
public:
    /// What a client is opened with and how the user is told; all must outlive this object.
    struct Dienste {
        Programmlauf &programm;
        dao::DBEngine &engine;
        const desktop::Files &dateien;
        desktop::Clipboard &zwischenablage;
        const desktop::Clock &uhr;
        Kennwortabfrage &kennwortabfrage;
    };

    explicit clPCK(const Dienste &dienste);
    ~clPCK(); ///< closes what is open
    clPCK(clPCK &&) = default;

    // Finding and opening clients

    /// Looks for *.PCK in a folder, which must end with a separator. False if there is none.
    bool init(const QString &Pfad);
    qint16 PckAnzahl() const { return m_PckAnzahl; } ///< how many clients the last init found

    /// Whether a client opens with a password. By name: the client stays open, and a wrong password gives false. By
    /// index: it is closed again, and a wrong password ends the program like every other error, after a box.
    bool test_Passwort(const QVariant &Mandant, const QString &Passwort);

    /// Opens a client, asking for its password as long as the remembered one is wrong. False if the user gives up:
    /// then no client is open, whatever was before. Any error but a wrong password ends the program, after a box. A
    /// name is replaced by its index. A client that was open is not closed by opening another one, only let go.
    bool open_Mandant(QVariant &Mandant);
    void close_Mandant();
    bool istOffen() const { return m_db != nullptr; } ///< whether a client is open
    QString Mandanten(qint16 Index) const; ///< file name

    // Account numbers and accounts

    /// What stands for a number when the client does not open.
    static constexpr QStringView keinZugriff = u"Kein Zugriff !";
    /// The account number to propose: type letter and six digits. That is `Start` if it is free, else the one above
    /// the highest of the type; keinZugriff if the client does not open. The client stays open.
    QString NeueNummer(qint16 Mandant, const QString &Typ, qint32 Start);

    /// Creates an account in the open client and fills it from the current row of a template; empty, that row's number,
    /// type and counters are passed over. False, after a box, if the number is taken. A column that the template lacks
    /// or that cannot take its value is shown in a box; the account is made nevertheless.
    bool neueAdresse(const QString &Nummer, dao::Recordset &Vorlage);

    /// The value of PersKtoArt for a type letter; 0 for anything else.
    static int Typnummer(const QString &Typ);

    // Values and communication entries

    /// Sets one column of the rows that meet a condition. Text is quoted, any other value takes its plain text form.
    /// Errors, and that no client is open, are shown in a box.
    void setzeWert(const QString &Tabelle, const QString &Feld, const QVariant &Wert, const QString &Bedingung);

    /// Appends a communication entry to an account. `Art` is brought to one of the known kinds if it contains one (of
    /// several, the last of telephone, mobile, fax, e-mail). Nothing is quoted: an apostrophe is DaoError.
    void neuerAnsprechpartnerWert(const QString &Nummer, const QString &Ansprech, QString &Art, const QString &Wert);

    // Price lists and currencies of the open client. Without one: a box, and an empty result. Indices from 0.

    QVariant Anzahl_Preislisten();
    QString Preisliste(qint16 Index); ///< number and label; "" above the last
    QString Preisgruppe(qint16 Nummer); ///< name of price group 1 to 3; "Keine" if the table is empty
    QVariant Anzahl_Waehrungen(); ///< database errors are shown in a box and give an empty result
    QString Waehrung(qint16 Index); ///< number and name; else "0 - Fehler!", mostly after a box

private:
    dao::Workspace &Arbeitsbereich();
    std::shared_ptr<dao::Database> oeffne(const QString &datei, const QString &passwort, int keinFehler);
    qsizetype stelle(const QVariant &Mandant) const;

    void uebernimmVorlage(dao::Recordset &konto, dao::Recordset &Vorlage);
    void uebernimmFeld(int i, dao::Field &feld, dao::Recordset &Vorlage);

    bool offenOderGemeldet();
    dao::Database &db() const;

    Dienste m_dienste;
    QString m_PckPfad;
    qint16 m_PckAnzahl = 0;
    QStringList m_PckDateien;
    QStringList m_PckPasswoerter; // same order
    std::shared_ptr<dao::Workspace> m_Arbeitsbereich;
    std::shared_ptr<dao::Database> m_db;
};
