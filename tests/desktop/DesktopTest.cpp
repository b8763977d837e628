// The desktop ports' real implementations, on the offscreen platform.
#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>

#include "platform/desktop/qt/QtDesktop.h"
#include "platform/errors/RunTimeError.h"
#include "tests/fakes/NoRights.h"

using namespace Qt::StringLiterals;
using namespace desktop;

namespace {

class DesktopTest : public testing::Test
{
protected:
    void makeFile(const QString &name, const QByteArray &content = {}) const
    {
        QFile file(folder.filePath(name));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(content);
    }

    // Shows the box and does something with it once it is open.
    Answer showAnd(const Box &box, const std::function<void(QMessageBox &)> &action)
    {
        QTimer::singleShot(0, qApp,
                           [&action] { action(*qobject_cast<QMessageBox *>(QApplication::activeModalWidget())); });
        return desktop.messageBoxes.show(box);
    }

    QTemporaryDir folder;
    QtDesktop desktop{[](const QString &) { return std::nullopt; }};
};

void press(QMessageBox &box, const QString &button)
{
    for (QAbstractButton *candidate : box.buttons()) {
        if (candidate->text().remove(u'&') == button)
            return candidate->click();
    }
    ADD_FAILURE() << "no button " << button.toStdString();
}

TEST_F(DesktopTest, BoxesShowTheirTextAsItStands)
{
    const auto look = [](QMessageBox &shown) {
        EXPECT_EQ(shown.text(), u"Firma <b>&Co</b>\nzweite\ndritte"_s);
        EXPECT_EQ(shown.textFormat(), Qt::PlainText);
        EXPECT_TRUE(shown.textInteractionFlags() & Qt::TextSelectableByMouse);
        EXPECT_EQ(shown.windowTitle(), u"VELDRAK"_s);
        EXPECT_EQ(shown.icon(), QMessageBox::Critical);
        press(shown, u"OK"_s);
    };
    EXPECT_EQ(showAnd({u"Firma <b>&Co</b>\r\nzweite\rdritte"_s, Icon::Critical, Buttons::Ok, {}}, look), Answer::Ok);
}

TEST_F(DesktopTest, BoxesAreAnsweredByButtonOrKey)
{
    const auto key = [](Qt::Key pressed) {
        return [pressed](QMessageBox &box) {
            QWidget *target = box.focusWidget() ? box.focusWidget() : &box;
            QKeyEvent event(QEvent::KeyPress, pressed, Qt::NoModifier);
            QApplication::sendEvent(target, &event);
        };
    };
    // clang-format off
    struct Row { const char *name; Buttons buttons; std::function<void(QMessageBox &)> action; Answer answer; };
    const Row rows[] = {
        {"Ja",            Buttons::YesNo, [](QMessageBox &box) { press(box, u"Ja"_s); },   Answer::Yes},
        {"Nein",          Buttons::YesNo, [](QMessageBox &box) { press(box, u"Nein"_s); }, Answer::No},
        {"Enter means Ja", Buttons::YesNo, key(Qt::Key_Return),                            Answer::Yes},
        {"Esc means Nein", Buttons::YesNo, key(Qt::Key_Escape),                            Answer::No},
        {"closing means Nein", Buttons::YesNo, [](QMessageBox &box) { box.close(); },      Answer::No},
        {"Esc means OK",  Buttons::Ok,    key(Qt::Key_Escape),                             Answer::Ok},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(showAnd({u"Frage ?"_s, Icon::Question, row.buttons, u"Titel"_s}, row.action), row.answer);
    }
}

TEST_F(DesktopTest, SettingsSurvive)
{
    qputenv("XDG_CONFIG_HOME", folder.path().toUtf8());
    EXPECT_EQ(desktop.settings.get(u"VELDRAK"_s, u"Setting"_s, u"Mandant"_s, u"keiner"_s), u"keiner"_s);
    for (const QString &value : {u"Müller, \"Söhne\"; 50 % @x"_s, u""_s, u"2"_s}) {
        desktop.settings.save(u"VELDRAK"_s, u"Setting"_s, u"Mandant"_s, value);
        EXPECT_EQ(IniSettings().get(u"VELDRAK"_s, u"Setting"_s, u"Mandant"_s, u"keiner"_s), value);
    }
    EXPECT_EQ(desktop.settings.get(u"VELDRAK"_s, u"Anderes"_s, u"Mandant"_s, u"keiner"_s), u"keiner"_s);

    makeFile(u"Datei"_s);
    qputenv("XDG_CONFIG_HOME", folder.filePath(u"Datei"_s).toUtf8());
    EXPECT_THROW(desktop.settings.save(u"VELDRAK"_s, u"Setting"_s, u"Mandant"_s, u"2"_s), RunTimeError);
}

TEST_F(DesktopTest, FilesAreListedWithoutCase)
{
    for (const QString &name :
         {u"zwei.pck"_s, u"Eins.PCK"_s, u"äpfel.PCK"_s, u"[Eins].Pck"_s, u"Eins.PCKX"_s, u"x.txt"_s})
        makeFile(name);
    QDir(folder.path()).mkdir(u"Ordner.PCK"_s);
    const QString windowsPath = folder.path().replace(u'/', u'\\');
    // clang-format off
    struct Row { const char *name; QString pattern; QStringList names; };
    const Row rows[] = {
        {"backslashes",     windowsPath + u"\\*.PCK"_s,
         {u"[Eins].Pck"_s, u"Eins.PCK"_s, u"zwei.pck"_s, u"äpfel.PCK"_s}},
        {"one letter",      windowsPath + u"/?WEI.*"_s, {u"zwei.pck"_s}},
        {"brackets",        windowsPath + u"/[E*"_s,    {u"[Eins].Pck"_s}},
        {"no match",        windowsPath + u"/*.piz"_s,  {}},
        {"no such folder",  windowsPath + u"x/*.PCK"_s, {}},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(desktop.files.list(row.pattern), row.names);
    }
    EXPECT_TRUE(desktop.files.exists(windowsPath + u"\\EINS.pck"_s));
    EXPECT_FALSE(desktop.files.exists(windowsPath + u"\\ordner.pck"_s)) << "a folder is no file";
    EXPECT_FALSE(desktop.files.exists(windowsPath + u"\\drei.pck"_s));
    EXPECT_EQ(desktop.files.shortPath(windowsPath), windowsPath);
}

TEST_F(DesktopTest, FilesThatMayNotBeSeenAreNotMissing)
{
    makeFile(u"Eins.PCK"_s);
    const NoRights none(folder.path());
    const auto denied = testing::Throws<RunTimeError>(testing::Property(&RunTimeError::Number, 75));
    EXPECT_THAT([this] { desktop.files.list(folder.path() + u"/*.PCK"_s); }, denied);
    EXPECT_THAT([this] { desktop.files.list(folder.path() + u"/Ordner/*.PCK"_s); }, denied);
    EXPECT_THAT([this] { desktop.files.exists(folder.path() + u"/Eins.PCK"_s); }, denied);
    EXPECT_FALSE(desktop.files.exists(folder.path() + u"x/Eins.PCK"_s));
}

TEST_F(DesktopTest, RestingIsShortAndStillHandlesEvents)
{
    bool handled = false;
    QTimer::singleShot(0, qApp, [&handled] { handled = true; });
    desktop.messageLoop.yield();
    EXPECT_TRUE(handled);

    bool later = false;
    QTimer::singleShot(20, qApp, [&later] { later = true; });
    int rests = 0;
    for (; !later && rests < 100'000; ++rests)
        desktop.messageLoop.yieldAndRest();
    EXPECT_TRUE(later);
    EXPECT_LT(rests, 1'000) << "a busy loop turns far more often";
}

TEST_F(DesktopTest, QuitEndsEvenBelowAnOpenWindowThatWillNotClose)
{
    struct Stubborn : QWidget {
        void closeEvent(QCloseEvent *event) override { event->ignore(); }
    } window;
    window.show();
    QTimer::singleShot(0, qApp,
                       [this] { showAnd({u"offen"_s}, [this](QMessageBox &) { desktop.messageLoop.quit(); }); });
    EXPECT_EQ(QCoreApplication::exec(), 0);
}

TEST_F(DesktopTest, ScreenClockAndClipboardAreThere)
{
    EXPECT_GT(desktop.screen.sizeInPixels().width(), 0);
    EXPECT_NEAR(desktop.clock.Timer(), QTime(0, 0).msecsTo(QTime::currentTime()) / 1000.0, 5);
    EXPECT_EQ(desktop.clock.Date(), QDate::currentDate());
    desktop.clipboard.setText(u"SELECT 'ß'"_s);
    EXPECT_EQ(QApplication::clipboard()->text(), u"SELECT 'ß'"_s);
    desktop.clipboard.clear();
    EXPECT_EQ(QApplication::clipboard()->text(), u""_s);
}

TEST_F(DesktopTest, WithoutADisplayWindowsCannotBeListed)
{
    const QByteArray display = qgetenv("DISPLAY");
    qunsetenv("DISPLAY");
    EXPECT_FALSE(desktop.windows.list());
    qputenv("DISPLAY", display);
}

TEST_F(DesktopTest, AProgramIsSeenByItsNameOrItsProcess)
{
    const QString program = folder.filePath(u"Qactprobe"_s);
    ASSERT_TRUE(QFile::copy(QStandardPaths::findExecutable(u"sleep"_s), program));
    QProcess process;
    process.start(program, {u"60"_s});
    ASSERT_TRUE(process.waitForStarted());
    // clang-format off
    struct Row { const char *name; std::optional<bool> nameKnown; QString className; std::optional<bool> seen; };
    const Row rows[] = {
        {"the name",                         true,         u"Qnone"_s,   true},
        {"the process, no name",             false,        u"qact"_s,    true},
        {"the process, the bus is silent",   std::nullopt, u"Qact"_s,    true},
        {"neither",                          false,        u"Qnone"_s,   false},
        {"no process, the bus is silent",    std::nullopt, u"Qnone"_s,   std::nullopt},
        {"the word within a process's name", false,        u"actprobe"_s, false},
    };
    // clang-format on
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        const X11Windows windows(
            [&row](const QString &progId) { return progId == "ACTOLE.APPOBJECT"_L1 ? row.nameKnown : std::nullopt; });
        EXPECT_EQ(windows.programSeen(u"ACTOLE.APPOBJECT"_s, row.className), row.seen);
    }
    process.kill();
    process.waitForFinished();
}

} // namespace
