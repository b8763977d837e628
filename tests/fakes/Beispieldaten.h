#pragma once

#include <vector>

#include <QStringList>

#include "platform/dao/Dao.h"
#include "tests/fakes/FakeAct.h"
#include "util/Konfiguration.h"

/// Small sample files for tests, written through the database port: mapping, clients, contact table and ini file.
namespace beispiel {

/// A contact as a test thinks of it; phone numbers in the form "+49 40 123456".
struct Person {
    QString id;
    QString firma{}, vorname{}, nachname{};
    QString strasse{}, plz{}, ort{};
    QString telefon{}, fax{}, handy{}, email{}, url{};
    QString nummer{}, mandant{}, typ{};
};

/// People of whom only the group matters, from "id role number/client company; ...": what is left out at the end or
/// "-" they do not have, but their company is then "Alpha Werke", and their last name is "Name id".
std::vector<Person> leute(QStringView text);

/// Four people of one company, not yet in any client and without roles; the third has neither number nor e-mail.
std::vector<Person> firmengruppe();

/// The contact as ACT! gives it by automation ("[49]40 123456"); its fields are those of the mapping and 60 to 62.
FakeAct::Contact alsAct(const Person &person);

/// The configuration that fits the other files.
Konfiguration konfiguration(const QString &pckPfad);
/// The same as VELDRAK.ini in a folder.
void erzeugeIni(const QString &ordner, const QString &pckPfad, bool datevNr = false, bool autoSuche = false);

/// veldrak.piz in a folder, as the program opens it: 12 fields, two composed ones, one template row without
/// PersKtoNummer and PersKtoArt. Returns its path.
QString erzeugeMapping(dao::DBEngine &engine, const QString &ordner);

/// A client with no accounts, price lists 14 and 17 (and rows of another type), price groups, and four currencies with
/// the euro, number 5, in second place. `pfad` ends in .PCK; without password unless one is given.
void erzeugeMandant(dao::DBEngine &engine, const QString &pfad, const QString &kennwort = {},
                    dao::DBEngine::Version version = dao::DBEngine::dbVersion40);

/// Adds bare accounts ("D010000"), each of its letter's type.
void fuegeKontenHinzu(dao::DBEngine &engine, const QString &pfad, const QStringList &nummern);

/// KONTAKTE.DBF in a folder; phone numbers stand there as they are. Returns its path, which ACT! calls its database.
QString erzeugeKontakttabelle(dao::DBEngine &engine, const QString &ordner, const std::vector<Person> &personen);

/// Runs statements against a database file, or the contact tables of a folder.
void fuehreAus(dao::DBEngine &engine, const QString &pfad, const QStringList &anweisungen,
               const QString &kennwort = {});

/// The rows of a query on either, each as its fields' texts joined by "|"; Null is "-".
QStringList zeilen(dao::DBEngine &engine, const QString &pfad, const QString &abfrage, const QString &kennwort = {});

/// A file's content.
QByteArray lies(const QString &pfad);
void schreibe(const QString &pfad, const QByteArray &inhalt);

} // namespace beispiel
