#pragma once

#include <QString>

#include "platform/desktop/Desktop.h"

/// Clears the clipboard and puts one text on it. A clipboard that another program holds is none of our user's
/// business: failures stay unnoticed.
void ClipBoardSetzen(desktop::Clipboard &zwischenablage, const QString &text);
