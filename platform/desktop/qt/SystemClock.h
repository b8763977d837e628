#pragma once

#include "platform/desktop/Desktop.h"

namespace desktop {

class SystemClock : public Clock
{
public:
    double Timer() const override;
    QDate Date() const override;
};

} // namespace desktop
