#pragma once

#include "platform/desktop/Desktop.h"

namespace desktop {

class QtMessageLoop : public MessageLoop
{
public:
    void yield() override;
    /// Rests until something happens, at most 10 ms.
    void yieldAndRest() override;
    void quit() override;
};

} // namespace desktop
