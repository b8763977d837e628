// From a signal handler, which may do next to nothing, to the event loop.
#include "platform/desktop/application/EndRequests.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

#include <QCoreApplication>
#include <QEvent>

namespace {

constexpr std::array signals{SIGTERM, SIGINT, SIGHUP};
std::array<int, 2> ends{-1, -1}; // a signal handler reaches nothing but globals

void wake(int /*signal*/)
{
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = write(ends[1], &byte, 1); // a full pipe wakes as well
}

int openPipe()
{
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category());
    return ends[0];
}

// One that whoever started the program wants to be ignored (nohup) stays so.
void handleWith(void (*handler)(int))
{
    struct sigaction action { };
    struct sigaction before { };
    action.sa_handler = handler;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    for (const int signal : signals) {
        if (sigaction(signal, nullptr, &before) == 0 && before.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

} // namespace

namespace desktop {

EndRequests::EndRequests(std::function<void()> end)
    : m_end(std::move(end))
    , m_notifier(openPipe(), QSocketNotifier::Read)
{
    connect(&m_notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (read(ends[0], &byte, 1) > 0) { }
        m_end();
    });
    QCoreApplication::instance()->installEventFilter(this);
    handleWith(wake);
}

EndRequests::~EndRequests()
{
    handleWith(SIG_DFL);
    for (const int end : ends)
        close(end);
}

// The toolkit would ask every window, and one may refuse.
bool EndRequests::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::Quit)
        return QObject::eventFilter(object, event);
    m_end();
    return true;
}

} // namespace desktop
