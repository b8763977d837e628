// A missing display, told to the user.
#include "platform/desktop/application/DisplayGuard.h"

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

namespace {

// The toolkit's message handler is a plain function.
QByteArray sentence;
QtMessageHandler before = nullptr;

void handle(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type != QtFatalMsg) {
        if (QLatin1StringView(context.category) != "qt.qpa.xcb"_L1
            && QLatin1StringView(context.category) != "qt.qpa.plugin"_L1)
            before(type, context, text);
        return; // why a display cannot be used: the sentence says it
    }
    std::fputs(sentence.constData(), stderr);
    std::_Exit(1); // instead of the toolkit's abort
}

} // namespace

namespace desktop {

DisplayGuard::DisplayGuard(const QString &program)
{
    sentence = u"%1: Es ist kein grafischer Bildschirm zu erreichen (DISPLAY „%2“, WAYLAND_DISPLAY „%3“).\n"_s
                   .arg(program, qEnvironmentVariable("DISPLAY"), qEnvironmentVariable("WAYLAND_DISPLAY"))
                   .toUtf8();
    before = qInstallMessageHandler(handle);
}

DisplayGuard::~DisplayGuard()
{
    qInstallMessageHandler(before);
}

} // namespace desktop
