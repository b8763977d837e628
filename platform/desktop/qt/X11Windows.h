#pragma once

#include <functional>

#include "platform/desktop/Desktop.h"

namespace desktop {

/// The windows of an X11 display: those that programs have made themselves, also below a window manager's frames,
/// shown or not. The class name is instance and class, parted by a blank. Where programs do not (only) talk to an X11
/// display, windows cannot be listed.
class X11Windows : public TopLevelWindows
{
public:
    /// Nothing if that cannot be asked.
    using NameKnown = std::function<std::optional<bool>(const QString &progId)>;

    explicit X11Windows(NameKnown nameKnown)
        : m_nameKnown(std::move(nameKnown))
    { }

    std::optional<std::vector<Window>> list() const override;
    /// No only if neither the name nor a process is there; a window's class mostly is the name of its program.
    std::optional<bool> programSeen(const QString &progId, const QString &className) const override;

private:
    NameKnown m_nameKnown;
};

} // namespace desktop
