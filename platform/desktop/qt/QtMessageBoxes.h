#pragma once

#include "platform/desktop/Desktop.h"

namespace desktop {

/// Message boxes in front of the active window. The text is shown as it stands, never as markup, and can be copied.
class QtMessageBoxes : public MessageBoxes
{
public:
    Answer show(const Box &box) override;
};

} // namespace desktop
