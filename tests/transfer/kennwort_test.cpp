// Protected clients: the password dialog, and what the transfer dialog shows without access.
#include "tests/transfer/TransferTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class Kennwort : public TransferTest
{
protected:
    void SetUp() override { beispiel::erzeugeMandant(*m_engine, mandant(u"Geheim.PCK"_s), u"Sesam"_s); }
};

TEST_F(Kennwort, IsAskedOnceAndRemembered)
{
    zeige();
    m_kennwoerter = {u"falsch"_s, u"Sesam"_s};
    liste(u"cbxMandant").setCurrentIndex(1);
    EXPECT_THAT(m_gefragt, ElementsAre(u"Geheim.PCK"_s, u"Geheim.PCK"_s));
    EXPECT_EQ(nummer(), u"D000000"_s);
    liste(u"cbxMandant").setCurrentIndex(2);
    liste(u"cbxMandant").setCurrentIndex(1);
    EXPECT_THAT(m_gefragt, SizeIs(2));
}

TEST_F(Kennwort, RefusedGivesNoAccess)
{
    gemerkt(u"Mandant"_s) = u"1"_s;
    zeige();
    EXPECT_THAT(m_gefragt, SizeIs(1)) << "for the whole loading";
    EXPECT_EQ(zeilenVon(liste(u"cbxPreisliste")), u"Keine|Kein Zugriff !"_s);
    EXPECT_EQ(liste(u"cbxPreisliste").currentIndex(), 0);
    EXPECT_EQ(zeilenVon(liste(u"cbxWaehrung")), u"Kein Zugriff !"_s);
    EXPECT_EQ(liste(u"cbxWaehrung").currentIndex(), 0);
    EXPECT_EQ(nummer(), u"Kein Zugriff !"_s);

    klicke(u"cmdNummer");
    EXPECT_TRUE(feld(u"txbNummer").isHidden()) << "there is nothing to change";
    eintragen();
    EXPECT_THAT(m_tisch.boxTexts(),
                ElementsAre(u"Bitte Wählen Sie einen Mandanten aus der Mandantenliste aus.\r\n"
                            "Falls dort keine Mandanten angezeit werden kontrollieren Sie in der\r\n"
                            "Konfiguration von VELDRAK den Pfad zu Ihren PCK-Daten.\r\n"
                            "Aktueller Pfad: %1/"_s.arg(m_ordner.path())));
    EXPECT_EQ(m_tisch.boxes[0].icon, desktop::Icon::Critical);
    EXPECT_EQ(gemerkt(u"Typ"_s), QString());
    EXPECT_THAT(m_act.calls, IsEmpty());

    liste(u"cbxTyp").setCurrentIndex(2); // a new selection, a new question
    EXPECT_THAT(m_gefragt, SizeIs(2));
    liste(u"cbxMandant").setCurrentIndex(2);
    EXPECT_EQ(nummer(), u"M000000"_s);
    liste(u"cbxMandant").setCurrentIndex(1); // both lists and the number
    EXPECT_THAT(m_gefragt, SizeIs(3));
    EXPECT_EQ(nummer(), u"Kein Zugriff !"_s);
    m_kennwoerter = {u"Sesam"_s};
    liste(u"cbxTyp").setCurrentIndex(0);
    EXPECT_EQ(nummer(), u"D000000"_s);
}

TEST_F(Kennwort, RefusedForAGroupWithAnAccountWritesNothing)
{
    std::vector<beispiel::Person> personen = beispiel::firmengruppe();
    personen[0].nummer = u"D000077"_s;
    personen[0].mandant = u"Muster.PCK"_s;
    gemerkt(u"Mandant"_s) = u"2"_s;
    zeige(personen);
    ASSERT_TRUE(QFile::remove(mandant()) && QFile::copy(mandant(u"Geheim.PCK"_s), mandant()));
    eintragen();
    EXPECT_THAT(m_gefragt, ElementsAre(u"Muster.PCK"_s));
    EXPECT_TRUE(m_tisch.boxTexts().join(u'|').startsWith(u"Bitte Wählen Sie einen Mandanten"_s));
    EXPECT_THAT(m_act.calls, IsEmpty());
    EXPECT_EQ(gemerkt(u"Typ"_s), QString());

    m_kennwoerter = {u"Sesam"_s};
    eintragen();
    EXPECT_THAT(m_act.callsOf(u"SetField"_s), SizeIs(4 * 15));
}

TEST_F(Kennwort, DialogRejectsAnEmptyPasswordAndTellsHowItWasLeft)
{
    zeige();
    frmMandantenpasswort frage(*m_haupt, nullptr);
    frage.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&frage));
    auto &eingabe = *frage.findChild<QLineEdit *>(u"txbPassword"_s);
    EXPECT_EQ(eingabe.echoMode(), QLineEdit::Password);
    QTest::mouseClick(frage.findChild<QPushButton *>(u"cmdOK"_s), Qt::LeftButton);
    ASSERT_THAT(m_tisch.boxTexts(), ElementsAre(u"Ungültiges Kennwort. Bitte versuchen Sie es noch einmal!"_s));
    EXPECT_EQ(m_tisch.boxes[0].title, u"Anmeldung"_s);
    EXPECT_EQ(m_tisch.boxes[0].icon, desktop::Icon::None);
    EXPECT_TRUE(frage.isVisible() && eingabe.hasFocus());
    frage.hide();

    for (const QString &kennwort : {u"a"_s, u""_s, u" "_s}) {
        m_kennwoerter = {kennwort};
        frage.zeige(u"Alt.PCK"_s);
        EXPECT_EQ(frage.flagKennwortAbbruch, kennwort.isEmpty());
        EXPECT_EQ(frage.Kennwort(), kennwort);
    }
    QTimer::singleShot(0, &frage, [&] {
        m_tisch.boxes.clear();
        QTest::mouseClick(frage.findChild<QPushButton *>(u"cmdAbbruch"_s), Qt::LeftButton);
    });
    m_kennwoerter = {u"zu spät"_s};
    frage.zeige(u"Alt.PCK"_s);
    EXPECT_THAT(m_tisch.boxTexts(), IsEmpty());

    QTimer::singleShot(0, &frage, [&] {
        m_haupt->ausgefuehrt([this] { m_haupt->SofortEnde(); });
        frage.hide();
    });
    EXPECT_THROW(frage.zeige(u"Alt.PCK"_s), ProgrammBeendet) << "nothing goes on when the program ends meanwhile";
}
