// Every failure of disk, network and file at every stage: it keeps its number and words, and only a wrong password asks
// for one.
#include "tests/fakes/NoRights.h"
#include "tests/pck/PckTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;
using Fehler = PckTest;

namespace {

constexpr int stoerungen[] = {58, 3024, 3026, 3027, 3036, 3040, 3043, 3045, 3049, 3050, 3051, 3260, 3343, 3428};

} // namespace

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
            SCOPED_TRACE(testing::Message() << row.name << ' ' << nummer);
            m_programm.regulaerBeendet = false;
            m_engine.vorOeffnen = [=, gut = row.malGut](const QString &) mutable {
                if (gut-- <= 0)
                    throw dao::DaoError(nummer, u"gestört"_s);
            };
            if (nummer == 58 && std::string_view(row.name) == "test by index") {
                EXPECT_FALSE(m_pck.test_Passwort(0, {})) << "there it is an answer";
                continue;
            }
            EXPECT_THROW(row.aufruf(m_pck), ProgrammBeendet);
            EXPECT_EQ(m_tisch.boxes.at(0).icon, desktop::Icon::Exclamation);
            EXPECT_THAT(neueBoxen(), ElementsAre(u"Fehler !\r\n%1:gestört"_s.arg(nummer)));
            EXPECT_TRUE(m_programm.regulaerBeendet);
            EXPECT_THAT(m_abfrage.gefragt, IsEmpty());
            m_pck.close_Mandant();
        }
    }
}

TEST_F(Fehler, AtReadingAndWritingAreShownOrReachTheCaller)
{
    const QString waehrung = u"Fehler in Klasse clPCK, Modul %1\r\nFehlernummer:%2\r\nFehlerbeschreibung:gestört"_s;
    const QString setzeWert = u"Fehler in Klasse clPCK Methode setzeWert\r\nFehlernummer: %1\r\n"
                              "Fehlerbeschreibung:gestört\r\nSQL-String:UPDATE sPersKto SET PersKtoName='x' WHERE 1=1"
                              "\r\nDer SQL-String liegt jetzt in der Zwischenablage."_s;
    oeffneNeuen({u"CREATE TABLE Vorlage (Gruppe TEXT(9))"_s});
    const auto vorlage = m_engine.dahinter().OpenDatabase(m_mandant, 0, true, {})->OpenRecordset(u"Vorlage"_s);
    const auto eintrag = [&] {
        QString art = u"Fax"_s;
        m_pck.neuerAnsprechpartnerWert(u"D000001"_s, u"Kühn"_s, art, u"1"_s);
    };
    const auto konto = [&] { m_pck.neueAdresse(u"D000001"_s, *vorlage); };
    // clang-format off
    struct Row { QString bei; std::function<void()> aufruf; QString box; };
    const Row rows[] = {
        {u"SELECT PersKtoNummer"_s, [&] { m_pck.NeueNummer(0, u"D"_s, 0); },       {}},
        {u"Select PersKtoNummer"_s, konto,                                         {}},
        {u"INSERT INTO"_s,          konto,                                         {}},
        {u"Select * from"_s,        konto,                                         {}},
        {u"SELECT PersKommLfdNr"_s, eintrag,                                       {}},
        {u"INSERT INTO"_s,          eintrag,                                       {}},
        {u"sSchlbez"_s,             [&] { m_pck.Anzahl_Preislisten(); },           {}},
        {u"sSchlbez"_s,             [&] { m_pck.Preisliste(0); },                  {}},
        {u"SABFKons"_s,             [&] { m_pck.Preisgruppe(1); },                 {}},
        {u"Waehrung"_s, [&] { m_pck.Anzahl_Waehrungen(); }, waehrung.arg(u"Anzahl_Waehrungen"_s)},
        {u"Waehrung"_s, [&] { EXPECT_EQ(m_pck.Waehrung(0), u"0 - Fehler!"_s); }, waehrung.arg(u"Waehrung"_s)},
        {u"UPDATE"_s, [&] { m_pck.setzeWert(u"sPersKto"_s, u"PersKtoName"_s, u"x"_s, u"1=1"_s); }, setzeWert},
    };
    // clang-format on
    for (const Row &row : rows) {
        for (const int nummer : stoerungen) {
            SCOPED_TRACE(testing::Message() << &row - rows << ' ' << qPrintable(row.bei) << ' ' << nummer);
            m_engine.vorher = nullptr;
            m_pck.NeueNummer(0, u"D"_s, 0); // the client is open
            m_engine.vorher = [&](const QString &sql) {
                if (sql.contains(row.bei))
                    throw dao::DaoError(nummer, u"gestört"_s);
            };
            EXPECT_EQ(fehlernummer(row.aufruf), row.box.isEmpty() ? nummer : 0);
            EXPECT_EQ(neueBoxen(), row.box.isEmpty() ? QStringList() : QStringList(row.box.arg(nummer)));
            EXPECT_FALSE(m_programm.regulaerBeendet);
            EXPECT_THAT(m_abfrage.gefragt, IsEmpty());
            fuehreAus({u"DELETE FROM sPersKto"_s});
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
    QVariant mandant = 0;
    {
        clPCK zweites({m_programm, m_engine, m_tisch, m_tisch, m_tisch, m_abfrage});
        zweites.init(m_ordner.path() + u'/');
        EXPECT_EQ(fehlernummer([&] { zweites.open_Mandant(mandant); }), 3367) << "both at once share a name";
        m_pck.close_Mandant();
        EXPECT_TRUE(zweites.open_Mandant(mandant));
    }
    EXPECT_TRUE(m_pck.open_Mandant(mandant)) << "the other is closed with its object";
}
