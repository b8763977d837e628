// The ways on from the window: transfer, write-back, information and the end; and all of it by keyboard.
#include <gmock/gmock.h>

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>
#include <QTimer>

#include "tests/groupeditor/Buehne.h"
#include "transfer/frmUebertragung.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

TEST(Fertig, WritesMemberByMemberInOrder)
{
    Buehne b(u"A H D1/M; B - - Alpha Nord");
    b.zeige();
    b.suche(u"Alpha");
    b.uebernimm(u"B");
    b.act.calls.clear();
    QStringList staende;
    b.tisch.onYield = [&] { staende += QString::number(b.haupt().Status().ProgressBar1()); };
    b.act.handsBack = [](qint16 &id) { id = static_cast<qint16>(id == 60 ? 160 : id); };
    b.klicke(u"cmdFertig");
    EXPECT_EQ(b.act.calls.join(u'\n').toStdString(),
              "LookupALL()\n"
              "LookupALL()\ncreateLookup(A)\nSetField(2, Alpha Werke)\n"
              "SetField(60, D1)\nSetField(61, M)\nSetField(62, H)\n"
              "LookupALL()\ncreateLookup(B)\nSetField(2, Alpha Nord)\n"
              "SetField(160, D1)\nSetField(61, M)\nSetField(62, N)\n"
              "Resize(800, 600)");
    EXPECT_THAT(staende, ElementsAre(u"0"_s, u"50"_s, u"100"_s));
    EXPECT_EQ(b.haupt().Status().lbStatus(), u"Daten werden nach ACT! geschrieben ..."_s);
    EXPECT_TRUE(b.haupt().Status().isHidden() && b.fenster().isHidden() && b.haupt().beendet());
    EXPECT_THAT(b.tisch.boxTexts(), IsEmpty());
}

TEST(Fertig, SkipsMembersWithoutNumberOrClientAndShowsAnErrorOfAct)
{
    Buehne b(u"A; B - D5/; C - D1/M");
    b.zeige();
    b.suche(u"Alpha");
    b.uebernimm(u"B C"); // all unknown: they keep their own numbers
    b.macheHauptkontakt(u"A");
    b.act.failure = [](const QString &aufruf) { return aufruf.startsWith(u"SetField(62"_s) ? 462 : 0; };
    b.klicke(u"cmdFertig");
    EXPECT_THAT(b.act.callsOf(u"createLookup"_s), ElementsAre(u"createLookup(C)"_s));
    EXPECT_EQ(b.act.callsOf(u"SetField"_s).join(u' '),
              u"SetField(2, Alpha Werke) SetField(60, D1) SetField(61, M) SetField(62, N)"_s);
    EXPECT_TRUE(b.tisch.boxTexts().last().startsWith(u"Fehler: 462:"_s));
    EXPECT_TRUE(b.haupt().Status().isHidden() && b.haupt().beendet());
}

TEST(Transfer, HandsTheGroupOverAndHidesTheWindow)
{
    Buehne b(u"A; B; C - - Alpha Süd");
    beispiel::erzeugeMandant(b.engine(), b.ordner() + u"/Muster.PCK"_s);
    b.zeige();
    b.suche(u"Alpha");
    b.uebernimm(u"B C");
    b.macheHauptkontakt(u"C");
    b.act.calls.clear();
    b.klicke(u"cmdTransfer");
    EXPECT_TRUE(b.fenster().isHidden());
    const auto *dialog = b.dialog<frmÜbertragung>();
    ASSERT_TRUE(dialog);
    EXPECT_TRUE(dialog->isVisible() && !dialog->isModal());
    EXPECT_THAT(b.act.callsOf(u"SetField"_s), IsEmpty());

    QStringList mitglieder;
    for (const KontaktPtr &eines : b.haupt().Mitglieder)
        mitglieder += QStringList{eines->UniqueID, eines->Typ, eines->Daten(u"Nachname"_s), eines->Daten(u"Firma"_s)};
    EXPECT_EQ(mitglieder.join(u' '), u"A N Name A Alpha Werke B N Name B Alpha Werke C H Name C Alpha Süd"_s);
    EXPECT_EQ(b.haupt().HauptIndex, 3);
}

TEST(Transfer, AgainTakesTheGroupAsItIsNowButNotFromUnderATransfer)
{
    Buehne b(u"A");
    beispiel::erzeugeMandant(b.engine(), b.ordner() + u"/Muster.PCK"_s);
    b.zeige();
    const auto namen = [&b] {
        QStringList zeilen;
        auto *liste = b.dialog<frmÜbertragung>()->findChild<QListWidget *>(u"lbxNamen"_s);
        for (int i = 0; i < liste->count(); ++i)
            zeilen += liste->item(i)->text();
        return zeilen.join(u'|');
    };
    b.macheHauptkontakt(u"A");
    b.klicke(u"cmdTransfer");
    EXPECT_EQ(namen(), u"Name A"_s);

    b.fenster().show(); // as the dialog of several main contacts does
    b.suche(u"Zeta");
    b.uebernimm(u"Z");
    b.klicke(u"cmdTransfer");
    EXPECT_TRUE(b.fenster().isHidden());
    EXPECT_EQ(namen(), u"Name A|Name Z"_s);

    auto &dialog = *b.dialog<frmÜbertragung>();
    dialog.findChild<QComboBox *>(u"cbxMandant"_s)->setCurrentIndex(1);
    b.tisch.onYield = [&] { // in the midst of it
        b.tisch.onYield = nullptr;
        b.fenster().show();
        b.entferne(u"Z");
        b.klicke(u"cmdTransfer");
        EXPECT_EQ(&dialog, b.dialog<frmÜbertragung>());
        EXPECT_EQ(b.haupt().AnzahlMitglieder(), 2);
    };
    b.act.calls.clear();
    QTest::mouseClick(dialog.findChild<QPushButton *>(u"cmdEintragen"_s), Qt::LeftButton);
    EXPECT_EQ(b.act.calls.filter(u"SetField(60, D000000)"_s).size(), 2) << "both members of the dialog's group";
    EXPECT_THAT(beispiel::zeilen(b.engine(), b.ordner() + u"/Muster.PCK"_s, u"SELECT * FROM sPersKom"_s),
                testing::SizeIs(2 + 4))
        << "the entries of each once";
    EXPECT_TRUE(b.haupt().beendet());
}

TEST(Info, ShowsItsLinesEvenIfActSaysNothing)
{
    Buehne b(u"A");
    b.zeige();
    QString text;
    QTimer::singleShot(0, &b.fenster(), [&] {
        text = b.haupt().InfoStart().txbInfo();
        EXPECT_TRUE(b.haupt().InfoStart().isVisible());
        b.haupt().InfoStart().hide();
    });
    b.klicke(u"cmdInfo");
    EXPECT_EQ(text,
              u"VELDRAK für PC-Kaufmann\nACT!-Version: 6.0.4\nDatenbank: %1\nUser: Petra Sommer, Administrator\n"
              "PCK-Pfad: %2"_s.arg(b.act.databasePath, b.haupt().konfiguration.PckPfad));
    EXPECT_TRUE(b.fenster().isVisible());
}

TEST(Ende, WritesNothing)
{
    const std::function<void(Buehne &)> wege[] = {
        [](Buehne &b) { b.klicke(u"cmdAbbruch"); },
        [](Buehne &b) { b.fenster().close(); },
    };
    for (const auto &geheWeg : wege) {
        SCOPED_TRACE(&geheWeg - wege);
        Buehne b(u"A H D1/M; B N D1/M");
        b.zeige();
        b.suche(u"Alpha");
        b.act.calls.clear();
        QTest::keyClick(&b.finde<QLineEdit>(u"tbSuche"), Qt::Key_Escape);
        EXPECT_TRUE(b.fenster().isVisible()) << "Esc is no end";
        geheWeg(b);
        EXPECT_THAT(b.act.calls, ElementsAre(u"Resize(800, 600)"_s));
        EXPECT_TRUE(b.haupt().beendet() && b.fenster().isHidden());
    }
}

TEST(Tastatur, DoesTheWholeWorkAndReachesEverything)
{
    Buehne b(u"A; B; C; D; E; F");
    b.zeige();
    const auto taste = [&b](Qt::Key key, Qt::KeyboardModifiers dazu = Qt::NoModifier) {
        QApplication::setActiveWindow(&b.fenster()); // this platform gives a new window the focus, whatever it wants
        QTest::keyClick(QApplication::focusWidget(), key, dazu);
    };
    QApplication::setActiveWindow(&b.fenster());
    QTest::keyClicks(QApplication::focusWidget(), u"a Werke"_s); // extends the given beginning
    EXPECT_EQ(b.finde<QLineEdit>(u"tbSuche").text(), u"Alpha Werke"_s);
    taste(Qt::Key_Return);
    ASSERT_EQ(Buehne::ids(b.treffer()), u"B C D E F"_s);
    EXPECT_THAT(b.tisch.boxTexts(), IsEmpty()) << "searched once";

    taste(Qt::Key_Tab);
    taste(Qt::Key_Tab);
    EXPECT_TRUE(b.treffer().hasFocus());
    EXPECT_TRUE(b.treffer().istGewaehlt(1) && !b.treffer().istGewaehlt(2)) << "what has the focus is selected";
    taste(Qt::Key_Down, Qt::ShiftModifier);
    taste(Qt::Key_Return); // adopts what is selected
    EXPECT_EQ(Buehne::ids(b.mitglieder()), u"A B C"_s);
    EXPECT_EQ(Buehne::ids(b.treffer()), u"D E F"_s);
    EXPECT_TRUE(b.treffer().istGewaehlt(1) && !b.treffer().istGewaehlt(2)) << "and so is the next one";
    QKeyEvent gehalten(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
    QApplication::sendEvent(&b.treffer(), &gehalten);
    EXPECT_EQ(b.treffer().Anzahl(), 3) << "a key that is held down adopts no more";
    taste(Qt::Key_Down);
    taste(Qt::Key_N, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&b] { return Buehne::ids(b.mitglieder()) == u"A B C E"_s; }));
    EXPECT_TRUE(QTest::qWaitFor([&b] { return b.treffer().istGewaehlt(2); })) << "F has moved up";
    b.entferne(u"E");

    b.mitglieder().setFocus();
    taste(Qt::Key_End);
    taste(Qt::Key_Space);
    taste(Qt::Key_H, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&b] { return b.knoepfe() == u"-T-"_s; }));
    EXPECT_EQ(Buehne::inhalt(b.mitglieder()), u"A 2, B 2, C 3"_s);
    ASSERT_TRUE(b.fenster().focusWidget());
    EXPECT_TRUE(b.fenster().focusWidget()->isVisible()) << "the focus does not go with the button";
    taste(Qt::Key_E, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([&b] { return Buehne::ids(b.mitglieder()) == u"A B"_s; }));
    taste(Qt::Key_R, Qt::AltModifier);
    EXPECT_TRUE(b.finde<QLineEdit>(u"tbFirma").hasFocus());
    taste(Qt::Key_B, Qt::AltModifier);
    EXPECT_TRUE(b.finde<QLineEdit>(u"tbSuche").hasFocus());

    QString reihenfolge; // that of the work
    for (int i = 0; i < 11; ++i) {
        reihenfolge += QApplication::focusWidget()->objectName() + u' ';
        taste(Qt::Key_Tab);
    }
    EXPECT_EQ(reihenfolge,
              u"tbSuche cmdSuchen lvSuchergebnis cmdÜbernehmen cmdEntfernen cmdHauptkontakt lvMitglieder tbFirma "
              "cmdFirmaAngleichen cmdInfo cmdAbbruch "_s);
}
