// The number box, the checks while typing, and the keyboard.
#include <QLocale>
#include <QWheelEvent>

#include "tests/transfer/TransferTest.h"

using namespace Qt::StringLiterals;
using testing::IsEmpty;

class Eingaben : public TransferTest
{
protected:
    void SetUp() override { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void TearDown() override { QLocale::setDefault(QLocale::system()); }

    void tippe(QStringView name, const QString &text)
    {
        feld(name).setFocus();
        feld(name).selectAll();
        if (text.isEmpty())
            QTest::keyClick(&feld(name), Qt::Key_Delete);
        else
            QTest::keyClicks(&feld(name), text);
    }
    bool gibtNummerEin() { return !feld(u"txbNummer").isHidden(); }
};

TEST_F(Eingaben, NumberIsOnlyTheLowerBoundOfTheProposal)
{
    // clang-format off
    struct Row { const char *name; QString text; bool angenommen; QStringView nummer; };
    const Row rows[] = {
        {"free",               u"500"_s,     true,  u"D000500"},
        {"taken",              u"7"_s,       true,  u"D000010"},
        {"blanks around",      u" 77 "_s,    true,  u"D000077"},
        {"six digits",         u"123456"_s,  true,  u"D123456"},
        {"nothing",            u""_s,        true,  u"D000000"},
        {"seven digits",       u"1234567"_s, false, u"D"},
        {"a letter",           u"12a"_s,     false, u"D"},
        {"a sign",             u"-5"_s,      false, u"D"},
    };
    // clang-format on
    beispiel::fuegeKontenHinzu(*m_engine, mandant(), {u"D000007"_s, u"D000009"_s});
    zeigeMitMandant();
    EXPECT_FALSE(gibtNummerEin());
    EXPECT_EQ(finde<QPushButton>(u"cmdNummer").text(), u"Än&dern"_s);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        if (!gibtNummerEin())
            klicke(u"cmdNummer");
        EXPECT_EQ(nummer(), u"D"_s);
        EXPECT_FALSE(finde<QPushButton>(u"cmdEintragen").isEnabled());
        EXPECT_EQ(finde<QPushButton>(u"cmdNummer").text(), u"Übernehmen"_s);
        EXPECT_TRUE(feld(u"txbNummer").hasFocus());
        EXPECT_TRUE(feld(u"txbNummer").text().isEmpty());
        QTest::keyClicks(&feld(u"txbNummer"), row.text);
        QTest::keyClick(&feld(u"txbNummer"), Qt::Key_Return);
        EXPECT_EQ(nummer(), row.nummer);
        EXPECT_EQ(gibtNummerEin(), !row.angenommen);
        EXPECT_EQ(finde<QPushButton>(u"cmdEintragen").isEnabled(), row.angenommen);
        EXPECT_EQ(finde<QPushButton>(u"cmdNummer").text(), row.angenommen ? u"Ändern"_s : u"Übernehmen"_s);
        EXPECT_EQ(m_tisch.boxTexts(),
                  row.angenommen ? QStringList() : QStringList{u"Bitte geben Sie maximal 6 Zahlen ein !"_s});
    }
    EXPECT_THAT(m_act.calls, IsEmpty()) << "Enter does not reach the default button";
}

TEST_F(Eingaben, LeavingTheNumberBoxLandsOnItsButton)
{
    zeigeMitMandant();
    klicke(u"cmdNummer");
    QTest::mouseClick(&feld(u"txbRabatt"), Qt::LeftButton);
    EXPECT_TRUE(finde<QPushButton>(u"cmdNummer").hasFocus());
    liste(u"cbxTyp").setCurrentIndex(1);
    EXPECT_EQ(nummer(), u"K000000"_s) << "the proposal follows";
    EXPECT_TRUE(gibtNummerEin()) << "but the number is still being entered";
    klicke(u"cmdNummer");
    EXPECT_FALSE(gibtNummerEin());
}

TEST_F(Eingaben, DiscountAndCountryCodeAreCheckedWithEachKey)
{
    const QStringView rabatt = u"txbRabatt", code = u"txbLaendercode";
    const QString meldungen[] = {u"Bitte geben Sie eine Zahl zwischen 0,00 und 100,00 ein."_s,
                                 u"Bitte geben Sie eine Ländervorwahl zwischen 1 und 999 ein."_s};
    // clang-format off
    struct Row { const char *name; QStringView feld; QString getippt; QStringView text; int meldungen; };
    const Row rows[] = {
        {"with a comma",         rabatt, u"12,5"_s,  u"12,5",  0},
        {"the largest",          rabatt, u"100"_s,   u"100",   0},
        {"nothing off",          rabatt, u"0"_s,     u"0",     0},
        {"a little too large",   rabatt, u"100,5"_s, u"0,00",  1},
        {"a point is no comma",  rabatt, u"1.5"_s,   u"0,005", 1},
        {"negative",             rabatt, u"-"_s,     u"0,00",  1},
        {"a letter",             rabatt, u"x"_s,     u"0,00",  1},
        {"deleted",              rabatt, u""_s,      u"0,00",  1},
        {"three digits",         code,   u"423"_s,   u"423",   0},
        {"smallest",             code,   u"1"_s,     u"1",     0},
        {"leading number",       code,   u"4,9"_s,   u"4,9",   0},
        {"too large",            code,   u"1000"_s,  u"49",    1},
        {"zero",                 code,   u"0"_s,     u"49",    1},
        {"no digit",             code,   u"D"_s,     u"49",    1},
        {"empty",                code,   u""_s,      u"",      0},
    };
    // clang-format on
    zeigeMitMandant();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        tippe(row.feld, row.getippt);
        EXPECT_EQ(feld(row.feld).text(), row.text);
        EXPECT_EQ(m_tisch.boxTexts(), QStringList(row.meldungen, meldungen[row.feld == code]));
    }
}

TEST_F(Eingaben, EscapeTakesTheNumberBackAndEndsNothing)
{
    beispiel::fuegeKontenHinzu(*m_engine, mandant(), {u"D000007"_s});
    zeigeMitMandant();
    const auto escape = [this] { QTest::keyClick(dialog().focusWidget(), Qt::Key_Escape); };
    const auto beginne = [this] {
        klicke(u"cmdNummer");
        QTest::keyClicks(&feld(u"txbNummer"), u"500"_s);
    };
    escape();
    ASSERT_TRUE(dialog().isVisible());
    klicke(u"cmdNummer");
    QTest::keyClicks(&feld(u"txbNummer"), u"77"_s);
    klicke(u"cmdNummer");
    ASSERT_EQ(nummer(), u"D000077"_s);

    beginne();
    escape();
    EXPECT_EQ(nummer(), u"D000077"_s) << "not a new proposal";
    EXPECT_FALSE(gibtNummerEin());
    EXPECT_TRUE(finde<QPushButton>(u"cmdEintragen").isEnabled() && feld(u"txbNummer").text().isEmpty());
    EXPECT_EQ(finde<QPushButton>(u"cmdNummer").text(), u"Ändern"_s);

    beginne();
    liste(u"cbxTyp").setCurrentIndex(1);
    escape();
    EXPECT_EQ(nummer(), u"K000000"_s) << "that of the type that is selected now";
    EXPECT_FALSE(gibtNummerEin());

    dialog().close();
    EXPECT_TRUE(dialog().isHidden() && m_haupt->beendet() && m_tisch.quitCalled);
    EXPECT_EQ(m_act.calls.last(), u"Resize(800, 600)"_s);
}

TEST_F(Eingaben, EnterPressesOnlyTheButtonThatHasTheFocus)
{
    zeige(); // without a client "Eintragen" answers with a box
    for (const QString &name : {u"cbxMandant"_s, u"lbxNamen"_s, u"cbxTyp"_s, u"txbRabatt"_s, u"txbLaendercode"_s,
                                u"cmdNummer"_s, u"cmdEintragen"_s}) {
        SCOPED_TRACE(name.toStdString());
        finde<QWidget>(name).setFocus();
        QTest::keyClick(&finde<QWidget>(name), Qt::Key_Return);
        EXPECT_EQ(m_tisch.boxes.size(), name == u"cmdEintragen" ? 1U : 0U);
    }
}

TEST_F(Eingaben, TheWheelTurnsNoListWithoutTheFocus)
{
    zeigeMitMandant();
    QComboBox &typ = liste(u"cbxTyp");
    const auto drehe = [&typ] {
        const QPointF ort = typ.rect().center();
        QWheelEvent rad(ort, typ.mapToGlobal(ort), {}, {0, -120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                        false);
        QApplication::sendEvent(&typ, &rad);
    };
    drehe();
    EXPECT_EQ(typ.currentIndex(), 0);
    EXPECT_FALSE(typ.hasFocus());
    typ.setFocus();
    drehe();
    EXPECT_EQ(typ.currentIndex(), 1);
}

TEST_F(Eingaben, TabVisitsTheControlsInReadingOrder)
{
    zeigeMitMandant();
    QString reihenfolge;
    for (int i = 0; i < 10; ++i) {
        reihenfolge += dialog().focusWidget()->objectName() + u' ';
        QTest::keyClick(dialog().focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(reihenfolge,
              u"cbxMandant lbxNamen cbxTyp cmdNummer cbxPreisliste cbxWaehrung txbRabatt txbLaendercode cmdEintragen "
              "cmdAbbruch "_s);
}
