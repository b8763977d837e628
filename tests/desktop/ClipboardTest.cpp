// Who keeps the clipboard when a program has ended, on a display of the test's own. The other programs of the test are
// this one, started with a word.
#include <cstdio>
#include <string_view>

#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTest>
#include <xcb/xcb.h>

#include "platform/desktop/qt/QtClipboard.h"

using namespace Qt::StringLiterals;

namespace {

class ClipboardTest : public testing::Test
{
protected:
    void SetUp() override
    {
        m_server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"200x200x24"_s});
        ASSERT_TRUE(m_server.waitForReadyRead(30000));
        m_environment.insert(u"DISPLAY"_s, u':' + QString::fromLatin1(m_server.readLine()).trimmed());
        m_environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    }
    void TearDown() override { end(m_server); }

    static void end(QProcess &process)
    {
        process.terminate();
        if (!process.waitForFinished())
            process.kill();
    }

    void start(QProcess &process, const QStringList &words) const
    {
        process.setProcessEnvironment(m_environment);
        process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        process.start(QCoreApplication::applicationFilePath(), words);
    }

    QString run(const QStringList &words) const
    {
        QProcess process;
        start(process, words);
        EXPECT_TRUE(process.waitForFinished());
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    // Those of this display.
    int keepers() const
    {
        const QByteArray display = "DISPLAY=" + m_environment.value(u"DISPLAY"_s).toLatin1();
        int count = 0;
        for (const QFileInfo &process : QDir(u"/proc"_s).entryInfoList({u"[1-9]*"_s}, QDir::Dirs)) {
            QFile environment(process.filePath() + u"/environ"_s);
            if (QFileInfo(process.filePath() + u"/exe"_s).symLinkTarget().endsWith(u"/veldrak-zwischenablage"_s)
                && environment.open(QFile::ReadOnly) && environment.readAll().split('\0').contains(display))
                ++count;
        }
        return count;
    }
    bool becomeKeepers(int count) const
    {
        return QTest::qWaitFor([this, count] { return keepers() == count; });
    }

    QProcess m_server;
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(ClipboardTest, OutlivesTheProgramUntilSomebodyTakesIt)
{
    const QString sql = u"SELECT 'Größe €' FROM sPersKto WHERE "_s + QString(20'000, u'x');
    run({u"--copy"_s, sql});
    EXPECT_EQ(keepers(), 1);
    EXPECT_EQ(run({u"--paste"_s}), sql);
    EXPECT_EQ(run({u"--paste"_s}), sql) << "more than once";
    run({u"--copy"_s, u"zweite"_s});
    EXPECT_TRUE(becomeKeepers(1)) << "one is enough";
    EXPECT_EQ(run({u"--paste"_s}), u"zweite"_s);

    QProcess other;
    start(other, {u"--hold"_s, u"von anderswo"_s});
    EXPECT_TRUE(becomeKeepers(0));
    EXPECT_EQ(run({u"--paste"_s}), u"von anderswo"_s);
    end(other);

    run({u"--copy"_s, u"dritte"_s});
    EXPECT_EQ(keepers(), 1);
    end(m_server);
    EXPECT_TRUE(becomeKeepers(0)) << "nobody is left where the display is gone";
}

TEST_F(ClipboardTest, IsLeftToAClipboardManager)
{
    QProcess manager;
    start(manager, {u"--manage"_s});
    ASSERT_TRUE(manager.waitForReadyRead());
    run({u"--copy"_s, u"SELECT 1"_s});
    EXPECT_EQ(keepers(), 0);
    manager.waitForReadyRead(1000);
    EXPECT_EQ(manager.readAllStandardOutput(), "ready\nasked\n");
    end(manager);
}

// Claims to be a clipboard manager, and says when it was asked to keep something.
void manage()
{
    xcb_connection_t *display = xcb_connect(nullptr, nullptr);
    constexpr std::string_view name = "CLIPBOARD_MANAGER";
    xcb_intern_atom_reply_t *atom
        = xcb_intern_atom_reply(display, xcb_intern_atom(display, 0, name.size(), name.data()), nullptr);
    const xcb_window_t window = xcb_generate_id(display);
    xcb_create_window(display, XCB_COPY_FROM_PARENT, window,
                      xcb_setup_roots_iterator(xcb_get_setup(display)).data->root, 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_set_selection_owner(display, window, atom->atom, XCB_CURRENT_TIME);
    xcb_flush(display);
    std::puts("ready");
    std::fflush(stdout);
    while (xcb_generic_event_t *event = xcb_wait_for_event(display)) {
        if ((event->response_type & 0x7f) != XCB_SELECTION_REQUEST)
            continue;
        const auto &request = *reinterpret_cast<const xcb_selection_request_event_t *>(event);
        xcb_selection_notify_event_t notice{};
        notice.response_type = XCB_SELECTION_NOTIFY;
        notice.requestor = request.requestor;
        notice.selection = request.selection;
        notice.target = request.target;
        notice.property = request.property;
        xcb_send_event(display, 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, reinterpret_cast<const char *>(&notice));
        xcb_flush(display);
        std::puts("asked");
        std::fflush(stdout);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    const QString word = argc > 1 ? QString::fromUtf8(argv[1]) : QString();
    if (word == u"--manage") {
        manage();
        return 0;
    }
    const QApplication application(argc, argv);
    if (word == u"--copy") {
        desktop::QtClipboard().setText(QString::fromUtf8(argv[2]));
        return 0;
    }
    if (word == u"--hold") {
        QApplication::clipboard()->setText(QString::fromUtf8(argv[2]));
        return QApplication::exec();
    }
    if (word == u"--paste") {
        std::fputs(QApplication::clipboard()->text().toUtf8().constData(), stdout);
        return 0;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
