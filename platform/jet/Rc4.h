#pragma once

#include "platform/storage/Bytes.h"

namespace jet {

/// Combines `bytes` with the RC4 key stream of `key`; the same step encodes and decodes.
void rc4(storage::Bytes key, storage::MutableBytes bytes);

} // namespace jet
