#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include <QString>
#include <QStringView>

namespace jet {

/// An exact decimal number as its digits without point: "-12.50" with two decimals is negative, 1250.
struct DecimalDigits {
    bool negative = false;
    QByteArray digits{}; ///< at least one, no leading zeros but for zero itself

    /// Reads a plain decimal number and brings it to `scale` decimals, rounded half to even; nothing if it is no
    /// number.
    static std::optional<DecimalDigits> parse(QStringView text, int scale);
    QString toText(int scale) const;

    /// 128 bits, the most significant 32 first.
    using Magnitude = std::array<std::uint32_t, 4>;
    static DecimalDigits fromMagnitude(bool negative, Magnitude magnitude);
    /// Nothing if it takes more than 128 bits.
    std::optional<Magnitude> magnitude() const;
};

} // namespace jet
