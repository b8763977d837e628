#pragma once

#include <optional>

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

/// Amounts and decimals inside SQLite: bytes that compare as the numbers do and lose no digit.
namespace dao {

/// A plain decimal text ("-12.50") as such bytes; equal numbers have equal bytes.
QByteArray exactBytes(const QString &plain);

/// The number of such bytes, as plain decimal text; nothing if they are others.
std::optional<QString> exactDecimal(QByteArrayView bytes);

/// The sum of two plain decimals.
QString addedDecimals(const QString &left, const QString &right);

/// The number with the other sign.
QString negatedDecimal(const QString &plain);

} // namespace dao
