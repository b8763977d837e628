// The window as it is loaded, its search, and how buttons and warnings follow the group.
#include <gmock/gmock.h>

#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

#include "tests/groupeditor/Buehne.h"

using namespace Qt::StringLiterals;
using beispiel::Person;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Person fremder = person(u"Z"_s, {}, {}, u"Zeta Handel"_s); // not every contact may match a term

} // namespace

TEST(Fenster, LoadsWithTheCurrentContact)
{
    Buehne b({person(u"A"_s, u"N"_s, u"D1/M"_s, u"Äußere Werke"_s), fremder});
    b.zeige();
    EXPECT_EQ(b.fenster().windowTitle(), u"VELDRAK - Hauptkontakt"_s);
    EXPECT_EQ(b.finde<QLineEdit>(u"tbSuche"_s).text(), u"Äuße"_s);
    EXPECT_EQ(b.finde<QLineEdit>(u"tbFirma"_s).text(), u"Äußere Werke"_s);
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"A, 2, D1/M"_s));
    EXPECT_THAT(b.treffer().Anzahl(), 0);

    const KontaktListe &liste = b.mitglieder();
    QStringList spalten;
    for (int i = 0; i < liste.columnCount(); ++i)
        spalten += liste.headerItem()->text(i);
    EXPECT_THAT(spalten,
                ElementsAre(u"Firma"_s, u"Firma"_s, u"Name"_s, u"Vorname"_s, u"Nachname"_s, u"Strasse"_s, u"PLZ"_s,
                            u"Ort"_s, u"Telefon"_s, u"Fax"_s, u"Handy"_s, u"Email"_s, u"URL"_s, u"Nummer"_s,
                            u"Mandant"_s, u"UniqueID"_s));
    for (const auto &[spalte, teil] : {std::pair(0, 4), {1, 5}, {12, 5}, {13, 7}, {14, 7}, {15, 7}})
        EXPECT_EQ(liste.columnWidth(spalte), liste.width() / teil) << spalte;
    EXPECT_EQ(liste.Item(1).text(2), u"Name A"_s);
    EXPECT_EQ(liste.Item(1).data(0, Qt::AccessibleTextRole), u"Äußere Werke, Nebenkontakt"_s);
    EXPECT_THAT(liste.Item(1).toolTip(5).toStdString(), testing::HasSubstr("Nebenkontakt"));
}

TEST(Fenster, SearchesAtOnceIfConfigured)
{
    Buehne b({person(u"A"_s), person(u"B"_s), fremder});
    b.zeige({.autoSuche = true});
    EXPECT_THAT(Buehne::inhalt(b.treffer()), ElementsAre(u"B, 1"_s));
    EXPECT_TRUE(b.haupt().Status().isHidden());
}

TEST(Fenster, ButtonsFollowTheFlagNumber)
{
    // clang-format off
    struct Row { int flagzahl; Person aktueller; std::vector<Person> gleiches; QStringList unbekannte; QString knoepfe;
        };
    const Row rows[] = {
        {0,  person(u"A"_s),                        {},                                         {},       u"H--"_s},
        {0,  person(u"A"_s, u"h"_s),                {},                                         {u"B"_s}, u"H--"_s},
        {0,  person(u"A"_s, {}, u"D1/"_s),          {},                                         {u"B"_s}, u"H--"_s},
        {1,  person(u"A"_s, {}, u"D1/M"_s),         {},                                         {},       u"H--"_s},
        {4,  person(u"A"_s, u"N"_s),                {},                                         {u"B"_s}, u"H--"_s},
        {5,  person(u"A"_s, u"N"_s, u"D1/M"_s),     {},                                         {},       u"H--"_s},
        {8,  person(u"A"_s, u"H"_s),                {},                                         {},       u"-T-"_s},
        {8,  person(u"A"_s, u"H"_s, u"/M"_s),       {},                                         {},       u"-T-"_s},
        {9,  person(u"A"_s, u"H"_s, u"D1/M"_s),     {},                                         {},       u"---"_s},
        {12, person(u"A"_s, u"H"_s),                {},                                         {u"B"_s}, u"-T-"_s},
        {13, person(u"A"_s, u"H"_s, u"D1/M"_s),     {},                                         {u"B"_s}, u"--F"_s},
        {13, person(u"A"_s, u"H"_s, u"D1/M"_s),     {person(u"C"_s, u"N"_s, u"D1/M"_s)},        {},       u"--F"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.flagzahl);
        std::vector<Person> alle{row.aktueller, person(u"B"_s), fremder};
        alle.insert(alle.end(), row.gleiches.begin(), row.gleiches.end());
        Buehne b(alle);
        b.zeige();
        b.suche(u"Alph"_s);
        b.uebernimm(row.unbekannte);
        EXPECT_EQ(b.knoepfe().toStdString(), row.knoepfe.toStdString());
        const QStringList boxen = b.tisch.boxTexts();
        if (row.flagzahl == 1)
            EXPECT_THAT(boxen, testing::AllOf(testing::Not(IsEmpty()), testing::Each(u"Flagzahl = 1"_s)));
        else
            EXPECT_THAT(boxen, IsEmpty());
    }
}

TEST(Fenster, BlinksItsWarnings)
{
    Buehne b({person(u"A"_s, u"N"_s), person(u"B"_s, {}, {}, u"Alpha Nord"_s), fremder});
    b.zeige();
    const auto *haupt = &b.finde<QLabel>(u"lbHaupt"_s);
    const auto *firma = &b.finde<QLabel>(u"lbFirma"_s);
    EXPECT_TRUE(haupt->isHidden());
    EXPECT_TRUE(QTest::qWaitFor([haupt] { return !haupt->isHidden(); }, 900));
    EXPECT_TRUE(QTest::qWaitFor([haupt] { return haupt->isHidden(); }, 900));
    EXPECT_TRUE(firma->isHidden());

    b.suche(u"Alph"_s);
    b.uebernimm({u"B"_s});
    EXPECT_TRUE(QTest::qWaitFor([firma] { return !firma->isHidden(); }, 900));
    b.waehle(b.mitglieder(), {u"B"_s});
    b.klicke(u"cmdHauptkontakt"_s);
    b.klicke(u"cmdFirmaAngleichen"_s);
    EXPECT_TRUE(QTest::qWaitFor([=] { return haupt->isHidden() && firma->isHidden(); }, 900));
    QTest::qWait(500);
    EXPECT_TRUE(haupt->isHidden() && firma->isHidden()) << "nothing to warn of any more";
}

TEST(Suche, CountsItsHits)
{
    std::vector<Person> personen{person(u"A"_s)};
    const auto fuege = [&personen](const QString &firma, int anzahl) {
        for (int i = 1; i <= anzahl; ++i)
            personen.push_back(person(u"%1%2"_s.arg(firma[0]).arg(i), {}, {}, firma + u" GmbH"_s));
    };
    fuege(u"Einer"_s, 1);
    fuege(u"Fünfzig"_s, 50);
    fuege(u"Viele"_s, 51);
    Buehne b(personen);
    b.zeige();
    const QString mehr = u"Es wurden mehr als 50 Kontakte gefunden.\rDaher werden nur die ersten 50 Kontakte "
                         "angezeigt.\rTip: Sie sollten Ihren Suchbegriff etwas erweitern."_s;
    // clang-format off
    struct Row { const char *name; QString begriff; int treffer; QString letzter; QStringList boxen; };
    const Row rows[] = {
        {"nothing",                         u"Keiner"_s,     0,  {},       {}},
        {"one",                             u"Einer"_s,      1,  u"E1"_s,  {}},
        {"small letters find capitals",     u"einer gmbh"_s, 1,  u"E1"_s,  {}},
        {"umlauts in capitals",             u"FÜNFZIG"_s,    50, u"F50"_s, {}},
        {"blanks around do not count",      u"  Fünfzig "_s, 50, u"F50"_s, {}},
        {"the first fifty in record order", u"Viele"_s,      50, u"V50"_s, {mehr}},
        {"the second search field",         u"Name V5"_s,    3,  u"V51"_s, {}}, // V5, V50, V51
        {"a term that finds all",           u"a"_s,          0,  {},       {}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        b.tisch.boxes.clear();
        b.act.calls.clear();
        b.suche(row.begriff);
        EXPECT_EQ(b.treffer().Anzahl(), row.treffer);
        if (row.treffer > 0) {
            EXPECT_EQ(Buehne::ids(b.treffer()).constLast(), row.letzter);
            EXPECT_EQ(b.haupt().Status().lbStatus(), u"gefundenen Kontakte: %1"_s.arg(row.treffer));
            EXPECT_EQ(b.haupt().Status().ProgressBar1(), 100);
        }
        EXPECT_EQ(b.tisch.boxTexts(), row.boxen);
        EXPECT_THAT(b.act.calls, ElementsAre(u"LookupALL()"_s, u"GetCount()"_s, u"getopendbname()"_s));
        EXPECT_TRUE(b.haupt().Status().isHidden());
    }
}

TEST(Suche, RefusesAnEmptyTerm)
{
    Buehne b({person(u"A"_s), person(u"B"_s), fremder});
    b.zeige();
    b.suche(u"Alph"_s);
    b.act.calls.clear();
    b.suche(u"   "_s);
    EXPECT_THAT(b.tisch.boxTexts(), ElementsAre(u"Bitte geben Sie einen Suchbegriff ein !"_s));
    EXPECT_THAT(b.act.calls, IsEmpty());
    EXPECT_THAT(Buehne::ids(b.treffer()), ElementsAre(u"B"_s)) << "the former hits stay";
}

TEST(Suche, PlacesEachHit)
{
    // clang-format off
    struct Row { const char *name; Person aktueller; Person hit; QStringList treffer; QStringList mitglieder;
        QString knoepfe; };
    const QString AN = u"A, 2, D1/M"_s, AH = u"A, 3, D1/M"_s;
    const Person N = person(u"A"_s, u"N"_s, u"D1/M"_s), H = person(u"A"_s, u"H"_s, u"D1/M"_s);
    const Row rows[] = {
        {"never grouped, in a new group",      person(u"A"_s), person(u"B"_s),                        {u"B, 1"_s},
         {u"A, 1"_s},            u"H--"_s},
        {"never grouped, whatever its number", H,              person(u"B"_s, {}, u"D9/X"_s),
         {u"B, 1, D9/X"_s}, {AH},                   u"---"_s},
        {"a small role letter is another one", H,              person(u"B"_s, u"n"_s, u"D9/M"_s),     {},
         {AH},                   u"---"_s},
        {"secondary, in a new group",          person(u"A"_s), person(u"B"_s, u"N"_s, u"D1/M"_s),
         {u"B, 2, D1/M"_s}, {u"A, 1"_s},            u"H--"_s},
        {"main, in a new group",               person(u"A"_s), person(u"B"_s, u"H"_s, u"D1/M"_s),
         {u"B, 3, D1/M"_s}, {u"A, 1"_s},            u"H--"_s},
        {"same account joins",                 H,              person(u"B"_s, u"N"_s, u"D1/M"_s),     {},
         {AH, u"B, 2, D1/M"_s},  u"--F"_s},
        {"main of the same account joins",     N,              person(u"B"_s, u"H"_s, u"D1/M"_s, u"Alpha Haus"_s), {},
         {AN, u"B, 3, D1/M"_s},  u"--F"_s},
        {"another number is left out",         H,              person(u"B"_s, u"N"_s, u"D2/M"_s),     {},
         {AH},                   u"---"_s},
        {"another client is left out",         N,              person(u"B"_s, u"H"_s, u"D1/X"_s),     {},
         {AN},                   u"H--"_s},
        {"accounts compare with case",         N,              person(u"B"_s, u"H"_s, u"d1/M"_s),     {},
         {AN},                   u"H--"_s},
        // The client stands for number and client of the search alike.
        {"found by client as number",          person(u"A"_s, u"N"_s, u"M/M"_s), person(u"B"_s, u"N"_s, u"M/M"_s,
         u"Omega"_s), {}, {u"A, 2, M/M"_s, u"B, 2, M/M"_s}, u"H--"_s},
        {"not found by its number",            N,              person(u"B"_s, u"N"_s, u"D1/M"_s, u"Omega"_s), {},
         {AN},                   u"H--"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Buehne b({row.aktueller, row.hit, fremder});
        b.zeige();
        b.suche(u"alpha"_s);
        EXPECT_EQ(Buehne::inhalt(b.treffer()), row.treffer);
        EXPECT_EQ(Buehne::inhalt(b.mitglieder()), row.mitglieder);
        EXPECT_EQ(b.knoepfe(), row.knoepfe);
        EXPECT_THAT(b.tisch.boxTexts(), IsEmpty());
        const bool neuerHauptkontakt = row.mitglieder.contains(u"B, 3, D1/M"_s);
        EXPECT_EQ(b.finde<QLineEdit>(u"tbFirma"_s).text(), neuerHauptkontakt ? u"Alpha Haus"_s : u"Alpha Werke"_s);
        EXPECT_FALSE(b.mehrdeutig());
    }
}
