// The program's course: both ends, errors that reach the event loop, and the small windows.
#include <QCloseEvent>
#include <QLabel>
#include <QProgressBar>
#include <QTest>

#include "tests/startup/HauptTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;
using testing::IsEmpty;

class Ablauf : public HauptTest
{
protected:
    void verbinde()
    {
        m_haupt.ActApp = m_act.CreateObject(u"ACTOLE.APPOBJECT"_s);
        m_haupt.ActKontaktfenster = m_act.contactWindow();
        m_haupt.ActFensterBreite = 800;
        m_haupt.ActFensterHoehe = 600;
        m_act.calls.clear();
    }
};

TEST_F(Ablauf, RegularEndGivesActItsWindowBack)
{
    // clang-format off
    struct Row { const char *name; bool maximiert; int fehler; QStringList aufrufe; QStringList boxen; };
    const Row rows[] = {
        {"by its size",      false, 0,   {u"Resize(800, 600)"_s}, {}},
        {"maximised",        true,  0,   {u"maximize()"_s},       {}},
        {"ACT! has died",    false, 462, {u"Resize(800, 600)"_s},
         {u"Fehler: 462:Resize: Das andere Programm ist nicht mehr da oder antwortet nicht"_s}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Haupt haupt(m_haupt.umgebung());
        haupt.ActApp = m_act.CreateObject({});
        haupt.ActFensterBreite = 800;
        haupt.ActFensterHoehe = 600;
        haupt.ActFensterMaximiert = row.maximiert;
        QWidget &form = haupt.lade(std::make_unique<QWidget>());
        form.show();
        haupt.Status().show();
        m_act.calls.clear();
        m_desktop.boxes.clear();
        m_act.failure = [&row](const QString &) { return row.fehler; };
        m_desktop.quitCalled = false;
        EXPECT_THROW(haupt.ProgrammEnde(), ProgrammBeendet);
        EXPECT_EQ(m_act.calls, row.aufrufe);
        EXPECT_EQ(m_desktop.boxTexts(), row.boxen);
        EXPECT_FALSE(haupt.ActApp);
        EXPECT_TRUE(form.isHidden());
        EXPECT_TRUE(haupt.Status().isHidden());
        EXPECT_TRUE(m_desktop.quitCalled);
    }
}

TEST_F(Ablauf, ErrorInAnEventIsShownAndEndsTheProgramRegularly)
{
    verbinde();
    guarded(m_haupt, [] { throw AutomationError(462, u"SetField: weg"_s); })();
    EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(u"Fehler: 462:SetField: weg"_s));
    EXPECT_THAT(m_act.calls, ElementsAre(u"Resize(800, 600)"_s));
    EXPECT_TRUE(m_haupt.beendet());

    bool lief = false;
    guarded(m_haupt, [&lief] { lief = true; })();
    EXPECT_FALSE(lief) << "nothing runs after the end";
}

TEST_F(Ablauf, WhatWaitedForABoxOrForEventsDoesNotGoOnAfterTheEnd)
{
    const auto endetDabei = [this] { guarded(m_haupt, [this] { m_haupt.ProgrammEnde(); })(); };
    m_desktop.onBox = [&](const desktop::Box &) { endetDabei(); };
    EXPECT_THROW(m_haupt.MsgBox({u"?"_s}), ProgrammBeendet);

    Haupt zweiter(m_haupt.umgebung());
    m_desktop.onYield = [&] { guarded(zweiter, [&] { zweiter.SofortEnde(); })(); };
    EXPECT_THROW(zweiter.DoEvents(), ProgrammBeendet);
    EXPECT_THROW(zweiter.zeigeStatus(u"weiter"_s), ProgrammBeendet);
}

TEST_F(Ablauf, RemovedContactLosesItsThreeFieldsInOrder)
{
    verbinde();
    m_haupt.konfiguration = {60, {}, 61, {}, 62, {}, {}, 0, {}, 0, {}, false, false};
    m_act.contacts = {{{1, u"A"_s}}, {{1, u"B"_s}, {60, u"D000001"_s}, {61, u"X.PCK"_s}, {62, u"H"_s}}};
    clKontakt kontakt(m_haupt.konfiguration, m_haupt);
    kontakt.UniqueID = u"B"_s;
    m_desktop.onBox = [&](const desktop::Box &) { EXPECT_TRUE(m_haupt.Status().isVisible()); };
    m_haupt.PCKDatenLoeschen(kontakt);
    EXPECT_THAT(m_desktop.boxTexts(),
                ElementsAre(u"Die Firma bzw. der Ansprechpartner bleiben im PC-Kaufmann erhalten !"_s));
    EXPECT_THAT(m_act.calls,
                ElementsAre(u"LookupALL()"_s, u"createLookup(B)"_s, u"SetField(60, )"_s, u"SetField(61, )"_s,
                            u"SetField(62, )"_s));
    EXPECT_EQ(m_haupt.Status().lbStatus(), u"PCK-Daten werden in ACT! gelöscht ..."_s);
    EXPECT_TRUE(m_haupt.Status().isHidden());
}

TEST_F(Ablauf, StatusWindowMovesItsBarAndCannotBeClosed)
{
    frmStatus &status = m_haupt.Status();
    status.show();
    status.setze_ProgressBar1(97);
    std::vector<int> werte;
    QObject::connect(status.findChild<QProgressBar *>(u"ProgressBar1"_s), &QProgressBar::valueChanged, &status,
                     [&werte](int wert) { werte.push_back(wert); });
    status.Timer1_Interval(1);
    EXPECT_TRUE(QTest::qWaitFor([&werte] { return werte.size() >= 3; }));
    status.Timer1_Interval(0);
    werte.resize(3);
    EXPECT_THAT(werte, ElementsAre(98, 0, 1)); // after 98 it begins anew
    const int stand = status.ProgressBar1();
    QTest::qWait(20);
    EXPECT_EQ(status.ProgressBar1(), stand);
    EXPECT_FALSE(status.close());
    EXPECT_TRUE(status.isVisible());
}

TEST_F(Ablauf, InformationWindowShowsTheVersionAndIsOnlyHidden)
{
    frmInfoStart &info = m_haupt.InfoStart();
    EXPECT_EQ(info.windowTitle(), u"Informationen über das Programm"_s);
    EXPECT_THAT(info.findChild<QLabel *>(u"lbVersion"_s)->text().toStdString(),
                testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
    info.setze_txbInfo(u"Neues"_s);
    info.show();
    info.close();
    EXPECT_EQ(m_haupt.InfoStart().txbInfo(), u"Neues"_s);
}
