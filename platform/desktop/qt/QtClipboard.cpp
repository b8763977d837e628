// The desktop's clipboard.
#include "platform/desktop/qt/QtClipboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace desktop {

void QtClipboard::clear()
{
    QGuiApplication::clipboard()->clear();
}

void QtClipboard::setText(const QString &text)
{
    QGuiApplication::clipboard()->setText(text);
}

} // namespace desktop
