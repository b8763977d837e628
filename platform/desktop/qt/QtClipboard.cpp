// The desktop's clipboard, and who keeps it after the program's end.
#include "platform/desktop/qt/QtClipboard.h"

#include <cstdlib>
#include <memory>

#include <QClipboard>
#include <QGuiApplication>
#include <QProcess>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace {

template <typename T> using Reply = std::unique_ptr<T, decltype(&std::free)>;

// What programs ask to keep their clipboard is the owner of this selection.
bool hasClipboardManager()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> display(xcb_connect(nullptr, nullptr),
                                                                               &xcb_disconnect);
    constexpr std::string_view name = "CLIPBOARD_MANAGER";
    const Reply<xcb_intern_atom_reply_t> atom(
        xcb_intern_atom_reply(display.get(), xcb_intern_atom(display.get(), 0, name.size(), name.data()), nullptr),
        &std::free);
    if (!atom)
        return false;
    const Reply<xcb_get_selection_owner_reply_t> owner(
        xcb_get_selection_owner_reply(display.get(), xcb_get_selection_owner(display.get(), atom->atom), nullptr),
        &std::free);
    return owner && owner->owner != XCB_WINDOW_NONE;
}

void leaveWithKeeper(const QString &text)
{
    QProcess keeper;
    keeper.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    keeper.start(QCoreApplication::applicationDirPath() + u"/veldrak-zwischenablage"_s, {});
    keeper.write(text.toUtf8());
    keeper.closeWriteChannel();
    if (!keeper.waitForFinished(5000) || keeper.exitCode() != 0) // it goes on in the background
        qWarning("Die Zwischenablage konnte nicht aufbewahrt werden.");
}

} // namespace

namespace desktop {

QtClipboard::~QtClipboard()
{
    if (!qGuiApp || QGuiApplication::platformName() != "xcb"_L1)
        return;
    const QClipboard *clipboard = QGuiApplication::clipboard();
    if (clipboard->ownsClipboard() && !clipboard->text().isEmpty() && !hasClipboardManager())
        leaveWithKeeper(clipboard->text());
}

void QtClipboard::clear()
{
    QGuiApplication::clipboard()->clear();
}

void QtClipboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace desktop
