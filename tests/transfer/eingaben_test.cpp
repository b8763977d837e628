// The number box, the checks while typing, and the keyboard.
#include <QLocale>

#include "tests/transfer/TransferTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class Eingaben : public TransferTest
{
protected:
    void SetUp() override { QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany)); }
    void TearDown() override { QLocale::setDefault(QLocale::system()); }

    void tippe(const char16_t *name, const QString &text)
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
    struct Row { const char *name; QString text; bool angenommen; QString nummer; };
    const Row rows[] = {
        {"free",               u"500"_s,     true,  u"D000500"_s},
        {"taken",              u"7"_s,       true,  u"D000010"_s},
        {"blanks around",      u" 77 "_s,    true,  u"D000077"_s},
        {"six digits",         u"123456"_s,  true,  u"D123456"_s},
        {"nothing",            u""_s,        true,  u"D000000"_s},
        {"seven digits",       u"1234567"_s, false, u"D"_s},
        {"a letter",           u"12a"_s,     false, u"D"_s},
        {"a sign",             u"-5"_s,      false, u"D"_s},
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

TEST_F(Eingaben, DiscountIsCheckedWithEachKey)
{
    const QString meldung = u"Bitte geben Sie eine Zahl zwischen 0,00 und 100,00 ein."_s;
    // clang-format off
    struct Row { const char *name; QString getippt; QString text; int meldungen; };
    const Row rows[] = {
        {"with a comma",          u"12,5"_s,  u"12,5"_s,  0},
        {"the largest",           u"100"_s,   u"100"_s,   0},
        {"nothing off",           u"0"_s,     u"0"_s,     0},
        {"a little too large",    u"100,5"_s, u"0,00"_s,  1},
        {"a point is no comma",   u"1.5"_s,   u"0,005"_s, 1},
        {"negative",              u"-"_s,     u"0,00"_s,  1},
        {"a letter",              u"x"_s,     u"0,00"_s,  1},
        {"deleted",               u""_s,      u"0,00"_s,  1},
    };
    // clang-format on
    zeigeMitMandant();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        tippe(u"txbRabatt", row.getippt);
        EXPECT_EQ(feld(u"txbRabatt").text(), row.text);
        EXPECT_EQ(m_tisch.boxTexts(), QStringList(row.meldungen, meldung));
    }
}

TEST_F(Eingaben, CountryCodeIsCheckedWithEachKey)
{
    const QString meldung = u"Bitte geben Sie eine Ländervorwahl zwischen 1 und 999 ein."_s;
    // clang-format off
    struct Row { const char *name; QString getippt; QString text; int meldungen; };
    const Row rows[] = {
        {"three digits",   u"423"_s,  u"423"_s, 0},
        {"smallest",       u"1"_s,    u"1"_s,   0},
        {"leading number", u"4,9"_s,  u"4,9"_s, 0},
        {"too large",      u"1000"_s, u"49"_s,  1},
        {"zero",           u"0"_s,    u"49"_s,  1},
        {"a letter",       u"D"_s,    u"49"_s,  1},
        {"deleted",        u""_s,     u""_s,    0},
    };
    // clang-format on
    zeigeMitMandant();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        tippe(u"txbLaendercode", row.getippt);
        EXPECT_EQ(feld(u"txbLaendercode").text(), row.text);
        EXPECT_EQ(m_tisch.boxTexts(), QStringList(row.meldungen, meldung));
    }
}

TEST_F(Eingaben, EscapeAndClosingEndTheProgram)
{
    for (const bool taste : {true, false}) {
        m_tisch.quitCalled = false;
        zeigeMitMandant();
        if (taste)
            QTest::keyClick(&dialog(), Qt::Key_Escape);
        else
            dialog().close();
        EXPECT_TRUE(dialog().isHidden());
        EXPECT_TRUE(m_haupt->beendet());
        EXPECT_TRUE(m_tisch.quitCalled);
        EXPECT_EQ(m_act.calls.last(), u"Resize(800, 600)"_s);
    }
}

TEST_F(Eingaben, TabVisitsTheControlsInReadingOrder)
{
    zeigeMitMandant();
    QStringList reihenfolge;
    for (int i = 0; i < 10; ++i) {
        reihenfolge += dialog().focusWidget()->objectName();
        QTest::keyClick(dialog().focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(reihenfolge,
              (QStringList{u"cbxMandant"_s, u"lbxNamen"_s, u"cbxTyp"_s, u"cmdNummer"_s, u"cbxPreisliste"_s,
                           u"cbxWaehrung"_s, u"txbRabatt"_s, u"txbLaendercode"_s, u"cmdEintragen"_s, u"cmdAbbruch"_s}));
}
