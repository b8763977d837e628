#pragma once

#include <optional>

#include <QString>

#include "platform/storage/Value.h"

namespace dao {

/// Exact decimal numbers as plain text: an optional minus, digits, at most one point ("-12.50").

/// A number written in the user's locale (decimal sign, grouping, exponent), as plain text; nothing if it is none.
std::optional<QString> decimalFromText(const QString &text);

/// A finite double's shortest exact reading.
QString decimalFromDouble(double number);

QString decimalFromCurrency(storage::Currency amount);

/// Exactly `scale` digits behind the point (none: no point), rounded half to even.
QString roundedDecimal(const QString &plain, int scale);

} // namespace dao
