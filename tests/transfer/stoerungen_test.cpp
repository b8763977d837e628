// Faults in the middle of a transfer: what the user sees, and what stands in the client and in ACT! afterwards.
#include "tests/transfer/TransferTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int actWeg = 462;
constexpr int nurLesen = 3027;

bool schreibt(const QString &zeile)
{
    return zeile.startsWith(u"SQL UPDATE"_s) || zeile.startsWith(u"SQL INSERT"_s);
}

/// What goes wrong when the course of a transfer comes to a line that contains `bei`: from there on ACT! or all writing
/// fails with a number, or another program runs a statement against the client.
struct Stoerung {
    QString bei;
    int nummer = 0;
    QString anweisung{};
};

} // namespace

class Stoerungen : public TransferTest
{
protected:
    void stoere(const Stoerung &stoerung)
    {
        m_stoerung = [this, stoerung, eingetreten = false](const QString &zeile) mutable {
            if (!eingetreten && zeile.contains(stoerung.bei)) {
                eingetreten = true;
                if (!stoerung.anweisung.isEmpty())
                    beispiel::fuehreAus(*m_engine, mandant(), {stoerung.anweisung});
            }
            const bool betroffen = stoerung.nummer == actWeg ? zeile.startsWith(u"ACT"_s) : schreibt(zeile);
            return eingetreten && betroffen ? stoerung.nummer : 0;
        };
    }
    int verknuepft() const
    {
        int anzahl = 0;
        for (const FakeAct::Contact &kontakt : m_act.contacts)
            anzahl += kontakt.at(60).toString().isEmpty() ? 0 : 1;
        return anzahl;
    }
};

TEST_F(Stoerungen, AreShownAsWhatTheyAre)
{
    // clang-format off
    struct Row { const char *name; QString bei; bool vorDemDialog; QString box; bool regulaer; };
    const Row rows[] = {
        {"opening the client", u"OPEN Muster"_s,                 true,  u"Fehler !\r\n%1:gestört"_s, false},
        {"reading the prices", u"Select FKAbfPreisGrp1"_s,       true,  u"Fehler: %1:gestört"_s,     true},
        {"opening once more",  u"OPEN Muster"_s,                 false, u"Fehler !\r\n%1:gestört"_s, false},
        {"making the account", u"INSERT INTO sPersKto"_s,        false, u"Fehler: %1:gestört"_s,     true},
    };
    // clang-format on
    for (const Row &row : rows) {
        for (const int nummer : {3026, 3027, 3040, 3043, 3045, 3050, 3051, 3260}) {
            SCOPED_TRACE(testing::Message() << row.name << ' ' << nummer);
            const auto stoerung = [&](const QString &zeile) { return zeile.contains(row.bei) ? nummer : 0; };
            m_tisch.boxes.clear();
            m_stoerung = nullptr;
            if (row.vorDemDialog)
                m_stoerung = stoerung;
            zeigeMitMandant();
            if (!row.vorDemDialog) {
                m_stoerung = stoerung;
                eintragen();
            }
            EXPECT_THAT(m_tisch.boxTexts(), ElementsAre(row.box.arg(nummer)));
            EXPECT_THAT(m_gefragt, IsEmpty()) << "it is no password that is missing";
            EXPECT_TRUE(m_haupt->beendet());
            EXPECT_EQ(m_act.callsOf(u"Resize"_s).size(), row.regulaer ? 1 : 0);
        }
    }
    EXPECT_THAT(zeilen(u"SELECT * FROM sPersKto"_s), IsEmpty());
}

TEST_F(Stoerungen, LeaveWhatCanBeExplained)
{
    const QString neuesKonto = u"INSERT INTO sPersKto (PersKtoNummer,PersKtoArt) VALUES ('D000000', 68)"_s;
    const QString eintrag = u"INSERT INTO sPersKom VALUES ('D000000', 1, 'Fax', '1', 'Fremd', 1)"_s;
    const QString geloescht = u"DELETE FROM sPersKto"_s;
    const QString vergeben = u"Die Nummer D000000 wurde schon vergeben."_s;
    const QString konto = u"D000000|Hansen & Söhne GmbH|"_s;
    const QString weg = u"Fehler: 462:"_s, gesperrt = u"Fehler: 3027:"_s, doppelt = u"Fehler: 3022:"_s;
    const QString fremdes = u"D000000|-|-"_s;

    // The last box by its beginning; accounts with company and currency; communication entries; linked ACT! contacts.
    // clang-format off
    struct Row {
        const char *name; Stoerung stoerung; QString letzteBox; bool regulaer;
        QStringList konten; int eintraege; int verknuepft;
    };
    const Row rows[] = {
        {"none", {u"-"_s}, u"Hinweis"_s, true, {konto + u'1'}, 14, 4},
        {"ACT! gone before the account", {u"ACT createLookup"_s, actWeg}, weg, true, {}, 0, 0},
        {"ACT! gone amid the account", {u"INSERT INTO sPersKto"_s, actWeg}, weg, true, {konto + u'0'}, 0, 0},
        {"ACT! gone amid the members", {u"'Jörg Äpfelbach'"_s, actWeg}, weg, true, {konto + u'1'}, 14, 0},
        {"ACT! gone in the write-back", {u"SetField(17, )"_s, actWeg}, weg, true, {konto + u'1'}, 14, 2},
        {"read-only before the account", {u"INSERT INTO sPersKto"_s, nurLesen}, gesperrt, true, {}, 0, 0},
        {"read-only amid the values", {u"SET PersKtoOrt="_s, nurLesen}, gesperrt, true, {konto + u'0'}, 0, 0},
        {"read-only amid the members", {u"'','Jörg Äpfelbach'"_s, nurLesen}, gesperrt, true, {konto + u'1'}, 3, 0},
        {"number taken by another", {u"Select PersKtoNummer"_s, 0, neuesKonto}, vergeben, false, {fremdes}, 0, 0},
        {"account deleted by another", {u"SET PersKtoOrt="_s, 0, geloescht}, u"Hinweis"_s, true, {}, 14, 4},
        {"entry of another", {u"PersKommLfdNr,PersKommName"_s, 0, eintrag}, doppelt, true, {konto + u'1'}, 1, 0},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        beispiel::fuehreAus(*m_engine, mandant(), {u"DELETE FROM sPersKto"_s, u"DELETE FROM sPersKom"_s});
        m_stoerung = nullptr;
        m_tisch.boxes.clear();
        zeigeMitMandant();
        m_tisch.boxes.clear();
        stoere(row.stoerung);
        eintragen();
        EXPECT_TRUE(m_tisch.boxTexts().last().startsWith(row.letzteBox)) << qPrintable(m_tisch.boxTexts().last());
        EXPECT_TRUE(m_haupt->beendet());
        EXPECT_EQ(m_act.callsOf(u"Resize"_s).size(), row.regulaer ? 1 : 0);
        EXPECT_EQ(zeilen(u"SELECT PersKtoNummer, PersKtoName, PersKtoDefWaehrungIdx FROM sPersKto"_s), row.konten);
        EXPECT_EQ(zeilen(u"SELECT * FROM sPersKom"_s).size(), row.eintraege);
        EXPECT_EQ(verknuepft(), row.verknuepft);
    }
}
