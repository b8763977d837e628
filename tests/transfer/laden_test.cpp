// Loading the dialog, and how its lists follow client and type.
#include "tests/transfer/TransferTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class Laden : public TransferTest
{ };

TEST_F(Laden, SelectsWhatWasUsedLast)
{
    const QString keiner = u"Mandantenauswahl"_s, muster = u"Muster.PCK"_s, zu = u"Kein Zugriff !"_s;
    using Text = std::optional<QString>;
    // clang-format off
    struct Row { const char *name; Text mandant, typ, code; QString zeigtMandant, zeigtTyp, zeigtCode, nummer; };
    const Row rows[] = {
        {"first start",    {},        {},        {},       keiner, u"D-Debitor"_s,     u"49"_s, zu},
        {"all remembered", u"1"_s,    u"1"_s,    u"43"_s,  muster, u"K-Kreditor"_s,    u"43"_s, u"K000000"_s},
        {"client gone",    u"2"_s,    u"3"_s,    u""_s,    keiner, u"A-Adresse"_s,     u""_s,   zu},
        {"no number",      u"eins"_s, u"M"_s,    u"abc"_s, keiner, u"D-Debitor"_s,     u"49"_s, zu},
        {"negative",       u"-1"_s,   u"0"_s,    u"49"_s,  keiner, u"D-Debitor"_s,     u"49"_s, zu},
        {"far too large",  u"1e12"_s, u"0"_s,    u"49"_s,  keiner, u"D-Debitor"_s,     u"49"_s, zu},
        {"fractions",      u"0,6"_s,  u"1.8x"_s, u"49"_s,  muster, u"M-Mitarbeiter"_s, u"49"_s, u"M000000"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.settings.clear();
        for (const auto &[name, wert] :
             {std::pair(u"Mandant"_s, row.mandant), {u"Typ"_s, row.typ}, {u"Laendercode"_s, row.code}}) {
            if (wert)
                gemerkt(name) = *wert;
        }
        zeige();
        EXPECT_EQ(liste(u"cbxMandant").currentText(), row.zeigtMandant);
        EXPECT_EQ(liste(u"cbxTyp").currentText(), row.zeigtTyp);
        EXPECT_EQ(feld(u"txbLaendercode").text(), row.zeigtCode);
        EXPECT_EQ(feld(u"txbRabatt").text(), u"0,00"_s);
        EXPECT_EQ(nummer(), row.nummer);
        EXPECT_EQ(liste(u"cbxPreisliste").currentText(), u"Keine"_s);
        EXPECT_EQ(liste(u"cbxWaehrung").currentText(), row.zeigtMandant == u"Muster.PCK" ? u"5 - Euro"_s : QString());
    }
    EXPECT_THAT(m_tisch.boxTexts(), ElementsAre(u"Bitte geben Sie eine Ländervorwahl zwischen 1 und 999 ein."_s))
        << "of the code that is no number";
}

TEST_F(Laden, EndsTheProgramOnATypeThatDoesNotExist)
{
    for (const QString &typ : {u"4"_s, u"-1"_s}) {
        gemerkt(u"Typ"_s) = typ;
        zeige();
        EXPECT_TRUE(m_haupt->beendet() && m_haupt->Status().isHidden());
        EXPECT_EQ(m_tisch.boxTexts().last(), u"Fehler: 380:Ungültiger Eigenschaftswert"_s);
    }
}

TEST_F(Laden, EndsTheProgramOnAnErrorOfTheClient)
{
    for (const auto &[bei, box] : {std::pair(u"OPEN Muster"_s, u"Fehler !\r\n3051:gestört"_s),
                                   {u"Select FKAbfPreisGrp1"_s, u"Fehler: 3051:gestört"_s}}) {
        m_tisch.boxes.clear();
        m_stoerung = [stelle = bei](const QString &zeile) { return zeile.contains(stelle) ? 3051 : 0; };
        zeigeMitMandant();
        EXPECT_THAT(m_tisch.boxTexts(), ElementsAre(box));
        EXPECT_TRUE(m_haupt->beendet() && m_gefragt.isEmpty()) << "it is no password that is missing";
    }
}

TEST_F(Laden, EndsTheProgramWithoutClients)
{
    ASSERT_TRUE(QFile::remove(mandant()));
    zeige();
    EXPECT_TRUE(m_haupt->beendet());
    EXPECT_THAT(m_tisch.boxTexts(),
                ElementsAre(u"In dem Ordner %1/\r\nkonnten keine Mandanten gefunden werden.\r\n"
                            "Bitte korrigieren Sie den Pfad in der Konfiguration von VELDRAK."_s.arg(m_ordner.path())));
    EXPECT_EQ(m_tisch.boxes[0].icon, desktop::Icon::Exclamation);
    EXPECT_THAT(m_act.calls, ElementsAre(u"Resize(800, 600)"_s));
}

TEST_F(Laden, TellsItsStepsAndShowsTheGroup)
{
    QStringList schritte;
    m_tisch.onYield = [&] {
        schritte += m_haupt->Status().lbStatus();
        EXPECT_TRUE(m_haupt->Status().isVisible());
    };
    legeMandantAn(u"Alt.PCK"_s);
    std::vector<beispiel::Person> personen = beispiel::firmengruppe();
    personen[1].firma = u"Äpfelbach KG"_s;
    zeige(personen, 2);
    schritte.removeDuplicates();
    EXPECT_EQ(schritte.join(u'\n').toStdString(),
              "Vorbereitung für den Transfer...\nListen initialisieren...\nListe für Mandanten füllen...\n"
              "Liste für Kontakte füllen...\nZuletzt verwendeten Mandanten auswählen...\n"
              "Zuletzt verwendeten Typ auswählen...\nZuletzt verwendeten Ländercode auswählen...");
    EXPECT_TRUE(m_haupt->Status().isHidden());
    EXPECT_EQ(zeilenVon(liste(u"cbxMandant")), u"Mandantenauswahl|Alt.PCK|Muster.PCK"_s);
    EXPECT_EQ(finde<QLabel>(u"lbFirma").text(), u"Äpfelbach KG"_s);
    const auto &namen = finde<QListWidget>(u"lbxNamen");
    QStringList alle;
    for (int i = 0; i < namen.count(); ++i)
        alle += namen.item(i)->text();
    EXPECT_EQ(alle.join(u'|'), u"Jörg Äpfelbach|Petra Sommer|Weiß|Zoë Kühn"_s) << "the main contact first";
    EXPECT_EQ(namen.currentRow(), 0);
    EXPECT_EQ(feld(u"txbLaendercode").toolTip(), u"internationale Ländervorwahl (D=49; A=43,CH=41 etc."_s);
}

TEST_F(Laden, TypeDecidesWhatCanBeGiven)
{
    beispiel::fuegeKontenHinzu(*m_engine, mandant(), {u"D000000"_s, u"D000002"_s, u"A000000"_s});
    zeigeMitMandant();
    for (const auto &[typ, vorschlag, preisliste, waehrung, rabatt] : {std::tuple(1, u"K000000"_s, false, true, true),
                                                                       {0, u"D000003"_s, true, true, true},
                                                                       {2, u"M000000"_s, false, true, false},
                                                                       {3, u"A000001"_s, false, false, false}}) {
        SCOPED_TRACE(typ);
        liste(u"cbxTyp").setCurrentIndex(typ);
        EXPECT_EQ(nummer(), vorschlag);
        EXPECT_EQ(liste(u"cbxPreisliste").isEnabled(), preisliste);
        EXPECT_EQ(liste(u"cbxWaehrung").isEnabled(), waehrung);
        EXPECT_EQ(feld(u"txbRabatt").isEnabled(), rabatt);
        EXPECT_TRUE(feld(u"txbLaendercode").isEnabled());
    }
    liste(u"cbxMandant").setCurrentIndex(0);
    EXPECT_EQ(nummer(), u"Kein Zugriff !"_s);
    liste(u"cbxTyp").setCurrentIndex(1);
    EXPECT_EQ(nummer(), u"Kein Zugriff !"_s);
    EXPECT_EQ(zeilenVon(liste(u"cbxPreisliste")), u"Keine"_s);
    EXPECT_EQ(liste(u"cbxWaehrung").count(), 0);
}

TEST_F(Laden, ClientChangeReadsPricesOnceAndCurrenciesTwice)
{
    zeige();
    m_ablauf.clear();
    liste(u"cbxMandant").setCurrentIndex(1);
    const auto alle = [this](const QString &sql) { return m_ablauf.count(u"SQL "_s + sql); };
    EXPECT_EQ(alle(u"Select FKAbfPreisGrp2 FROM SABFKons"_s), 1);
    EXPECT_EQ(alle(u"Select SchlbezNr,SchlbezBez FROM sSchlbez WHERE SchlbezTyp = 20"_s), 2) << "one for each of two";
    EXPECT_EQ(alle(u"Select * FROM Waehrung"_s), 2);
    EXPECT_EQ(alle(u"Select WhrgNr,WhrgName FROM Waehrung ORDER BY WhrgNr"_s), 8) << "one for each of four, twice";
    EXPECT_EQ(m_ablauf.last(),
              u"SQL SELECT PersKtoNummer  FROM sPersKto  WHERE PersKtoArt=68  "
              "AND PersKtoNummer >= 'D000000'  ORDER BY PersKtoNummer DESC"_s);
    EXPECT_EQ(zeilenVon(liste(u"cbxPreisliste")),
              u"Keine|1 - Endkunden|2 - Händler|3 - Großhandel|14 - Messepreise|17 - Mitarbeiter"_s);
}

TEST_F(Laden, LastCurrencyCalledEuroIsSelected)
{
    // clang-format off
    struct Row { const char *name; QStringList waehrungen; int gewaehlt; };
    const Row rows[] = {
        {"first",  {u"Euro"_s, u"US-Dollar"_s},                   0},
        {"last",   {u"Deutsche Mark"_s, u"US-Dollar"_s, u"EURO"_s}, 2},
        {"twice",  {u"Euro"_s, u"US-Dollar"_s, u"EURO (alt)"_s},  2},
        {"inside", {u"US-Dollar"_s, u"Neuro"_s, u"Pfund"_s},      1},
        {"never",  {u"US-Dollar"_s, u"Pfund"_s},                  -1},
        {"empty",  {},                                            -1},
    };
    // clang-format on
    zeige();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QStringList anweisungen{u"DELETE FROM Waehrung"_s};
        QStringList zeilen;
        for (const QString &name : row.waehrungen) {
            anweisungen += u"INSERT INTO Waehrung VALUES (%1, '%2')"_s.arg(zeilen.size()).arg(name);
            zeilen += u"%1 - %2"_s.arg(zeilen.size()).arg(name);
        }
        beispiel::fuehreAus(*m_engine, mandant(), anweisungen);
        liste(u"cbxMandant").setCurrentIndex(1);
        EXPECT_EQ(zeilenVon(liste(u"cbxWaehrung")), zeilen.join(u'|'));
        EXPECT_EQ(liste(u"cbxWaehrung").currentIndex(), row.gewaehlt);
        liste(u"cbxMandant").setCurrentIndex(0);
    }
    EXPECT_THAT(m_tisch.boxTexts(), IsEmpty());
}

TEST_F(Laden, SelectionDuringASelectionIsFollowed)
{
    legeMandantAn(u"Alt.PCK"_s);
    beispiel::fuehreAus(*m_engine, mandant(), {u"DELETE FROM Waehrung"_s});
    zeige();
    m_tisch.onYield = [this] {
        m_tisch.onYield = nullptr;
        liste(u"cbxMandant").setCurrentIndex(2); // the user is faster than the lists
        eintragen();
    };
    liste(u"cbxMandant").setCurrentIndex(1);
    EXPECT_EQ(liste(u"cbxMandant").currentText(), u"Muster.PCK"_s);
    EXPECT_EQ(liste(u"cbxWaehrung").count(), 0);
    EXPECT_EQ(liste(u"cbxPreisliste").count(), 6);
    EXPECT_THAT(m_act.calls, IsEmpty()) << "a command meanwhile is dropped";
}
