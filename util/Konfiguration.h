#pragma once

#include <QString>

/// What VELDRAK.ini says, read once at start. Each Id is an ACT! field number, the name beside it is its column in
/// ACT!'s contact table.
struct Konfiguration {
    qint16 IdNummer = 0; // account number
    QString IdNummerName;
    qint16 IdMandant = 0; // client
    QString IdMandantName;
    qint16 IdTyp = 0; // role letter
    QString IdTypName;
    QString PckPfad; // folder of the clients, ends with a separator
    qint16 IdSuchFeld1 = 0;
    QString IdSuchFeld1Name;
    qint16 IdSuchFeld2 = 0;
    QString IdSuchFeld2Name;
    bool DatevNr = false;
    bool AutoSuche = false;
};
