// Every question to the mapping, on a real mapping file, with what is answered when the row is missing.
#include <QTemporaryDir>
#include <gmock/gmock.h>

#include "mapping/clSyncFelder.h"
#include "platform/dao/embedded/EmbeddedEngine.h"
#include "tests/fakes/Beispieldaten.h"
#include "tests/fakes/FakeAct.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;

namespace {

int fehlernummer(const std::function<void()> &code)
{
    try {
        code();
    } catch (const RunTimeError &fehler) {
        return fehler.Number();
    }
    return 0;
}

class SyncFelder : public testing::Test
{
protected:
    SyncFelder() { m_felder.init(m_pfad, coding::mappingZugriff()); }

    /// Runs statements against the mapping file behind the open mapping's back, which closes it before.
    void aendere(const QStringList &anweisungen)
    {
        m_felder.Kill();
        beispiel::fuehreAus(*m_engine, m_pfad, anweisungen, coding::mappingZugriff());
        m_felder.init(m_pfad, coding::mappingZugriff());
    }

    QTemporaryDir m_ordner;
    std::unique_ptr<dao::DBEngine> m_engine = dao::makeEmbeddedEngine();
    QString m_pfad = beispiel::erzeugeMapping(*m_engine, m_ordner.path());
    clSyncFelder m_felder{*m_engine};
};

} // namespace

TEST_F(SyncFelder, TranslateNamesAndIds)
{
    // clang-format off
    using Frage = QString (clSyncFelder::*)(const QVariant &) const;
    struct Row { const char *name; Frage frage; QVariant schluessel; QString antwort; };
    constexpr Frage actName = &clSyncFelder::ActFeldname;
    constexpr Frage spalte = &clSyncFelder::OLFeldname;
    constexpr Frage syncName = &clSyncFelder::SyncFeldname;
    const Row rows[] = {
        {"ACT! name by ID",                         actName,  1,                    u"COMPANY"_s},
        {"a short is an ID as well",                actName,  QVariant::fromValue<qint16>(2), u"CONTACT"_s},
        {"ACT! name by PC-Kaufmann name",           actName,  u"PersKtoName"_s,     u"COMPANY"_s},
        {"ACT! name by neutral name, any case",     actName,  u"fIRMA"_s,           u"COMPANY"_s},
        {"never by the name that is asked for",     actName,  u"COMPANY"_s,         u"ERROR"_s},
        {"column by ID",                            spalte,   1,                    u"PersKtoName"_s},
        {"column by ACT! name",                     spalte,   u"COMPANY"_s,         u"PersKtoName"_s},
        {"column by neutral name",                  spalte,   u"Firma"_s,           u"PersKtoName"_s},
        {"column of a column",                      spalte,   u"PersKtoName"_s,     u"ERROR"_s},
        {"neutral name by ACT! name",               syncName, u"TELEFON"_s,         u"Telefon"_s},
        {"neutral name by column",                  syncName, u"PersKtoTelefax"_s,  u"Fax"_s},
        {"no such ID",                              syncName, 99,                   u"ERROR"_s},
        {"no such name",                            spalte,   u"gibt es nicht"_s,   u"ERROR"_s},
        {"a text that looks like an ID is a name",  spalte,   u"1"_s,               u"ERROR"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ((m_felder.*row.frage)(row.schluessel), row.antwort);
    }
    EXPECT_EQ(fehlernummer([this] { m_felder.OLFeldname(u"O'Neill"_s); }), 3075);
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
    EXPECT_TRUE(m_felder.IsSyncH(1));
    EXPECT_FALSE(m_felder.IsSyncH(3));
    EXPECT_TRUE(m_felder.IsKomH(8));
    EXPECT_TRUE(m_felder.IsKomN(8));
    EXPECT_FALSE(m_felder.IsKomN(1));
    for (auto frage : {&clSyncFelder::IsSyncH, &clSyncFelder::IsSyncN, &clSyncFelder::NachActH, &clSyncFelder::NachActN,
                       &clSyncFelder::IsKomH, &clSyncFelder::IsKomN})
        EXPECT_FALSE((m_felder.*frage)(99));
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
    // clang-format off
    struct Row { const char *name; qint16 id; QString text; };
    const Row rows[] = {
        {"an empty last name is stood in for",            1,  u"Meier Hans"_s},
        {"a template without separator",                  2,  u"nur Text"_s},
        {"the leading digits count, none is field 0",     3,  u"Meier, null"_s},
        {"a separator in front hides the last piece",     4,  u"Hans"_s},
        {"an empty template",                             5,  u""_s},
        {"no such row",                                   99, u"ERROR"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(m_felder.VELDRAK_ActString(*act.contactWindow(), row.id), row.text);
    }
    EXPECT_EQ(m_felder.VELDRAK_Anzahl(), 5);
    EXPECT_EQ(m_felder.VELDRAK_OLFeld(99), u"ERROR"_s);
    EXPECT_EQ(m_felder.VELDRAK_OLTabelle(99), u"ERROR"_s);
    aendere({u"DELETE FROM VELDRAK"_s});
    EXPECT_EQ(m_felder.VELDRAK_Anzahl(), 0);
}

TEST_F(SyncFelder, HandOutTheTemplateAndNeverWrite)
{
    const auto vorlage = m_felder.get_sPersKto();
    EXPECT_GT(vorlage->FieldCount(), 5);
    EXPECT_EQ(fehlernummer([&] { vorlage->Edit(); }), 3027);
    vorlage->Close();
}

TEST_F(SyncFelder, FailToOpenWithTheEnginesNumber)
{
    const QString kein = m_ordner.filePath(u"text.piz"_s);
    beispiel::erzeugeIni(m_ordner.path(), u"/"_s);
    ASSERT_TRUE(QFile::rename(m_ordner.filePath(u"VELDRAK.ini"_s), kein));
    const auto oeffne = [this](const QString &pfad, const QString &kennwort) {
        return fehlernummer([&] { clSyncFelder(*m_engine).init(pfad, kennwort); });
    };
    EXPECT_EQ(oeffne(m_pfad, u"falsch"_s), 3031);
    EXPECT_EQ(oeffne(m_pfad, u""_s), 3031);
    EXPECT_EQ(oeffne(m_ordner.filePath(u"fehlt.piz"_s), u""_s), 3024);
    EXPECT_EQ(oeffne(kein, u""_s), 3343);
    EXPECT_EQ(fehlernummer([this] { clSyncFelder(*m_engine).Kill(); }), 91);

    m_felder.Kill();
    beispiel::fuehreAus(*m_engine, m_pfad, {u"DELETE FROM Felder"_s}, coding::mappingZugriff());
    EXPECT_EQ(oeffne(m_pfad, coding::mappingZugriff()), 3021);
    beispiel::fuehreAus(*m_engine, m_pfad, {u"DROP TABLE Felder"_s}, coding::mappingZugriff());
    EXPECT_EQ(oeffne(m_pfad, coding::mappingZugriff()), 3078);
}
