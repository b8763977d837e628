// Price lists, price groups and currencies of a client, and what each makes of missing rows and tables.
#include "tests/pck/PckTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class Listen : public PckTest
{ };

TEST_F(Listen, OfPricesAreCountedAndReadByIndex)
{
    oeffneNeuen();
    EXPECT_EQ(m_pck.Anzahl_Preislisten(), QVariant(2));
    EXPECT_EQ(m_pck.Preisliste(0), u"4 - Messepreise"_s);
    EXPECT_EQ(m_pck.Preisliste(1), u"5 - Mitarbeiter"_s);
    EXPECT_EQ(m_pck.Preisliste(2), u""_s);
    EXPECT_EQ(m_pck.Preisgruppe(3), u"Großhandel"_s);
    EXPECT_THAT(m_engine.protokoll.mid(0, 2),
                ElementsAre(u"Select SchlbezTyp FROM sSchlbez WHERE SchlbezTyp = 20"_s,
                            u"Select SchlbezNr,SchlbezBez FROM sSchlbez WHERE SchlbezTyp = 20"_s));
    EXPECT_EQ(m_engine.protokoll.last(), u"Select FKAbfPreisGrp3 FROM SABFKons"_s);
    EXPECT_EQ(fehlernummer([this] { m_pck.Preisgruppe(4); }), 3061) << "a column that is not there";

    beispiel::fuehreAus(m_engine.dahinter(), m_mandant, {u"DELETE FROM sSchlbez"_s, u"DELETE FROM SABFKons"_s});
    EXPECT_EQ(m_pck.Anzahl_Preislisten(), QVariant(0));
    EXPECT_EQ(m_pck.Preisliste(0), u""_s);
    EXPECT_EQ(m_pck.Preisgruppe(1), u"Keine"_s);
    EXPECT_THAT(m_tisch.boxTexts(), IsEmpty());

    beispiel::fuehreAus(m_engine.dahinter(), m_mandant, {u"DROP TABLE sSchlbez"_s});
    EXPECT_EQ(fehlernummer([this] { m_pck.Anzahl_Preislisten(); }), 3078);
    EXPECT_EQ(fehlernummer([this] { m_pck.Preisliste(0); }), 3078);
}

TEST_F(Listen, OfCurrenciesShowTheirOwnErrors)
{
    const QString zuGross = u"Fehler in Klasse clPCK, Modul Waehrung\r\nFehlerbeschreibung: Index ist zu groß"_s;
    const QString falsch = u"Fehler in Klasse clPCK, Modul Waehrung\r\nFehlerbeschreibung: Index ist falsch"_s;
    // clang-format off
    struct Row { const char *name; QString vorher; qint16 index; int anzahl; QString waehrung; QStringList boxen; };
    const Row rows[] = {
        {"first by number",  {},                          0,  4, u"0 - Deutsche Mark"_s,     {}},
        {"last by number",   {},                          3,  4, u"3 - Schweizer Franken"_s, {}},
        {"one too large",    {},                          4,  4, u"0 - Fehler!"_s,           {zuGross}},
        {"negative",         {},                          -1, 4, u"0 - Fehler!"_s,           {falsch}},
        {"empty table",      u"DELETE FROM Waehrung"_s,   0,  0, u"0 - Fehler!"_s,           {}},
    };
    // clang-format on
    oeffneNeuen();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        if (!row.vorher.isEmpty())
            beispiel::fuehreAus(m_engine.dahinter(), m_mandant, {row.vorher});
        EXPECT_EQ(m_pck.Anzahl_Waehrungen(), QVariant(row.anzahl));
        EXPECT_EQ(m_pck.Waehrung(row.index), row.waehrung);
        EXPECT_EQ(m_tisch.boxTexts(), row.boxen);
    }
    EXPECT_THAT(m_engine.protokoll.mid(0, 2),
                ElementsAre(u"Select * FROM Waehrung"_s, u"Select WhrgNr,WhrgName FROM Waehrung ORDER BY WhrgNr"_s));

    beispiel::fuehreAus(m_engine.dahinter(), m_mandant, {u"DROP TABLE Waehrung"_s});
    EXPECT_EQ(m_pck.Anzahl_Waehrungen(), QVariant());
    EXPECT_EQ(m_pck.Waehrung(0), u"0 - Fehler!"_s);
    ASSERT_EQ(m_tisch.boxes.size(), 2U);
    EXPECT_TRUE(m_tisch.boxes[0].text.startsWith(
        u"Fehler in Klasse clPCK, Modul Anzahl_Waehrungen\r\nFehlernummer:3078\r\nFehlerbeschreibung:"_s));
    EXPECT_TRUE(m_tisch.boxes[1].text.startsWith(
        u"Fehler in Klasse clPCK, Modul Waehrung\r\nFehlernummer:3078\r\nFehlerbeschreibung:"_s));
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
