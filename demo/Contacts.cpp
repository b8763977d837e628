// The people of the sample contact database, all of them invented.
#include "demo/Contacts.h"

#include <algorithm>

namespace demo {

namespace {

// clang-format off
constexpr Company companyRows[] = {
    {.key = u"MUELLER", .name = u"Müller & Söhne Maschinenbau GmbH", .street = u"Industriestraße 12",
     .zip = u"20537", .city = u"Hamburg", .website = u"www.mueller-soehne.example", .fax = u"[49] 40 66969 199"},
    {.key = u"GROSSKR", .name = u"Großkreutz Feinkost KG", .street = u"Rosenweg 3",
     .zip = u"24103", .city = u"Kiel", .website = u"www.grosskreutz.example", .fax = u"[49] 431 5550 39"},
    {.key = u"JUERGEN", .name = u"Bäckerei Jürgensen & Töchter", .street = u"Lübecker Straße 88a",
     .zip = u"23843", .city = u"Bad Oldesloe", .website = u"www.baeckerei-juergensen.example"},
    {.key = u"NORDWIN", .name = u"Nordwind Reederei AG", .street = u"Am Sandtorkai 41",
     .zip = u"20457", .city = u"Hamburg", .website = u"www.nordwind-reederei.example", .fax = u"[49] 40 66969 309"},
    {.key = u"OCONNOR", .name = u"Kelly & O'Connor Import", .street = u"Schlachte 7",
     .zip = u"28195", .city = u"Bremen", .website = u"www.kelly-oconnor.example"},
    {.key = u"MOELLER", .name = u"Möller's Blumenstube", .street = u"Marktplatz 1",
     .zip = u"21335", .city = u"Lüneburg"},
    {.key = u"STRAUSS", .name = u"Strauß Spedition GmbH & Co. KG", .street = u"Güterbahnhof 5",
     .zip = u"28237", .city = u"Bremen", .website = u"www.strauss-spedition.example", .fax = u"0421 / 555 77 99"},
    {.key = u"STRAUS2", .name = u"Strauss Autovermietung", .street = u"Flughafenallee 20",
     .zip = u"28199", .city = u"Bremen"},
    {.key = u"AERZTEH", .name = u"Ärztehaus am Öjendorfer Park", .street = u"Öjendorfer Weg 30",
     .zip = u"22119", .city = u"Hamburg", .fax = u"[49] 40 66969 410"},
    {.key = u"WEINHAN", .name = u"Weinhandlung Süßkind", .street = u"Königstraße 17",
     .zip = u"24937", .city = u"Flensburg", .website = u"www.suesskind-weine.example"},
    {.key = u"TISCHLE", .name = u"Tischlerei Köpke", .street = u"Dorfstraße 4",
     .zip = u"25548", .city = u"Kellinghusen"},
    {.key = u"DRUCKER", .name = u"Druckerei Schwarz & Weiß OHG", .street = u"Gutenbergring 9",
     .zip = u"22848", .city = u"Norderstedt", .website = u"www.schwarz-weiss-druck.example"},
    {.key = u"GAERTNE", .name = u"Gärtnerei Grünspan", .street = u"Am Mühlenteich 2",
     .zip = u"25421", .city = u"Pinneberg"},
    {.key = u"RADHAUS", .name = u"Radhaus Übermut", .street = u"Kettenstraße 11",
     .zip = u"26122", .city = u"Oldenburg", .website = u"www.radhaus-uebermut.example"},
    {.key = u"KANZLEI", .name = u"Kanzlei Dr. Preuß & Partner", .street = u"Jungfernstieg 30",
     .zip = u"20354", .city = u"Hamburg", .fax = u"[49] 40 66969 555"},
    {.key = u"HOTELSE", .name = u"Hotel Seeblick Travemünde", .street = u"Strandpromenade 1b",
     .zip = u"23570", .city = u"Lübeck", .website = u"www.seeblick-travemuende.example"},
    {.key = u"ELEKTRO", .name = u"Elektro Wöhlers [Filiale Süd]", .street = u"Harburger Ring 24",
     .zip = u"21073", .city = u"Hamburg"},
    {.key = u"SAFTLAD", .name = u"100% Apfel – Säfte vom Deich", .street = u"Elbdeich 140",
     .zip = u"21635", .city = u"Jork"},
    {.key = u"MUSEUMS", .name = u"Museumsverein Övelgönne e. V.", .street = u"Anleger 3",
     .zip = u"22605", .city = u"Hamburg"},
    {.key = u"KAESERE", .name = u"Käserei Zürcher Oberland AG", .street = u"Bachtelstrasse 6",
     .zip = u"8340", .city = u"Hinwil", .country = u"Schweiz", .website = u"www.kaeserei-zo.example",
     .fax = u"[41] 44 555 1279"},
    {.key = u"ROESTER", .name = u"Kaffeerösterei Wödl", .street = u"Gürtelgasse 8/2",
     .zip = u"1090", .city = u"Wien", .country = u"Österreich"},
    {.key = u"INGBUER", .name = u"Ingenieurbüro Weiß", .street = u"Technikerstraße 21",
     .zip = u"30167", .city = u"Hannover", .website = u"www.ib-weiss.example"},
    {.key = u"PRIVATE", .name = u"", .country = u""},
};

constexpr Contact contactRows[] = {
    {.id = u"MUELLER-0001", .salutation = u"Herr", .firstName = u"Jürgen", .lastName = u"Müller",
     .department = u"Geschäftsführung", .phone = u"[49] 40 66969 110", .mobile = u"[49] 171 3920010",
     .email = u"j.mueller@mueller-soehne.example", .postBox = u"10 04 12",
     .notes = u"Geschäftsführer; am besten vormittags anrufen."},
    {.id = u"MUELLER-0002", .salutation = u"Frau", .firstName = u"Petra", .lastName = u"Weiß",
     .department = u"Einkauf", .phone = u"[49] 40 66969 112", .mobile = u"[49] 171 3920011",
     .email = u"p.weiss@mueller-soehne.example"},
    {.id = u"MUELLER-0003", .salutation = u"Herr", .firstName = u"Björn", .lastName = u"Öztürk",
     .department = u"Buchhaltung", .phone = u"040 / 66969-114", .email = u"b.oeztuerk@mueller-soehne.example",
     .companyName = u"Müller und Söhne, Maschinenbau"},
    {.id = u"MUELLER-0004", .salutation = u"Frau", .firstName = u"Jutta", .lastName = u"Kröger",
     .department = u"Werkstatt"},
    {.id = u"MUELLER-0005", .salutation = u"Herr", .firstName = u"Detlef", .lastName = u"Groß",
     .department = u"Versand", .mobile = u"0172 9925904"},

    {.id = u"GROSSKR-0001", .salutation = u"Frau", .firstName = u"Annemarie", .lastName = u"Großkreutz",
     .department = u"Inhaberin", .phone = u"[49] 431 5550 30", .mobile = u"[49] 176 04069010",
     .email = u"a.grosskreutz@grosskreutz.example", .notes = u"Rechnung immer an die Zentrale in Kiel."},
    {.id = u"GROSSKR-0002", .salutation = u"Herr", .firstName = u"Søren", .lastName = u"Hansen",
     .department = u"Einkauf", .phone = u"[49] 431 5550 31", .email = u"s.hansen@grosskreutz.example"},
    {.id = u"GROSSKR-0003", .salutation = u"Frau", .firstName = u"Wiebke", .lastName = u"Jäger",
     .department = u"Lager", .phone = u"0431 / 5550-32"},
    {.id = u"GROSSKR-0004", .salutation = u"Herr", .firstName = u"Uwe", .lastName = u"Thomsen"},

    {.id = u"JUERGEN-0001", .salutation = u"Herr", .firstName = u"Hinnerk", .lastName = u"Jürgensen",
     .department = u"Backstube", .phone = u"[49] 4531 555 120", .account = u"D010003", .client = u"Alsterland.PCK",
     .role = u"H"},
    {.id = u"JUERGEN-0002", .salutation = u"Frau", .firstName = u"Tjorven", .lastName = u"Jürgensen",
     .department = u"Verkauf", .phone = u"[49] 4531 555 121", .account = u"D010003", .client = u"Alsterland.PCK",
     .role = u"H"},
    {.id = u"JUERGEN-0003", .salutation = u"Frau", .firstName = u"Meike", .lastName = u"Jürgensen-Voß",
     .department = u"Büro", .email = u"buero@baeckerei-juergensen.example", .account = u"D010003",
     .client = u"Alsterland.PCK", .role = u"N"},

    {.id = u"NORDWIN-0001", .salutation = u"Frau", .firstName = u"Dr. Ursula", .lastName = u"Nieß",
     .department = u"Vorstand", .phone = u"[49] 40 66969 300", .email = u"u.niess@nordwind-reederei.example",
     .account = u"D010001", .client = u"Alsterland.PCK", .role = u"H", .notes = u"Vertrag läuft bis Jahresende."},
    {.id = u"NORDWIN-0002", .salutation = u"Herr", .firstName = u"Fiete", .lastName = u"Ahlers",
     .department = u"Befrachtung", .phone = u"[49] 40 66969 301", .mobile = u"[49] 171 3920030",
     .account = u"D010001", .client = u"Alsterland.PCK", .role = u"N"},
    {.id = u"NORDWIN-0003", .salutation = u"Herr", .firstName = u"Gökhan", .lastName = u"Sahin",
     .department = u"Technik", .phone = u"[49] 40 66969 302", .account = u"D010001", .client = u"Alsterland.PCK",
     .role = u"N"},
    {.id = u"NORDWIN-0004", .salutation = u"Frau", .firstName = u"Lena", .lastName = u"Brües",
     .department = u"Empfang", .phone = u"040-66969-0"},

    {.id = u"OCONNOR-0001", .salutation = u"Herr", .firstName = u"Sean", .lastName = u"O'Connor",
     .department = u"Inhaber", .phone = u"[49] 421 555 4410", .email = u"sean@kelly-oconnor.example"},
    {.id = u"OCONNOR-0002", .salutation = u"Frau", .firstName = u"Bridget", .lastName = u"Kelly",
     .department = u"Inhaberin", .phone = u"[353] 1 555 0142", .email = u"bridget@kelly-oconnor.example"},
    {.id = u"OCONNOR-0003", .salutation = u"Frau", .firstName = u"Inés", .lastName = u"Núñez",
     .department = u"Zoll", .phone = u"0421 555 44 12"},

    {.id = u"MOELLER-0001", .salutation = u"Frau", .firstName = u"Käthe", .lastName = u"Möller",
     .phone = u"04131 / 55 52 10"},
    {.id = u"MOELLER-0002", .salutation = u"Herr", .firstName = u"Karl-Heinz", .lastName = u"Möller",
     .phone = u"04131 / 55 52 10", .mobile = u"[49] 152 28817386"},

    {.id = u"STRAUSS-0001", .salutation = u"Herr", .firstName = u"Heiko", .lastName = u"Strauß",
     .department = u"Geschäftsführung", .phone = u"[49] 421 555 7700",
     .email = u"h.strauss@strauss-spedition.example", .account = u"K070002", .client = u"Alsterland.PCK", .role = u"H"},
    {.id = u"STRAUSS-0002", .salutation = u"Frau", .firstName = u"Silke", .lastName = u"Bäumer",
     .department = u"Disposition", .phone = u"[49] 421 555 7710", .account = u"K070002", .client = u"Alsterland.PCK",
     .role = u"N"},
    {.id = u"STRAUSS-0003", .salutation = u"Herr", .firstName = u"Mirko", .lastName = u"Babic",
     .department = u"Fuhrpark", .mobile = u"0152 28895456"},
    {.id = u"STRAUS2-0001", .salutation = u"Frau", .firstName = u"Elke", .lastName = u"Strauss",
     .phone = u"[49] 421 555 9001"},
    {.id = u"STRAUS2-0002", .salutation = u"Herr", .firstName = u"Olaf", .lastName = u"Prüß",
     .department = u"Schalter", .phone = u"0421-5559002"},

    {.id = u"AERZTEH-0001", .salutation = u"Frau", .firstName = u"Dr. med. Änne", .lastName = u"Löwe",
     .department = u"Praxisleitung", .phone = u"[49] 40 66969 400", .account = u"D000102", .client = u"Sonnenhof.PCK",
     .role = u"H"},
    {.id = u"AERZTEH-0002", .salutation = u"Herr", .firstName = u"Dr. med. Rüdiger", .lastName = u"Quaß",
     .department = u"Röntgen", .phone = u"[49] 40 66969 401", .account = u"D000102", .client = u"Sonnenhof.PCK",
     .role = u"N"},
    {.id = u"AERZTEH-0003", .salutation = u"Frau", .firstName = u"Natalja", .lastName = u"Iwanowa",
     .department = u"Anmeldung", .phone = u"[49] 40 66969 402"},

    {.id = u"WEINHAN-0001", .salutation = u"Herr", .firstName = u"Ludwig", .lastName = u"Süßkind",
     .department = u"Inhaber", .phone = u"[49] 461 555 320", .email = u"ludwig@suesskind-weine.example"},
    {.id = u"WEINHAN-0002", .salutation = u"Frau", .firstName = u"Françoise", .lastName = u"Lefèvre",
     .department = u"Einkauf", .phone = u"[33] 3 8055 5147", .email = u"francoise@suesskind-weine.example"},
    {.id = u"WEINHAN-0003", .salutation = u"Frau", .firstName = u"Gesche", .lastName = u"Petersen"},

    {.id = u"TISCHLE-0001", .salutation = u"Herr", .firstName = u"Hannes", .lastName = u"Köpke",
     .phone = u"04822 / 555 61", .privatePhone = u"04822 / 555 62"},
    {.id = u"TISCHLE-0002", .salutation = u"Frau", .firstName = u"Antje", .lastName = u"Köpke",
     .department = u"Büro", .phone = u"04822 / 555 61"},

    {.id = u"DRUCKER-0001", .salutation = u"Herr", .firstName = u"Wolfgang", .lastName = u"Schwarz",
     .department = u"Geschäftsführung", .phone = u"[49] 40 66969 600", .account = u"K000301",
     .client = u"Sonnenhof.PCK", .role = u"H"},
    {.id = u"DRUCKER-0002", .salutation = u"Frau", .firstName = u"Beate", .lastName = u"Weiß",
     .department = u"Geschäftsführung", .phone = u"[49] 40 66969 601", .account = u"K000301",
     .client = u"Sonnenhof.PCK", .role = u"N"},
    {.id = u"DRUCKER-0003", .salutation = u"Herr", .firstName = u"Enno", .lastName = u"Lührs",
     .department = u"Satz", .email = u"satz@schwarz-weiss-druck.example"},

    {.id = u"GAERTNE-0001", .salutation = u"Frau", .firstName = u"Flora", .lastName = u"Grünspan",
     .phone = u"[49] 4101 555 18"},
    {.id = u"GAERTNE-0002", .salutation = u"Herr", .firstName = u"Pawel", .lastName = u"Wisniewski",
     .department = u"Baumschule", .mobile = u"[49] 176 04069021"},

    {.id = u"RADHAUS-0001", .salutation = u"Herr", .firstName = u"Kuddel", .lastName = u"Übermut",
     .phone = u"[49] 441 555 870", .email = u"kuddel@radhaus-uebermut.example"},
    {.id = u"RADHAUS-0002", .salutation = u"Frau", .firstName = u"Nele", .lastName = u"Übermut",
     .phone = u"[49] 441 555 871"},
    {.id = u"RADHAUS-0003", .salutation = u"Herr", .firstName = u"Tom", .lastName = u"Jaspers",
     .department = u"Werkstatt"},

    {.id = u"KANZLEI-0001", .salutation = u"Herr", .firstName = u"Dr. Albrecht", .lastName = u"Preuß",
     .phone = u"[49] 40 66969 550", .account = u"A000002", .client = u"Alsterland.PCK", .role = u"H"},
    {.id = u"KANZLEI-0002", .salutation = u"Frau", .firstName = u"Marlies", .lastName = u"Höft",
     .department = u"Sekretariat", .phone = u"[49] 40 66969 551", .account = u"A000002", .client = u"Alsterland.PCK",
     .role = u"N"},

    {.id = u"HOTELSE-0001", .salutation = u"Frau", .firstName = u"Ingeborg", .lastName = u"Classen",
     .department = u"Direktion", .phone = u"[49] 4502 555 900", .email = u"direktion@seeblick-travemuende.example"},
    {.id = u"HOTELSE-0002", .salutation = u"Herr", .firstName = u"Götz", .lastName = u"Brömse",
     .department = u"Küche", .phone = u"[49] 4502 555 917"},
    {.id = u"HOTELSE-0003", .salutation = u"Frau", .firstName = u"Maja", .lastName = u"Šimek",
     .department = u"Empfang", .phone = u"04502 555 90 - 0"},
    {.id = u"HOTELSE-0004", .salutation = u"Herr", .firstName = u"Jörn", .lastName = u"Stüve",
     .department = u"Haustechnik", .mobile = u"0172 9968532"},

    {.id = u"ELEKTRO-0001", .salutation = u"Herr", .firstName = u"Sönke", .lastName = u"Wöhlers",
     .phone = u"[49] 40 66969 700", .account = u"D000205", .client = u"Elbtal.PCK", .role = u"H"},
    {.id = u"ELEKTRO-0002", .salutation = u"Herr", .firstName = u"Mehmet", .lastName = u"Günes",
     .department = u"Kundendienst", .phone = u"[49] 40 66969 702", .account = u"D000205", .client = u"Elbtal.PCK",
     .role = u"N"},

    {.id = u"SAFTLAD-0001", .salutation = u"Frau", .firstName = u"Heinke", .lastName = u"Quast",
     .phone = u"[49] 4162 555 33"},
    {.id = u"SAFTLAD-0002", .salutation = u"Herr", .firstName = u"Johann", .lastName = u"Quast",
     .mobile = u"[49] 171 3920077"},

    {.id = u"MUSEUMS-0001", .salutation = u"Herr", .firstName = u"Eike", .lastName = u"Övermann",
     .department = u"Vorsitz", .phone = u"[49] 40 66969 800"},
    {.id = u"MUSEUMS-0002", .salutation = u"Frau", .firstName = u"Traute", .lastName = u"Harms",
     .department = u"Kasse", .privatePhone = u"040 66969 8 01"},

    {.id = u"KAESERE-0001", .salutation = u"Herr", .firstName = u"Ueli", .lastName = u"Rüegg",
     .department = u"Verkauf", .phone = u"[41] 44 555 1270", .mobile = u"[41] 79 555 1271",
     .email = u"u.rueegg@kaeserei-zo.example"},
    {.id = u"KAESERE-0002", .salutation = u"Frau", .firstName = u"Regula", .lastName = u"Bänziger",
     .department = u"Export", .phone = u"[41] 44 555 1272"},

    {.id = u"ROESTER-0001", .salutation = u"Frau", .firstName = u"Mag. Leopoldine", .lastName = u"Wödl",
     .phone = u"[43] 1 555 2040", .email = u"leopoldine@woedl.example"},
    {.id = u"ROESTER-0002", .salutation = u"Herr", .firstName = u"Franz-Xaver", .lastName = u"Hölzl",
     .department = u"Rösterei", .mobile = u"[43] 664 555 2041"},

    {.id = u"INGBUER-0001", .salutation = u"Frau", .firstName = u"Dipl.-Ing. Cornelia", .lastName = u"Weiß",
     .phone = u"[49] 511 555 240", .email = u"c.weiss@ib-weiss.example"},
    {.id = u"INGBUER-0002", .salutation = u"Herr", .firstName = u"Thorsten", .lastName = u"Maaß",
     .department = u"Statik", .phone = u"0511 / 555-242"},

    {.id = u"PRIVATE-0001", .salutation = u"Frau", .firstName = u"Annegret", .lastName = u"Ödegaard",
     .privatePhone = u"[47] 22 555 013"},
    {.id = u"PRIVATE-0002", .salutation = u"Herr", .firstName = u"Siegfried", .lastName = u"Böß",
     .mobile = u"0171 3920088", .email = u"s.boess@privat.example"},
    {.id = u"PRIVATE-3", .salutation = u"", .firstName = u"Mutter Jensen"},
};
// clang-format on

} // namespace

std::span<const Company> companies()
{
    return companyRows;
}

std::span<const Contact> contacts()
{
    return contactRows;
}

const Company &companyOf(const Contact &contact)
{
    const QStringView key = contact.id.left(contact.id.indexOf(u'-'));
    return *std::ranges::find(companyRows, key, &Company::key);
}

} // namespace demo
