#pragma once

#include <QByteArray>

#include "fuzz/Target.h"

namespace fuzz {

/// Damages a good file as an input says, or replaces it: up to 255 patches of bytes, copied pages and changed lengths.
/// So most of the file stays good, and checks that come first do not keep the others from being reached.
QByteArray patched(QByteArray file, Input &input, qsizetype pageSize);

} // namespace fuzz
