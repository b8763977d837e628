#include "platform/storage/Patience.h"

#include <chrono>
#include <thread>

namespace storage {

bool retryForAWhile(const std::function<bool()> &attempt)
{
    using namespace std::chrono_literals;
    const auto end = std::chrono::steady_clock::now() + 2s;
    // Short pauses: a program that writes all the time lets go for moments only.
    for (auto pause = 500us; !attempt(); pause = std::min(pause * 2, 4000us)) {
        if (std::chrono::steady_clock::now() >= end)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

} // namespace storage
