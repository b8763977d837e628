// Sample files for tests. All people, companies and numbers are invented.
#include "tests/fakes/Beispieldaten.h"

#include <stdexcept>

#include <QFileInfo>

#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace beispiel {

namespace {

// The fields of the mapping: the contact table's column, the client's column, the neutral name, ACT!'s field number,
// and the flags Sync_H, Kom_H and Kom_N.
struct Feld {
    QStringView act;
    QStringView pck;
    QStringView sync;
    int actId;
    bool syncH;
    bool komH;
    bool komN;
    QString Person::*wert;
};

constexpr QString Person::*vollerName = nullptr; // stands in for first and last name
// clang-format off
const Feld felder[] = {
    {u"COMPANY",   u"PersKtoName",     u"Firma",    2,  true,  false, false, &Person::firma},
    {u"CONTACT",   u"PersKtoAnsprech", u"Name",     26, true,  false, false, vollerName},
    {u"FIRSTNAME", u"PersKtoName3",    u"Vorname",  3,  false, false, false, &Person::vorname},
    {u"LASTNAME",  u"PersKtoName2",    u"Nachname", 25, false, false, false, &Person::nachname},
    {u"STREET",    u"PersKtoStrasse",  u"Strasse",  6,  true,  false, false, &Person::strasse},
    {u"ZIP",       u"PersKtoPLZ",      u"PLZ",      7,  true,  false, false, &Person::plz},
    {u"CITY",      u"PersKtoOrt",      u"Ort",      8,  true,  false, false, &Person::ort},
    {u"Telefon",   u"PersKtoTelefon",  u"Telefon",  11, true,  true,  true,  &Person::telefon},
    {u"Telefax",   u"PersKtoTelefax",  u"Fax",      13, true,  true,  true,  &Person::fax},
    {u"Handy",     u"PersKtoMobil",    u"Handy",    14, true,  true,  true,  &Person::handy},
    {u"EMAIL",     u"PersKtoEmail",    u"Email",    15, true,  true,  true,  &Person::email},
    {u"URL",       u"PersKtoInternet", u"URL",      17, true,  false, false, &Person::url},
};
// clang-format on

const QString kontoSpalten
    = u"PersKtoMatchcode TEXT(40), PersKtoName TEXT(50), PersKtoName2 TEXT(50), PersKtoName3 TEXT(50), "
      "PersKtoStrasse TEXT(50), PersKtoPLZ TEXT(10), PersKtoOrt TEXT(40), PersKtoTelefon TEXT(20), "
      "PersKtoTelefax TEXT(20), PersKtoMobil TEXT(20), PersKtoEmail TEXT(60), PersKtoInternet TEXT(50), "
      "PersKtoAnsprech TEXT(50), PersKtoBriefanrede TEXT(80), PersKtoDATEVNr TEXT(10), PersKtoGruppe TEXT(10), "
      "PersKtoLaendercode SHORT, PersKtoPreisGruppe SHORT, PersKtoDefWaehrungIdx SHORT, PersKtoRabatt DOUBLE, "
      "PersKtoKreditLimit CURRENCY, PersKtoAktiv YESNO, PersKtoAenderDatum DATETIME, PersKtoBemerkung MEMO"_s;

QString wert(const Person &person, const Feld &feld)
{
    if (feld.wert != vollerName)
        return person.*feld.wert;
    return u"%1 %2"_s.arg(person.vorname, person.nachname).trimmed();
}

QString text(const QString &wert)
{
    return u'\'' + QString(wert).replace(u"'"_s, u"''"_s) + u'\'';
}

QString jaNein(bool wert)
{
    return wert ? u"True"_s : u"False"_s;
}

QString anfuegen(const QString &tabelle, const QStringList &werte)
{
    return u"INSERT INTO %1 VALUES (%2)"_s.arg(tabelle, werte.join(u", "_s));
}

void schreibe(dao::Database &datenbank, const QStringList &anweisungen)
{
    for (const QString &anweisung : anweisungen)
        datenbank.Execute(anweisung);
}

std::shared_ptr<dao::Database> oeffne(dao::DBEngine &engine, const QString &pfad, const QString &kennwort)
{
    const QString verbindung = u";DATABASE="_s + pfad + u";PWD="_s + kennwort;
    return engine.OpenDatabase(pfad, 0, false, QFileInfo(pfad).isDir() ? u"FoxPro 2.6;"_s : verbindung);
}

} // namespace

std::vector<Person> leute(QStringView text)
{
    std::vector<Person> personen;
    for (const QString &eine : text.toString().split(u"; "_s)) {
        const QStringList teile = eine.split(u' ');
        const auto teil = [](const QString &wert) { return wert == u'-' ? QString() : wert; };
        const QString konto = teil(teile.value(2));
        Person person{teile[0], teile.size() < 4 ? u"Alpha Werke"_s : teil(teile.mid(3).join(u' '))};
        person.nachname = u"Name "_s + person.id;
        person.typ = teil(teile.value(1));
        person.nummer = konto.section(u'/', 0, 0);
        person.mandant = konto.section(u'/', 1);
        personen.push_back(person);
    }
    return personen;
}

std::vector<Person> firmengruppe()
{
    return {
        {u"ID0000000001"_s, u"Hansen & Söhne GmbH"_s, u"Petra"_s, u"Sommer"_s, u"Deichstraße 7"_s, u"20459"_s,
         u"Hamburg"_s, u"+49 40 123456"_s, u"+49 40 123457"_s, u"+49 171 555001"_s, u"p.sommer@hansen.example"_s,
         u"www.hansen.example"_s},
        {u"ID0000000002"_s, u"Hansen & Söhne GmbH"_s, u"Jörg"_s, u"Äpfelbach"_s, u"Deichstraße 7"_s, u"20459"_s,
         u"Hamburg"_s, u"+49 40 123460"_s, u""_s, u"+41 79 5550022"_s, u"j.aepfelbach@hansen.example"_s},
        {u"ID0000000003"_s, u"Hansen & Söhne GmbH"_s, u""_s, u"Weiß"_s},
        {u"ID0000000004"_s, u"Hansen & Söhne GmbH"_s, u"Zoë"_s, u"Kühn"_s, u"Hafenweg 1"_s, u"28195"_s, u"Bremen"_s,
         u""_s, u"+49 421 99887"_s, u""_s, u"z.kuehn@hansen.example"_s},
    };
}

FakeAct::Contact alsAct(const Person &person)
{
    FakeAct::Contact kontakt{{1, person.id}, {60, person.nummer}, {61, person.mandant}, {62, person.typ}};
    for (const Feld &feld : felder) {
        QString inhalt = wert(person, feld);
        if (inhalt.startsWith(u'+'))
            inhalt = u"[%1]%2"_s.arg(inhalt.mid(1).section(u' ', 0, 0), inhalt.section(u' ', 1));
        kontakt[feld.actId] = inhalt;
    }
    return kontakt;
}

Konfiguration konfiguration(const QString &pckPfad)
{
    return {.IdNummer = 60,
            .IdNummerName = u"PCK_NUMMER"_s,
            .IdMandant = 61,
            .IdMandantName = u"PCK_MAND"_s,
            .IdTyp = 62,
            .IdTypName = u"PCK_TYP"_s,
            .PckPfad = pckPfad,
            .IdSuchFeld1 = 2,
            .IdSuchFeld1Name = u"COMPANY"_s,
            .IdSuchFeld2 = 26,
            .IdSuchFeld2Name = u"CONTACT"_s};
}

void erzeugeIni(const QString &ordner, const QString &pckPfad, bool datevNr, bool autoSuche)
{
    schreibe(ordner + u"/VELDRAK.ini"_s,
             u"[VELDRAK]\r\nID_Nummer=60|PCK_NUMMER\r\nID_Mandant=61|PCK_MAND\r\nID_Typ=62|PCK_TYP\r\n"
             "PCKpfad=%1\r\nID_SuchFeld1=2|COMPANY\r\nID_SuchFeld2=26|CONTACT\r\nDATEVNr=%2\r\nAutoSuche=%3\r\n"_s
                 .arg(pckPfad)
                 .arg(int(datevNr))
                 .arg(int(autoSuche))
                 .toLatin1());
}

QString erzeugeMapping(dao::DBEngine &engine, const QString &ordner)
{
    const QString pfad = ordner + u"/veldrak.piz"_s;
    const auto datenbank = engine.CreateDatabase(pfad, u";PWD="_s + coding::mappingZugriff(), engine.dbVersion40);
    datenbank->Execute(u"CREATE TABLE Felder (ID SHORT CONSTRAINT PrimaryKey PRIMARY KEY, Act_FeldName TEXT(30), "
                       "PCK_FeldName TEXT(30), Sync_FeldName TEXT(30), PCK_Tabelle TEXT(30), Sync_H YESNO, "
                       "Sync_N YESNO, Datentyp TEXT(10), Act_FeldID SHORT, Nach_Act_H YESNO, Nach_Act_N YESNO, "
                       "Kom_H YESNO, Kom_N YESNO)"_s);
    int id = 0;
    for (const Feld &feld : felder) {
        const QString namen = u"'%1', '%2', '%3', 'sPersKto'"_s.arg(feld.act, feld.pck, feld.sync);
        datenbank->Execute(
            anfuegen(u"Felder"_s,
                     {QString::number(++id), namen, jaNein(feld.syncH), u"False, 'String'"_s,
                      QString::number(feld.actId), u"True, True"_s, jaNein(feld.komH), jaNein(feld.komN)}));
    }
    schreibe(*datenbank,
             {u"CREATE TABLE VELDRAK (ID SHORT CONSTRAINT PrimaryKey PRIMARY KEY, Act_Quellen TEXT(255), "
              "PCK_Tabelle TEXT(30), PCK_Feld TEXT(30))"_s,
              u"INSERT INTO VELDRAK VALUES (1, '%25|, |%3', 'sPersKto', 'PersKtoMatchcode')"_s,
              u"INSERT INTO VELDRAK VALUES (2, 'Sehr geehrte(r) |%25', 'sPersKto', 'PersKtoBriefanrede')"_s,
              u"CREATE TABLE sPersKto ("_s + kontoSpalten + u")"_s,
              u"INSERT INTO sPersKto (PersKtoGruppe, PersKtoLaendercode, PersKtoPreisGruppe, PersKtoDefWaehrungIdx, "
              "PersKtoRabatt, PersKtoKreditLimit, PersKtoAktiv, PersKtoBemerkung) "
              "VALUES ('ACT', 49, 0, 0, 0, 2500, True, 'Aus der Kontaktverwaltung übernommen.')"_s});
    datenbank->Close();
    return pfad;
}

void erzeugeMandant(dao::DBEngine &engine, const QString &pfad, const QString &kennwort, dao::DBEngine::Version version)
{
    const QString verbindung = kennwort.isEmpty() ? QString() : u";PWD="_s + kennwort;
    const auto datenbank = engine.CreateDatabase(pfad, verbindung, version);
    schreibe(*datenbank,
             {u"CREATE TABLE sPersKto (PersKtoNummer TEXT(10) NOT NULL CONSTRAINT PrimaryKey PRIMARY KEY, "
              "PersKtoArt SHORT, "_s
                  + kontoSpalten + u")"_s,
              u"CREATE INDEX iArt ON sPersKto (PersKtoArt, PersKtoNummer)"_s,
              u"CREATE TABLE sPersKom (PersKommNummer TEXT(10), PersKommLfdNr SHORT, PersKommName TEXT(30), "
              "PersKommNr TEXT(60), PersKommAnsprech TEXT(50), PersKommTyp SHORT, "
              "CONSTRAINT PrimaryKey PRIMARY KEY (PersKommNummer, PersKommLfdNr))"_s,
              u"CREATE TABLE sSchlbez (SchlbezTyp SHORT, SchlbezNr SHORT, SchlbezBez TEXT(40))"_s,
              u"INSERT INTO sSchlbez VALUES (10, 1, 'Post')"_s,
              u"INSERT INTO sSchlbez VALUES (20, 14, 'Messepreise')"_s,
              u"INSERT INTO sSchlbez VALUES (20, 17, 'Mitarbeiter')"_s,
              u"CREATE TABLE SABFKons (FKAbfPreisGrp1 TEXT(30), FKAbfPreisGrp2 TEXT(30), FKAbfPreisGrp3 TEXT(30))"_s,
              u"INSERT INTO SABFKons VALUES ('Endkunden', 'Händler', 'Großhandel')"_s,
              u"CREATE TABLE Waehrung (WhrgNr SHORT, WhrgName TEXT(30))"_s,
              u"INSERT INTO Waehrung VALUES (9, 'Schweizer Franken')"_s,
              u"INSERT INTO Waehrung VALUES (3, 'Deutsche Mark')"_s, u"INSERT INTO Waehrung VALUES (5, 'Euro')"_s,
              u"INSERT INTO Waehrung VALUES (7, 'US-Dollar')"_s});
    datenbank->Close();
}

void fuegeKontenHinzu(dao::DBEngine &engine, const QString &pfad, const QStringList &nummern)
{
    QStringList anweisungen;
    for (const QString &nummer : nummern) {
        const int art = nummer.startsWith(u'A') ? u'R' : nummer[0].unicode();
        anweisungen += u"INSERT INTO sPersKto (PersKtoNummer, PersKtoArt) VALUES ('%1', %2)"_s.arg(nummer).arg(art);
    }
    fuehreAus(engine, pfad, anweisungen);
}

QString erzeugeKontakttabelle(dao::DBEngine &engine, const QString &ordner, const std::vector<Person> &personen)
{
    const auto datenbank = oeffne(engine, ordner, {});
    QStringList spalten{u"UNIQUE_ID TEXT(12)"_s, u"PCK_NUMMER TEXT(10)"_s, u"PCK_MAND TEXT(40)"_s,
                        u"PCK_TYP TEXT(1)"_s};
    for (const Feld &feld : felder)
        spalten += feld.act.toString().toUpper() + u" TEXT(60)"_s;
    datenbank->Execute(u"CREATE TABLE KONTAKTE ("_s + spalten.join(u", "_s) + u")"_s);
    for (const Person &person : personen) {
        QStringList werte{text(person.id), text(person.nummer), text(person.mandant), text(person.typ)};
        for (const Feld &feld : felder)
            werte += text(wert(person, feld));
        datenbank->Execute(anfuegen(u"KONTAKTE"_s, werte));
    }
    datenbank->Close();
    return ordner + u"/KONTAKTE.DBF"_s;
}

void fuehreAus(dao::DBEngine &engine, const QString &pfad, const QStringList &anweisungen, const QString &kennwort)
{
    const auto datenbank = oeffne(engine, pfad, kennwort);
    schreibe(*datenbank, anweisungen);
    datenbank->Close();
}

QStringList zeilen(dao::DBEngine &engine, const QString &pfad, const QString &abfrage, const QString &kennwort)
{
    const auto datenbank = oeffne(engine, pfad, kennwort);
    const auto treffer = datenbank->OpenRecordset(abfrage);
    QStringList ergebnis;
    for (; !treffer->Eof(); treffer->MoveNext()) {
        QStringList werte;
        for (int i = 0; i < treffer->FieldCount(); ++i) {
            const QVariant inhalt = treffer->Fields(i).Value();
            werte += inhalt.isValid() ? dao::textOf(inhalt) : u"-"_s;
        }
        ergebnis += werte.join(u'|');
    }
    datenbank->Close();
    return ergebnis;
}

QByteArray lies(const QString &pfad)
{
    QFile datei(pfad);
    if (!datei.open(QIODevice::ReadOnly))
        throw std::runtime_error(qPrintable(pfad + u" cannot be read"_s));
    return datei.readAll();
}

void schreibe(const QString &pfad, const QByteArray &inhalt)
{
    QFile datei(pfad);
    if (!datei.open(QIODevice::WriteOnly) || datei.write(inhalt) != inhalt.size())
        throw std::runtime_error(qPrintable(pfad + u" cannot be written"_s));
}

} // namespace beispiel
