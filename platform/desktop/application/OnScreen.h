#pragma once

#include <QObject>
#include <QSize>

class QWidget;

namespace desktop {

/// How large a window may be, so that its frame is on the screen as well.
QSize roomFor(const QWidget &window);

/// Keeps every window of the program on its screen, when it is shown: one that is too large becomes smaller, and where
/// its content does not let it, the content scrolls above its buttons. A dialog whose parent is not to be seen stands
/// in the middle of the screen.
///
/// One object a program, made after the application object.
class OnScreen : public QObject
{
public:
    OnScreen();

protected:
    bool eventFilter(QObject *object, QEvent *event) override; // of the application
};

} // namespace desktop
