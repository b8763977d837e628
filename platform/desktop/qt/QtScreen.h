#pragma once

#include "platform/desktop/Desktop.h"

namespace desktop {

/// The primary screen. Sizes are in the screen's own pixels, whatever the scaling.
class QtScreen : public Screen
{
public:
    QSize sizeInPixels() const override;
};

} // namespace desktop
