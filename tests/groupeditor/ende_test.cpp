// The ways on from the window: transfer, write-back, information and the end; and all of it by keyboard.
#include <gmock/gmock.h>

#include <QApplication>
#include <QFile>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTest>
#include <QTimer>

#include "tests/groupeditor/Buehne.h"
#include "transfer/frmUebertragung.h"

using namespace Qt::StringLiterals;
using beispiel::Person;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

const Person fremder = person(u"Z"_s, {}, {}, u"Zeta Handel"_s);

frmÜbertragung *transferdialog()
{
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (auto *dialog = dynamic_cast<frmÜbertragung *>(widget))
            return dialog;
    }
    return nullptr;
}

} // namespace

TEST(Fertig, WritesMemberByMemberInOrder)
{
    Buehne b({person(u"A"_s, u"H"_s, u"D1/M"_s), person(u"B"_s, {}, {}, u"Alpha Nord"_s), fremder});
    b.zeige();
    b.suche(u"Alpha"_s);
    b.uebernimm({u"B"_s});
    b.act.calls.clear();
    QStringList staende;
    b.tisch.onYield = [&] { staende += QString::number(b.haupt().Status().ProgressBar1()); };
    b.klicke(u"cmdFertig"_s);
    EXPECT_EQ(b.act.calls.join(u'\n').toStdString(),
              u"LookupALL()\n"
              "LookupALL()\ncreateLookup(A)\nSetField(2, Alpha Werke)\n"
              "SetField(60, D1)\nSetField(61, M)\nSetField(62, H)\n"
              "LookupALL()\ncreateLookup(B)\nSetField(2, Alpha Nord)\n"
              "SetField(60, D1)\nSetField(61, M)\nSetField(62, N)\n"
              "Resize(800, 600)"_s.toStdString());
    EXPECT_THAT(staende, ElementsAre(u"0"_s, u"50"_s, u"100"_s));
    EXPECT_EQ(b.haupt().Status().lbStatus(), u"Daten werden nach ACT! geschrieben ..."_s);
    EXPECT_TRUE(b.haupt().Status().isHidden());
    EXPECT_TRUE(b.haupt().beendet());
    EXPECT_TRUE(b.fenster().isHidden());
    EXPECT_THAT(b.tisch.boxTexts(), IsEmpty());
}

TEST(Fertig, SkipsMembersWithoutNumberOrClient)
{
    Buehne b({person(u"A"_s), person(u"B"_s, {}, u"D5/"_s), person(u"C"_s, {}, u"D1/M"_s), fremder});
    b.zeige();
    b.suche(u"Alpha"_s);
    b.uebernimm({u"B"_s, u"C"_s}); // all unknown: they keep their own numbers
    b.waehle(b.mitglieder(), {u"A"_s});
    b.finde<QPushButton>(u"cmdHauptkontakt"_s).click();
    ASSERT_EQ(b.knoepfe(), u"--F"_s);
    b.klicke(u"cmdFertig"_s);
    EXPECT_THAT(b.act.callsOf(u"createLookup"_s), ElementsAre(u"createLookup(C)"_s));
    EXPECT_THAT(
        b.act.callsOf(u"SetField"_s),
        ElementsAre(u"SetField(2, Alpha Werke)"_s, u"SetField(60, D1)"_s, u"SetField(61, M)"_s, u"SetField(62, N)"_s));
}

TEST(Fertig, AnErrorOfActIsShownAndEndsTheProgram)
{
    Buehne b({person(u"A"_s, u"H"_s, u"D1/M"_s), person(u"B"_s, u"N"_s, u"D1/M"_s), fremder});
    b.zeige();
    b.suche(u"Alpha"_s);
    b.act.failure = [](const QString &aufruf) { return aufruf.startsWith(u"SetField(60"_s) ? 462 : 0; };
    b.klicke(u"cmdFertig"_s);
    ASSERT_EQ(b.tisch.boxes.size(), 1U);
    EXPECT_THAT(b.tisch.boxes[0].text.toStdString(), testing::StartsWith("Fehler: 462:"));
    EXPECT_TRUE(b.haupt().beendet());
    EXPECT_TRUE(b.haupt().Status().isHidden());
}

TEST(Transfer, HandsTheGroupOverAndHidesTheWindow)
{
    Buehne b({person(u"A"_s), person(u"B"_s), person(u"C"_s, {}, {}, u"Alpha Süd"_s), fremder});
    b.erzeugeMandant(u"Muster.PCK"_s);
    b.zeige();
    b.suche(u"Alpha"_s);
    b.uebernimm({u"B"_s, u"C"_s});
    b.waehle(b.mitglieder(), {u"C"_s});
    b.klicke(u"cmdHauptkontakt"_s);
    b.act.calls.clear();
    b.klicke(u"cmdTransfer"_s);
    EXPECT_TRUE(b.fenster().isHidden());
    ASSERT_TRUE(transferdialog());
    EXPECT_TRUE(transferdialog()->isVisible());
    EXPECT_FALSE(transferdialog()->isModal());
    EXPECT_THAT(b.act.callsOf(u"SetField"_s), IsEmpty());

    const auto &mitglieder = b.haupt().Mitglieder;
    ASSERT_EQ(b.haupt().AnzahlMitglieder(), 3);
    EXPECT_EQ(b.haupt().HauptIndex, 3);
    EXPECT_EQ(mitglieder[0]->UniqueID + mitglieder[1]->UniqueID + mitglieder[2]->UniqueID, u"ABC"_s);
    EXPECT_EQ(mitglieder[0]->Typ + mitglieder[1]->Typ + mitglieder[2]->Typ, u"NNH"_s);
    EXPECT_EQ(mitglieder[2]->Daten(u"Firma"_s), u"Alpha Süd"_s);
    EXPECT_EQ(mitglieder[1]->Daten(u"Nachname"_s), u"Name B"_s);
}

TEST(Info, ShowsItsLinesEvenIfActSaysNothing)
{
    Buehne b({person(u"A"_s)});
    b.zeige();
    QString text;
    QTimer::singleShot(0, &b.fenster(), [&] {
        text = b.haupt().InfoStart().txbInfo();
        EXPECT_TRUE(b.haupt().InfoStart().isVisible());
        b.haupt().InfoStart().hide();
    });
    b.klicke(u"cmdInfo"_s);
    EXPECT_EQ(text.toStdString(),
              u"VELDRAK für PC-Kaufmann\nACT!-Version: 6.0.4\nDatenbank: %1\nUser: Petra Sommer, Administrator\n"
              "PCK-Pfad: %2"_s.arg(b.tabelle(), b.haupt().konfiguration.PckPfad)
                  .toStdString());
    EXPECT_TRUE(b.fenster().isVisible());
}

TEST(Ende, WritesNothing)
{
    for (const QString &weg : {u"button"_s, u"Esc"_s, u"window"_s}) {
        SCOPED_TRACE(weg.toStdString());
        Buehne b({person(u"A"_s, u"H"_s, u"D1/M"_s), person(u"B"_s, u"N"_s, u"D1/M"_s), fremder});
        b.zeige();
        b.suche(u"Alpha"_s);
        b.act.calls.clear();
        if (weg == u"button")
            b.klicke(u"cmdAbbruch"_s);
        else if (weg == u"Esc")
            QTest::keyClick(&b.finde<QLineEdit>(u"tbSuche"_s), Qt::Key_Escape);
        else
            b.fenster().close();
        EXPECT_THAT(b.act.calls, ElementsAre(u"Resize(800, 600)"_s));
        EXPECT_TRUE(b.haupt().beendet());
        EXPECT_TRUE(b.fenster().isHidden());
    }
}

TEST(Tastatur, ReachesEverythingInTheOrderOfTheWork)
{
    Buehne b({person(u"A"_s), person(u"B"_s), fremder});
    b.zeige();
    QApplication::setActiveWindow(&b.fenster());
    QStringList reihenfolge;
    for (int i = 0; i < 20 && !reihenfolge.contains(QApplication::focusWidget()->objectName()); ++i) {
        reihenfolge += QApplication::focusWidget()->objectName();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_THAT(reihenfolge,
                ElementsAre(u"tbSuche"_s, u"cmdSuchen"_s, u"lvSuchergebnis"_s, u"cmdÜbernehmen"_s, u"cmdEntfernen"_s,
                            u"cmdHauptkontakt"_s, u"lvMitglieder"_s, u"tbFirma"_s, u"cmdFirmaAngleichen"_s,
                            u"cmdInfo"_s, u"cmdAbbruch"_s));
}

TEST(Tastatur, DoesTheWholeWork)
{
    Buehne b({person(u"A"_s), person(u"B"_s), person(u"C"_s), fremder});
    b.zeige();
    QApplication::setActiveWindow(&b.fenster());
    const auto taste = [&b](Qt::Key key, Qt::KeyboardModifiers dazu = Qt::NoModifier) {
        QApplication::setActiveWindow(&b.fenster()); // this platform gives a new window the focus, whatever it wants
        QTest::keyClick(QApplication::focusWidget(), key, dazu);
    };
    QTest::keyClicks(QApplication::focusWidget(), u"a Werke"_s); // extends the given beginning
    EXPECT_EQ(b.finde<QLineEdit>(u"tbSuche"_s).text(), u"Alpha Werke"_s);
    taste(Qt::Key_Return);
    ASSERT_THAT(Buehne::ids(b.treffer()), ElementsAre(u"B"_s, u"C"_s));
    EXPECT_THAT(b.tisch.boxTexts(), IsEmpty()) << "searched once";

    taste(Qt::Key_Tab);
    taste(Qt::Key_Tab);
    EXPECT_TRUE(b.treffer().hasFocus());
    EXPECT_TRUE(b.treffer().currentItem()) << "there is a focus to see";
    taste(Qt::Key_Home);
    taste(Qt::Key_Down, Qt::ShiftModifier);
    taste(Qt::Key_Return); // adopts what is selected
    EXPECT_THAT(Buehne::ids(b.mitglieder()), ElementsAre(u"A"_s, u"B"_s, u"C"_s));

    b.mitglieder().setFocus();
    taste(Qt::Key_End);
    taste(Qt::Key_Space);
    taste(Qt::Key_H, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&b] { return b.knoepfe() == u"-T-"_s; }));
    EXPECT_THAT(Buehne::inhalt(b.mitglieder()), ElementsAre(u"A, 2"_s, u"B, 2"_s, u"C, 3"_s));
    ASSERT_TRUE(b.fenster().focusWidget());
    EXPECT_TRUE(b.fenster().focusWidget()->isVisible()) << "the focus does not go with the button";
    taste(Qt::Key_E, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&b] { return Buehne::ids(b.mitglieder()) == QStringList{u"A"_s, u"B"_s}; }));
    taste(Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(b.finde<QLineEdit>(u"tbFirma"_s).hasFocus());
    taste(Qt::Key_B, Qt::AltModifier);
    EXPECT_TRUE(b.finde<QLineEdit>(u"tbSuche"_s).hasFocus());
}
