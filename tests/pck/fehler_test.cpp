// Every failure of disk, network and file at every stage: it keeps its number and words, and only a wrong password asks
// for one.
#include "tests/fakes/NoRights.h"
#include "tests/pck/PckTest.h"

using namespace Qt::StringLiterals;
using desktop::Icon;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr int stoerungen[] = {58, 3024, 3026, 3027, 3036, 3040, 3043, 3045, 3049, 3050, 3051, 3260, 3343, 3428};

} // namespace

class Fehler : public PckTest
{
protected:
    void stoere(const QString &bei, int nummer)
    {
        m_engine.vorher = [=](const QString &sql) {
            if (sql.contains(bei))
                throw dao::DaoError(nummer, u"gestört"_s);
        };
    }
};

TEST_F(Fehler, AtOpeningEndTheProgramAndNeverAskForAPassword)
{
    // clang-format off
    struct Row { const char *name; int malGut; std::function<void(clPCK &)> aufruf; };
    const Row rows[] = {
        {"first opening",     0, [](clPCK &pck) { QVariant m = u"Muster.PCK"_s; pck.open_Mandant(m); }},
        {"second opening",    1, [](clPCK &pck) { QVariant m = 0; pck.open_Mandant(m); }},
        {"for a number",      0, [](clPCK &pck) { pck.NeueNummer(0, u"D"_s, 0); }},
        {"test by name",      0, [](clPCK &pck) { pck.test_Passwort(u"Muster.PCK"_s, {}); }},
        {"test by index",     0, [](clPCK &pck) { pck.test_Passwort(0, {}); }},
    };
    // clang-format on
    oeffneNeuen();
    m_pck.close_Mandant();
    for (const Row &row : rows) {
        for (const int nummer : stoerungen) {
            if (nummer == 58 && std::string_view(row.name) == "test by index")
                continue; // there it is the answer "no"
            SCOPED_TRACE(testing::Message() << row.name << ' ' << nummer);
            m_tisch.boxes.clear();
            m_programm.sofortBeendet = false;
            m_engine.vorOeffnen = [=, gut = row.malGut](const QString &) mutable {
                if (gut-- <= 0)
                    throw dao::DaoError(nummer, u"gestört"_s);
            };
            EXPECT_THROW(row.aufruf(m_pck), ProgrammBeendet);
            EXPECT_THAT(m_tisch.boxTexts(), ElementsAre(u"Fehler !\r\n%1:gestört"_s.arg(nummer)));
            EXPECT_EQ(m_tisch.boxes[0].icon, Icon::Exclamation);
            EXPECT_TRUE(m_programm.sofortBeendet);
            EXPECT_THAT(m_abfrage.gefragt, IsEmpty());
            m_pck.close_Mandant();
        }
    }
}

TEST_F(Fehler, AtReadingAndWritingAreShownOrReachTheCaller)
{
    const QString waehrung = u"Fehler in Klasse clPCK, Modul %1\r\nFehlernummer:%2\r\nFehlerbeschreibung:gestört"_s;
    const QString update = u"UPDATE sPersKto SET PersKtoName='x' WHERE 1=1"_s;
    const QString setzeWert = u"Fehler in Klasse clPCK Methode setzeWert\r\nFehlernummer: %2\r\n"
                              "Fehlerbeschreibung:gestört\r\nSQL-String:%1\r\n"
                              "Der SQL-String liegt jetzt in der Zwischenablage."_s;
    oeffneNeuen({u"CREATE TABLE Vorlage (Gruppe TEXT(9))"_s});
    const auto vorlage = m_engine.dahinter().OpenDatabase(m_mandant, 0, true, {})->OpenRecordset(u"Vorlage"_s);
    const auto eintrag = [&] {
        QString art = u"Fax"_s;
        m_pck.neuerAnsprechpartnerWert(u"D000001"_s, u"Kühn"_s, art, u"1"_s);
    };
    const auto konto = [&] { m_pck.neueAdresse(u"D000001"_s, *vorlage); };
    // clang-format off
    struct Row { const char *name; QString bei; std::function<void()> aufruf; QString box; };
    const Row rows[] = {
        {"number",         u"SELECT PersKtoNummer"_s, [&] { m_pck.NeueNummer(0, u"D"_s, 0); },       {}},
        {"account taken?", u"Select PersKtoNummer"_s, konto,                                         {}},
        {"account",        u"INSERT INTO"_s,          konto,                                         {}},
        {"account's row",  u"Select * from"_s,        konto,                                         {}},
        {"last entry",     u"SELECT PersKommLfdNr"_s, eintrag,                                       {}},
        {"entry",          u"INSERT INTO"_s,          eintrag,                                       {}},
        {"price lists",    u"sSchlbez"_s,             [&] { m_pck.Anzahl_Preislisten(); },           {}},
        {"price list",     u"sSchlbez"_s,             [&] { m_pck.Preisliste(0); },                  {}},
        {"price group",    u"SABFKons"_s,             [&] { m_pck.Preisgruppe(1); },                 {}},
        {"currencies",     u"Waehrung"_s,             [&] { m_pck.Anzahl_Waehrungen(); },
         waehrung.arg(u"Anzahl_Waehrungen"_s)},
        {"currency",       u"Waehrung"_s,             [&] { EXPECT_EQ(m_pck.Waehrung(0), u"0 - Fehler!"_s); },
         waehrung.arg(u"Waehrung"_s)},
        {"value",          u"UPDATE"_s, [&] { m_pck.setzeWert(u"sPersKto"_s, u"PersKtoName"_s, u"x"_s, u"1=1"_s); },
         setzeWert.arg(update)},
    };
    // clang-format on
    for (const Row &row : rows) {
        for (const int nummer : stoerungen) {
            SCOPED_TRACE(testing::Message() << row.name << ' ' << nummer);
            m_tisch.boxes.clear();
            m_engine.vorher = nullptr;
            m_pck.NeueNummer(0, u"D"_s, 0); // the client is open
            stoere(row.bei, nummer);
            EXPECT_EQ(fehlernummer(row.aufruf), row.box.isEmpty() ? nummer : 0);
            EXPECT_EQ(m_tisch.boxTexts(), row.box.isEmpty() ? QStringList() : QStringList(row.box.arg(nummer)));
            EXPECT_FALSE(m_programm.sofortBeendet);
            EXPECT_THAT(m_abfrage.gefragt, IsEmpty());
            beispiel::fuehreAus(m_engine.dahinter(), m_mandant, {u"DELETE FROM sPersKto"_s});
        }
    }
}

TEST_F(Fehler, OfRightsDoNotPassForMissingFiles)
{
    oeffneNeuen();
    m_pck.close_Mandant();
    const NoRights keine(m_ordner.path());
    QVariant mandant = 0;
    EXPECT_THROW(m_pck.open_Mandant(mandant), ProgrammBeendet);
    EXPECT_TRUE(m_tisch.boxes.at(0).text.startsWith(u"Fehler !\r\n3051:"_s)) << qPrintable(m_tisch.boxes[0].text);
}

TEST_F(Fehler, LeaveNothingOpenBehind)
{
    oeffneNeuen();
    {
        clPCK zweites({m_programm, m_engine, m_tisch, m_tisch, m_tisch, m_abfrage});
        zweites.init(m_ordner.path() + u'/');
        QVariant mandant = 0;
        EXPECT_EQ(fehlernummer([&] { zweites.open_Mandant(mandant); }), 3367) << "both at once share a name";
        m_pck.close_Mandant();
        EXPECT_TRUE(zweites.open_Mandant(mandant));
    }
    QVariant mandant = 0;
    EXPECT_TRUE(m_pck.open_Mandant(mandant)) << "the other is closed with its object";
}
