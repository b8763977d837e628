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
    /// `nameOwned` tells whether a running program offers automation under a name; it must outlive this object's use.
    explicit QtDesktop(X11Windows::NameOwned nameOwned)
        : windows(std::move(nameOwned))
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
