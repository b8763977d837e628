// The group: adopting, taking over, giving back, roles and company names.
#include <gmock/gmock.h>

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QProxyStyle>
#include <QTest>
#include <QWindow>

#include "tests/groupeditor/Buehne.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A window that has found all people of the company.
struct Gefunden : Buehne {
    explicit Gefunden(QStringView personen)
        : Buehne(personen)
    {
        zeige();
        suche(u"Alpha");
        act.calls.clear();
        tisch.boxes.clear();
    }
};

/// Counts how often a window comes to the front.
struct Gehoben : QObject {
    explicit Gehoben(QObject &fenster) { fenster.installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *ereignis) override
    {
        anzahl += ereignis->type() == QEvent::ZOrderChange;
        return false;
    }
    int anzahl = 0;
};

QStringList geloescht(const QString &id)
{
    return {u"LookupALL()"_s, u"createLookup(%1)"_s.arg(id), u"SetField(60, )"_s, u"SetField(61, )"_s,
            u"SetField(62, )"_s};
}

} // namespace

TEST(Uebernehmen, FollowsIconAndGroup)
{
    // clang-format off
    struct Row {
        const char *name; QStringView personen, auswahl, treffer, mitglieder, knoepfe, firma = u"Alpha Werke";
    };
    const Row rows[] = {
        {"nothing selected", u"A; B", u"", u"B 1", u"A 1", u"H--"},
        {"unknown to unknown", u"A; B; C", u"B", u"C 1", u"A 1, B 1", u"H--"},
        {"unknown to a main contact", u"A H D1/M; B - D9/X", u"B", u"", u"A 3 D1/M, B 2 D1/M", u"--F"},
        {"unknown to a secondary contact", u"A N D1/M; B - D9/X", u"B", u"", u"A 2 D1/M, B 2 D1/M", u"H--"},
        {"several, neighbours too", u"A H D1/M; B; C; B - D9/X", u"B C", u"",
         u"A 3 D1/M, B 2 D1/M, C 2 D1/M, B 2 D1/M", u"--F"},
        {"secondary takes the group over", u"A; B; C N D2/X; D N D2/X; E N D3/X", u"C", u"B 1",
         u"A 2 D2/X, C 2 D2/X, D 2 D2/X", u"H--"},
        {"main takes the group over", u"A; B - - Alpha Nord; C H D2/X Alpha Haus; D N D2/X; E N D3/X", u"C", u"B 1",
         u"A 2 D2/X, C 3 D2/X, D 2 D2/X", u"--F", u"Alpha Haus"},
        {"the new search finds the main contact", u"A; B N D2/X; C H D2/X Alphorn", u"B", u"",
         u"A 2 D2/X, B 2 D2/X, C 3 D2/X", u"--F", u"Alphorn"},
        {"a group without an account takes all", u"A; B; C N", u"C", u"", u"A 2, B 2, C 2", u"H--"},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Gefunden b(row.personen);
        b.finde<QLineEdit>(u"tbSuche").setText(u"Zeta"_s); // what stands there does not count
        b.uebernimm(row.auswahl);
        EXPECT_EQ(Buehne::inhalt(b.treffer()), row.treffer);
        EXPECT_EQ(Buehne::inhalt(b.mitglieder()), row.mitglieder);
        EXPECT_THAT(b.tisch.boxTexts(), IsEmpty());
        EXPECT_EQ(b.knoepfe(), row.knoepfe);
        EXPECT_EQ(b.finde<QLineEdit>(u"tbFirma").text(), row.firma);
        EXPECT_THAT(b.act.callsOf(u"SetField"_s), IsEmpty());
        EXPECT_FALSE(b.mehrdeutig());
    }
}

// Found before there was a main contact: that is how such an item comes into the list.
TEST(Uebernehmen, RefusesASecondMainContact)
{
    Gefunden b(u"A; B H D2/X; C");
    b.macheHauptkontakt(u"A");
    b.uebernimm(u"B C");
    EXPECT_THAT(b.tisch.boxTexts(), ElementsAre(u"Es gibt schon einen Hauptkontakt !"_s));
    EXPECT_EQ(Buehne::inhalt(b.treffer()), u"B 3 D2/X"_s);
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 3, C 2"_s);
}

// The reference member has no account, the last one has.
TEST(Uebernehmen, TakesTheFirstMemberForTheGroup)
{
    Gefunden b(u"A; B; C - D1/M; D; E N D1/M; F - D1/M");
    b.uebernimm(u"B C"); // all unknown: they keep their own accounts
    b.macheHauptkontakt(u"B");
    b.suche(u"Alpha");
    EXPECT_EQ(Buehne::inhalt(b.treffer()), u"D 1, F 1 D1/M"_s);
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 2, B 3, C 2 D1/M"_s) << "without the last one's account";
    b.uebernimm(u"D");
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 2, B 3, C 2 D1/M, D 2"_s);

    b.entferne(u"B");
    b.entferne(u"D");
    b.treffer().setzeIcon(b.treffer().Item(1), KontaktListe::Haupt);
    b.uebernimm(u"F"); // takes over, and draws those who have the first one's account, none
    EXPECT_EQ(Buehne::inhalt(b.treffer()), u"F 1 D1/M"_s);
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 2, C 2 D1/M, B 2, D 2"_s);
}

TEST(Uebernehmen, LooksAtASecondaryContactAgainUntilItIsDeselected)
{
    Gefunden b(u"A; B N D2/X; C");
    b.macheHauptkontakt(u"A");
    b.tisch.yields = 0;
    const auto verfuegbar = [&b] {
        QStringList namen;
        for (const QPushButton *knopf : b.fenster().findChildren<QPushButton *>()) {
            if (knopf->isEnabled())
                namen += knopf->objectName();
        }
        return namen.join(u' ');
    };
    const QString vorher = verfuegbar();
    b.tisch.onYield = [&] {
        EXPECT_EQ(verfuegbar(), u"cmdAbbruch"_s) << "what does nothing does not look as if it did";
        Q_EMIT b.treffer().itemDoubleClicked(&b.treffer().Item(2), 0); // does nothing while the command runs
        if (b.tisch.yields == 5)
            b.waehle(b.treffer(), u"C");
    };
    b.uebernimm(u"B C");
    EXPECT_EQ(b.tisch.yields, 5);
    EXPECT_EQ(Buehne::inhalt(b.treffer()), u"B 2 D2/X"_s);
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 3, C 2"_s) << "then it goes on";
    EXPECT_EQ(verfuegbar(), vorher);
}

TEST(Uebernehmen, SelectsNothingByItselfMeanwhile)
{
    Gefunden b(u"A; B N D2/X; C");
    b.macheHauptkontakt(u"A");
    b.treffer().setFocus();
    b.tisch.onYield = [&b] {
        ASSERT_EQ(b.tisch.yields, 1) << "taken again, though the user has deselected it";
        b.treffer().clearSelection();
        b.finde<QLineEdit>(u"tbSuche").setFocus();
        b.treffer().setFocus(Qt::TabFocusReason);
    };
    b.tisch.yields = 0;
    b.uebernimm(u"B");
    EXPECT_EQ(b.tisch.yields, 1);
    EXPECT_EQ(Buehne::inhalt(b.treffer()), u"B 2 D2/X, C 1"_s);
    EXPECT_TRUE(b.treffer().istGewaehlt(1)) << "afterwards what the keyboard is on is selected";
}

TEST(Uebernehmen, TakesADoubleClickAlsoWhereOneClickActivates)
{
    struct EinKlick : QProxyStyle {
        int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                      QStyleHintReturn *data) const override
        {
            return hint == SH_ItemView_ActivateItemOnSingleClick ? 1
                                                                 : QProxyStyle::styleHint(hint, option, widget, data);
        }
    } stil;
    Gefunden b(u"A; B; C");
    b.treffer().setStyle(&stil);
    const QPoint ort = b.treffer().visualItemRect(&b.treffer().Item(1)).topLeft() + QPoint(60, 5);
    QTest::mouseClick(b.treffer().viewport(), Qt::LeftButton, {}, ort);
    EXPECT_EQ(Buehne::ids(b.mitglieder()), u"A"_s);
    EXPECT_TRUE(b.treffer().istGewaehlt(1));
    QTest::mouseDClick(b.treffer().viewport(), Qt::LeftButton, {}, ort);
    EXPECT_EQ(Buehne::ids(b.mitglieder()), u"A B"_s);
    b.treffer().setStyle(nullptr);
}

TEST(Uebernehmen, EndsWithTheProgramMeanwhile)
{
    Gefunden b(u"A N D2/X; B; C");
    b.uebernimm(u"B");
    b.entferne(u"A");
    b.treffer().setzeIcon(b.treffer().Item(1), KontaktListe::Neben);
    b.tisch.onYield = [&b] { b.klicke(u"cmdAbbruch"); };
    b.uebernimm(u"C");
    EXPECT_TRUE(b.haupt().beendet() && b.fenster().isHidden());
    EXPECT_THAT(b.act.callsOf(u"Resize"_s), ElementsAre(u"Resize(800, 600)"_s));
}

TEST(Uebernehmen, ReportsAWrongIcon)
{
    Gefunden b(u"A; B");
    b.treffer().setzeIcon(b.treffer().Item(1), 4);
    b.tisch.onYield = [&b] { b.treffer().clearSelection(); };
    b.uebernimm(u"B");
    EXPECT_THAT(b.tisch.boxTexts(), ElementsAre(u"ERROR: Falscher Icon-Index!"_s));
    EXPECT_EQ(Buehne::ids(b.mitglieder()), u"A"_s);
}

TEST(Mehrdeutig, DemotesAllMainContactsOnceARun)
{
    Gefunden b(u"A; B H D2/X Alpha Nord; C H D2/X Alpha Süd; D H D2/X Beta");
    b.uebernimm(u"B");
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 2 D2/X, B 2 D2/X, C 2 D2/X"_s);
    EXPECT_EQ(b.knoepfe(), u"H--"_s);
    QDialog *dialog = b.mehrdeutig();
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog->isVisible() && !dialog->isModal());
    EXPECT_EQ(dialog->windowHandle()->transientParent(), b.fenster().windowHandle()) << "stays in front";
    EXPECT_EQ(dialog->windowTitle(), u"MORVANE - Zuviel Hauptkontakte"_s);
    EXPECT_EQ(dialog->findChild<QLabel *>(u"lbFirma"_s)->text(), u"Alpha Süd"_s);
    const auto *liste = dialog->findChild<QListWidget *>(u"lstKontakte"_s);
    ASSERT_EQ(liste->count(), 2);
    EXPECT_EQ(liste->item(0)->text(), u"Alpha Nord"_s); // the first mapped field
    Gehoben gehoben(*dialog);
    EXPECT_TRUE(QTest::qWaitFor([&gehoben] { return gehoben.anzahl > 0; })) << "by itself";
    QTest::keyClick(dialog, Qt::Key_Escape);
    EXPECT_TRUE(dialog->isHidden() && b.fenster().isVisible());
    QTest::qWait(400);
    EXPECT_TRUE(dialog->isHidden()) << "does not come back by itself";

    // The next showing is the same dialog as it was: what it found is demoted no more.
    b.macheHauptkontakt(u"A");
    b.suche(u"Beta");
    EXPECT_TRUE(dialog->isVisible());
    EXPECT_EQ(liste->count(), 2);
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 3 D2/X, B 2 D2/X, C 2 D2/X, D 3 D2/X"_s);
    EXPECT_EQ(b.knoepfe(), u"--F"_s);

    dialog->showMinimized();
    EXPECT_TRUE(QTest::qWaitFor([dialog] { return dialog->isVisible() && !dialog->isMinimized(); }))
        << "it comes back by itself";
    QMessageBox box;
    box.open();
    gehoben.anzahl = 0;
    QTest::qWait(700);
    EXPECT_EQ(gehoben.anzahl, 0) << "it does not come in front of a box";
    box.close();
    EXPECT_TRUE(QTest::qWaitFor([&gehoben] { return gehoben.anzahl > 0; }));
    b.klicke(u"cmdAbbruch");
    EXPECT_TRUE(dialog->isHidden()) << "goes with the program";
}

TEST(Entfernen, FollowsIconAndGroup)
{
    const QStringView erhalten = u"Die Firma bzw. der Ansprechpartner bleiben im PC-Kaufmann erhalten !";
    const QStringView unbekannter = u"Es gibt nur noch den einen Unbekannten-Kontakt !";
    const QStringView neben = u"Es gibt nur noch den einen Neben-Kontakt !";
    // Contacts that lose their account in ACT! are those of whom the box says that they stay in PC-Kaufmann.
    // clang-format off
    struct Row { const char *name; QStringView personen, dazu, auswahl, treffer, mitglieder, box, knoepfe; };
    const Row rows[] = {
        {"nothing selected",            u"A; B",               u"B",   u"",    u"",    u"A 1, B 1", u"", u"H--"},
        {"the only unknown one",        u"A",                  u"",    u"A",   u"",    u"A 1", unbekannter, u"H--"},
        {"the only secondary one",      u"A N D1/M",           u"",    u"A",   u"",    u"A 2 D1/M", neben, u"H--"},
        {"an unknown one",              u"A; B",               u"B",   u"B",   u"B 1", u"A 1", u"", u"H--"},
        {"a secondary one",             u"A H D1/M; B N D1/M", u"",    u"B",   u"B 1", u"A 3 D1/M", erhalten, u"---"},
        {"the main contact of two",     u"A H D1/M; B N D1/M", u"",    u"A",   u"A 1", u"B 2 D1/M", erhalten, u"H--"},
        {"number is a dash",            u"A N -/M; B N -/M",   u"",    u"B",   u"B 1", u"A 2 -/M", u"", u"H--"},
        {"no number is no dash",        u"A N; B",             u"B",   u"B",   u"B 1", u"A 2", erhalten, u"H--"},
        {"of two neighbours the first", u"A; B; C",            u"B C", u"A B", u"A 1", u"B 1, C 1", u"", u"H--"},
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
        EXPECT_EQ(b.tisch.boxTexts().join(u'|'), row.box);
        EXPECT_EQ(b.act.calls, row.box == erhalten ? geloescht(row.auswahl.toString()) : QStringList());
        EXPECT_EQ(b.knoepfe(), row.knoepfe);
        EXPECT_FALSE(b.haupt().beendet() || b.haupt().Status().isVisible());
        EXPECT_TRUE(row.auswahl != u"A B" || b.mitglieder().istGewaehlt(1)) << "the neighbour stays selected";
    }
    Gefunden b(u"A H D1/M");
    b.tisch.onBox = [&b](const desktop::Box &) { EXPECT_TRUE(b.haupt().Status().isVisible()); };
    b.entferne(u"A");
    EXPECT_EQ(b.haupt().Status().lbStatus(), u"PCK-Daten werden in ACT! gelöscht ..."_s);
    EXPECT_EQ(b.act.calls, geloescht(u"A"_s) + QStringList{u"Resize(800, 600)"_s});
    EXPECT_TRUE(b.haupt().beendet() && b.fenster().isHidden()) << "nobody is left";
}

TEST(Hauptkontakt, IsTheFirstSelectedMember)
{
    Gefunden b(u"A; B; C - - Alpha Drei");
    b.uebernimm(u"B C");
    b.klicke(u"cmdHauptkontakt");
    EXPECT_THAT(b.tisch.boxTexts(), ElementsAre(u"Bitte wählen Sie zuvor einen Kontakt an."_s));
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 1, B 1, C 1"_s);
    b.macheHauptkontakt(u"B C");
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 2, B 3, C 2"_s);
    EXPECT_EQ(b.knoepfe(), u"-T-"_s);
    EXPECT_EQ(b.mitglieder().Item(2).data(0, Qt::AccessibleTextRole), u"Alpha Werke, Hauptkontakt"_s);

    b.finde<QLineEdit>(u"tbFirma").setText(u"Alpha & Töchter"_s);
    b.klicke(u"cmdFirmaAngleichen");
    for (int i = 1; i <= 3; ++i) {
        EXPECT_EQ(b.mitglieder().Item(i).text(0), u"Alpha & Töchter"_s);
        EXPECT_EQ(b.mitglieder().Item(i).text(1), u"Alpha & Töchter"_s);
    }
    EXPECT_EQ(b.mitglieder().Item(2).data(0, Qt::AccessibleTextRole), u"Alpha & Töchter, Hauptkontakt"_s);
}
