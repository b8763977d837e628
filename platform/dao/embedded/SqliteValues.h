#pragma once

#include <sqlite3.h>

#include "platform/storage/Value.h"

namespace dao {

/// A value from a statement or an argument: Null, int64, double, QString or QByteArray.
storage::Value valueOf(sqlite3_value *value);

/// A stored value as SQL computes with it: yes/no as -1 and 0, dates as serial numbers, amounts as double.
void giveResult(sqlite3_context *context, const storage::Value &value);

/// The double under which SQL sees an amount.
double realOf(storage::Currency amount);

} // namespace dao
