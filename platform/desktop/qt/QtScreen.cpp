// The size of the primary screen.
#include "platform/desktop/qt/QtScreen.h"

#include <QGuiApplication>
#include <QScreen>

namespace desktop {

QSize QtScreen::sizeInPixels() const
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? (QSizeF(screen->size()) * screen->devicePixelRatio()).toSize() : QSize();
}

} // namespace desktop
