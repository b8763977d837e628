#pragma once

#include "platform/desktop/qt/DiskFiles.h"
#include "platform/desktop/qt/IniSettings.h"
#include "platform/desktop/qt/QtClipboard.h"
#include "platform/desktop/qt/QtMessageBoxes.h"
#include "platform/desktop/qt/QtMessageLoop.h"
#include "platform/desktop/qt/QtScreen.h"
#include "platform/desktop/qt/SystemClock.h"
#include "platform/desktop/qt/X11Windows.h"

namespace desktop {

/// The real desktop: everything behind the ports in one place. Needs a QApplication while it is used.
struct QtDesktop {
    /// `nameKnown` tells whether a program offers automation under a name, or could; it must outlive this object's use.
    explicit QtDesktop(X11Windows::NameKnown nameKnown)
        : windows(std::move(nameKnown))
    { }

    QtMessageBoxes messageBoxes;
    IniSettings settings;
    QtClipboard clipboard;
    X11Windows windows;
    QtScreen screen;
    SystemClock clock;
    QtMessageLoop messageLoop;
    DiskFiles files;
};

} // namespace desktop
