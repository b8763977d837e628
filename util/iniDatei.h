#pragma once

#include <vector>

#include <QString>

#include "platform/desktop/Desktop.h"

/// Kept among the program's texts for whoever may write the file one day; nothing in the program does.
inline constexpr QStringView iniNichtAngelegt = u"Konnte Ini-Datei nicht anlegen. "
                                                u"Eventuell haben Sie keine Schreibrechte in diesem Verzeichnis.";

/// Reads the configuration file; nothing here ever writes it.
///
/// The file is text in Windows-1252, or in UTF-8 or UTF-16 behind a byte order mark, one entry a line: "[section]",
/// "key = value", and comments from an apostrophe on. Names compare exactly, capitals included. What stands twice is
/// found in file order.
class iniDatei
{
public:
    explicit iniDatei(const desktop::Files &dateien);

    /// Rebuilds the tables from a file. False if it does not exist or has no key line at all.
    /// RunTimeError 9 for a key line before the first section, 57 if the file cannot be read (75: if it may not), 321
    /// if it is no text; the description names the file and, where there is one, the line.
    bool IniLaden(const QString &pfad);

    /// The value of the first entry with this section and key, or "". Both arguments are trimmed in place.
    QString IniLesen(QString &sektion, QString &schluessel) const;

    /// The line without its comment: empty if the comment begins it, else trimmed.
    static QString KommentarEntfernen(const QString &zeile);

private:
    struct Eintrag {
        QString schluessel;
        QString wert;
    };
    struct Sektion {
        QString name;
        std::vector<Eintrag> eintraege;
    };

    const desktop::Files &m_dateien;
    std::vector<Sektion> m_sektionen;
};
