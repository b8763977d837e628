// Values of accounts and communication entries: what is quoted, and what becomes of a failing statement.
#include "tests/pck/PckTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class Werte : public PckTest
{
protected:
    void SetUp() override
    {
        oeffneNeuen();
        beispiel::fuegeKontenHinzu(m_engine.dahinter(), m_mandant, {u"D000001"_s, u"D000002"_s});
    }
    static void pruefeBox(const desktop::Box &box, int fehler, const QString &sql)
    {
        EXPECT_EQ(box.icon, desktop::Icon::Exclamation);
        const QStringList zeilen = box.text.split(u"\r\n"_s);
        ASSERT_EQ(zeilen.size(), 5);
        EXPECT_EQ(zeilen[0], u"Fehler in Klasse clPCK Methode setzeWert"_s);
        EXPECT_EQ(zeilen[1], u"Fehlernummer: %1"_s.arg(fehler));
        EXPECT_TRUE(zeilen[2].startsWith(u"Fehlerbeschreibung:"_s) && zeilen[2][19] != u' ');
        EXPECT_EQ(zeilen[3], u"SQL-String:"_s + sql);
        EXPECT_EQ(zeilen[4], u"Der SQL-String liegt jetzt in der Zwischenablage."_s);
    }
    void TearDown() override { QLocale::setDefault(QLocale::system()); }
};

TEST_F(Werte, AreSetByOneStatementEach)
{
    // clang-format off
    struct Row { const char *name; QString feld; QVariant wert; QString sql; int fehler; QString inhalt; };
    const Row rows[] = {
        {"text", u"PersKtoName"_s, u"Hansen"_s, u"PersKtoName='Hansen'"_s, 0, u"Hansen"_s},
        {"text with apostrophes", u"PersKtoName"_s, u"O'Neill's"_s, u"PersKtoName='O''Neill''s'"_s, 0, u"O'Neill's"_s},
        {"empty text", u"PersKtoName"_s, u""_s, u"PersKtoName=''"_s, 0, u""_s},
        {"digits are text, too", u"PersKtoPLZ"_s, u"01067"_s, u"PersKtoPLZ='01067'"_s, 0, u"01067"_s},
        {"whole number", u"PersKtoRabatt"_s, 5, u"PersKtoRabatt=5"_s, 0, u"5"_s},
        {"whole amount", u"PersKtoRabatt"_s, 12.0, u"PersKtoRabatt=12"_s, 0, u"12"_s},
        {"fraction in German", u"PersKtoRabatt"_s, 12.5, u"PersKtoRabatt=12,5"_s, 3144, u"12"_s},
        {"too long", u"PersKtoGruppe"_s, u"12345678901"_s, u"PersKtoGruppe='12345678901'"_s, 3163, u"-"_s},
        {"unknown column", u"PersKtoNix"_s, u"x"_s, u"PersKtoNix='x'"_s, 3061, u""_s},
    };
    // clang-format on
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.boxes.clear();
        m_tisch.clipboardHistory.clear();
        m_engine.protokoll.clear();
        m_pck.setzeWert(u"sPersKto"_s, row.feld, row.wert, u"PersKtoNummer='D000001'"_s);
        const QString sql = u"UPDATE sPersKto SET "_s + row.sql + u" WHERE PersKtoNummer='D000001'"_s;
        EXPECT_THAT(m_engine.protokoll, ElementsAre(sql));
        EXPECT_EQ(m_tisch.clipboardHistory, QStringList(row.fehler != 0 ? 2 : 1, sql));
        if (row.fehler != dao::DaoError::TooFewParameters) {
            EXPECT_EQ(zeilen(u"SELECT "_s + row.feld + u" FROM sPersKto"_s).value(0), row.inhalt);
        }
        ASSERT_EQ(m_tisch.boxes.size(), row.fehler != 0 ? 1U : 0U);
        if (row.fehler != 0)
            pruefeBox(m_tisch.boxes[0], row.fehler, sql);
    }
    EXPECT_THAT(zeilen(u"SELECT PersKtoName FROM sPersKto WHERE PersKtoNummer='D000002'"_s), ElementsAre(u"-"_s));
}

TEST_F(Werte, OfContactPersonsBecomeNumberedEntriesOfAKind)
{
    // clang-format off
    struct Row { const char *name; QString art; QString gespeichert; };
    const Row rows[] = {
        {"telephone",                u"Telefon privat"_s, u"1|Telefon|x|0"_s},
        {"mobile",                   u"Handy"_s,          u"2|Mobil|x|0"_s},
        {"fax",                      u"Telefax Fax"_s,    u"3|Fax|x|1"_s},
        {"e-mail",                   u"Email"_s,          u"4|Email|x|2"_s},
        {"telephone and mobile",     u"Handy Telefon"_s,  u"5|Telefon|x|0"_s},
        {"fax and e-mail",           u"Fax/Email"_s,      u"6|Fax|x|1"_s},
        {"other words are kept",     u"telefax"_s,        u"7|telefax|x|0"_s},
    };
    // clang-format on
    QString fremd = u"Fax"_s;
    m_pck.neuerAnsprechpartnerWert(u"D000002"_s, u"Weiß"_s, fremd, u"y"_s);
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QString art = row.art;
        m_pck.neuerAnsprechpartnerWert(u"D000001"_s, u"Kühn"_s, art, u"x"_s);
        EXPECT_EQ(art, row.gespeichert.section(u'|', 1, 1));
        EXPECT_EQ(zeilen(u"SELECT PersKommLfdNr, PersKommName, PersKommNr, PersKommTyp FROM sPersKom "
                         "WHERE PersKommNummer='D000001' AND PersKommAnsprech='Kühn' ORDER BY PersKommLfdNr"_s)
                      .last(),
                  row.gespeichert);
    }
    EXPECT_EQ(m_engine.protokoll.mid(2, 2),
              (QStringList{u"SELECT PersKommLfdNr FROM sPersKom WHERE PersKommNummer='D000001' "
                           "ORDER BY PersKommLfdNr DESC"_s,
                           u"INSERT INTO sPersKom (PersKommNummer,PersKommLfdNr,PersKommName,PersKommNr,"
                           "PersKommAnsprech,PersKommTyp) VALUES ('D000001',1,'Telefon','x','Kühn',0);"_s}));
    EXPECT_EQ(m_tisch.clipboard, m_engine.protokoll.last());
}

TEST_F(Werte, OfContactPersonsAreNotQuoted)
{
    QString art = u"Telefon"_s;
    EXPECT_EQ(fehlernummer([&] { m_pck.neuerAnsprechpartnerWert(u"D000001"_s, u"O'Neill"_s, art, u"1"_s); }), 3075);
    EXPECT_TRUE(m_tisch.clipboard.contains(u"'O'Neill'"_s)) << "the statement is there to be looked at";
    EXPECT_THAT(zeilen(u"SELECT * FROM sPersKom"_s), IsEmpty());
    EXPECT_THAT(m_tisch.boxTexts(), IsEmpty());
}

TEST_F(Werte, NeedAnOpenClient)
{
    m_pck.close_Mandant();
    m_pck.setzeWert(u"sPersKto"_s, u"PersKtoName"_s, u"x"_s, u"1=1"_s);
    EXPECT_THAT(m_tisch.boxTexts(), ElementsAre(u"Kein Mandant geöffnet!"_s));
    EXPECT_THAT(m_tisch.clipboardHistory, IsEmpty());
    QString art = u"Fax"_s;
    EXPECT_EQ(fehlernummer([&] { m_pck.neuerAnsprechpartnerWert(u"D000001"_s, {}, art, {}); }), 91);
}
