#pragma once

#include "platform/desktop/Desktop.h"

namespace desktop {

class QtClipboard : public Clipboard
{
public:
    void clear() override;
    void setText(const QString &text) override;
};

} // namespace desktop
