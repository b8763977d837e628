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
    /// The first row of a query on a template table in a file of its own, in Jet 4.
    std::shared_ptr<dao::Recordset> vorlage(const QStringList &anweisungen)
    {
        QFile::remove(pfad(u"Vorlage.PIZ"_s));
        m_vorlage = m_engine.dahinter().CreateDatabase(pfad(u"Vorlage.PIZ"_s), {}, dao::DBEngine::dbVersion40);
        for (const QString &anweisung : anweisungen)
            m_vorlage->Execute(anweisung);
        return m_vorlage->OpenRecordset(u"SELECT * from Vorlage"_s);
    }

    std::shared_ptr<dao::Database> m_vorlage;
};

TEST_F(Konten, ProposeAFreeNumber)
{
    // clang-format off
    struct Row { const char *name; QStringList vergeben; QString typ; qint32 start; QString vorschlag; };
    const Row rows[] = {
        {"no account at all", {}, u"D"_s, 10000, u"D010000"_s},
        {"start taken, with a gap", {u"D010000"_s, u"D010001"_s, u"D010007"_s}, u"D"_s, 10000, u"D010008"_s},
        {"start free, a later one taken", {u"D010005"_s}, u"D"_s, 10000, u"D010000"_s},
        {"only the start is taken", {u"D010000"_s}, u"D"_s, 10000, u"D010001"_s},
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
        SCOPED_TRACE(row.name);
        beispiel::fuegeKontenHinzu(m_engine.dahinter(), m_mandant, row.vergeben);
        EXPECT_EQ(m_pck.NeueNummer(0, row.typ, row.start), row.vorschlag);
        beispiel::fuehreAus(m_engine.dahinter(), m_mandant, {u"DELETE FROM sPersKto"_s});
    }
    EXPECT_EQ(fehlernummer([this] { m_pck.NeueNummer(1, u"D"_s, 0); }), 9);
}

TEST_F(Konten, HaveTypeNumbers)
{
    const QList<std::pair<QString, int>> arten
        = {{u"D"_s, 68}, {u"K"_s, 75}, {u"M"_s, 77}, {u"A"_s, 82}, {u"R"_s, 0}, {u"d"_s, 0}, {u""_s, 0}};
    for (const auto &[typ, art] : arten)
        EXPECT_EQ(clPCK::Typnummer(typ), art) << qPrintable(typ);
}

TEST_F(Konten, AreMadeFromTheMappingsTemplate)
{
    oeffneNeuen();
    clSyncFelder felder(m_engine.dahinter());
    felder.init(beispiel::erzeugeMapping(m_engine.dahinter(), m_ordner.path()), coding::mappingZugriff());
    EXPECT_TRUE(m_pck.neueAdresse(u"A000007"_s, *felder.get_sPersKto()));
    EXPECT_THAT(zeilen(u"SELECT PersKtoNummer, PersKtoArt, PersKtoName, PersKtoGruppe, PersKtoLaendercode, "
                       "PersKtoRabatt, PersKtoKreditLimit, PersKtoAktiv, PersKtoBemerkung FROM sPersKto"_s),
                ElementsAre(u"A000007|82|-|ACT|49|0|2500|Wahr|Aus der Kontaktverwaltung übernommen."_s));
    EXPECT_THAT(zeilen(u"SELECT PersKtoNummer FROM sPersKto WHERE PersKtoAenderDatum = #11/21/2026#"_s),
                ElementsAre(u"A000007"_s));
    EXPECT_THAT(m_tisch.clipboardHistory,
                ElementsAre(u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('A000007',82);"_s));
    EXPECT_THAT(m_engine.protokoll,
                ElementsAre(u"Select PersKtoNummer FROM sPersKto WHERE PersKtoNummer = 'A000007'"_s,
                            u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('A000007',82);"_s,
                            u"Select * from sPersKto where PersKtoNummer='A000007'"_s));
    const QString hinweis = u"Hinweis in der Klasse clPCK Methode neueAdresse\r\n"
                            "Das Feld mit dem Namen '%1' aus der Tabelle 'sPersKto' \r\n"
                            "in der Mandantendatenbank '%2' wurde nicht in der MORVANE.PIZ-Datei gefunden.\r\n"
                            "Bitte wenden Sie sich an das VELDRAK-Projekt, damit die Datei angepaßt wird.\r\n\r\n"
                            "Der aktuelle Vorgang wird weitergeführt."_s;
    EXPECT_THAT(m_tisch.boxTexts(),
                ElementsAre(hinweis.arg(u"PersKtoNummer"_s, m_mandant), hinweis.arg(u"PersKtoArt"_s, m_mandant)));
    EXPECT_EQ(m_tisch.boxes[0].icon, Icon::Information);
}

TEST_F(Konten, TakeWhatTheTemplateCanGiveColumnByColumn)
{
    // clang-format off
    const QString hinweis = u"Hinweis in der Klasse clPCK Methode neueAdresse"_s;
    struct Row { const char *name; QStringList vorlage; QString gruppe; Icon icon; QStringList meldung; };
    const Row rows[] = {
        {"value fits", {u"Gruppe TEXT(20), Datum DATETIME"_s, u"'ACT', NULL"_s}, u"ACT"_s, Icon::None, {}},
        {"no such column", {u"Datum DATETIME"_s, u"NULL"_s}, u"-"_s, Icon::Information,
         {hinweis, u"Das Feld mit dem Namen 'Gruppe' aus der Tabelle 'sPersKto' "_s}},
        {"other capitals", {u"GRUPPE TEXT(20), Datum DATETIME"_s, u"'ACT', NULL"_s}, u"-"_s, Icon::Information,
         {hinweis, u"Das Feld mit dem Namen 'Gruppe' aus der Tabelle 'sPersKto' "_s}},
        {"too long", {u"Gruppe TEXT(20), Datum DATETIME"_s, u"'ACT!', NULL"_s}, u"-"_s, Icon::Exclamation,
         {u"Fehler in Klasse clPCK Methode neueAdresse"_s, u"Fehlernummer: 3163"_s, u"Fehlerbeschreibung: "_s, u""_s,
          u"Feldindex : 2"_s, u"Feldname rsX(PCK): Gruppe"_s, u"Feldtyp  rsX(PCK): 10"_s}},
        {"letters that a client of Jet 3 has not", {u"Gruppe TEXT(20), Datum DATETIME"_s, u"'\u0416', NULL"_s}, u"-"_s,
         Icon::Exclamation, {u"Fehler in Klasse clPCK Methode neueAdresse"_s, u"Fehlernummer: 3421"_s}},
        {"wrong type", {u"Gruppe TEXT(20), Datum TEXT(9)"_s, u"'ACT', 'gestern'"_s}, u"ACT"_s, Icon::Exclamation,
         {u"Fehler in Klasse clPCK Methode neueAdresse"_s, u"Fehlernummer: 3421"_s, u"Fehlerbeschreibung: "_s, u""_s,
          u"Feldindex : 3"_s, u"Feldname rsX(PCK): Datum"_s, u"Feldtyp  rsX(PCK): 8"_s}},
    };
    // clang-format on
    oeffneNeuen({u"DROP TABLE sPersKto"_s,
                 u"CREATE TABLE sPersKto (PersKtoNummer TEXT(10) PRIMARY KEY, PersKtoArt SHORT, Gruppe TEXT(3), "
                 "Datum DATETIME, PersKtoAenderDatum DATETIME)"_s},
                dao::DBEngine::dbVersion30);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        const auto zeile = vorlage(
            {u"CREATE TABLE Vorlage (PersKtoNummer TEXT(10), PersKtoArt SHORT, PersKtoAenderDatum DATETIME, "_s
                 + row.vorlage[0] + u")"_s,
             u"INSERT INTO Vorlage VALUES ('D000009', 68, NULL, "_s + row.vorlage[1] + u")"_s});
        EXPECT_TRUE(m_pck.neueAdresse(u"D000001"_s, *zeile)) << "the number is the template's, if it has one";
        EXPECT_THAT(zeilen(u"SELECT PersKtoNummer, Gruppe FROM sPersKto"_s), ElementsAre(u"D000009|"_s + row.gruppe));
        ASSERT_EQ(m_tisch.boxes.size(), row.meldung.isEmpty() ? 0U : 1U);
        if (!row.meldung.isEmpty()) {
            EXPECT_EQ(m_tisch.boxes[0].icon, row.icon);
            const QStringList box = m_tisch.boxes[0].text.split(u"\r\n"_s);
            for (qsizetype i = 0; i < row.meldung.size(); ++i)
                EXPECT_TRUE(box.value(i).startsWith(row.meldung[i])) << qPrintable(box.value(i));
        }
        m_vorlage->Close();
        beispiel::fuehreAus(m_engine.dahinter(), m_mandant, {u"DELETE FROM sPersKto"_s});
    }
}

TEST_F(Konten, AreNotMadeTwiceAndFailuresReachTheCaller)
{
    oeffneNeuen();
    beispiel::fuegeKontenHinzu(m_engine.dahinter(), m_mandant, {u"D000001"_s});
    const auto zeile = vorlage({u"CREATE TABLE Vorlage (Gruppe TEXT(9))"_s});

    EXPECT_FALSE(m_pck.neueAdresse(u"D000001"_s, *zeile));
    EXPECT_THAT(m_tisch.boxTexts(),
                ElementsAre(u"Die Nummer D000001 wurde schon vergeben.\r\n"
                            "Es muß eine neue Nummer bestimmt werden."_s));
    EXPECT_EQ(m_tisch.boxes[0].icon, Icon::None);
    EXPECT_THAT(m_tisch.clipboardHistory, IsEmpty());

    m_tisch.boxes.clear();
    m_engine.vorher = [this](const QString &sql) { // another program takes the row away again
        if (sql.startsWith(u"Select * from sPersKto"_s))
            beispiel::fuehreAus(m_engine.dahinter(), m_mandant, {u"DELETE FROM sPersKto"_s});
    };
    EXPECT_FALSE(m_pck.neueAdresse(u"D000002"_s, *zeile));
    EXPECT_THAT(m_tisch.boxTexts(),
                ElementsAre(u"Es konnte keine neue Adresse in sPersKto angelegt werden.\r\nNummer:D000002"_s));
    EXPECT_EQ(m_tisch.boxes[0].icon, Icon::Critical);

    EXPECT_EQ(fehlernummer([&] { m_pck.neueAdresse(u"D0000000001"_s, *zeile); }), 3163) << "too long for the column";
    m_pck.close_Mandant();
    EXPECT_EQ(fehlernummer([&] { m_pck.neueAdresse(u"D000003"_s, *zeile); }), 91) << "no client is open";
}
