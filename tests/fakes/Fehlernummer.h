#pragma once

#include <functional>

#include "platform/errors/RunTimeError.h"

/// The number of the run-time error that the code throws; 0 if none.
inline int fehlernummer(const std::function<void()> &code)
{
    try {
        code();
    } catch (const RunTimeError &fehler) {
        return fehler.Number();
    }
    return 0;
}
