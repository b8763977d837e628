// Start-up up to the mapping: every way in which it can fail says what is wrong and leaves the rest alone.
#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include "tests/startup/HauptTest.h"
#include "util/coding.h"

using namespace Qt::StringLiterals;
using testing::Contains;
using testing::ElementsAre;
using testing::Not;

namespace {

const QString notiz = u"Bevor sie VELDRAK starten schließen sie bitte alle Hinweisfenster von ACT!"_s;
const QString falscherParameter = u"Ein Parameter in der VELDRAK.ini ist Falsch.\r\n"
                                  "Bitte führen Sie zuerst die VELDRAK-Konfiguration aus."_s;
const QString iniFehlt = u"Es fehlt die VELDRAK.ini Datei.\r\n"
                         "Bitte führen Sie zuerst die VELDRAK-Konfiguration aus."_s;

QString frage(int n)
{
    return u"OLE-Verbindung zu ACT! ist nicht möglich.(%1)\r\nSoll es noch einmal versucht werden ?"_s.arg(n);
}

} // namespace

class Start : public HauptTest
{ };

TEST_F(Start, AsksWithGrowingWaitsWhileActIsNotReady)
{
    m_act.objectsRefused = 2;
    m_desktop.answers = {desktop::Answer::Yes, desktop::Answer::Yes};
    std::vector<double> gefragtNach;
    QStringList status;
    m_desktop.onBox = [&](const desktop::Box &) {
        gefragtNach.push_back(m_desktop.seconds);
        status += m_haupt.Status().lbStatus();
    };
    EXPECT_TRUE(startEndet()); // at the mapping
    EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(frage(2), frage(3), u"Fehler: 3031:geht nicht"_s));
    EXPECT_EQ(m_desktop.boxes[0].buttons, desktop::Buttons::YesNo);
    EXPECT_DOUBLE_EQ(gefragtNach[0], 2);
    EXPECT_DOUBLE_EQ(gefragtNach[1], 2 + 3);
    EXPECT_EQ(status[0], u"ACT! OLE-Verbindung wird initialisiert .."_s);
    EXPECT_EQ(m_haupt.Status().ProgressBar1(), 0);
}

TEST_F(Start, WaitsAsLongAcrossMidnight)
{
    m_act.objectsRefused = 1;
    m_desktop.seconds = 86399.5;
    m_desktop.onYield = [this] {
        if (m_desktop.seconds >= 86400)
            m_desktop.seconds -= 86400;
    };
    EXPECT_TRUE(startEndet());
    EXPECT_DOUBLE_EQ(m_desktop.seconds, 1.5);
}

TEST_F(Start, EndsAtOnceOnNo)
{
    m_act.objectsRefused = 5;
    m_desktop.answers = {desktop::Answer::Yes, desktop::Answer::No};
    EXPECT_TRUE(startEndet());
    EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(frage(2), frage(3)));
    EXPECT_TRUE(m_desktop.quitCalled);
    EXPECT_EQ(m_act.callsOf(u"CreateObject"_s).size(), 2);
    EXPECT_EQ(m_act.calls.size(), 2); // nothing else was asked of ACT!
}

TEST_F(Start, ShowsTheInformationWindowWhenActIsNotRunning)
{
    // clang-format off
    struct Row { const char *name; std::optional<std::vector<desktop::Window>> fenster; bool name_; bool gefunden; };
    const Row rows[] = {
        {"no window at all",                    {{}},                                      true,  false},
        {"the class alone does not do",         {{{u"acthost"_s, u"Kontakte"_s}}},         false, false},
        {"the title alone does not do",         {{{u"editor"_s, u"ACT! - Brief"_s}}},      false, false},
        {"fragments in one window",             {{{u"xactx"_s, u"  Mein ACT! 6 "_s}}},     false, true},
        {"capitals count",                      {{{u"ACT"_s, u"act!"_s}}},                 true,  false},
        {"windows unknown, name owned",         std::nullopt,                              true,  true},
        {"windows unknown, name not owned",     std::nullopt,                              false, false},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_desktop.windows = row.fenster;
        m_desktop.nameOwned = row.name_;
        Haupt haupt(m_haupt.umgebung());
        bool gezeigt = false;
        QTimer::singleShot(0, &haupt.InfoStart(), [&] {
            gezeigt = haupt.InfoStart().isVisible();
            EXPECT_EQ(haupt.InfoStart().txbInfo(), u"ACT! wurde nicht gestartet !\n"_s);
            haupt.InfoStart().findChild<QPushButton *>(u"Command1"_s)->click();
        });
        m_act.calls.clear();
        EXPECT_THROW(haupt.Main({}), ProgrammBeendet);
        EXPECT_EQ(gezeigt, !row.gefunden);
        EXPECT_EQ(m_act.calls.isEmpty(), !row.gefunden);
    }
}

TEST_F(Start, EndsOnANoticeWindowAndIgnoresOtherErrorsOfTheRefresh)
{
    // clang-format off
    struct Row { const char *name; QString aufruf; int fehler; bool ohneFenster; QString box; };
    const Row rows[] = {
        {"LookupALL says 91",          u"LookupALL()"_s,    91,  false, notiz},
        {"Create says 91",             u"Create(1, abc)"_s, 91,  false, notiz},
        {"Create gives nothing",       {},                  0,   true,  notiz},
        {"LookupALL fails otherwise",  u"LookupALL()"_s,    5,   false, u"Fehler: 3031:geht nicht"_s},
        {"ACT! dies at Create",        u"Create(1, abc)"_s, 462, false,
         u"Fehler: 462:Create: Das andere Programm ist nicht mehr da oder antwortet nicht"_s},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Haupt haupt(m_haupt.umgebung());
        m_act.calls.clear();
        m_desktop.boxes.clear();
        m_act.createYieldsNothing = row.ohneFenster;
        m_act.failure = [&row](const QString &aufruf) { return aufruf == row.aufruf ? row.fehler : 0; };
        EXPECT_THROW(haupt.Main({}), ProgrammBeendet);
        EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(row.box));
        EXPECT_EQ(m_act.calls.contains(u"Minimize()"_s), row.box.startsWith(u"Fehler: 3031"_s));
        EXPECT_FALSE(m_act.calls.contains(u"Resize(640, 480)"_s)); // the immediate end restores nothing
    }
}

TEST_F(Start, RemembersWhetherActFilledTheScreen)
{
    // clang-format off
    struct Row { const char *name; QSize fenster; bool maximiert; };
    const Row rows[] = { // on a screen of 1000 by 800
        {"small",                        {640, 480}, false},
        {"exactly nine tenths wide",     {900, 800}, false},
        {"exactly nine tenths high",     {1000, 720}, false},
        {"just above in both",           {901, 721}, true},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Haupt haupt(m_haupt.umgebung());
        m_act.windowSize = row.fenster;
        EXPECT_THROW(haupt.Main({}), ProgrammBeendet);
        EXPECT_EQ(haupt.ActFensterMaximiert, row.maximiert);
        EXPECT_EQ(QSize(haupt.ActFensterBreite, haupt.ActFensterHoehe), row.fenster);
    }
}

TEST_F(Start, ChecksTheConfiguration)
{
    const QByteArray gut = "[VELDRAK]\nID_Nummer=60|N\nID_Mandant=61|M\nID_Typ=62|T\nPCKpfad=/p/\n"
                           "ID_SuchFeld1=2|S1\nID_SuchFeld2=26|S2\n";
    const auto ohne = [&gut](const QByteArray &zeile, const QByteArray &ersatz = {}) {
        EXPECT_TRUE(gut.contains(zeile)) << zeile.constData();
        return QByteArray(gut).replace(zeile, ersatz);
    };
    const QString ende = u"Fehler: 3031:geht nicht"_s; // got as far as the mapping
    // clang-format off
    struct Row { const char *name; std::optional<QByteArray> inhalt; QString box; };
    const Row rows[] = {
        {"no file",                      std::nullopt,                                  iniFehlt},
        {"an empty file",                "",                                            iniFehlt},
        {"no section",                   "ID_Nummer=60|N\n",
         u"Fehler: 9:Index außerhalb des gültigen Bereichs"_s},
        {"another section",              QByteArray(gut).replace("VELDRAK", "Veldrak"), falscherParameter},
        {"number missing",               ohne("ID_Nummer=60|N\n"),                      falscherParameter},
        {"number 0",                     ohne("60|N", "0|N"),                           falscherParameter},
        {"number is text",               ohne("60|N", "N|60"),                          falscherParameter},
        {"number too large",             ohne("60|N", "40000|N"),                       u"Fehler: 6:Überlauf"_s},
        {"client missing",               ohne("ID_Mandant=61|M\n"),                     falscherParameter},
        {"role 0",                       ohne("62|T", "0"),                             falscherParameter},
        {"path empty",                   ohne("/p/"),                                   falscherParameter},
        {"first search field missing",   ohne("ID_SuchFeld1=2|S1\n"),                   falscherParameter},
        {"second search field 0",        ohne("26|S2", "0|S2"),                         falscherParameter},
        {"a value without a name",       ohne("60|N", "60"),                            ende},
        {"all there",                    gut,                                           ende},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QFile::remove(m_ordner.filePath(u"VELDRAK.ini"_s));
        if (row.inhalt)
            schreibe(u"VELDRAK.ini"_s, *row.inhalt);
        Haupt haupt(m_haupt.umgebung());
        m_desktop.boxes.clear();
        EXPECT_THROW(haupt.Main({}), ProgrammBeendet);
        EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(row.box));
    }
}

TEST_F(Start, ReadsTheConfiguration)
{
    EXPECT_TRUE(startEndet());
    const Konfiguration &k = m_haupt.konfiguration;
    EXPECT_EQ(k.IdNummer, 60);
    EXPECT_EQ(k.IdNummerName, u"PCK_NUMMER"_s);
    EXPECT_EQ(k.IdMandant, 61);
    EXPECT_EQ(k.IdTypName, u"PCK_TYP"_s);
    EXPECT_EQ(k.PckPfad, u"/pck/"_s);
    EXPECT_EQ(k.IdSuchFeld1Name, u"COMPANY"_s);
    EXPECT_EQ(k.IdSuchFeld2, 26);
    EXPECT_TRUE(k.DatevNr);
    EXPECT_TRUE(k.AutoSuche);

    for (const QByteArray &wert : {QByteArray("DATEVNr=2\nAutoSuche=ja\n"), QByteArray()}) {
        schreibe(u"VELDRAK.ini"_s,
                 "[VELDRAK]\nID_Nummer=1|N\nID_Mandant=1|M\nID_Typ=1|T\nPCKpfad=p\nID_SuchFeld1=1|S\n"
                 "ID_SuchFeld2=1|S\n"
                     + wert);
        Haupt haupt(m_haupt.umgebung());
        EXPECT_THROW(haupt.Main({}), ProgrammBeendet);
        EXPECT_FALSE(haupt.konfiguration.DatevNr);
        EXPECT_FALSE(haupt.konfiguration.AutoSuche);
    }
}

TEST_F(Start, SetsTheEngineUpAndOpensTheMappingWithItsAccessValue)
{
    EXPECT_TRUE(startEndet());
    EXPECT_EQ(m_engine.SystemDB, m_ordner.path() + u'/' + coding::workgroupDatei());
    EXPECT_EQ(m_engine.DefaultUser, coding::benutzer());
    EXPECT_EQ(m_engine.DefaultPassword, coding::kennwort());
    EXPECT_EQ(m_engine.openedWith,
              u";DATABASE="_s + m_ordner.filePath(u"veldrak.piz"_s) + u";PWD="_s + coding::mappingZugriff());
}

TEST_F(Start, MissesTheMappingFileBeforeItAsksForAct)
{
    ASSERT_TRUE(QFile::remove(m_ordner.filePath(u"veldrak.piz"_s)));
    EXPECT_TRUE(startEndet());
    ASSERT_EQ(m_desktop.boxes.size(), 1U);
    const QStringList zeilen = m_desktop.boxes[0].text.split(u"\r\n"_s);
    EXPECT_THAT(zeilen,
                ElementsAre(u"Es fehlt die Datei VELDRAK.PIZ. Bitte Installieren Sie VELDRAK neu,"_s, testing::_,
                            u"erhaltene VELDRAK.PIZ-Datei in das Installationsverzeichnis von VELDRAK."_s));
    EXPECT_EQ(m_desktop.boxes[0].icon, desktop::Icon::Information);
    EXPECT_TRUE(m_act.calls.isEmpty());
}
