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
        QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
        oeffneNeuen();
        beispiel::fuegeKontenHinzu(m_engine.dahinter(), m_mandant, {u"D000001"_s, u"D000002"_s});
    }
    void TearDown() override { QLocale::setDefault(QLocale::system()); }
};

TEST_F(Werte, AreSetByOneStatementEach)
{
    // clang-format off
    struct Row { const char *name; QString feld; QVariant wert; QString sql; int fehler; QString inhalt; };
    const Row rows[] = {
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
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_tisch.clipboardHistory.clear();
        m_engine.protokoll.clear();
        m_pck.setzeWert(u"sPersKto"_s, row.feld, row.wert, u"PersKtoNummer='D000001'"_s);
        const QString sql = u"UPDATE sPersKto SET "_s + row.sql + u" WHERE PersKtoNummer='D000001'"_s;
        EXPECT_THAT(m_engine.protokoll, ElementsAre(sql));
        EXPECT_EQ(m_tisch.clipboardHistory, QStringList(row.fehler != 0 ? 2 : 1, sql));
        if (row.fehler != dao::DaoError::TooFewParameters) {
            EXPECT_EQ(zeilen(u"SELECT "_s + row.feld + u" FROM sPersKto"_s).value(0), row.inhalt);
        }
        // The box's words are looked at among the failures.
        ASSERT_EQ(m_tisch.boxes.size(), row.fehler != 0 ? 1U : 0U);
        EXPECT_TRUE(row.fehler == 0 || neueBoxen()[0].contains(u"Fehlernummer: %1\r\n"_s.arg(row.fehler)));
    }
    EXPECT_THAT(zeilen(u"SELECT PersKtoName FROM sPersKto WHERE PersKtoNummer='D000002'"_s), ElementsAre(u"-"_s));
}

TEST_F(Werte, OfContactPersonsBecomeNumberedEntriesOfAKind)
{
    // clang-format off
    const std::pair<QString, QString> rows[] = {
        {u"Telefon privat"_s, u"1|Telefon|x|0"_s}, {u"Handy"_s, u"2|Mobil|x|0"_s}, {u"Telefax Fax"_s, u"3|Fax|x|1"_s},
        {u"Email"_s, u"4|Email|x|2"_s}, {u"Telefon Handy"_s, u"5|Mobil|x|0"_s}, {u"Fax Email"_s, u"6|Email|x|2"_s},
        {u"Fax Telefon"_s, u"7|Fax|x|1"_s}, // the last of the four, wherever it stands
        {u"telefax"_s, u"8|telefax|x|0"_s}, // other words are kept
    };
    // clang-format on
    QString fremd = u"Fax"_s;
    m_pck.neuerAnsprechpartnerWert(u"D000002"_s, u"Weiß"_s, fremd, u"y"_s);
    QStringList alle;
    for (const auto &[gegeben, gespeichert] : rows) {
        QString art = gegeben;
        m_pck.neuerAnsprechpartnerWert(u"D000001"_s, u"Kühn"_s, art, u"x"_s);
        EXPECT_EQ(art, gespeichert.section(u'|', 1, 1));
        alle += gespeichert;
    }
    EXPECT_EQ(zeilen(u"SELECT PersKommLfdNr, PersKommName, PersKommNr, PersKommTyp FROM sPersKom "
                     "WHERE PersKommNummer='D000001' AND PersKommAnsprech='Kühn' ORDER BY PersKommLfdNr"_s),
              alle);
    EXPECT_EQ(m_tisch.clipboard, m_engine.protokoll.last());
    EXPECT_EQ(fehlernummer([&] { m_pck.neuerAnsprechpartnerWert(u"D000001"_s, u"O'Neill"_s, fremd, u"1"_s); }), 3075);
    EXPECT_TRUE(m_tisch.clipboard.contains(u"'O'Neill'"_s)) << "not quoted; the statement is there to be looked at";
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
