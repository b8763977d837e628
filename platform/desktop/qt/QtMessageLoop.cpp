// Lets the desktop have its turn during long work.
#include "platform/desktop/qt/QtMessageLoop.h"

#include <QCoreApplication>
#include <QTimer>

using namespace std::chrono_literals;

namespace desktop {

void QtMessageLoop::yield()
{
    QCoreApplication::processEvents();
}

void QtMessageLoop::yieldAndRest()
{
    QTimer longest;
    longest.setSingleShot(true);
    longest.start(10ms);
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents);
}

void QtMessageLoop::quit()
{
    QCoreApplication::exit(0); // QCoreApplication::quit asks every window, and a window may refuse to close
}

} // namespace desktop
