#pragma once

#include <cstdint>
#include <variant>

#include <QByteArray>
#include <QString>

namespace storage {

/// An amount of money in ten-thousandths of its unit, as Jet stores it.
struct Currency {
    std::int64_t tenThousandths = 0;
    bool operator==(const Currency &) const = default;
};

/// A moment in days since 1899-12-30 00:00, the fraction is the time of day (before that day the fraction still
/// counts forwards, as in OLE automation).
struct DateTime {
    double days = 0;
    bool operator==(const DateTime &) const = default;
};

/// An exact decimal number in its plain text form, for example "-12.50".
struct Decimal {
    QString text;
    bool operator==(const Decimal &) const = default;
};

/// One field's content. monostate is Null; a GUID is its text in braces; whole numbers of every width are int64.
using Value
    = std::variant<std::monostate, bool, std::int64_t, double, Currency, DateTime, Decimal, QString, QByteArray>;

inline bool isNull(const Value &value)
{
    return std::holds_alternative<std::monostate>(value);
}

} // namespace storage
