#pragma once

#include <functional>

namespace storage {

/// Tries again for two seconds, as long as a user waits without wondering: whoever holds a lock is mostly just writing.
/// Whether `attempt` succeeded.
bool retryForAWhile(const std::function<bool()> &attempt);

} // namespace storage
