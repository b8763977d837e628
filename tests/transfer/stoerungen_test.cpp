// Faults in the middle of a transfer: what the user sees, and what stands in the client and in ACT! afterwards.
#include "tests/transfer/TransferTest.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int actWeg = 462;
constexpr int nurLesen = 3027;
constexpr int keinRecht = 3051;

bool trifft(int nummer, const QString &zeile)
{
    if (nummer == actWeg)
        return zeile.startsWith(u"ACT"_s);
    if (nummer == keinRecht)
        return zeile.startsWith(u"OPEN"_s);
    return zeile.startsWith(u"SQL UPDATE"_s) || zeile.startsWith(u"SQL INSERT"_s);
}

/// What goes wrong when the course of a transfer comes to a line that contains `bei`: from there on ACT!, all opening
/// or all writing fails with a number, or another program runs a statement against the client.
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
            return eingetreten && trifft(stoerung.nummer, zeile) ? stoerung.nummer : 0;
        };
    }
};

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
        const char *name; Stoerung stoerung; QString letzteBox;
        QStringList konten; int eintraege; int verknuepft;
    };
    const Row rows[] = {
        {"none", {u"-"_s}, u"Hinweis"_s, {konto + u'5'}, 14, 4},
        {"no right to open it again", {u"OPEN Muster"_s, keinRecht}, u"Fehler !\r\n3051:gestört"_s, {}, 0, 0},
        {"ACT! gone before the account", {u"ACT createLookup"_s, actWeg}, weg, {}, 0, 0},
        {"ACT! gone amid the account", {u"INSERT INTO sPersKto"_s, actWeg}, weg, {konto + u'0'}, 0, 0},
        {"ACT! gone amid the members", {u"'Jörg Äpfelbach'"_s, actWeg}, weg, {konto + u'5'}, 14, 0},
        {"ACT! gone in the write-back", {u"SetField(17, )"_s, actWeg}, weg, {konto + u'5'}, 14, 2},
        {"read-only before the account", {u"INSERT INTO sPersKto"_s, nurLesen}, gesperrt, {}, 0, 0},
        {"read-only amid the values", {u"SET PersKtoOrt="_s, nurLesen}, gesperrt, {konto + u'0'}, 0, 0},
        {"read-only amid the members", {u"'','Jörg Äpfelbach'"_s, nurLesen}, gesperrt, {konto + u'5'}, 3, 0},
        {"number taken by another", {u"Select PersKtoNummer"_s, 0, neuesKonto}, vergeben, {fremdes}, 0, 0},
        {"account deleted by another", {u"SET PersKtoOrt="_s, 0, geloescht}, u"Hinweis"_s, {}, 14, 4},
        {"entry of another", {u"PersKommLfdNr,PersKommName"_s, 0, eintrag}, doppelt, {konto + u'5'}, 1, 0},
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
        EXPECT_TRUE(m_haupt->beendet() && m_gefragt.isEmpty());
        EXPECT_FALSE(offen().contains(u"Muster.PCK"_s));
        EXPECT_EQ(m_act.callsOf(u"Resize"_s).size(), 1) << "ACT! gets its window back";
        EXPECT_EQ(zeilen(u"SELECT PersKtoNummer, PersKtoName, PersKtoDefWaehrungIdx FROM sPersKto"_s), row.konten);
        EXPECT_EQ(zeilen(u"SELECT * FROM sPersKom"_s).size(), row.eintraege);
        EXPECT_EQ(std::count_if(m_act.contacts.begin(), m_act.contacts.end(),
                                [](const auto &kontakt) { return !kontakt.at(60).toString().isEmpty(); }),
                  row.verknuepft);
    }
}
