// The transfer: every statement and call of it, and what stands in the client and in ACT! afterwards.
#include <QLocale>

#include "tests/transfer/TransferTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const QString konten = u"SELECT PersKtoNummer, PersKtoName, PersKtoMatchcode, PersKtoBriefanrede, PersKtoRabatt, "
                       "PersKtoLaendercode, PersKtoPreisGruppe, PersKtoDefWaehrungIdx, PersKtoDATEVNr FROM sPersKto"_s;
const QString eintraege = u"SELECT PersKommNummer, PersKommLfdNr, PersKommAnsprech, PersKommName, PersKommNr, "
                          "PersKommTyp FROM sPersKom ORDER BY PersKommNummer, PersKommLfdNr"_s;

} // namespace

class Eintragen : public TransferTest
{
protected:
    void TearDown() override { QLocale::setDefault(QLocale::system()); }

    QStringList ablaufMit(const QString &teil) const { return m_ablauf.filter(teil); }
    QString inAct(std::size_t i, int id) { return m_act.contacts[i][id].toString(); }
};

TEST_F(Eintragen, DebtorWithDatevFollowsTheRecordStepByStep)
{
    std::vector<beispiel::Person> personen = beispiel::firmengruppe();
    std::swap(personen[0], personen[1]);
    legeMandantAn(u"Alt.PCK"_s);
    beispiel::fuegeKontenHinzu(*m_engine, mandant(), {u"D000000"_s, u"D123456"_s});
    gemerkt(u"Mandant"_s) = u"2"_s;
    zeige(personen, 2);
    m_haupt->konfiguration.DatevNr = true;
    liste(u"cbxPreisliste").setCurrentIndex(2);
    feld(u"txbRabatt").setText(u"3"_s);
    feld(u"txbLaendercode").setText(u"43"_s);
    m_haupt->Status().setze_ProgressBar1(7);
    m_tisch.boxes.clear();
    m_ablauf.clear();
    m_tisch.onYield = [this] {
        const frmStatus &status = m_haupt->Status();
        m_ablauf += u"STATUS %1 %2"_s.arg(status.isVisible() ? status.ProgressBar1() : -1).arg(status.lbStatus());
        m_tisch.settings.clear(); // they are saved again at the end
    };
    eintragen();

    for (const QString &konto : zeilen(konten))
        m_ablauf += u"sPersKto "_s + konto;
    for (const QString &eintrag : zeilen(eintraege))
        m_ablauf += u"sPersKom "_s + eintrag;
    const QString soll = QString::fromUtf8(beispiel::lies(QStringLiteral(VELDRAK_ERWARTET "/debitor_mit_datev.txt")));
    for (qsizetype i = 0; i <= m_ablauf.size(); ++i)
        ASSERT_EQ(m_ablauf.value(i), soll.section(u'\n', i, i)) << "line " << i + 1;
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_EQ(inAct(i, 60) + inAct(i, 61) + inAct(i, 62), u"D123457Muster.PCK"_s + (i == 1 ? u'H' : u'N'));
    EXPECT_EQ(inAct(0, 14), u"[41]79 5550022"_s);
    EXPECT_EQ(gemerkt(u"Typ"_s) + gemerkt(u"Mandant"_s), u"02"_s);
    EXPECT_THAT(m_tisch.boxTexts(), SizeIs(2)) << "the number's and the type's column, which the template leaves out";
    EXPECT_TRUE(m_haupt->beendet() && m_haupt->Status().isHidden());
    EXPECT_THAT(offen(), IsEmpty());
    EXPECT_EQ(m_tisch.clipboardHistory.size(), ablaufMit(u"SQL UPDATE"_s).size() + ablaufMit(u"SQL INSERT"_s).size());
}

TEST_F(Eintragen, TypeDecidesWhatIsWritten)
{
    const QString code = u"PersKtoLaendercode="_s, rabatt = u"PersKtoRabatt=0"_s, preis = u"PersKtoPreisGruppe="_s;
    const QString waehrung = u"PersKtoDefWaehrungIdx=5"_s, datevNr = u"PersKtoDATEVNr='00000'"_s;
    // clang-format off
    struct Row { const char *name; int typ; bool datev; int preisliste; QString code; QStringList soll; };
    const Row rows[] = {
        {"debtor",              0, false, 0, u"1"_s,   {rabatt, code + u'1', preis + u'0', waehrung}},
        {"on a price list",     0, false, 4, u"4,9"_s, {rabatt, code + u'4', preis + u"14"_s, waehrung}},
        {"creditor with DATEV", 1, true,  0, u"999"_s, {rabatt, code + u"999"_s, waehrung, datevNr}},
        {"employee with DATEV", 2, true,  4, u"43"_s,  {code + u"43"_s, waehrung}},
        {"address with DATEV",  3, true,  4, {},       {code + u"49"_s}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        gemerkt(u"Typ"_s) = QString::number(row.typ);
        zeigeMitMandant({beispiel::firmengruppe()[0]});
        m_haupt->konfiguration.DatevNr = row.datev;
        liste(u"cbxPreisliste").setCurrentIndex(row.preisliste);
        feld(u"txbLaendercode").setText(row.code);
        eintragen();
        QStringList geschrieben;
        for (const QString &zeile : m_ablauf.filter(QRegularExpression(u"UPDATE (SPersKto|.*DATEVNr)"_s)))
            geschrieben += zeile.section(u" SET "_s, 1).section(u" WHERE "_s, 0, 0);
        EXPECT_EQ(geschrieben, row.soll);
        EXPECT_EQ(gemerkt(u"Laendercode"_s), row.code.isEmpty() ? u"49"_s : row.code);
    }
}

TEST_F(Eintragen, NumberTakenMeanwhileStopsItOnce)
{
    zeigeMitMandant();
    beispiel::fuegeKontenHinzu(*m_engine, mandant(), {u"D000000"_s});
    m_tisch.settings.clear();
    eintragen();
    EXPECT_EQ(gemerkt(u"Typ"_s) + gemerkt(u"Mandant"_s) + gemerkt(u"Laendercode"_s), u"0149"_s) << "saved before";
    EXPECT_THAT(m_tisch.boxTexts(), ElementsAre(u"Die Nummer D000000 ist schon vergeben !"_s));
    EXPECT_THAT(m_tisch.clipboardHistory, IsEmpty());
    EXPECT_THAT(m_act.callsOf(u"SetField"_s), IsEmpty());
    EXPECT_FALSE(m_haupt->beendet());
    EXPECT_TRUE(m_haupt->Status().isHidden());
    EXPECT_TRUE(finde<QPushButton>(u"cmdEintragen").hasFocus());
    EXPECT_EQ(m_haupt->Mitglieder[0]->Nummer + m_haupt->Mitglieder[0]->Mandant, u"D000000Muster.PCK"_s);

    eintragen(); // the main contact counts as transferred now
    EXPECT_THAT(ablaufMit(u"INSERT INTO sPersKto "_s), IsEmpty());
    EXPECT_EQ(zeilen(eintraege).size(), 3 * 4);
    EXPECT_EQ(inAct(0, 60), u"D000000"_s);
}

TEST_F(Eintragen, OnlyNewMembersOfAnExistingAccountAreAdded)
{
    std::vector<beispiel::Person> personen = beispiel::firmengruppe();
    for (const std::size_t i : {0U, 2U}) {
        personen[i].nummer = u"D000077"_s;
        personen[i].mandant = i == 0 ? u"Muster.PCK"_s : QString(); // half is enough
    }
    zeige(personen);
    liste(u"cbxMandant").setCurrentIndex(1);
    m_tisch.boxes.clear();
    eintragen();
    EXPECT_THAT(m_tisch.boxTexts(), IsEmpty());
    EXPECT_THAT(ablaufMit(u"sPersKto (PersKtoNummer"_s), IsEmpty());
    EXPECT_EQ(zeilen(u"SELECT PersKommAnsprech FROM sPersKom WHERE PersKommNummer = 'D000077' AND PersKommTyp = 1"_s),
              (QStringList{u"Jörg Äpfelbach"_s, u"Zoë Kühn"_s}));
    for (std::size_t i = 0; i < personen.size(); ++i)
        EXPECT_EQ(inAct(i, 60), u"D000077"_s);

    // The lists of a freshly loaded dialog have closed the client, and no number is asked for: it is opened again.
    beispiel::fuehreAus(*m_engine, mandant(), {u"DELETE FROM sPersKom"_s});
    zeigeMitMandant(personen);
    eintragen();
    EXPECT_THAT(m_tisch.boxTexts(), IsEmpty());
    EXPECT_EQ(zeilen(eintraege).size(), 2 * 4);
    EXPECT_EQ(inAct(3, 60), u"D000077"_s);

    // Half a link is none: the account is not made, and the client is not opened either.
    personen[0].mandant.clear();
    zeigeMitMandant(personen);
    eintragen();
    EXPECT_THAT(m_tisch.boxTexts(), ElementsAre(u"Fehler: 91:Objektvariable nicht festgelegt"_s));
}

TEST_F(Eintragen, TheMainContactIsTheMemberAtItsIndex)
{
    zeigeMitMandant();
    m_haupt->HauptIndex = 2; // another one since the dialog was loaded
    m_haupt->Mitglieder[1]->Typ = u"H"_s;
    m_tisch.boxes.clear();
    eintragen();
    EXPECT_EQ(m_tisch.boxTexts().mid(2), QStringList(u"Neuer Hauptkontakt !!!"_s)) << "after the template's two";
    EXPECT_THAT(zeilen(u"SELECT PersKtoNummer, PersKtoAnsprech, PersKtoTelefon FROM sPersKto"_s),
                ElementsAre(u"D000000|Jörg Äpfelbach|+49 40 123460"_s));
    EXPECT_THAT(zeilen(u"SELECT PersKommNr FROM sPersKom WHERE PersKommAnsprech = 'Jörg Äpfelbach'"_s), IsEmpty());
    EXPECT_EQ(inAct(1, 60) + inAct(1, 61) + inAct(1, 62), u"D000000Muster.PCKH"_s);
}

TEST_F(Eintragen, SettingsThatCannotBeSavedAreToldOnce)
{
    zeigeMitMandant();
    m_tisch.settingsReadOnly = true;
    m_tisch.boxes.clear();
    eintragen();
    ASSERT_THAT(m_tisch.boxTexts(), SizeIs(1 + 2));
    EXPECT_EQ(m_tisch.boxTexts()[0],
              u"Ihre Auswahl konnte nicht gespeichert werden. Die Übertragung ist davon nicht betroffen.\r\n"
              "75:Fehler beim Zugriff auf Pfad oder Datei"_s);
    EXPECT_EQ(inAct(3, 60), u"D000000"_s);
}

TEST_F(Eintragen, WhatActHandsBackIsTheNextFieldNumber)
{
    zeigeMitMandant({beispiel::firmengruppe()[0]});
    m_act.handsBack = [](qint16 &id) { id = static_cast<qint16>(id + 100); };
    m_haupt->PCKDatenLoeschen(*m_haupt->Mitglieder[0]);
    eintragen();
    EXPECT_EQ(m_act.callsOf(u"SetField"_s).mid(0, 6).join(u' '),
              u"SetField(60, ) SetField(61, ) SetField(62, ) "
              "SetField(160, D000000) SetField(161, Muster.PCK) SetField(162, H)"_s);
    EXPECT_EQ(m_haupt->konfiguration.IdNummer, 260);
}

TEST_F(Eintragen, ApostropheHoldsInValuesAndFailsInContactPersons)
{
    std::vector<beispiel::Person> personen = beispiel::firmengruppe();
    personen[0].firma = u"O'Neill & Töchter"_s;
    personen[1].nachname = u"O'Neill"_s;
    zeigeMitMandant(personen);
    eintragen();
    EXPECT_THAT(zeilen(u"SELECT PersKtoName FROM sPersKto"_s), ElementsAre(u"O'Neill & Töchter"_s));
    EXPECT_EQ(zeilen(eintraege).size(), 2) << "the main contact's";
    EXPECT_TRUE(m_tisch.boxTexts().last().startsWith(u"Fehler: 3075:"_s));
    EXPECT_TRUE(m_haupt->beendet());
    EXPECT_THAT(m_act.callsOf(u"SetField"_s), IsEmpty());
}

TEST_F(Eintragen, DiscountWithACommaIsToldAndTheTransferGoesOn)
{
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    zeigeMitMandant();
    feld(u"txbRabatt").setText(u"12,5"_s);
    eintragen();
    EXPECT_THAT(ablaufMit(u"PersKtoRabatt=12,5"_s), SizeIs(1));
    ASSERT_THAT(m_tisch.boxTexts(), SizeIs(3));
    EXPECT_TRUE(m_tisch.boxTexts()[2].startsWith(u"Fehler in Klasse clPCK Methode setzeWert\r\nFehlernummer: 3144"_s));
    EXPECT_THAT(zeilen(u"SELECT PersKtoRabatt, PersKtoLaendercode FROM sPersKto"_s), ElementsAre(u"0|49"_s));
    EXPECT_EQ(inAct(3, 60), u"D000000"_s);
}

TEST_F(Eintragen, NothingElseCanBeDoneMeanwhile)
{
    zeigeMitMandant();
    m_tisch.onYield = [this] {
        EXPECT_FALSE(liste(u"cbxMandant").isEnabled());
        EXPECT_FALSE(finde<QPushButton>(u"cmdEintragen").isEnabled());
        dialog().close();
        EXPECT_FALSE(m_haupt->beendet());
    };
    eintragen();
    EXPECT_EQ(inAct(3, 60), u"D000000"_s);
    EXPECT_EQ(zeilen(u"SELECT PersKtoNummer FROM sPersKto"_s).size(), 1);
}

TEST(OLE_Schreib_Filter, PutsTheCountryCodeInBrackets)
{
    // clang-format off
    struct Row { const char *name; QString feld; QString wert; QString soll; };
    const Row rows[] = {
        {"telephone",              u"Telefon privat"_s, u"+49 40 123456"_s,   u"[49]40 123456"_s},
        {"three digits",           u"Handy"_s,          u"+423 663 1234"_s,   u"[423]663 1234"_s},
        {"two blanks",             u"Telefax Fax"_s,    u"+49  40 123456 "_s, u"[49]40 123456"_s},
        {"no plus",                u"Telefon"_s,        u"0049 40 1"_s,       u"0049 40 1"_s},
        {"no blank",               u"Telefon"_s,        u"+4940123456"_s,     u"+4940123456"_s},
        {"blank in front",         u"Telefon"_s,        u" +49"_s,            u" +49"_s},
        {"empty",                  u"Fax"_s,            u""_s,                u""_s},
        {"no phone field",         u"Firma"_s,          u"+1 Plus Eins"_s,    u"+1 Plus Eins"_s},
        {"other capitals",         u"telefon"_s,        u"+49 40 1"_s,        u"+49 40 1"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QString wert = row.wert;
        EXPECT_EQ(Eintragung::OLE_Schreib_Filter(wert, row.feld), row.soll);
        EXPECT_EQ(wert, row.soll) << "in place, too";
    }
    EXPECT_EQ(Eintragung::getvalue(QVariant()), QVariant(QString()));
    EXPECT_EQ(Eintragung::getvalue(5), QVariant(5));
}
