// The direct search on real contact tables: what is asked, what is found, and how it fails.
#include <gmock/gmock.h>

#include <utility>

#include <QFile>
#include <QFileInfo>

#include "contacts/ActDBF.h"
#include "tests/contacts/KontaktTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class Suche : public KontaktTest
{
protected:
    Suche()
    {
        std::vector<beispiel::Person> personen = beispiel::leute(
            u"A - - Müller Maschinenbau; B - - MÜLLER & Co; C - - Mueller [Nord]; D - D010000/Muster.PCK -");
        const QString namen[] = {u"Weiß"_s, u"Öhlmann"_s, u"Straße"_s, u"O'Neill"_s};
        for (std::size_t i = 0; i < personen.size(); ++i)
            personen[i].nachname = namen[i];
        m_act.databasePath = beispiel::erzeugeKontakttabelle(m_engine, m_ordner.path(), personen);
    }

    /// The unique ids of the hits; "ended" if the search ended the program.
    QStringList finde(QString text, const QString &mandant = u"-"_s, const QString &nummer = u"-"_s)
    {
        QStringList ids;
        try {
            const auto treffer = m_ActDB.SucheInActDB(*m_act.CreateObject({}), text, mandant, nummer);
            for (; !treffer->Eof(); treffer->MoveNext())
                ids += treffer->Fields(u"UNIQUE_ID"_s).Value().toString().trimmed();
            m_felder = treffer->FieldCount();
        } catch (const ProgrammBeendet &) {
            EXPECT_TRUE(m_programm.regulaerBeendet);
            ids = {u"ended"_s};
        }
        m_muster = text;
        return ids;
    }

    ActDBF m_ActDB{m_programm, m_konfiguration, m_SyncFelder, m_engine, m_tisch, m_tisch};
    QString m_muster;
    int m_felder = 0;
};

TEST_F(Suche, PatternsMatchBothCases)
{
    // clang-format off
    struct Row { const char *name; QString text; QString muster; };
    const Row rows[] = {
        {"empty",                          u""_s,              u""_s},
        {"letters keep their case first",  u"Ab1"_s,           u"[Aa][bB]1"_s},
        {"the ends of the ranges",         u"azAZ"_s,          u"[aA][zZ][Aa][Zz]"_s},
        {"their neighbours",               u"`{@["_s,          u"`{@["_s},
        {"umlauts",                        u"äöüÄÖÜ"_s,        u"[äÄ][öÖ][üÜ][Ää][Öö][Üü]"_s},
        {"the ends of the upper ranges",   u"\u00E0\u00FD\u00C0\u00DD"_s, u"[àÀ][ýÝ][Àà][Ýý]"_s},
        {"signs within them",              u"×÷"_s,            u"[×÷][÷×]"_s},
        {"beyond them",                    u"ßþÿÞŠš€"_s,       u"ßþÿÞŠš€"_s},
        {"digits, blanks, wildcards",      u"1 *?#'"_s,        u"1 *?#'"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(ActDBF::GrossKleinMuster(row.text), row.muster);
    }
}

TEST_F(Suche, FindsByEitherFieldOrByAccount)
{
    // clang-format off
    struct Row { const char *name; QString text, mandant, nummer; QStringView ids; };
    const Row rows[] = {
        {"both cases, umlauts too",        u"mÜLLER"_s,  u"-"_s,          u"-"_s,       u"A B"},
        {"in the middle",                  u"schine"_s,  u"-"_s,          u"-"_s,       u"A"},
        {"in the second field",            u"öhl"_s,     u"-"_s,          u"-"_s,       u"B"},
        {"sharp s as it is",               u"STRASSE"_s, u"-"_s,          u"-"_s,       u""},
        {"client and number",              u"niemand"_s, u"Muster.PCK"_s, u"D010000"_s, u"D"},
        {"client alone is not enough",     u"niemand"_s, u"Muster.PCK"_s, u"D010001"_s, u""},
        {"client and number in any case: no", u"niemand"_s, u"MUSTER.PCK"_s, u"D010000"_s, u""},
        {"wildcards work",                 u"m?ller"_s,  u"-"_s,          u"-"_s,       u"A B"},
        {"empty finds all",                u""_s,        u"-"_s,          u"-"_s,       u"A B C D"},
    };
    // clang-format on
    m_tisch.shortPaths[u"/Kontakte der Firma/KONTAKTE.DBF"_s]
        = std::exchange(m_act.databasePath, u"/Kontakte der Firma/KONTAKTE.DBF"_s);
    const QString geoeffnet = u"OpenDatabase(%1, FoxPro 2.6;)"_s.arg(QFileInfo(m_ordner.path()).fileName());
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_engine.protokoll.clear();
        EXPECT_EQ(finde(row.text, row.mandant, row.nummer).join(u' '), row.ids);
        EXPECT_EQ(m_muster, ActDBF::GrossKleinMuster(row.text)) << "the term is replaced by its pattern";
        EXPECT_EQ(m_felder, 4 + 12);
        EXPECT_TRUE(m_engine.protokoll.contains(geoeffnet)) << "not only to read";
    }
    beispiel::fuehreAus(m_engine, m_ordner.path(), {u"DELETE FROM KONTAKTE"_s});
    EXPECT_THAT(finde(u""_s), IsEmpty()) << "deleted records only";
    EXPECT_THAT(m_tisch.boxes, IsEmpty());
    EXPECT_THAT(m_tisch.clipboardHistory, IsEmpty());
}

TEST_F(Suche, FillsContactsFromTheTable)
{
    beispiel::Person person = beispiel::firmengruppe().front();
    person.id = u"KURZ"_s;
    person.telefon = u"49|40|@@@@AD5551234"_s;
    person.typ = u"N"_s;
    person.url = QString(60, u'w');
    QFile::remove(m_act.databasePath);
    beispiel::erzeugeKontakttabelle(m_engine, m_ordner.path(), {person});
    QString text = u"Söhne"_s;
    const auto treffer = m_ActDB.SucheInActDB(*m_act.CreateObject({}), text, u""_s, u""_s);
    clKontakt kontakt = neuerKontakt();
    kontakt.setzeDatenVonDBF(*treffer);
    EXPECT_EQ(kontakt.UniqueID + u'|' + kontakt.Typ + u'|' + kontakt.Mandant + kontakt.Nummer, u"KURZ|N|"_s);
    EXPECT_EQ(kontakt.Daten(u"Name"_s), u"Petra Sommer"_s);
    EXPECT_EQ(kontakt.Daten(u"Telefon"_s), u"+49 40 555 1234"_s);
    EXPECT_EQ(kontakt.Daten(u"URL"_s), QString(50, u'w'));
    EXPECT_THAT(m_tisch.boxes, IsEmpty());
    treffer->Close();
    m_ActDB.schliessen();
    m_ActDB.schliessen(); // nothing left to close
}

TEST_F(Suche, LeavesTheFailedQueryOnTheClipboard)
{
    const QString anfang = u"SELECT [KONTAKTE].UNIQUE_ID,[KONTAKTE].PCK_MAND,[KONTAKTE].PCK_NUMMER,[KONTAKTE].PCK_TYP,"
                           "[KONTAKTE].COMPANY,[KONTAKTE].CONTACT,[KONTAKTE].FIRSTNAME,[KONTAKTE].LASTNAME,"
                           "[KONTAKTE].STREET,[KONTAKTE].ZIP,[KONTAKTE].CITY,[KONTAKTE].Telefon,[KONTAKTE].Telefax,"
                           "[KONTAKTE].Handy,[KONTAKTE].EMAIL,[KONTAKTE].URL FROM [KONTAKTE]  WHERE ("_s;
    const QString bedingung = u"[KONTAKTE].%1 Like '*%2*' Or [KONTAKTE].CONTACT Like '*%2*' Or ("
                              "[KONTAKTE].PCK_MAND = 'M'  AND [KONTAKTE].PCK_NUMMER = '%3' ))"_s;
    const QString box = u"Es ist ein Fehler beim Zugriff auf die ACT!-Datenbank aufgetreten.\r\n"
                        "Mögliche Ursachen für den Fehler:\r\n"
                        "- Der Name Ihrer ACT!-Datenbank (%1) ist nicht alphanummerisch.\r\n"
                        "  Bitte nennen Sie Ihre ACT!-Datenbank um.\r\n"
                        "- Die Felder IDs in der VELDRAK.ini sind falsch.\r\n"
                        "- Die PCK-Benutzerfelder sind nicht vom Typ Zeichenkette (String)"_s.arg(m_act.databasePath);
    // clang-format off
    struct Row { const char *name; QString text, nummer, spalte, muster; };
    const Row rows[] = {
        {"an apostrophe in the term",   u"O'N"_s, u"D1"_s,  u"COMPANY"_s, u"[Oo]'[Nn]"_s},
        {"an apostrophe in the number", u"a"_s,   u"D'1"_s, u"COMPANY"_s, u"[aA]"_s},
        {"a column that is not there",  u"1"_s,   u""_s,    u"FIRMA_X"_s, u"1"_s},
        {"a column without a name",     u"1"_s,   u""_s,    u""_s,        u"1"_s},
    };
    // clang-format on
    m_tisch.onBox = [this](const desktop::Box &) { EXPECT_THAT(m_tisch.clipboardHistory, IsEmpty()) << "only then"; };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        m_tisch.clipboardHistory.clear();
        m_konfiguration.IdSuchFeld1Name = row.spalte;
        EXPECT_THAT(finde(row.text, u"M"_s, row.nummer), ElementsAre(u"ended"_s));
        EXPECT_EQ(m_tisch.clipboard, anfang + bedingung.arg(row.spalte, row.muster, row.nummer));
        ASSERT_EQ(m_tisch.boxes.size(), 1U);
        EXPECT_EQ(m_tisch.boxes[0].icon, desktop::Icon::Exclamation);
        EXPECT_EQ(m_tisch.boxes[0].text.section(u"\r\nFehlercode: 3"_s, 0, 0), box);
        EXPECT_TRUE(m_tisch.boxes[0].text.contains(u"\r\nFehlercode: 3"_s));
    }
}

TEST_F(Suche, EndsIfTheDatabaseCannotBeOpened)
{
    for (const QString &pfad : {m_ordner.filePath(u"fehlt/KONTAKTE.DBF"_s), u"KONTAKTE.DBF"_s, QString()}) {
        SCOPED_TRACE(pfad.toStdString());
        m_tisch.boxes.clear();
        m_act.databasePath = pfad;
        EXPECT_THAT(finde(u"a"_s), ElementsAre(u"ended"_s));
        EXPECT_THAT(m_tisch.boxTexts(), ElementsAre(u"Konnte Ihre ACT!-Datenbank nicht öffnen !"_s));
        EXPECT_EQ(m_tisch.clipboard, u""_s);
    }
}

// What such a program finds in a folder that was copied from a failing disk, or by another version of ACT!.
TEST_F(Suche, ReportsDamagedTables)
{
    const QByteArray heil = beispiel::lies(m_act.databasePath);
    const auto mit = [&heil](qsizetype stelle, const QByteArray &bytes) {
        return QByteArray(heil).replace(stelle, bytes.size(), bytes);
    };
    // clang-format off
    struct Row { const char *name; QByteArray inhalt; };
    const Row rows[] = {
        {"empty",                       {}},
        {"cut within the head",         heil.left(20)},
        {"cut within the fields",       heil.left(100)},
        {"cut within a record",         heil.left(heil.size() - 300)},
        {"a version that is none",      mit(0, "\x07")},
        {"a later program's version",   mit(0, "\x30")},
        {"no end of the fields",        mit(8, QByteArray("\x21\x00", 2))},
        {"a record of one byte",        mit(10, QByteArray("\x01\x00", 2))},
        {"a field of another type",     mit(32 + 11, "Q")},
        {"text",                        QByteArray(2000, 'x')},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        m_ActDB.schliessen();
        beispiel::schreibe(m_act.databasePath, row.inhalt);
        EXPECT_THAT(finde(u"ü"_s), ElementsAre(u"ended"_s));
        EXPECT_TRUE(m_tisch.boxTexts().join(u'|').contains(u"Fehlercode: "_s));
        EXPECT_EQ(beispiel::lies(m_act.databasePath), row.inhalt) << "nothing is written";
    }
    QFile::remove(m_act.databasePath);
    EXPECT_THAT(finde(u"ü"_s), ElementsAre(u"ended"_s));
}
