#pragma once

#include "platform/jet/IndexKey.h"
#include "platform/jet/TableDef.h"

/// Writes the keys of texts with "ß" or "æ" in all indexes of a file's tables anew, as programs do that count such a
/// letter as one. The file must be closed. Returns how many keys became others.
std::size_t writeOthersKeys(const QString &path);
