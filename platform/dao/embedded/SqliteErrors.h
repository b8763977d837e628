#pragma once

#include "platform/dao/DaoError.h"
#include "platform/dao/embedded/SqlText.h"

namespace dao {

/// Jet's error for what SQLite says about a statement. `offset` is the byte at which it stumbled, or -1; `text` is the
/// statement, nullptr outside of preparing one. A message that is not known is kept word for word.
DaoError sqliteError(const QString &message, int offset, const SqlText *text);

} // namespace dao
