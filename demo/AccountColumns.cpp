// The account table as the sample clients have it, and what the template puts into a new row.
#include "demo/AccountColumns.h"

#include <QStringList>

using namespace Qt::StringLiterals;

namespace demo {

namespace {

// clang-format off
constexpr AccountColumn columns[] = {
    {u"PersKtoMatchcode",     u"TEXT(40)"},
    {u"PersKtoAnrede",        u"TEXT(30)", u"", u"'Firma'"},
    {u"PersKtoName",          u"TEXT(50)"},
    {u"PersKtoName2",         u"TEXT(50)"},
    {u"PersKtoName3",         u"TEXT(50)"},
    {u"PersKtoAbteilung",     u"TEXT(40)"},
    {u"PersKtoStrasse",       u"TEXT(50)"},
    {u"PersKtoLKZ",           u"TEXT(3)", u"NOT NULL DEFAULT 'D'", u"'D'"},
    {u"PersKtoPLZ",           u"TEXT(10)"},
    {u"PersKtoOrt",           u"TEXT(40)"},
    {u"PersKtoPostfach",      u"TEXT(20)"},
    {u"PersKtoLand",          u"TEXT(30)"},
    {u"PersKtoTelefon",       u"TEXT(20)"},
    {u"PersKtoTelefon2",      u"TEXT(20)"},
    {u"PersKtoTelefax",       u"TEXT(20)"},
    {u"PersKtoMobil",         u"TEXT(20)"},
    {u"PersKtoEmail",         u"TEXT(60)"},
    {u"PersKtoInternet",      u"TEXT(50)"},
    {u"PersKtoAnsprech",      u"TEXT(50)"},
    {u"PersKtoBriefanrede",   u"TEXT(80)", u"", u"'Sehr geehrte Damen und Herren'"},
    {u"PersKtoBank",          u"TEXT(40)"},
    {u"PersKtoBLZ",           u"TEXT(8)"},
    {u"PersKtoKonto",         u"TEXT(12)"},
    {u"PersKtoDATEVNr",       u"TEXT(10)"},
    {u"PersKtoGruppe",        u"TEXT(10)", u"DEFAULT 'STD'", u"'ACT'"},
    {u"PersKtoSprache",       u"BYTE", u"DEFAULT 1", u"1"},
    {u"PersKtoLaendercode",   u"SHORT", u"DEFAULT 49", u"49"},
    {u"PersKtoZahlBed",       u"SHORT", u"DEFAULT 1", u"1"},
    {u"PersKtoPreisGruppe",   u"SHORT", u"DEFAULT 0", u"0"},
    {u"PersKtoDefWaehrungIdx", u"SHORT", u"NOT NULL DEFAULT 0", u"0"},
    {u"PersKtoNettoTage",     u"SHORT", u"DEFAULT 30", u"30"},
    {u"PersKtoSammelKto",     u"LONG", u"DEFAULT 1400", u"1400"},
    {u"PersKtoRabatt",        u"DOUBLE", u"DEFAULT 0", u"0"},
    {u"PersKtoProvision",     u"SINGLE"},
    {u"PersKtoKreditLimit",   u"CURRENCY", u"DEFAULT 0", u"2500"},
    {u"PersKtoUmsatz",        u"CURRENCY", u"DEFAULT 0", u"0"},
    {u"PersKtoMahnSperre",    u"YESNO", u"DEFAULT False", u"False"},
    {u"PersKtoAktiv",         u"YESNO", u"DEFAULT True", u"True"},
    {u"PersKtoAnlageDatum",   u"DATETIME"},
    {u"PersKtoAenderDatum",   u"DATETIME"},
    {u"PersKtoBemerkung",     u"MEMO"},
    {u"PersKtoInfo",          u"MEMO", u"", u"'Aus der Kontaktverwaltung übernommen.'"},
};
// clang-format on

} // namespace

std::span<const AccountColumn> accountColumns()
{
    return columns;
}

QString accountColumnList(bool withRules)
{
    QStringList list;
    for (const AccountColumn &column : columns) {
        QString line = u"%1 %2"_s.arg(column.name, column.type);
        if (withRules && !column.rules.isEmpty())
            line += u' ' + column.rules.toString();
        list += line;
    }
    return list.join(u", "_s);
}

} // namespace demo
