#pragma once

#include <memory>

#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

#include "platform/dao/Dao.h"
#include "tests/fakes/FakeAct.h"
#include "tests/fakes/FaultyFiles.h"

/// What one run of the program was like for its user.
struct Ablauf {
    QStringList boxen; ///< their texts
    QString knopf; ///< the last one pressed
    bool beendet = false; ///< and nothing of the program is left on the screen
};

/// An account as it stands in a client.
struct Konto {
    QMap<QString, QString> spalten; ///< texts by column name
    QStringList eintraege; ///< its communication entries

    bool operator==(const Konto &) const = default;
};

/// A company of ten in the sample data, none of them in a client yet, and a user who transfers it.
///
/// Each run is a whole run of the program, from start-up to its end, on files of its own.
class Zehnergruppe
{
public:
    static constexpr int anzahl = 10;

    Zehnergruppe();

    QString tabelle() const { return ordner(u"/ACT/KONTAKTE.DBF"); } ///< ACT!'s contact table
    /// Takes everything back to before the first run.
    void setzeZurueck() const;

    // What a user does by hand: in ACT! with the main contact's number, client and role, and in PC-Kaufmann.
    void verknuepfeHauptkontakt(const QString &nummer);
    void loescheKonto(const QString &nummer);

    /// Runs the program beside ACT!. The user adopts everybody whom the search brings, makes the first member the main
    /// contact where there is none, presses "Fertig" or else "Transfer", and there "Eintragen".
    Ablauf uebertrage(Automation &act);
    /// The same beside an ACT! in memory, to which this table and its first member belong. What it has been told stands
    /// in the table afterwards: nobody reads it meanwhile.
    Ablauf uebertrageMit(FakeAct &act);

    /// The client's accounts by number.
    QMap<QString, Konto> konten();
    /// What ACT!'s contacts hold, by unique identifier.
    QMap<QString, FakeAct::Contact> kontakte() const;
    static QString kennung(int mitglied); ///< of member 1 to 10; the first is the main contact

private:
    QString ordner(QStringView name = {}) const { return m_ordner.filePath(QStringLiteral("Daten") + name.toString()); }
    QString mandant() const { return ordner(u"/PCK/Alsterland.PCK"); }

    QTemporaryDir m_ordner;
    std::unique_ptr<dao::DBEngine> m_engine;
    FolderContent m_act; // before the first run
    FolderContent m_pck;
};
