#pragma once

#include "platform/storage/Value.h"

namespace jet {

/// The local time, to the second.
storage::DateTime now();

} // namespace jet
