// The program's course: both ends, errors that reach the event loop, and the small windows.
#include <utility>

#include <QLabel>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QTest>

#include "startup/Hersteller.h"
#include "tests/startup/HauptTest.h"

using namespace Qt::StringLiterals;
using testing::ElementsAre;

class Ablauf : public HauptTest
{
protected:
    void verbinde(Haupt &haupt)
    {
        haupt.ActApp = m_act.application();
        haupt.ActViews = m_act.views();
        haupt.ActKontaktfenster = m_act.contactWindow();
        haupt.ActFensterBreite = 800;
        haupt.ActFensterHoehe = 600;
    }
};

TEST_F(Ablauf, RegularEndGivesActItsWindowBack)
{
    const QString weg = u"Fehler: 462:Resize: Das andere Programm ist nicht mehr da oder antwortet nicht"_s;
    for (const auto &[maximiert, fehler, aufruf, box] : {std::tuple(false, 0, u"Resize(800, 600)"_s, QString()),
                                                         {true, 0, u"maximize()"_s, QString()},
                                                         {false, 462, u"Resize(800, 600)"_s, weg}}) {
        SCOPED_TRACE(fehler);
        Haupt haupt(m_haupt.umgebung());
        verbinde(haupt);
        haupt.ActFensterMaximiert = maximiert;
        QWidget &form = haupt.lade(std::make_unique<QWidget>());
        form.show();
        haupt.Status().show();
        m_act.failure = [nummer = fehler](const QString &) { return nummer; };
        m_desktop.onBox = [&](const desktop::Box &) { EXPECT_TRUE(form.isHidden() && haupt.Status().isHidden()); };
        m_desktop.quitCalled = false;
        EXPECT_THROW(haupt.ProgrammEnde(), ProgrammBeendet);
        EXPECT_THAT(std::exchange(m_act.calls, {}), ElementsAre(aufruf));
        EXPECT_THAT(std::exchange(m_act.released, {}), ElementsAre(u"window"_s, u"views"_s, u"application"_s));
        EXPECT_EQ(m_desktop.boxTexts().join(u'|'), box);
        EXPECT_TRUE(form.isHidden() && haupt.Status().isHidden() && m_desktop.quitCalled);
    }
}

TEST_F(Ablauf, ErrorInAnEventIsShownAndEndsTheProgramRegularly)
{
    verbinde(m_haupt);
    guarded(m_haupt, [] { throw AutomationError(462, u"SetField: weg"_s); })();
    EXPECT_THAT(m_desktop.boxTexts(), ElementsAre(u"Fehler: 462:SetField: weg"_s));
    EXPECT_THAT(m_act.calls, ElementsAre(u"Resize(800, 600)"_s));
    EXPECT_TRUE(m_haupt.beendet());
    guarded(m_haupt, [] { ADD_FAILURE() << "runs after the end"; })();
}

TEST_F(Ablauf, WhatWaitedForABoxOrForEventsDoesNotGoOnAfterTheEnd)
{
    m_desktop.onBox = [&](const desktop::Box &) { guarded(m_haupt, [this] { m_haupt.ProgrammEnde(); })(); };
    EXPECT_THROW(m_haupt.MsgBox({u"?"_s}), ProgrammBeendet);

    Haupt zweiter(m_haupt.umgebung());
    m_desktop.onYield = [&] { guarded(zweiter, [&] { zweiter.SofortEnde(); })(); };
    EXPECT_THROW(zweiter.DoEvents(), ProgrammBeendet);
    EXPECT_THROW(zweiter.zeigeStatus(u"weiter"_s), ProgrammBeendet);
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
    EXPECT_TRUE(!status.close() && status.isVisible());
}

TEST_F(Ablauf, InformationWindowShowsTheVersionAndIsOnlyHidden)
{
    frmInfoStart &info = m_haupt.InfoStart();
    EXPECT_EQ(info.windowTitle(), u"Informationen über das Programm"_s);
    EXPECT_EQ(info.findChild<QPlainTextEdit *>(u"Text1"_s)->toPlainText(), Hersteller::zeilen().join(u'\n'));
    EXPECT_EQ(Hersteller::zeilen().last(), Hersteller::internet());
    EXPECT_EQ(Hersteller::webzeile(u"veldrak.example"_s), u"Internet: veldrak.example"_s);
    EXPECT_EQ(Hersteller::webzeile({}), u"Internet: die Projektseite, von der Sie das Programm haben"_s);
    EXPECT_THAT(info.findChild<QLabel *>(u"lbVersion"_s)->text().toStdString(),
                testing::MatchesRegex("[0-9]+\\.[0-9]+\\.[0-9]+"));
    info.setze_txbInfo(u"Neues"_s);
    info.show();
    info.close();
    EXPECT_EQ(m_haupt.InfoStart().txbInfo(), u"Neues"_s);
}
