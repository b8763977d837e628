// The sample companies that keep their books in the accounting program, all of them invented.
#include "demo/Clients.h"

namespace demo {

namespace {

// clang-format off
constexpr Entry nordwind[] = {
    {u"Telefon", u"+49 40 66969 300", u"Dr. Ursula Nieß"},
    {u"Email", u"u.niess@nordwind-reederei.example", u"Dr. Ursula Nieß"},
    {u"Mobil", u"+49 171 3920030", u"Fiete Ahlers"},
};
constexpr Entry juergensen[] = {
    {u"Telefon", u"+49 4531 555 120", u"Hinnerk Jürgensen"},
    {u"Telefon", u"+49 4531 555 121", u"Tjorven Jürgensen"},
    {u"Email", u"buero@baeckerei-juergensen.example", u"Meike Jürgensen-Voß"},
};
constexpr Entry strauss[] = {
    {u"Telefon", u"+49 421 555 7700", u"Heiko Strauß"},
    {u"Fax", u"+49 421 555 7799"},
};
constexpr Entry kanzlei[] = {{u"Telefon", u"+49 40 66969 551", u"Marlies Höft"}};
constexpr Entry aerztehaus[] = {
    {u"Telefon", u"+49 40 66969 400", u"Dr. med. Änne Löwe"},
    {u"Fax", u"+49 40 66969 410"},
};
constexpr Entry druckerei[] = {{u"Telefon", u"+49 40 66969 600", u"Wolfgang Schwarz"}};
constexpr Entry woehlers[] = {{u"Telefon", u"+49 40 66969 700", u"Sönke Wöhlers"}};

constexpr Account alsterland[] = {
    {.number = u"D000000", .matchcode = u"BARVERKAUF", .name = u"Barverkauf Ladengeschäft", .since = u"1999-01-04"},
    {.number = u"D010001", .matchcode = u"NORDWIND", .salutation = u"Firma", .name = u"Nordwind Reederei AG",
     .street = u"Am Sandtorkai 41", .zip = u"20457", .city = u"Hamburg", .phone = u"+49 40 66969 300",
     .contact = u"Dr. Ursula Nieß", .discount = 2.5, .priceGroup = 2, .creditLimit = 25000, .since = u"1999-03-15",
     .note = u"Rahmenvertrag 1999; Rechnungen in zweifacher Ausfertigung.", .entries = nordwind},
    {.number = u"D010002", .matchcode = u"O'BRIEN", .salutation = u"Herrn", .name = u"Patrick O'Brien",
     .street = u"Große Bleichen 5", .zip = u"20354", .city = u"Hamburg", .since = u"2000-07-01"},
    {.number = u"D010003", .matchcode = u"JÜRGENSEN", .salutation = u"Firma", .name = u"Bäckerei Jürgensen & Töchter",
     .street = u"Lübecker Straße 88a", .zip = u"23843", .city = u"Bad Oldesloe", .phone = u"+49 4531 555 120",
     .contact = u"Hinnerk Jürgensen", .priceGroup = 1, .creditLimit = 1500.5, .since = u"2001-11-30",
     .entries = juergensen},
    {.number = u"D010012", .matchcode = u"SCHÄFER", .salutation = u"Frau", .name = u"Waltraud Schäfer",
     .zip = u"22301", .city = u"Hamburg", .since = u"2003-02-28", .note = u"Nur gegen Vorkasse."},
    {.number = u"K000000", .matchcode = u"DIVERSE", .name = u"Diverse Lieferanten"},
    {.number = u"K070002", .matchcode = u"STRAUß", .salutation = u"Firma", .name = u"Strauß Spedition GmbH & Co. KG",
     .street = u"Güterbahnhof 5", .zip = u"28237", .city = u"Bremen", .phone = u"+49 421 555 7700",
     .contact = u"Heiko Strauß", .since = u"1999-09-09", .entries = strauss},
    {.number = u"K070003", .matchcode = u"PAPIER", .salutation = u"Firma", .name = u"Papierkontor Weiß & Rübe",
     .street = u"Billhorner Brückenstraße 40", .zip = u"20539", .city = u"Hamburg", .discount = 3},
    {.number = u"M000001", .matchcode = u"LÜTJE", .salutation = u"Frau", .name = u"Gisela Lütje",
     .street = u"Mühlenkamp 31", .zip = u"22303", .city = u"Hamburg", .since = u"2000-04-01"},
    {.number = u"M000002", .matchcode = u"ÇELIK", .salutation = u"Herr", .name = u"Aydin Çelik",
     .zip = u"22089", .city = u"Hamburg", .since = u"2002-10-15"},
    {.number = u"A000001", .matchcode = u"FINANZAMT", .name = u"Finanzamt", .zip = u"20355", .city = u"Hamburg"},
    {.number = u"A000002", .matchcode = u"PREUß", .salutation = u"Herrn", .name = u"Kanzlei Dr. Preuß & Partner",
     .street = u"Jungfernstieg 30", .zip = u"20354", .city = u"Hamburg", .phone = u"+49 40 66969 550",
     .contact = u"Dr. Albrecht Preuß", .entries = kanzlei},
};

constexpr Account elbtal[] = {
    {.number = u"D000000", .matchcode = u"TAGESGÄSTE", .name = u"Tagesgäste"},
    {.number = u"D000204", .matchcode = u"BEHRENS", .salutation = u"Herrn", .name = u"Günter Behrens",
     .zip = u"21029", .city = u"Hamburg", .card = u"KK-0917"},
    {.number = u"D000205", .matchcode = u"WÖHLERS", .salutation = u"Firma", .name = u"Elektro Wöhlers [Filiale Süd]",
     .street = u"Harburger Ring 24", .zip = u"21073", .city = u"Hamburg", .phone = u"+49 40 66969 700",
     .contact = u"Sönke Wöhlers", .discount = 5, .priceGroup = 3, .card = u"KK-1204", .entries = woehlers},
    {.number = u"K000001", .matchcode = u"STADTWERKE", .name = u"Stadtwerke Elbtal", .zip = u"01662",
     .city = u"Meißen"},
    {.number = u"M000001", .matchcode = u"WÜNSCHE", .salutation = u"Frau", .name = u"Kerstin Wünsche",
     .since = u"2001-01-02"},
    {.number = u"A000001", .matchcode = u"IHK", .name = u"Industrie- und Handelskammer", .city = u"Dresden"},
};

constexpr Account sonnenhof[] = {
    {.number = u"D000000", .matchcode = u"HOFLADEN", .name = u"Hofladen"},
    {.number = u"D000101", .matchcode = u"D'ANGELO", .salutation = u"Frau", .name = u"Ristorante D'Angelo",
     .street = u"Kanalstraße 2", .zip = u"24159", .city = u"Kiel", .discount = 1.5, .priceGroup = 1,
     .since = u"2000-05-20"},
    {.number = u"D000102", .matchcode = u"ÄRZTEHAUS", .salutation = u"Firma", .name = u"Ärztehaus am Öjendorfer Park",
     .street = u"Öjendorfer Weg 30", .zip = u"22119", .city = u"Hamburg", .phone = u"+49 40 66969 400",
     .contact = u"Dr. med. Änne Löwe", .creditLimit = 12000, .since = u"2002-08-08", .entries = aerztehaus},
    {.number = u"K000000", .matchcode = u"DIVERSE", .name = u"Diverse Lieferanten"},
    {.number = u"K000301", .matchcode = u"SCHWARZ", .salutation = u"Firma", .name = u"Druckerei Schwarz & Weiß OHG",
     .street = u"Gutenbergring 9", .zip = u"22848", .city = u"Norderstedt", .phone = u"+49 40 66969 600",
     .contact = u"Wolfgang Schwarz", .entries = druckerei},
    {.number = u"M000000", .matchcode = u"AUSHILFEN", .name = u"Aushilfen Ernte"},
    {.number = u"M000007", .matchcode = u"SIEMßEN", .salutation = u"Herr", .name = u"Jens-Ole Siemßen",
     .zip = u"24119", .city = u"Kronshagen", .since = u"1998-06-01"},
    {.number = u"A000001", .matchcode = u"VETERINÄR", .name = u"Veterinäramt", .city = u"Kiel"},
};

constexpr PriceList alsterlandLists[] = {{4, u"Großhandel"}, {5, u"Wiederverkäufer"}, {6, u"Aktion Frühjahr"}};
constexpr PriceList elbtalLists[] = {{4, u"Stammgäste"}};
constexpr PriceList sonnenhofLists[] = {{4, u"Märkte"}, {5, u"Gastronomie"}};

constexpr Currency alsterlandCurrencies[] = {
    {1, u"Euro", u"EUR", 1}, {2, u"US-Dollar", u"USD", 1.0803}, {3, u"Britisches Pfund", u"GBP", 0.6855}};
constexpr Currency elbtalCurrencies[] = {{1, u"Euro", u"EUR", 1}, {2, u"Tschechische Krone", u"CZK", 31.66}};
constexpr Currency sonnenhofCurrencies[] = {
    {1, u"Deutsche Mark", u"DEM", 1.95583}, {2, u"Euro", u"EUR", 1}, {3, u"Dänische Krone", u"DKK", 7.4265}};

constexpr Client clientRows[] = {
    {.file = u"Alsterland.PCK", .company = u"Alsterland Handelsgesellschaft mbH",
     .accounts = alsterland, .priceLists = alsterlandLists,
     .priceGroups = {u"Normal", u"Großkunde", u"Händler"}, .currencies = alsterlandCurrencies},
    {.file = u"Elbtal.PCK", .company = u"Pension Elbtal, Inh. R. Wünsche", .hasCustomerCards = true,
     .accounts = elbtal, .priceLists = elbtalLists,
     .priceGroups = {u"Hauptsaison", u"Nebensaison", u""}, .currencies = elbtalCurrencies},
    {.file = u"Sonnenhof.PCK", .company = u"Sonnenhof Öko-Landbau", .password = u"Rapsfeld-1842",
     .accounts = sonnenhof, .priceLists = sonnenhofLists,
     .priceGroups = {u"Normal", u"Mitglieder", u"Kantinen"}, .currencies = sonnenhofCurrencies},
};
// clang-format on

} // namespace

std::span<const Client> clients()
{
    return clientRows;
}

} // namespace demo
