// Account numbers, and accounts made from a template.
#include "mapping/clSyncFelder.h"
#include "tests/pck/PckTest.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;
using desktop::Icon;
using testing::ElementsAre;
using testing::IsEmpty;

class Konten : public PckTest
{
protected:
    /// The row of a template table in a file of its own, in Jet 4.
    std::shared_ptr<dao::Recordset> vorlage(const QString &spalten, const QString &werte)
    {
        const QString pfad = m_ordner.filePath(u"Vorlage.PIZ"_s);
        QFile::remove(pfad);
        m_vorlage = m_engine.dahinter().CreateDatabase(pfad, {}, dao::DBEngine::dbVersion40);
        m_vorlage->Execute(u"CREATE TABLE Vorlage (%1)"_s.arg(spalten));
        m_vorlage->Execute(u"INSERT INTO Vorlage VALUES (%1)"_s.arg(werte));
        return m_vorlage->OpenRecordset(u"SELECT * from Vorlage"_s);
    }

    std::shared_ptr<dao::Database> m_vorlage;
};

TEST_F(Konten, ProposeAFreeNumberOfTheirType)
{
    // clang-format off
    struct Row { const char *name; QStringList vergeben; QString typ; qint32 start; QString vorschlag; };
    const Row rows[] = {
        {"start taken, with a gap", {u"D010000"_s, u"D010001"_s, u"D010007"_s}, u"D"_s, 10000, u"D010008"_s},
        {"start free, a later one taken", {u"D010005"_s}, u"D"_s, 10000, u"D010000"_s},
        {"other types do not count", {u"K000000"_s, u"D000000"_s, u"M000777"_s}, u"D"_s, 0, u"D000001"_s},
        {"lower numbers do not count", {u"D000001"_s, u"D000500"_s}, u"D"_s, 501, u"D000501"_s},
        {"type A", {u"A000000"_s, u"A000041"_s}, u"A"_s, 0, u"A000042"_s},
        {"unknown type", {u"D000000"_s}, u"X"_s, 0, u"X000000"_s},
        {"start of seven digits", {}, u"K"_s, 1234567, u"K1234567"_s},
        {"the last of six digits", {u"M999999"_s}, u"M"_s, 999999, u"M1000000"_s},
    };
    // clang-format on
    oeffneNeuen();
    for (const Row &row : rows) {
        beispiel::fuegeKontenHinzu(m_engine.dahinter(), m_mandant, row.vergeben);
        EXPECT_EQ(m_pck.NeueNummer(0, row.typ, row.start), row.vorschlag) << row.name;
        fuehreAus({u"DELETE FROM sPersKto"_s});
    }
    EXPECT_EQ(fehlernummer([this] { m_pck.NeueNummer(1, u"D"_s, 0); }), 9);
    QList<int> arten;
    for (const QString &typ : {u"D"_s, u"K"_s, u"M"_s, u"A"_s, u"R"_s, u"d"_s, u""_s})
        arten += clPCK::Typnummer(typ);
    EXPECT_THAT(arten, ElementsAre(68, 75, 77, 82, 0, 0, 0));
}

TEST_F(Konten, AreMadeFromTheMappingsTemplate)
{
    oeffneNeuen();
    clSyncFelder felder(m_engine.dahinter());
    felder.init(beispiel::erzeugeMapping(m_engine.dahinter(), m_ordner.path()), coding::mappingZugriff());
    EXPECT_TRUE(m_pck.neueAdresse(u"A000007"_s, *felder.get_sPersKto()));
    EXPECT_THAT(zeilen(u"SELECT PersKtoNummer, PersKtoArt, PersKtoName, PersKtoGruppe, PersKtoLaendercode, "
                       "PersKtoRabatt, PersKtoKreditLimit, PersKtoAktiv, PersKtoBemerkung FROM sPersKto "
                       "WHERE PersKtoAenderDatum = #11/21/2026#"_s),
                ElementsAre(u"A000007|82|-|ACT|49|0|2500|Wahr|Aus der Kontaktverwaltung übernommen."_s));
    const QString hinweis = u"Hinweis in der Klasse clPCK Methode neueAdresse\r\n"
                            "Das Feld mit dem Namen '%1' aus der Tabelle 'sPersKto' \r\n"
                            "in der Mandantendatenbank '%2' wurde nicht in der MORVANE.PIZ-Datei gefunden.\r\n"
                            "Bitte wenden Sie sich an das VELDRAK-Projekt, damit die Datei angepaßt wird.\r\n\r\n"
                            "Der aktuelle Vorgang wird weitergeführt."_s;
    EXPECT_THAT(m_tisch.boxTexts(),
                ElementsAre(hinweis.arg(u"PersKtoNummer"_s, m_mandant), hinweis.arg(u"PersKtoArt"_s, m_mandant)));
}

TEST_F(Konten, KeepNumberTypeAndCounterWhereTheTemplatesAreEmpty)
{
    oeffneNeuen({u"DROP TABLE sPersKto"_s,
                 u"CREATE TABLE sPersKto (PersKtoNummer TEXT(10) PRIMARY KEY, PersKtoArt SHORT, Zaehler COUNTER, "
                 "Gruppe TEXT(3) DEFAULT \"alt\", PersKtoAenderDatum DATETIME)"_s});
    for (const auto &[werte, konto, boxen] : {std::tuple(u"NULL, NULL, NULL"_s, u"D000001|68|1|-"_s, 0),
                                              {u"'', NULL, NULL"_s, u"D000001|68|2|-"_s, 0},
                                              {u"'D000009', 75, NULL"_s, u"D000009|75|3|-"_s, 0},
                                              {u"NULL, NULL, 99"_s, u"D000001|68|4|-"_s, 1}}) {
        SCOPED_TRACE(qPrintable(werte));
        const auto zeile = vorlage(u"PersKtoNummer TEXT(10), PersKtoArt SHORT, Zaehler LONG, Gruppe TEXT(3), "
                                   "PersKtoAenderDatum DATETIME"_s,
                                   werte + u", NULL, NULL"_s);
        EXPECT_TRUE(m_pck.neueAdresse(u"D000001"_s, *zeile));
        EXPECT_THAT(zeilen(u"SELECT PersKtoNummer, PersKtoArt, Zaehler, Gruppe FROM sPersKto"_s), ElementsAre(konto));
        EXPECT_EQ(neueBoxen().size(), boxen) << "no program sets a counter";
        fuehreAus({u"DELETE FROM sPersKto"_s});
    }
}

TEST_F(Konten, TakeWhatTheTemplateCanGiveColumnByColumn)
{
    const QString fehler = u"Fehler in Klasse clPCK Methode neueAdresse\r\nFehlernummer: %1\r\nFehlerbeschreibung: "_s;
    const QString feld = u"\r\n\r\nFeldindex : %1\r\nFeldname rsX(PCK): %2\r\nFeldtyp  rsX(PCK): %3"_s;
    const QString gruppe = feld.arg(2).arg(u"Gruppe"_s).arg(10);
    const QString hinweis = u"Hinweis in der Klasse clPCK Methode neueAdresse\r\n"
                            "Das Feld mit dem Namen 'Gruppe' aus der Tabelle 'sPersKto' \r\n"_s;
    // clang-format off
    struct Row { QString spalten; QString werte; QString gruppe; Icon icon; QString anfang; QString ende; };
    const Row rows[] = {
        {u"Gruppe TEXT(20), Datum DATETIME"_s, u"'ACT', NULL"_s, u"ACT"_s, Icon::None, {}, {}},
        {u"Datum DATETIME"_s, u"NULL"_s, u"-"_s, Icon::Information, hinweis, {}},
        {u"GRUPPE TEXT(20), Datum DATETIME"_s, u"'ACT', NULL"_s, u"-"_s, Icon::Information, hinweis, {}},
        {u"Gruppe TEXT(20), Datum DATETIME"_s, u"'ACT!', NULL"_s, u"-"_s, Icon::Exclamation, fehler.arg(3163), gruppe},
        // letters that a client of Jet 3 has not
        {u"Gruppe TEXT(20), Datum DATETIME"_s, u"'Ж', NULL"_s, u"-"_s, Icon::Exclamation, fehler.arg(3421), gruppe},
        {u"Gruppe TEXT(20), Datum TEXT(9)"_s, u"'ACT', 'gestern'"_s, u"ACT"_s, Icon::Exclamation, fehler.arg(3421),
         feld.arg(3).arg(u"Datum"_s).arg(8)},
    };
    // clang-format on
    oeffneNeuen({u"DROP TABLE sPersKto"_s,
                 u"CREATE TABLE sPersKto (PersKtoNummer TEXT(10) PRIMARY KEY, PersKtoArt SHORT, Gruppe TEXT(3), "
                 "Datum DATETIME, PersKtoAenderDatum DATETIME)"_s},
                dao::DBEngine::dbVersion30);
    for (const Row &row : rows) {
        SCOPED_TRACE(qPrintable(row.spalten + row.werte));
        const auto zeile
            = vorlage(u"PersKtoNummer TEXT(10), PersKtoArt SHORT, PersKtoAenderDatum DATETIME, "_s + row.spalten,
                      u"'D000009', 68, NULL, "_s + row.werte);
        EXPECT_TRUE(m_pck.neueAdresse(u"D000001"_s, *zeile)) << "the number is the template's, if it has one";
        EXPECT_THAT(zeilen(u"SELECT PersKtoNummer, Gruppe FROM sPersKto"_s), ElementsAre(u"D000009|"_s + row.gruppe));
        ASSERT_EQ(m_tisch.boxes.size(), row.anfang.isEmpty() ? 0U : 1U);
        EXPECT_EQ(m_tisch.boxes.empty() ? Icon::None : m_tisch.boxes[0].icon, row.icon);
        const QString box = neueBoxen().value(0);
        EXPECT_TRUE(box.startsWith(row.anfang) && box.endsWith(row.ende)) << qPrintable(box);
        fuehreAus({u"DELETE FROM sPersKto"_s});
    }
}

TEST_F(Konten, AreNotMadeTwiceAndFailuresReachTheCaller)
{
    oeffneNeuen();
    beispiel::fuegeKontenHinzu(m_engine.dahinter(), m_mandant, {u"D000001"_s});
    const auto zeile = vorlage(u"Gruppe TEXT(9)"_s, u"NULL"_s);

    EXPECT_FALSE(m_pck.neueAdresse(u"D000001"_s, *zeile));
    EXPECT_THAT(m_tisch.clipboardHistory, IsEmpty());
    m_engine.vorher = [this](const QString &sql) { // another program takes the row away again
        if (sql.startsWith(u"Select * from sPersKto"_s))
            fuehreAus({u"DELETE FROM sPersKto"_s});
    };
    EXPECT_FALSE(m_pck.neueAdresse(u"D000002"_s, *zeile));
    ASSERT_THAT(m_tisch.boxTexts(),
                ElementsAre(u"Die Nummer D000001 wurde schon vergeben.\r\n"
                            "Es muß eine neue Nummer bestimmt werden."_s,
                            u"Es konnte keine neue Adresse in sPersKto angelegt werden.\r\nNummer:D000002"_s));
    EXPECT_EQ(m_tisch.boxes[0].icon, Icon::None);
    EXPECT_EQ(m_tisch.boxes[1].icon, Icon::Critical);

    EXPECT_EQ(fehlernummer([&] { m_pck.neueAdresse(u"D0000000001"_s, *zeile); }), 3163) << "too long for the column";
    m_pck.close_Mandant();
    EXPECT_EQ(fehlernummer([&] { m_pck.neueAdresse(u"D000003"_s, *zeile); }), 91) << "no client is open";
}
