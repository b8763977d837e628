// The group: adopting, taking over, giving back, roles and company names.
#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QWindow>

#include "tests/groupeditor/Buehne.h"

using namespace Qt::StringLiterals;
using beispiel::Person;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Person fremder = person(u"Z"_s, {}, {}, u"Zeta Handel"_s);

/// A window that has found all people of the company.
struct Gefunden : Buehne {
    explicit Gefunden(std::vector<Person> personen, const QString &begriff = u"Alpha"_s)
        : Buehne((personen.push_back(fremder), personen))
    {
        zeige();
        suche(begriff);
        act.calls.clear();
        tisch.boxes.clear();
    }
};

const QString bleibtErhalten = u"Die Firma bzw. der Ansprechpartner bleiben im PC-Kaufmann erhalten !"_s;

QStringList geloescht(const QString &id)
{
    return {u"LookupALL()"_s, u"createLookup(%1)"_s.arg(id), u"SetField(60, )"_s, u"SetField(61, )"_s,
            u"SetField(62, )"_s};
}

} // namespace

TEST(Uebernehmen, FollowsIconAndGroup)
{
    // clang-format off
    struct Row { const char *name; std::vector<Person> personen; QStringList auswahl; QStringList treffer;
        QStringList mitglieder; QStringList boxen; QString knoepfe; };
    const Person A = person(u"A"_s), AN = person(u"A"_s, u"N"_s, u"D1/M"_s), AH = person(u"A"_s, u"H"_s, u"D1/M"_s);
    const Person B = person(u"B"_s), C = person(u"C"_s), BX = person(u"B"_s, {}, u"D9/X"_s);
    const Person CN = person(u"C"_s, u"N"_s, u"D2/X"_s), DN = person(u"D"_s, u"N"_s, u"D2/X"_s);
    const Person CH = person(u"C"_s, u"H"_s, u"D2/X"_s), EN = person(u"E"_s, u"N"_s, u"D3/X"_s);
    const Row rows[] = {
        {"nothing selected",                      {A, B},         {},               {u"B, 1"_s},       {u"A, 1"_s},
         {}, u"H--"_s},
        {"unknown to unknown",                    {A, B, C},      {u"B"_s},         {u"C, 1"_s},
         {u"A, 1"_s, u"B, 1"_s},                     {}, u"H--"_s},
        {"unknown to a main contact",             {AH, BX},       {u"B"_s},         {},
         {u"A, 3, D1/M"_s, u"B, 2, D1/M"_s},         {}, u"--F"_s},
        {"unknown to a secondary contact",        {AN, BX},       {u"B"_s},         {},
         {u"A, 2, D1/M"_s, u"B, 2, D1/M"_s},         {}, u"H--"_s},
        {"several, neighbours too",               {AH, B, C, BX}, {u"B"_s, u"C"_s}, {},
         {u"A, 3, D1/M"_s, u"B, 2, D1/M"_s, u"C, 2, D1/M"_s, u"B, 2, D1/M"_s}, {}, u"--F"_s},
        {"secondary takes the group over",        {A, B, CN, DN, EN}, {u"C"_s},     {u"B, 1"_s},
         {u"A, 2, D2/X"_s, u"C, 2, D2/X"_s, u"D, 2, D2/X"_s}, {}, u"H--"_s},
        {"main takes the group over",             {A, B, CH, DN, EN}, {u"C"_s},     {u"B, 1"_s},
         {u"A, 2, D2/X"_s, u"C, 3, D2/X"_s, u"D, 2, D2/X"_s}, {}, u"--F"_s},
        {"a group without an account takes all",  {A, B, person(u"C"_s, u"N"_s)}, {u"C"_s}, {},
         {u"A, 2"_s, u"B, 2"_s, u"C, 2"_s},          {}, u"H--"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Gefunden b(row.personen);
        b.uebernimm(row.auswahl);
        EXPECT_EQ(Buehne::inhalt(b.treffer()), row.treffer);
        EXPECT_EQ(Buehne::inhalt(b.mitglieder()), row.mitglieder);
        EXPECT_EQ(b.tisch.boxTexts(), row.boxen);
        EXPECT_EQ(b.knoepfe(), row.knoepfe);
        EXPECT_THAT(b.act.callsOf(u"SetField"_s), IsEmpty());
        EXPECT_FALSE(b.mehrdeutig());
    }
}

// Found before there was a main contact: that is how such an item comes into the list.
TEST(Uebernehmen, RefusesASecondMainContact)
{
    Gefunden b({person(u"A"_s), person(u"B"_s, u"H"_s, u"D2/X"_s), person(u"C"_s)});
    b.waehle(b.mitglieder(), {u"A"_s});
    b.klicke(u"cmdHauptkontakt"_s);
    b.uebernimm({u"B"_s, u"C"_s});
    EXPECT_THAT(b.tisch.boxTexts(), ElementsAre(u"Es gibt schon einen Hauptkontakt !"_s));
    EXPECT_THAT(Buehne::inhalt(b.treffer()), ElementsAre(u"B, 3, D2/X"_s));
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"A, 3"_s, u"C, 2"_s));
}

// The reference member keeps its account, here none, and draws those who have the same.
TEST(Uebernehmen, LeavesAGroupOfAnotherAccountOut)
{
    Gefunden b({person(u"A"_s), person(u"B"_s, u"H"_s, u"D2/X"_s), person(u"C"_s)});
    b.uebernimm({u"C"_s});
    b.waehle(b.mitglieder(), {u"A"_s});
    b.klicke(u"cmdHauptkontakt"_s);
    b.entferne({u"A"_s}); // leaves a secondary contact and the hit of another account
    ASSERT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"C, 2"_s));
    b.uebernimm({u"B"_s});
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"C, 2"_s, u"A, 2"_s));
    EXPECT_THAT(Buehne::inhalt(b.treffer()), IsEmpty()) << "searched anew, without the other account";
}

TEST(Uebernehmen, LooksAtASecondaryContactAgainUntilItIsDeselected)
{
    Gefunden b({person(u"A"_s), person(u"B"_s, u"N"_s, u"D2/X"_s), person(u"C"_s)});
    b.waehle(b.mitglieder(), {u"A"_s});
    b.klicke(u"cmdHauptkontakt"_s);
    b.tisch.yields = 0;
    b.tisch.onYield = [&b] {
        b.klicke(u"cmdÜbernehmen"_s); // a second click while the command runs does nothing
        if (b.tisch.yields == 5)
            b.waehle(b.treffer(), {u"C"_s});
    };
    b.uebernimm({u"B"_s, u"C"_s});
    EXPECT_EQ(b.tisch.yields, 5);
    EXPECT_THAT(Buehne::inhalt(b.treffer()), ElementsAre(u"B, 2, D2/X"_s));
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"A, 3"_s, u"C, 2"_s)) << "then it goes on";
}

TEST(Uebernehmen, EndsWithTheProgramMeanwhile)
{
    Gefunden b({person(u"A"_s, u"N"_s, u"D2/X"_s), person(u"B"_s), person(u"C"_s)});
    b.uebernimm({u"B"_s});
    b.entferne({u"A"_s});
    b.treffer().setzeIcon(b.treffer().Item(1), KontaktListe::Neben);
    b.tisch.onYield = [&b] { b.klicke(u"cmdAbbruch"_s); };
    b.uebernimm({u"C"_s});
    EXPECT_TRUE(b.haupt().beendet());
    EXPECT_TRUE(b.fenster().isHidden());
    EXPECT_THAT(b.act.callsOf(u"Resize"_s), ElementsAre(u"Resize(800, 600)"_s));
}

TEST(Uebernehmen, ReportsAWrongIcon)
{
    Gefunden b({person(u"A"_s), person(u"B"_s)});
    b.treffer().setzeIcon(b.treffer().Item(1), 4);
    b.tisch.onYield = [&b] { b.treffer().clearSelection(); };
    b.uebernimm({u"B"_s});
    EXPECT_THAT(b.tisch.boxTexts(), ElementsAre(u"ERROR: Falscher Icon-Index!"_s));
    EXPECT_THAT(Buehne::ids(b.mitglieder()), ElementsAre(u"A"_s));
}

TEST(Mehrdeutig, DemotesAllMainContactsOnceARun)
{
    Gefunden b({person(u"A"_s), person(u"B"_s, u"H"_s, u"D2/X"_s, u"Alpha Nord"_s),
                person(u"C"_s, u"H"_s, u"D2/X"_s, u"Alpha Süd"_s), person(u"D"_s, u"H"_s, u"D2/X"_s, u"Beta"_s)});
    b.uebernimm({u"B"_s});
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"A, 2, D2/X"_s, u"B, 2, D2/X"_s, u"C, 2, D2/X"_s));
    EXPECT_EQ(b.knoepfe(), u"H--"_s);
    QDialog *dialog = b.mehrdeutig();
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_FALSE(dialog->isModal());
    EXPECT_EQ(dialog->windowTitle(), u"MORVANE - Zuviel Hauptkontakte"_s);
    EXPECT_EQ(dialog->findChild<QLabel *>(u"lbFirma"_s)->text(), u"Alpha Süd"_s);
    const auto *liste = dialog->findChild<QListWidget *>(u"lstKontakte"_s);
    ASSERT_EQ(liste->count(), 2);
    EXPECT_EQ(liste->item(0)->text(), u"Alpha Nord"_s); // the first mapped field
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog->isHidden());
    EXPECT_TRUE(b.fenster().isVisible());
    QTest::qWait(400);
    EXPECT_TRUE(dialog->isHidden()) << "does not come back by itself";

    // The next showing is the same dialog as it was: what it found is demoted no more.
    b.waehle(b.mitglieder(), {u"A"_s});
    b.klicke(u"cmdHauptkontakt"_s);
    b.suche(u"Beta"_s);
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(liste->count(), 2);
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()),
                ElementsAre(u"A, 3, D2/X"_s, u"B, 2, D2/X"_s, u"C, 2, D2/X"_s, u"D, 3, D2/X"_s));
    EXPECT_EQ(b.knoepfe(), u"--F"_s);
}

TEST(Mehrdeutig, StaysInFrontAndGoesWithTheProgram)
{
    Gefunden b({person(u"A"_s, u"H"_s, u"D2/X"_s), person(u"B"_s, u"H"_s, u"D2/X"_s)});
    QDialog *dialog = b.mehrdeutig();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->windowHandle()->transientParent(), b.fenster().windowHandle());
    dialog->showMinimized();
    EXPECT_TRUE(QTest::qWaitFor([dialog] { return dialog->isVisible(); })) << "it comes back by itself";
    b.klicke(u"cmdAbbruch"_s);
    EXPECT_TRUE(dialog->isHidden());
    QTest::qWait(400);
    EXPECT_TRUE(dialog->isHidden());
}

TEST(Entfernen, FollowsIconAndGroup)
{
    const QStringList nichts;
    // clang-format off
    struct Row { const char *name; std::vector<Person> personen; QStringList dazu; QStringList auswahl;
        QStringList treffer; QStringList mitglieder; QStringList boxen; QStringList aufrufe; QString knoepfe; };
    const Person A = person(u"A"_s), AN = person(u"A"_s, u"N"_s, u"D1/M"_s), AH = person(u"A"_s, u"H"_s, u"D1/M"_s);
    const Person B = person(u"B"_s), C = person(u"C"_s), BN = person(u"B"_s, u"N"_s, u"D1/M"_s);
    const Person AS = person(u"A"_s, u"N"_s, u"-/M"_s), BS = person(u"B"_s, u"N"_s, u"-/M"_s);
    const Row rows[] = {
        {"nothing selected",          {A, B},     {u"B"_s}, {},         {},              {u"A, 1"_s, u"B, 1"_s}, {},
         {}, u"H--"_s},
        {"the only unknown one",      {A},        {},       {u"A"_s},   {},              {u"A, 1"_s},
         {u"Es gibt nur noch den einen Unbekannten-Kontakt !"_s}, {}, u"H--"_s},
        {"the only secondary one",    {AN},       {},       {u"A"_s},   {},              {u"A, 2, D1/M"_s},
         {u"Es gibt nur noch den einen Neben-Kontakt !"_s}, {}, u"H--"_s},
        {"an unknown one",            {A, B},     {u"B"_s}, {u"B"_s},   {u"B, 1"_s},     {u"A, 1"_s}, {}, {}, u"H--"_s},
        {"a secondary one",           {AH, BN},   {},       {u"B"_s},   {u"B, 1"_s},     {u"A, 3, D1/M"_s},
         {bleibtErhalten}, geloescht(u"B"_s), u"---"_s},
        {"the main contact of two",   {AH, BN},   {},       {u"A"_s},   {u"A, 1"_s},     {u"B, 2, D1/M"_s},
         {bleibtErhalten}, geloescht(u"A"_s), u"H--"_s},
        {"number is a dash",          {AS, BS},   {},       {u"B"_s},   {u"B, 1"_s},     {u"A, 2, -/M"_s}, {}, {},
         u"H--"_s},
        {"no number is no dash",      {person(u"A"_s, u"N"_s), B}, {u"B"_s}, {u"B"_s}, {u"B, 1"_s}, {u"A, 2"_s},
         {bleibtErhalten}, geloescht(u"B"_s), u"H--"_s},
        {"of two neighbours the first", {A, B, C}, {u"B"_s, u"C"_s}, {u"A"_s, u"B"_s}, {u"A, 1"_s}, {u"B, 1"_s,
         u"C, 1"_s}, {}, {}, u"H--"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Gefunden b(row.personen);
        b.uebernimm(row.dazu);
        b.treffer().clear();
        b.entferne(row.auswahl);
        EXPECT_EQ(Buehne::inhalt(b.treffer()), row.treffer);
        EXPECT_EQ(Buehne::inhalt(b.mitglieder()), row.mitglieder);
        EXPECT_EQ(b.tisch.boxTexts(), row.boxen);
        EXPECT_EQ(b.act.calls, row.aufrufe);
        EXPECT_EQ(b.knoepfe(), row.knoepfe);
        EXPECT_FALSE(b.haupt().beendet());
    }
    Gefunden b({A, B, C});
    b.uebernimm({u"B"_s, u"C"_s});
    b.entferne({u"A"_s, u"B"_s});
    EXPECT_TRUE(b.mitglieder().istGewaehlt(1)) << "the neighbour stays selected";
}

TEST(Entfernen, OfTheOnlyMainContactEndsTheProgram)
{
    Gefunden b({person(u"A"_s, u"H"_s, u"D1/M"_s)});
    b.entferne({u"A"_s});
    EXPECT_EQ(b.act.calls, geloescht(u"A"_s) + QStringList{u"Resize(800, 600)"_s});
    EXPECT_TRUE(b.haupt().beendet());
    EXPECT_TRUE(b.fenster().isHidden());
}

TEST(Hauptkontakt, IsTheFirstSelectedMember)
{
    Gefunden b({person(u"A"_s), person(u"B"_s), person(u"C"_s, {}, {}, u"Alpha Drei"_s)});
    b.uebernimm({u"B"_s, u"C"_s});
    b.klicke(u"cmdHauptkontakt"_s);
    EXPECT_THAT(b.tisch.boxTexts(), ElementsAre(u"Bitte wählen Sie zuvor einen Kontakt an."_s));
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"A, 1"_s, u"B, 1"_s, u"C, 1"_s));
    b.waehle(b.mitglieder(), {u"B"_s, u"C"_s});
    b.klicke(u"cmdHauptkontakt"_s);
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"A, 2"_s, u"B, 3"_s, u"C, 2"_s));
    EXPECT_EQ(b.knoepfe(), u"-T-"_s);
    EXPECT_EQ(b.mitglieder().Item(2).data(0, Qt::AccessibleTextRole), u"Alpha Werke, Hauptkontakt"_s);

    b.finde<QLineEdit>(u"tbFirma"_s).setText(u"Alpha & Töchter"_s);
    b.klicke(u"cmdFirmaAngleichen"_s);
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(b.mitglieder().Item(i).text(0), u"Alpha & Töchter"_s);
        EXPECT_EQ(b.mitglieder().Item(i).text(1), u"Alpha & Töchter"_s);
    }
    EXPECT_EQ(b.mitglieder().Item(2).data(0, Qt::AccessibleTextRole), u"Alpha & Töchter, Hauptkontakt"_s);
}
