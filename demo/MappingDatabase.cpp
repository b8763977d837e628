// Makes the mapping database: fields, composed fields and the template of a new account.
#include "demo/Databases.h"

#include <QStringList>

#include "demo/AccountColumns.h"
#include "demo/Mapping.h"
#include "demo/Sql.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace demo {

namespace {

void createFields(dao::Database &database)
{
    database.Execute(u"CREATE TABLE Felder (ID LONG CONSTRAINT PrimaryKey PRIMARY KEY, Act_FeldName TEXT(30), "
                     "PCK_FeldName TEXT(40), Sync_FeldName TEXT(40), PCK_Tabelle TEXT(30), Sync_H YESNO, Sync_N YESNO, "
                     "Datentyp TEXT(20), Act_FeldID SHORT, Nach_Act_H YESNO, Nach_Act_N YESNO, Kom_H YESNO, "
                     "Kom_N YESNO)"_s);
    database.Execute(u"CREATE INDEX iSync ON Felder (Sync_FeldName)"_s);
    int id = 0;
    for (const ContactField &field : contactFields()) {
        if (field.mappedName.isEmpty())
            continue;
        const auto goes = [&field](Direction direction) { return QVariant((field.directions & direction) != 0); };
        insertRow(database, u"Felder"_s,
                  {{u"ID"_s, ++id},
                   {u"Act_FeldName"_s, field.column.toString()},
                   {u"PCK_FeldName"_s, field.accountColumn.toString()},
                   {u"Sync_FeldName"_s, field.mappedName.toString()},
                   {u"PCK_Tabelle"_s, u"sPersKto"_s},
                   {u"Sync_H"_s, goes(ToAccount)},
                   {u"Sync_N"_s, false},
                   {u"Datentyp"_s, u"String"_s},
                   {u"Act_FeldID"_s, field.number},
                   {u"Nach_Act_H"_s, goes(ToContact)},
                   {u"Nach_Act_N"_s, goes(ToContact)},
                   {u"Kom_H"_s, goes(MainEntry)},
                   {u"Kom_N"_s, goes(OtherEntry)}});
    }
}

void createComposedFields(dao::Database &database)
{
    database.Execute(u"CREATE TABLE VELDRAK (ID LONG CONSTRAINT PrimaryKey PRIMARY KEY, Act_Quellen TEXT(100), "
                     "PCK_Tabelle TEXT(30), PCK_Feld TEXT(40))"_s);
    int id = 0;
    for (const ComposedField &field : composedFields()) {
        insertRow(database, u"VELDRAK"_s,
                  {{u"ID"_s, ++id},
                   {u"Act_Quellen"_s, field.sources.toString()},
                   {u"PCK_Tabelle"_s, u"sPersKto"_s},
                   {u"PCK_Feld"_s, field.accountColumn.toString()}});
    }
}

void createTemplate(dao::Database &database)
{
    // Every column that a client has; empty, number, type and counter leave what a new account has there.
    database.Execute(u"CREATE TABLE sPersKto (PersKtoID LONG, PersKtoNummer TEXT(10), PersKtoArt SHORT, %1)"_s.arg(
        accountColumnList(false)));
    QStringList columns;
    QStringList presets;
    for (const AccountColumn &column : accountColumns()) {
        if (column.preset.isEmpty())
            continue;
        columns += column.name.toString();
        presets += column.preset.toString();
    }
    database.Execute(u"INSERT INTO sPersKto (%1) VALUES (%2)"_s.arg(columns.join(u','), presets.join(u',')));
}

} // namespace

void createMapping(dao::DBEngine &engine, const QString &path)
{
    const auto database
        = engine.CreateDatabase(path, u";PWD="_s + coding::mappingZugriff(), dao::DBEngine::dbVersion40);
    createFields(*database);
    createComposedFields(*database);
    createTemplate(*database);
    database->Close();
}

} // namespace demo
