#pragma once

#include "platform/desktop/Desktop.h"

namespace desktop {

/// What is put there outlives the program. A clipboard manager takes it over when the application object goes; on an
/// X11 display without one a helper process keeps it (veldrak-zwischenablage, beside the program). Wayland keeps a text
/// for its program only, and lets no program without a window in front offer one: there it needs a clipboard manager,
/// which the large desktops have.
class QtClipboard : public Clipboard
{
public:
    QtClipboard() = default;
    ~QtClipboard() override; // hands the text over
    QtClipboard(const QtClipboard &) = delete;
    QtClipboard &operator=(const QtClipboard &) = delete;

    void clear() override;
    void setText(const QString &text) override;
};

} // namespace desktop
