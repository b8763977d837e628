#pragma once

#include <memory>

#include <QMap>
#include <QStringList>
#include <QTemporaryDir>

#include "platform/automation/Automation.h"
#include "platform/dao/Dao.h"
#include "tests/fakes/FakeDesktop.h"

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

    QString tabelle() const; ///< ACT!'s contact table
    /// Takes everything back to before the first run.
    void setzeZurueck();

    // What a user does by hand: in ACT! with the main contact's number, client and role, and in PC-Kaufmann.
    void verknuepfeHauptkontakt(const QString &nummer);
    void loescheKonto(const QString &nummer);

    /// Runs the program beside ACT!. The user adopts everybody whom the search brings, makes the first member the main
    /// contact where there is none, presses "Fertig" or else "Transfer", and there "Eintragen".
    Ablauf uebertrage(Automation &act);

    /// The client's accounts by number.
    QMap<QString, Konto> konten();
    /// What ACT!'s contacts hold: texts by field number, by unique identifier.
    QMap<QString, QMap<int, QString>> kontakte() const;
    static QString kennung(int mitglied); ///< of member 1 to 10; the first is the main contact

private:
    static void bediene(Ablauf &ablauf);
    QString mandant() const { return m_ordner.filePath(QStringLiteral("Daten/PCK/Alsterland.PCK")); }

    QTemporaryDir m_ordner;
    std::unique_ptr<dao::DBEngine> m_engine;
};
