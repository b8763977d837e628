// Finding clients, their passwords, opening and closing.
#include "tests/pck/PckTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class Mandanten : public PckTest
{
protected:
    void SetUp() override
    {
        beispiel::erzeugeMandant(m_engine.dahinter(), m_ordner.filePath(u"Alt.PCK"_s));
        beispiel::erzeugeMandant(m_engine.dahinter(), m_ordner.filePath(u"Geheim.PCK"_s), u"Sesam"_s);
        beispiel::schreibe(m_ordner.filePath(u"Kaputt.PCK"_s), QByteArray(5000, 'x'));
        EXPECT_TRUE(m_pck.init(m_ordner.path() + u'/'));
    }
    bool offen()
    {
        m_tisch.boxes.clear();
        m_pck.Anzahl_Preislisten();
        return m_tisch.boxes.empty();
    }
};

TEST_F(Mandanten, AreTheFilesOfTheFolder)
{
    EXPECT_EQ(m_pck.PckAnzahl(), 3);
    EXPECT_EQ(m_pck.Mandanten(0), u"Alt.PCK"_s);
    EXPECT_EQ(m_pck.Mandanten(2), u"Kaputt.PCK"_s);
    EXPECT_EQ(fehlernummer([this] { m_pck.Mandanten(3); }), 9);
    EXPECT_EQ(fehlernummer([this] { m_pck.Mandanten(-1); }), 9);

    const QTemporaryDir leer;
    EXPECT_FALSE(m_pck.init(leer.path() + u'/'));
    EXPECT_EQ(m_pck.PckAnzahl(), 0);
    EXPECT_EQ(m_pck.Mandanten(0), u"Alt.PCK"_s) << "the names stay";
}

TEST_F(Mandanten, PasswordTestDiffersByNameAndByIndex)
{
    // clang-format off
    using Ergebnis = std::optional<bool>;
    struct Row { const char *name; QVariant mandant; QString kennwort; Ergebnis ergebnis; bool offen; int fehler; };
    const Row rows[] = {
        {"by name, none needed",       u"Alt.PCK"_s,    u""_s,      true,         true,  0},
        {"by name, right",             u"Geheim.PCK"_s, u"Sesam"_s, true,         true,  0},
        {"by name, wrong",             u"Geheim.PCK"_s, u"sesam"_s, false,        false, 0},
        {"by name, no such file",      u"Neu.PCK"_s,    u""_s,      std::nullopt, false, 3024},
        {"by name, no database",       u"Kaputt.PCK"_s, u""_s,      std::nullopt, false, 3343},
        {"by index, right",            1,               u"Sesam"_s, true,         false, 0},
        {"by index, wrong",            1,               u""_s,      std::nullopt, false, 3031},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        std::optional<bool> ergebnis;
        m_programm.regulaerBeendet = false;
        try {
            ergebnis = m_pck.test_Passwort(row.mandant, row.kennwort);
        } catch (const ProgrammBeendet &) {
            EXPECT_TRUE(m_tisch.boxTexts().join(u'|').startsWith(u"Fehler !\r\n%1:"_s.arg(row.fehler)));
        }
        EXPECT_EQ(ergebnis, row.ergebnis);
        EXPECT_EQ(m_programm.regulaerBeendet, !row.ergebnis.has_value());
        EXPECT_EQ(offen(), row.offen);
        m_pck.close_Mandant();
        m_tisch.boxes.clear();
    }
    EXPECT_EQ(fehlernummer([this] { m_pck.test_Passwort(3, {}); }), 9);
}

TEST_F(Mandanten, AreOpenedByNameOrIndexAndAskForThePasswordOnce)
{
    QVariant mandant = 0;
    EXPECT_TRUE(m_pck.open_Mandant(mandant) && m_pck.istOffen());
    mandant = u"Geheim.PCK"_s;
    EXPECT_FALSE(m_pck.open_Mandant(mandant)) << "the user gives up";
    EXPECT_FALSE(m_pck.istOffen() || offen()) << "nor is the one that was open";
    m_tisch.boxes.clear();
    EXPECT_EQ(m_pck.NeueNummer(1, u"D"_s, 0), u"Kein Zugriff !"_s);
    m_abfrage.gefragt.clear();
    m_abfrage.antworten = {u"falsch"_s, u"Sesam"_s};
    EXPECT_TRUE(m_pck.open_Mandant(mandant));
    EXPECT_EQ(mandant, QVariant(1));
    EXPECT_EQ(m_abfrage.gefragt, QStringList(2, u"Geheim.PCK"_s));
    m_pck.close_Mandant();
    EXPECT_TRUE(m_pck.open_Mandant(mandant)) << "by index, with the remembered password";
    EXPECT_EQ(m_abfrage.gefragt.size(), 2);
    EXPECT_TRUE(offen());

    mandant = u"Fremd.PCK"_s;
    EXPECT_EQ(fehlernummer([&] { m_pck.open_Mandant(mandant); }), 9);
    EXPECT_TRUE(m_tisch.boxes.empty());
}

TEST_F(Mandanten, ShareOneWorkspaceUntilTheyAreClosed)
{
    QVariant mandant = 0;
    m_pck.open_Mandant(mandant);
    m_pck.close_Mandant();
    m_pck.close_Mandant();
    m_pck.open_Mandant(mandant);
    m_pck.test_Passwort(1, u"Sesam"_s);
    const QString alt = u"OpenDatabase(Alt.PCK, ;DATABASE=Alt.PCK;PWD=)"_s;
    EXPECT_THAT(m_engine.protokoll,
                ElementsAre(u"CreateWorkspace(TEST)"_s, alt, alt, u"Close(TEST)"_s, u"CreateWorkspace(TEST)"_s, alt,
                            alt, u"OpenDatabase(Geheim.PCK, ;DATABASE=Geheim.PCK;PWD=Sesam)"_s));
}
