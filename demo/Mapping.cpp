// Which field of a contact goes to which column of an account.
#include "demo/Mapping.h"

namespace demo {

namespace {

constexpr unsigned bothWays = ToAccount | ToContact;
constexpr unsigned reachable = bothWays | MainEntry | OtherEntry;

// clang-format off
constexpr ContactField fieldRows[] = {
    { 1, u"UNIQUE_ID",  u"TEXT(12)", u"Kennung"},
    {26, u"CONTACT",    u"TEXT(50)", u"Kontakt",        u"Name",           u"PersKtoAnsprech",  bothWays},
    { 2, u"COMPANY",    u"TEXT(50)", u"Firma",          u"Firma",          u"PersKtoName",      bothWays},
    { 4, u"SALUTATION", u"TEXT(30)", u"Anrede",         u"Anrede",         u"PersKtoAnrede",    bothWays},
    { 3, u"FIRSTNAME",  u"TEXT(30)", u"Vorname",        u"Vorname",        u"PersKtoName3",     ToContact},
    {25, u"LASTNAME",   u"TEXT(40)", u"Nachname",       u"Nachname",       u"PersKtoName2",     ToContact},
    { 5, u"DEPARTMENT", u"TEXT(40)", u"Abteilung",      u"Abteilung",      u"PersKtoAbteilung", ToAccount},
    { 6, u"STREET",     u"TEXT(50)", u"Straße",         u"Straße",         u"PersKtoStrasse",   bothWays},
    { 7, u"ZIP",        u"TEXT(10)", u"PLZ",            u"PLZ",            u"PersKtoPLZ",       bothWays},
    { 8, u"CITY",       u"TEXT(40)", u"Ort",            u"Ort",            u"PersKtoOrt",       bothWays},
    { 9, u"COUNTRY",    u"TEXT(30)", u"Land",           u"Land",           u"PersKtoLand",      bothWays},
    {10, u"POBOX",      u"TEXT(20)", u"Postfach",       u"Postfach",       u"PersKtoPostfach",  ToAccount},
    {11, u"Telefon",    u"TEXT(35)", u"Telefon",        u"Telefon",        u"PersKtoTelefon",   reachable},
    {12, u"Telefon2",   u"TEXT(35)", u"Telefon privat", u"Telefon privat", u"PersKtoTelefon2",  bothWays},
    {13, u"Telefax",    u"TEXT(35)", u"Fax",            u"Fax",            u"PersKtoTelefax",   reachable},
    {14, u"Handy",      u"TEXT(35)", u"Handy",          u"Handy",          u"PersKtoMobil",     reachable},
    {15, u"EMAIL",      u"TEXT(60)", u"E-Mail",         u"Email",          u"PersKtoEmail",     reachable},
    {17, u"URL",        u"TEXT(80)", u"Internet",       u"URL",            u"PersKtoInternet",  ToAccount},
    {18, u"BANK",       u"TEXT(40)", u"Bank",           u"Bank",           u"PersKtoBank",      ToAccount},
    {19, u"BANKCODE",   u"TEXT(8)",  u"Bankleitzahl",   u"BLZ",            u"PersKtoBLZ",       ToAccount},
    {20, u"ACCOUNTNO",  u"TEXT(12)", u"Kontonummer",    u"Kontonummer",    u"PersKtoKonto",     ToAccount},
    {21, u"NOTES",      u"MEMO",     u"Notizen",        u"Bemerkung",      u"PersKtoBemerkung", ToAccount},
    {60, u"PCK_NUMMER", u"TEXT(10)", u"PCK-Nummer"},
    {61, u"PCK_MAND",   u"TEXT(40)", u"PCK-Mandant"},
    {62, u"PCK_TYP",    u"TEXT(1)",  u"PCK-Kennzeichen"},
};

constexpr ComposedField composedRows[] = {
    {u"%25|, |%3",                    u"PersKtoMatchcode"},
    {u"Guten Tag |%4| |%25",          u"PersKtoBriefanrede"},
};
// clang-format on

} // namespace

std::span<const ContactField> contactFields()
{
    return fieldRows;
}

std::span<const ComposedField> composedFields()
{
    return composedRows;
}

} // namespace demo
