// Start-up up to the mapping: every way in which it can fail says what is wrong and leaves the rest alone.
#include <QElapsedTimer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "startup/Hersteller.h"
#include "tests/startup/HauptTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;

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
    m_desktop.onBox = [&](const desktop::Box &) {
        gefragtNach.push_back(m_desktop.seconds);
        QTest::qWait(100);
        EXPECT_EQ(status()->ProgressBar1(), 0) << "it stands again";
    };
    QElapsedTimer gewartet;
    m_desktop.onYield = [&] { // a sign of life about every 60 ms
        if (m_desktop.seconds != 0.25)
            return;
        gewartet.start();
        EXPECT_TRUE(QTest::qWaitFor([] { return status()->ProgressBar1() >= 3; }, 1200));
        EXPECT_GE(gewartet.elapsed(), 100);
    };
    starte();
    EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(frage(2), frage(3), m_keinMapping));
    EXPECT_EQ(m_desktop.boxes[0].buttons, desktop::Buttons::YesNo);
    EXPECT_EQ(m_desktop.boxes[0].icon, desktop::Icon::None);
    EXPECT_THAT(gefragtNach, ElementsAre(2, 2 + 3, testing::_));
}

TEST_F(Start, CountsTheSecondsInSixteenBits)
{
    m_act.objectsRefused = 40000;
    m_desktop.answers.assign(40000, desktop::Answer::Yes);
    m_desktop.onYield = [this] { m_desktop.seconds += 40000; };
    starte();
    EXPECT_EQ(m_desktop.boxTexts().mid(32765), (QStringList{frage(32767), u"Fehler: 6:Überlauf"_s}));
}

TEST_F(Start, EndsAtOnceOnNo)
{
    m_act.objectsRefused = 5;
    m_desktop.answers = {desktop::Answer::Yes, desktop::Answer::No};
    m_desktop.seconds = 86399.5;
    m_desktop.onYield = [this] { // at midnight the clock begins anew
        if (m_desktop.seconds >= 86400)
            m_desktop.seconds -= 86400;
    };
    const auto haupt = starte();
    EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(frage(2), frage(3)));
    EXPECT_EQ(haupt->Status().lbStatus(), u"ACT! OLE-Verbindung wird initialisiert .."_s);
    EXPECT_DOUBLE_EQ(m_desktop.seconds, 1.5 + 3);
    EXPECT_TRUE(m_desktop.quitCalled);
    EXPECT_EQ(m_act.calls, QStringList(2, u"CreateObject(ACTOLE.APPOBJECT)"_s)) << "nothing else was asked of ACT!";
}

TEST_F(Start, ShowsTheInformationWindowWhenActIsNotRunning)
{
    // clang-format off
    using Fenster = std::optional<std::vector<desktop::Window>>;
    struct Row { const char *name; Fenster fenster; std::optional<bool> gesehen; bool gefunden; };
    const Row rows[] = {
        {"no window at all",                    {{}},                                      true,  false},
        {"the class alone does not do",         {{{u"acthost"_s, u"Kontakte"_s}}},         false, false},
        {"the title alone does not do",         {{{u"editor"_s, u"ACT! - Brief"_s}}},      false, false},
        {"fragments in one window",             {{{u"xactx"_s, u"  Mein ACT! 6 "_s}}},     false, true},
        {"capitals count",                      {{{u"ACT"_s, u"act!"_s}}},                 true,  false},
        {"windows unknown, program seen",       std::nullopt,                              true,  true},
        {"windows unknown, surely no program",  std::nullopt,                              false, false},
        {"nothing can be told",                 std::nullopt,                              std::nullopt, true},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_desktop.windows = row.fenster;
        m_desktop.actSeen = row.gesehen;
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
        {"LookupALL fails otherwise",  u"LookupALL()"_s,    5,   false, m_keinMapping},
        {"Create fails otherwise",     u"Create(1, abc)"_s, 462, false, notiz},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        m_act.calls.clear();
        m_act.released.clear();
        m_desktop.boxes.clear();
        m_act.createYieldsNothing = row.ohneFenster;
        m_act.failure = [&row](const QString &aufruf) { return aufruf == row.aufruf ? row.fehler : 0; };
        const auto haupt = starte();
        EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(row.box));
        EXPECT_EQ(m_desktop.boxes[0].icon, row.box == notiz ? desktop::Icon::None : desktop::Icon::Critical);
        QStringList losgelassen{u"window"_s, u"application"_s};
        if (row.aufruf != u"LookupALL()")
            losgelassen.removeFirst(); // there never was one
        EXPECT_EQ(m_act.released, row.box == notiz ? losgelassen : QStringList());
        EXPECT_EQ(m_act.calls.contains(u"Minimize()"_s), row.box == m_keinMapping);
        EXPECT_FALSE(m_act.calls.contains(u"Resize(640, 480)"_s)); // the immediate end restores nothing
    }
}

TEST_F(Start, RemembersWhetherActFilledTheScreen)
{
    // Of a screen of 1000 by 800, it has to be more than nine tenths in both directions.
    for (const auto &[breite, hoehe, maximiert] :
         {std::tuple(640, 480, false), {900, 800, false}, {1000, 720, false}, {901, 721, true}}) {
        SCOPED_TRACE(breite);
        m_act.windowSize = {breite, hoehe};
        const auto haupt = starte();
        EXPECT_EQ(haupt->ActFensterMaximiert, maximiert);
        EXPECT_TRUE(haupt->ActFensterBreite == breite && haupt->ActFensterHoehe == hoehe);
    }
}

TEST_F(Start, ChecksTheConfiguration)
{
    const QByteArray gut = "[VELDRAK]\nID_Nummer=60|N\nID_Mandant=61|M\nID_Typ=62|T\nPCKpfad=/p/\n"
                           "ID_SuchFeld1=2|S1\nID_SuchFeld2=26|S2\nDATEVNr=2\nAutoSuche=ja\n";
    const auto mit = [&gut](const QByteArray &zeile, const QByteArray &ersatz = {}) {
        EXPECT_TRUE(gut.contains(zeile)) << zeile.constData();
        return QByteArray(gut).replace(zeile, ersatz);
    };
    const QString ini = m_ordner.filePath(u"VELDRAK.ini"_s);
    // clang-format off
    struct Row { const char *name; std::optional<QByteArray> inhalt; QString box; };
    const Row rows[] = {
        {"no file",                    std::nullopt,                     iniFehlt},
        {"an empty file",              "",                               iniFehlt},
        {"no section",                 "\nID_Nummer=60|N\n",
         u"Fehler: 9:%1, Zeile 2: Der Schlüssel „ID_Nummer“ steht vor dem ersten Abschnitt."_s.arg(ini)},
        {"another section",            mit("VELDRAK", "Veldrak"),        falscherParameter},
        {"number missing",             mit("ID_Nummer=60|N\n"),          falscherParameter},
        {"number 0",                   mit("60|N", "0|N"),               falscherParameter},
        {"number is text",             mit("60|N", "N|60"),              falscherParameter},
        {"number too large",           mit("60|N", "40000|N"),
         u"Fehler: 6:%1, ID_Nummer=40000|N: Überlauf"_s.arg(ini)},
        {"client missing",             mit("ID_Mandant=61|M\n"),         falscherParameter},
        {"role 0",                     mit("62|T", "0"),                 falscherParameter},
        {"path empty",                 mit("/p/"),                       falscherParameter},
        {"first search field missing", mit("ID_SuchFeld1=2|S1\n"),       falscherParameter},
        {"second search field 0",      mit("26|S2", "0|S2"),             falscherParameter},
        {"a value without a name",     mit("60|N", "60"),                m_keinMapping},
        {"switches missing",           mit("DATEVNr=2\nAutoSuche=ja\n"), m_keinMapping},
        {"all there",                  gut,                              m_keinMapping},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        QFile::remove(ini);
        if (row.inhalt)
            beispiel::schreibe(ini, *row.inhalt);
        m_desktop.boxes.clear();
        const auto haupt = starte();
        EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(row.box));
        EXPECT_EQ(m_desktop.boxes[0].icon,
                  row.box.startsWith(u"Fehler") ? desktop::Icon::Critical : desktop::Icon::Information);
        EXPECT_EQ(m_act.calls.last(), u"Minimize()"_s) << "ACT! stays as it is";
        EXPECT_FALSE(haupt->konfiguration.DatevNr || haupt->konfiguration.AutoSuche);
    }
}

TEST_F(Start, TakesARelativeClientFolderFromItsOwn)
{
    for (const auto &[geschrieben, gelesen] : {std::pair(u"/pck/"_s, u"/pck/"_s),
                                               {u"PCK/"_s, m_ordner.path() + u"/PCK/"_s},
                                               {u"..\\PCK\\"_s, m_ordner.path() + u"/..\\PCK\\"_s},
                                               {u"\\\\server\\pck\\"_s, u"\\\\server\\pck\\"_s},
                                               {u"C:\\PCK\\"_s, u"C:\\PCK\\"_s}}) {
        beispiel::erzeugeIni(m_ordner.path(), geschrieben);
        EXPECT_EQ(starte()->konfiguration.PckPfad, gelesen);
    }
}

TEST_F(Start, NamesTheMappingWhenItsPasswordIsWrong)
{
    const QString mapping = m_ordner.filePath(u"veldrak.piz"_s);
    ASSERT_TRUE(QFile::remove(mapping));
    beispiel::erzeugeMandant(*m_engine, mapping, u"anders"_s);
    starte();
    EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(u"Fehler: 3031:%1: Kein zulässiges Kennwort."_s.arg(mapping)));
}

TEST_F(Start, NamesTheMappingWhenANumberInItIsTooLarge)
{
    const QString mapping = m_ordner.filePath(u"veldrak.piz"_s);
    ASSERT_TRUE(QFile::remove(mapping));
    beispiel::erzeugeMapping(*m_engine, m_ordner.path());
    beispiel::fuehreAus(*m_engine, mapping,
                        {u"DROP TABLE Felder"_s, u"CREATE TABLE Felder (ID SHORT, Act_FeldID LONG)"_s,
                         u"INSERT INTO Felder VALUES (1, 40000)"_s},
                        coding::mappingZugriff());
    starte();
    EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(u"Fehler: 6:%1: Überlauf"_s.arg(mapping)));
}

TEST_F(Start, LeavesNothingButTheMainWindow)
{
    legeMappingAn();
    QWidget *fenster = nullptr;
    m_haupt.Main([&](Haupt &) {
        auto neues = std::make_unique<QWidget>();
        fenster = neues.get();
        return neues;
    });
    EXPECT_THAT(m_desktop.boxTexts(), testing::IsEmpty());
    EXPECT_TRUE(fenster->isVisible() && m_haupt.Status().isHidden());

    bool mandantOffen = true;
    m_haupt.schliesseMandant = [&] { mandantOffen = false; };
    m_desktop.onBox = [&](const desktop::Box &) {
        EXPECT_TRUE(fenster->isHidden() && !m_haupt.SyncFelder.istOffen() && !mandantOffen);
    };
    m_haupt.ausgefuehrt([] { throw RunTimeError(5); });
    EXPECT_THAT(m_desktop.boxTexts(), testing::SizeIs(1)) << "behind the last box everything is closed";
}

TEST_F(Start, ReadsTheConfigurationTwiceAndSetsTheEngineUp)
{
    beispiel::erzeugeIni(m_ordner.path(), u"/pck/"_s);
    m_desktop.onYield = [this] {
        if (statustext() == u"Trovanix 'Pirolfinder' initialisieren ...")
            beispiel::erzeugeIni(m_ordner.path(), u"/zu spät/"_s, true, true);
    };
    const auto haupt = starte();
    const Konfiguration &k = haupt->konfiguration;
    const QString gelesen
        = QStringList{k.IdNummerName, k.IdMandantName, k.IdTypName, k.PckPfad, k.IdSuchFeld1Name, k.IdSuchFeld2Name}
              .join(u' ');
    EXPECT_EQ(gelesen, u"PCK_NUMMER PCK_MAND PCK_TYP /pck/ COMPANY CONTACT"_s);
    EXPECT_THAT((std::array{k.IdNummer, k.IdMandant, k.IdTyp, k.IdSuchFeld1, k.IdSuchFeld2}),
                ElementsAre(60, 61, 62, 2, 26));
    EXPECT_TRUE(k.DatevNr && k.AutoSuche);
    EXPECT_EQ(m_engine->SystemDB, m_ordner.path() + u'/' + coding::workgroupDatei());
    EXPECT_EQ(m_engine->DefaultUser, coding::benutzer());
    EXPECT_EQ(m_engine->DefaultPassword, coding::kennwort());
    EXPECT_EQ(m_engine->CreateWorkspace(u"T"_s, {}, {})->UserName(), coding::benutzer());
    EXPECT_EQ(m_engine->CreateWorkspace(u"T"_s, u"ich"_s, {})->UserName(), u"ich"_s);
}

TEST_F(Start, TellsItsStepsAndReadsTheContactOnActsScreen)
{
    // clang-format off
    struct Row { const char *name; QString firma; QString typ; QString gelesen; };
    const Row rows[] = {
        {"with a company",              u"Alpha"_s, u""_s,  u"Alpha|"_s},
        {"a main contact without one",  u""_s,      u"H"_s, u"Petra Sommer|H"_s},
        {"a secondary one without one", u""_s,      u"N"_s, u"Petra Sommer|N"_s},
        {"nothing yet, without one",    u""_s,      u""_s,  u"Petra Sommer|H"_s},
    };
    // clang-format on
    legeMappingAn();
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        beispiel::Person person = beispiel::firmengruppe()[0];
        person.firma = row.firma;
        person.typ = row.typ;
        m_act.contacts = {beispiel::alsAct(person)};
        QStringList schritte;
        m_desktop.onYield = [&schritte] { schritte += statustext(); };
        QString gelesen;
        Haupt haupt(m_haupt.umgebung());
        haupt.Main([&gelesen](Haupt &h) {
            gelesen = h.Kontakt->Daten(u"Firma"_s) + u'|' + h.Kontakt->Typ;
            return std::make_unique<QWidget>();
        });
        EXPECT_EQ(gelesen, row.gelesen);
        EXPECT_THAT(schritte,
                    ElementsAre(u"PCK-Link wird initialisiert ..."_s, u"ACT! OLE-Verbindung wird initialisiert ."_s,
                                u"ACT!-Refresh ..."_s, u"VELDRAK Ini-Datei einlesen ..."_s,
                                u"Trovanix 'Pirolfinder' initialisieren ..."_s));
    }
    EXPECT_THAT(m_desktop.boxTexts(), testing::IsEmpty());
}

TEST_F(Start, MissesTheMappingFileBeforeItAsksForAct)
{
    ASSERT_TRUE(QFile::remove(m_ordner.filePath(u"veldrak.piz"_s)));
    starte();
    ASSERT_EQ(m_desktop.boxes.size(), 1U);
    EXPECT_THAT(m_desktop.boxes[0].text.split(u"\r\n"_s),
                ElementsAre(u"Es fehlt die Datei VELDRAK.PIZ. Bitte Installieren Sie VELDRAK neu,"_s,
                            u"und kopieren Sie danach die vom VELDRAK-Projekt (%1)"_s.arg(Hersteller::internet()),
                            u"erhaltene VELDRAK.PIZ-Datei in das Installationsverzeichnis von VELDRAK."_s));
    EXPECT_EQ(m_desktop.boxes[0].icon, desktop::Icon::Information);
    EXPECT_TRUE(m_act.calls.isEmpty());
}
