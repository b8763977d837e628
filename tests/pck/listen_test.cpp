// Price lists, price groups and currencies of a client, and what each makes of missing rows and tables.
#include "tests/pck/PckTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using Listen = PckTest;

TEST_F(Listen, OfPricesAreCountedAndReadByIndex)
{
    oeffneNeuen();
    EXPECT_EQ(m_pck.Anzahl_Preislisten(), QVariant(2));
    EXPECT_EQ(m_pck.Preisliste(0), u"14 - Messepreise"_s);
    EXPECT_EQ(m_pck.Preisliste(1), u"17 - Mitarbeiter"_s);
    EXPECT_EQ(m_pck.Preisliste(2), u""_s);
    EXPECT_EQ(m_pck.Preisgruppe(3), u"Großhandel"_s);
    EXPECT_EQ(m_engine.protokoll[0], u"Select SchlbezTyp FROM sSchlbez WHERE SchlbezTyp = 20"_s);
    EXPECT_EQ(fehlernummer([this] { m_pck.Preisgruppe(4); }), 3061) << "a column that is not there";

    fuehreAus({u"DELETE FROM sSchlbez"_s, u"DELETE FROM SABFKons"_s});
    EXPECT_EQ(m_pck.Anzahl_Preislisten(), QVariant(0));
    EXPECT_EQ(m_pck.Preisliste(0), u""_s);
    EXPECT_EQ(m_pck.Preisgruppe(1), u"Keine"_s);
    EXPECT_THAT(m_tisch.boxTexts(), IsEmpty());
}

TEST_F(Listen, OfCurrenciesShowTheirOwnErrors)
{
    const QString zuGross = u"Fehler in Klasse clPCK, Modul Waehrung\r\nFehlerbeschreibung: Index ist zu groß"_s;
    const QString falsch = u"Fehler in Klasse clPCK, Modul Waehrung\r\nFehlerbeschreibung: Index ist falsch"_s;
    oeffneNeuen();
    EXPECT_EQ(m_pck.Anzahl_Waehrungen(), QVariant(4));
    EXPECT_EQ(m_pck.Waehrung(0), u"3 - Deutsche Mark"_s);
    EXPECT_EQ(m_pck.Waehrung(3), u"9 - Schweizer Franken"_s);
    EXPECT_EQ(m_pck.Waehrung(4), u"0 - Fehler!"_s);
    EXPECT_EQ(m_pck.Waehrung(-1), u"0 - Fehler!"_s);
    fuehreAus({u"DELETE FROM Waehrung"_s});
    EXPECT_EQ(m_pck.Anzahl_Waehrungen(), QVariant(0));
    EXPECT_EQ(m_pck.Waehrung(0), u"0 - Fehler!"_s) << "and no box";
    EXPECT_THAT(neueBoxen(), ElementsAre(zuGross, falsch));

    fuehreAus({u"DROP TABLE Waehrung"_s});
    EXPECT_EQ(m_pck.Anzahl_Waehrungen(), QVariant());
    EXPECT_EQ(m_pck.Waehrung(0), u"0 - Fehler!"_s);
    ASSERT_EQ(m_tisch.boxes.size(), 2U);
    EXPECT_EQ(m_tisch.boxes[1].icon, desktop::Icon::Exclamation);
}

TEST_F(Listen, AreEmptyWithoutAnOpenClient)
{
    EXPECT_EQ(m_pck.Anzahl_Preislisten(), QVariant());
    EXPECT_EQ(m_pck.Preisliste(0), u""_s);
    EXPECT_EQ(m_pck.Preisgruppe(1), u""_s);
    EXPECT_EQ(m_pck.Anzahl_Waehrungen(), QVariant());
    EXPECT_EQ(m_pck.Waehrung(0), u""_s);
    EXPECT_EQ(m_tisch.boxTexts(), QStringList(5, u"Kein Mandant geöffnet!"_s));
}
