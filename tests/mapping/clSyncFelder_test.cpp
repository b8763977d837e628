// Every question to the mapping, on a real mapping file, with what is answered when the row is missing.
#include <functional>

#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "mapping/clSyncFelder.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeAct.h"
#include "tests/fakes/Fehlernummer.h"
#include "tests/fakes/MitschreibendeEngine.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class SyncFelder : public testing::Test
{
protected:
    SyncFelder() { m_felder.init(m_pfad, coding::mappingZugriff()); }

    /// Runs statements against the mapping file behind the open mapping's back, which closes it before.
    void aendere(const QStringList &anweisungen)
    {
        m_felder.Kill();
        beispiel::fuehreAus(m_engine.dahinter(), m_pfad, anweisungen, coding::mappingZugriff());
        m_felder.init(m_pfad, coding::mappingZugriff());
    }

    QTemporaryDir m_ordner;
    MitschreibendeEngine m_engine{dao::makeEmbeddedEngine()};
    QString m_pfad = beispiel::erzeugeMapping(m_engine.dahinter(), m_ordner.path());
    clSyncFelder m_felder{m_engine};
};

} // namespace

TEST_F(SyncFelder, TranslateNamesAndIds)
{
    EXPECT_EQ(m_felder.ActFeldname(1), u"COMPANY"_s);
    EXPECT_EQ(m_felder.ActFeldname(QVariant::fromValue<qint16>(2)), u"CONTACT"_s) << "a short is an ID as well";
    EXPECT_EQ(m_felder.ActFeldname(u"PersKtoName"_s), u"COMPANY"_s);
    EXPECT_EQ(m_felder.ActFeldname(u"fIRMA"_s), u"COMPANY"_s) << "the neutral name, any case";
    EXPECT_EQ(m_felder.ActFeldname(u"COMPANY"_s), u"ERROR"_s) << "never by the name that is asked for";
    EXPECT_EQ(m_felder.OLFeldname(1), u"PersKtoName"_s);
    EXPECT_EQ(m_felder.OLFeldname(u"COMPANY"_s), u"PersKtoName"_s);
    EXPECT_EQ(m_felder.OLFeldname(u"Firma"_s), u"PersKtoName"_s);
    EXPECT_EQ(m_felder.OLFeldname(u"PersKtoName"_s), u"ERROR"_s);
    EXPECT_EQ(m_felder.SyncFeldname(u"TELEFON"_s), u"Telefon"_s);
    EXPECT_EQ(m_felder.SyncFeldname(u"PersKtoTelefax"_s), u"Fax"_s);
    EXPECT_EQ(m_felder.SyncFeldname(99), u"ERROR"_s);
    EXPECT_EQ(m_felder.OLFeldname(u"gibt es nicht"_s), u"ERROR"_s);
    EXPECT_EQ(m_felder.OLFeldname(u"1"_s), u"ERROR"_s) << "a text that looks like an ID is a name";
    EXPECT_EQ(fehlernummer([this] { m_felder.OLFeldname(u"O'Neill"_s); }), 3075);
    aendere({u"UPDATE Felder SET Sync_FeldName = 'mehrfach'"_s});
    EXPECT_EQ(m_felder.OLFeldname(u"mehrfach"_s), u"PersKtoName"_s) << "the first of several";
}

TEST_F(SyncFelder, AskOneQueryEachAndCloseIt)
{
    const QString nachName = u"SELECT %1 FROM Felder  WHERE %2 = 'x' OR %3 = 'x'"_s;
    const QString nachId = u"SELECT %1 FROM %2 WHERE ID = 1"_s;
    FakeAct act;
    act.contacts = {{}};
    const std::pair<std::function<void()>, QString> rows[] = {
        {[&] { m_felder.ActFeldname(u"x"_s); }, nachName.arg(u"Act_FeldName", u"PCK_Feldname", u"Sync_Feldname")},
        {[&] { m_felder.OLFeldname(u"x"_s); }, nachName.arg(u"PCK_FeldName", u"Act_Feldname", u"Sync_Feldname")},
        {[&] { m_felder.SyncFeldname(u"x"_s); }, nachName.arg(u"Sync_FeldName", u"Act_Feldname", u"PCK_FeldName")},
        {[&] { m_felder.ActFeldID(u"x"_s); }, nachName.arg(u"Act_FeldID", u"PCK_Feldname", u"Sync_Feldname")},
        {[&] { m_felder.SyncID(u"x"_s); }, u"SELECT ID FROM Felder WHERE Sync_Feldname = 'x'"_s},
        {[&] { m_felder.ActFeldname(1); }, nachId.arg(u"ACT_FeldName", u"Felder")},
        {[&] { m_felder.OLFeldname(1); }, nachId.arg(u"PCK_FeldName", u"Felder")},
        {[&] { m_felder.SyncFeldname(1); }, nachId.arg(u"Sync_FeldName", u"Felder")},
        {[&] { m_felder.ActFeldID(1); }, nachId.arg(u"Act_FeldID", u"Felder")},
        {[&] { m_felder.OLTabelle(1); }, nachId.arg(u"PCK_Tabelle", u"Felder")},
        {[&] { m_felder.IsSyncH(1); }, nachId.arg(u"Sync_H", u"Felder")},
        {[&] { m_felder.IsSyncN(1); }, nachId.arg(u"Sync_N", u"Felder")},
        {[&] { m_felder.Typ(1); }, nachId.arg(u"Datentyp", u"Felder")},
        {[&] { m_felder.NachActH(1); }, nachId.arg(u"Nach_Act_H", u"Felder")},
        {[&] { m_felder.NachActN(1); }, nachId.arg(u"Nach_Act_N", u"Felder")},
        {[&] { m_felder.IsKomH(1); }, nachId.arg(u"Kom_H", u"Felder")},
        {[&] { m_felder.IsKomN(1); }, nachId.arg(u"Kom_N", u"Felder")},
        {[&] { m_felder.VELDRAK_Anzahl(); }, u"VELDRAK"_s},
        {[&] { m_felder.VELDRAK_ActString(*act.contactWindow(), 1); }, nachId.arg(u"Act_Quellen", u"VELDRAK")},
        {[&] { m_felder.VELDRAK_OLTabelle(1); }, nachId.arg(u"PCK_Tabelle", u"VELDRAK")},
        {[&] { m_felder.VELDRAK_OLFeld(1); }, nachId.arg(u"PCK_Feld", u"VELDRAK")},
        {[&] { m_felder.get_sPersKto()->Close(); }, u"SELECT * from sPersKto"_s},
    };
    const QString verbindung = u";DATABASE=%1;PWD=%2"_s.arg(m_pfad, coding::mappingZugriff());
    EXPECT_THAT(m_engine.protokoll,
                ElementsAre(u"OpenDatabase(veldrak.piz, %1, read-only)"_s.arg(verbindung), u"Felder"_s));
    for (const auto &[frage, sql] : rows) {
        m_engine.protokoll.clear();
        frage();
        EXPECT_THAT(m_engine.protokoll, ElementsAre(sql));
        EXPECT_THAT(m_engine.offen, ElementsAre(u"veldrak.piz"_s));
    }
    m_felder.Kill();
    EXPECT_THAT(m_engine.offen, IsEmpty());
}

TEST_F(SyncFelder, CountInSixteenBits)
{
    aendere({u"UPDATE VELDRAK SET Act_Quellen = '%32768' WHERE ID = 1"_s, u"DROP TABLE Felder"_s,
             u"CREATE TABLE Felder (ID LONG, Act_FeldID LONG, Sync_FeldName TEXT(9), PCK_FeldName TEXT(9))"_s,
             u"INSERT INTO Felder VALUES (32768, 1, 'Firma', 'x')"_s,
             u"INSERT INTO Felder VALUES (1, 32768, 'y', 'z')"_s});
    FakeAct act;
    EXPECT_EQ(fehlernummer([&] { m_felder.SyncID(u"Firma"_s); }), 6);
    EXPECT_EQ(fehlernummer([&] { m_felder.ActFeldID(1); }), 6);
    EXPECT_EQ(fehlernummer([&] { m_felder.VELDRAK_ActString(*act.contactWindow(), 1); }), 6);
    EXPECT_EQ(fehlernummer([&] { aendere(QStringList(14, u"INSERT INTO Felder SELECT * FROM Felder"_s)); }), 6);
}

TEST_F(SyncFelder, AnswerNumbersFlagsAndTablesWithFixedValuesForWhatIsMissing)
{
    EXPECT_EQ(m_felder.FelderAnzahl(), 12);
    EXPECT_EQ(m_felder.ActFeldID(u"Firma"_s), 2);
    EXPECT_EQ(m_felder.ActFeldID(u"PersKtoAnsprech"_s), 26);
    EXPECT_EQ(m_felder.ActFeldID(u"COMPANY"_s), -1);
    EXPECT_EQ(m_felder.ActFeldID(8), 11);
    EXPECT_EQ(m_felder.ActFeldID(0), -1);
    EXPECT_EQ(m_felder.SyncID(u"Fax"_s), 9);
    EXPECT_EQ(m_felder.SyncID(u"TELEFAX"_s), -1);
    EXPECT_EQ(m_felder.Typ(1), 10);
    EXPECT_EQ(m_felder.Typ(99), 10);
    EXPECT_EQ(m_felder.OLTabelle(1), u"sPersKto"_s);
    EXPECT_EQ(m_felder.OLTabelle(99), u"ERROR"_s);
    for (auto frage : {&clSyncFelder::IsSyncH, &clSyncFelder::IsSyncN, &clSyncFelder::NachActH, &clSyncFelder::NachActN,
                       &clSyncFelder::IsKomH, &clSyncFelder::IsKomN})
        EXPECT_FALSE((m_felder.*frage)(99));
    EXPECT_TRUE(m_felder.IsSyncH(8) && m_felder.NachActH(8) && m_felder.NachActN(8));
    EXPECT_TRUE(m_felder.IsKomH(8) && m_felder.IsKomN(8));
    EXPECT_FALSE(m_felder.IsSyncN(8) || m_felder.IsKomH(1) || m_felder.IsKomN(1));
    EXPECT_EQ(fehlernummer([this] { m_felder.get_sPersKto()->Edit(); }), 3027) << "the template is never written";
}

TEST_F(SyncFelder, ComposeFieldsFromActAndLiteralText)
{
    aendere({u"DELETE FROM VELDRAK"_s, u"INSERT INTO VELDRAK (ID, Act_Quellen) VALUES (1, '%25| |%3')"_s,
             u"INSERT INTO VELDRAK (ID, Act_Quellen) VALUES (2, 'nur Text')"_s,
             u"INSERT INTO VELDRAK (ID, Act_Quellen) VALUES (3, '%25abc|, |%99|%')"_s,
             u"INSERT INTO VELDRAK (ID, Act_Quellen) VALUES (4, '|%3|verborgen')"_s,
             u"INSERT INTO VELDRAK (ID) VALUES (5)"_s});
    FakeAct act;
    act.contacts = {{{3, u"Hans"_s}, {25, u""_s}, {26, u"Meier"_s}, {0, u"null"_s}}};
    const auto text = [&](qint16 id) { return m_felder.VELDRAK_ActString(*act.contactWindow(), id); };
    EXPECT_EQ(text(1), u"Meier Hans"_s) << "an empty last name is stood in for";
    EXPECT_EQ(text(2), u"nur Text"_s) << "no separator";
    EXPECT_EQ(text(3), u"Meier, null"_s) << "the leading digits count, none is field 0";
    EXPECT_EQ(text(4), u"Hans"_s) << "a separator in front hides the last piece";
    EXPECT_EQ(text(5), u""_s) << "an empty template";
    EXPECT_EQ(text(99), u"ERROR"_s) << "no such row";
    EXPECT_EQ(m_felder.VELDRAK_Anzahl(), 5);
    EXPECT_EQ(m_felder.VELDRAK_OLFeld(99), u"ERROR"_s);
    EXPECT_EQ(m_felder.VELDRAK_OLTabelle(99), u"ERROR"_s);
    aendere({u"DELETE FROM VELDRAK"_s});
    EXPECT_EQ(m_felder.VELDRAK_Anzahl(), 0);
}

TEST_F(SyncFelder, FailToOpenWithTheEnginesNumber)
{
    const QString kein = m_ordner.filePath(u"VELDRAK.ini"_s);
    beispiel::schreibe(kein, "[VELDRAK]\r\n");
    const auto oeffne = [this](const QString &pfad, const QString &kennwort) {
        return fehlernummer([&] { clSyncFelder(m_engine).init(pfad, kennwort); });
    };
    EXPECT_EQ(oeffne(m_pfad, u"falsch"_s), 3031);
    EXPECT_EQ(oeffne(m_pfad, u""_s), 3031);
    EXPECT_EQ(oeffne(m_ordner.filePath(u"fehlt.piz"_s), u""_s), 3024);
    EXPECT_EQ(oeffne(kein, u""_s), 3343);
    EXPECT_EQ(fehlernummer([this] { clSyncFelder(m_engine).Kill(); }), 91);

    m_felder.Kill();
    beispiel::fuehreAus(m_engine.dahinter(), m_pfad, {u"DELETE FROM Felder"_s}, coding::mappingZugriff());
    EXPECT_EQ(oeffne(m_pfad, coding::mappingZugriff()), 3021);
    beispiel::fuehreAus(m_engine.dahinter(), m_pfad, {u"DROP TABLE Felder"_s}, coding::mappingZugriff());
    EXPECT_EQ(oeffne(m_pfad, coding::mappingZugriff()), 3078);
}
