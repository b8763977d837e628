#pragma once

#include <sqlite3.h>

#include "platform/storage/Value.h"

namespace dao {

/// A value from a statement or an argument: Null, int64, double, Decimal, QString or QByteArray.
storage::Value valueOf(sqlite3_value *value);

/// A stored value as SQL computes with it: yes/no as -1 and 0, dates as serial numbers, amounts and decimals as exact
/// numbers (ExactNumber.h).
void giveResult(sqlite3_context *context, const storage::Value &value);

void giveText(sqlite3_context *context, const QString &text);

/// A text argument, other values as text; valid until the value is asked for anything else.
QStringView viewOf(sqlite3_value *value);

} // namespace dao
