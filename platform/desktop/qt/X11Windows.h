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
    using NameOwned = std::function<bool(const QString &progId)>;

    explicit X11Windows(NameOwned nameOwned)
        : m_nameOwned(std::move(nameOwned))
    { }

    std::optional<std::vector<Window>> list() const override;
    bool automationNameOwned(const QString &progId) const override { return m_nameOwned(progId); }

private:
    NameOwned m_nameOwned;
};

} // namespace desktop
