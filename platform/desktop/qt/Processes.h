#pragma once

#include <optional>

#include <QString>

namespace desktop {

/// Whether this user runs a program whose name begins so, in whatever case; nothing where processes cannot be seen.
///
/// The beginning must match: a name that has a short word such as "act" anywhere may be any factory or contact service.
std::optional<bool> isProgramRunning(const QString &nameBegins);

} // namespace desktop
