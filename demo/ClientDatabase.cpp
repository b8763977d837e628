// Makes one client database of the accounting program.
#include "demo/Databases.h"

#include <QDate>

#include "demo/AccountColumns.h"
#include "demo/Sql.h"

using namespace Qt::StringLiterals;

namespace demo {

namespace {

QVariant dateOrNothing(QStringView text)
{
    return text.isEmpty() ? QVariant() : QVariant(QDate::fromString(text, Qt::ISODate));
}

// The kind of an account by its number's first letter; addresses have R's code.
int accountKind(QStringView number)
{
    return number.front() == u'A' ? u'R' : number.front().unicode();
}

int entryKind(QStringView name)
{
    return name == u"Fax"_s ? 1 : name == u"Email"_s ? 2 : 0;
}

void createTables(dao::Database &database, const Client &client)
{
    const QString card = client.hasCustomerCards ? u", PersKtoKundenkarte TEXT(20)"_s : QString();
    database.Execute(u"CREATE TABLE sPersKto (PersKtoID COUNTER CONSTRAINT iID UNIQUE, PersKtoNummer TEXT(10) NOT NULL "
                     "CONSTRAINT PrimaryKey PRIMARY KEY, PersKtoArt SHORT NOT NULL DEFAULT 0, %1%2)"_s.arg(
                         accountColumnList(true), card));
    database.Execute(u"CREATE INDEX iName ON sPersKto (PersKtoName)"_s);
    database.Execute(u"CREATE INDEX iMatchcode ON sPersKto (PersKtoMatchcode) WITH IGNORE NULL"_s);
    database.Execute(u"CREATE INDEX iArt ON sPersKto (PersKtoArt, PersKtoNummer)"_s);
    database.Execute(u"CREATE INDEX iAenderung ON sPersKto (PersKtoAenderDatum DESC)"_s);
    database.Execute(
        u"CREATE TABLE sPersKom (PersKommNummer TEXT(10), PersKommLfdNr SHORT, PersKommName TEXT(30), "
        "PersKommNr TEXT(60), PersKommAnsprech TEXT(50), PersKommTyp SHORT DEFAULT 0, PersKommBemerkung TEXT(80), "
        "CONSTRAINT PrimaryKey PRIMARY KEY (PersKommNummer, PersKommLfdNr), CONSTRAINT sPersKtosPersKom FOREIGN KEY "
        "(PersKommNummer) REFERENCES sPersKto (PersKtoNummer) ON UPDATE CASCADE ON DELETE CASCADE)"_s);
    database.Execute(u"CREATE TABLE sSchlbez (SchlbezTyp SHORT, SchlbezNr SHORT, SchlbezBez TEXT(40), "
                     "CONSTRAINT PrimaryKey PRIMARY KEY (SchlbezTyp, SchlbezNr))"_s);
    database.Execute(u"CREATE TABLE SABFKons (FKAbfID LONG CONSTRAINT PrimaryKey PRIMARY KEY, FKAbfFirma TEXT(60), "
                     "FKAbfPreisGrp1 TEXT(30), FKAbfPreisGrp2 TEXT(30), FKAbfPreisGrp3 TEXT(30))"_s);
    database.Execute(u"CREATE TABLE Waehrung (WhrgNr SHORT CONSTRAINT PrimaryKey PRIMARY KEY, WhrgName TEXT(40), "
                     "WhrgKurz TEXT(3) CONSTRAINT iKurz UNIQUE, WhrgKurs DOUBLE)"_s);
}

void insertAccount(dao::Database &database, const Account &account)
{
    insertRow(database, u"sPersKto"_s,
              {{u"PersKtoNummer"_s, account.number.toString()},
               {u"PersKtoArt"_s, accountKind(account.number)},
               {u"PersKtoMatchcode"_s, textOrNothing(account.matchcode)},
               {u"PersKtoAnrede"_s, textOrNothing(account.salutation)},
               {u"PersKtoName"_s, textOrNothing(account.name)},
               {u"PersKtoStrasse"_s, textOrNothing(account.street)},
               {u"PersKtoPLZ"_s, textOrNothing(account.zip)},
               {u"PersKtoOrt"_s, textOrNothing(account.city)},
               {u"PersKtoTelefon"_s, textOrNothing(account.phone)},
               {u"PersKtoAnsprech"_s, textOrNothing(account.contact)},
               {u"PersKtoRabatt"_s, account.discount},
               {u"PersKtoPreisGruppe"_s, account.priceGroup},
               {u"PersKtoKreditLimit"_s, account.creditLimit},
               {u"PersKtoAnlageDatum"_s, dateOrNothing(account.since)},
               {u"PersKtoBemerkung"_s, textOrNothing(account.note)},
               {u"PersKtoKundenkarte"_s, textOrNothing(account.card)}});
    int running = 0;
    for (const Entry &entry : account.entries) {
        insertRow(database, u"sPersKom"_s,
                  {{u"PersKommNummer"_s, account.number.toString()},
                   {u"PersKommLfdNr"_s, ++running},
                   {u"PersKommName"_s, entry.kind.toString()},
                   {u"PersKommNr"_s, entry.value.toString()},
                   {u"PersKommAnsprech"_s, textOrNothing(entry.person)},
                   {u"PersKommTyp"_s, entryKind(entry.kind)}});
    }
}

void insertLists(dao::Database &database, const Client &client)
{
    constexpr int salutations = 1;
    constexpr int priceLists = 20;
    int number = 0;
    for (const QString &salutation : {u"Herr"_s, u"Frau"_s, u"Firma"_s}) {
        insertRow(database, u"sSchlbez"_s,
                  {{u"SchlbezTyp"_s, salutations}, {u"SchlbezNr"_s, ++number}, {u"SchlbezBez"_s, salutation}});
    }
    for (const PriceList &list : client.priceLists) {
        insertRow(
            database, u"sSchlbez"_s,
            {{u"SchlbezTyp"_s, priceLists}, {u"SchlbezNr"_s, list.number}, {u"SchlbezBez"_s, list.name.toString()}});
    }
    insertRow(database, u"SABFKons"_s,
              {{u"FKAbfID"_s, 1},
               {u"FKAbfFirma"_s, client.company.toString()},
               {u"FKAbfPreisGrp1"_s, textOrNothing(client.priceGroups[0])},
               {u"FKAbfPreisGrp2"_s, textOrNothing(client.priceGroups[1])},
               {u"FKAbfPreisGrp3"_s, textOrNothing(client.priceGroups[2])}});
    for (const Currency &currency : client.currencies) {
        insertRow(database, u"Waehrung"_s,
                  {{u"WhrgNr"_s, currency.number},
                   {u"WhrgName"_s, currency.name.toString()},
                   {u"WhrgKurz"_s, currency.code.toString()},
                   {u"WhrgKurs"_s, currency.rate}});
    }
}

} // namespace

void createClient(dao::DBEngine &engine, const Client &client, const QString &path)
{
    const QString connect = client.password.isEmpty() ? QString() : u";PWD="_s + client.password.toString();
    const auto database = engine.CreateDatabase(path, connect, dao::DBEngine::dbVersion40);
    createTables(*database, client);
    for (const Account &account : client.accounts)
        insertAccount(*database, account);
    insertLists(*database, client);
    database->Close();
}

} // namespace demo
