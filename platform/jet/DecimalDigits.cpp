// Exact decimal numbers, which no built-in number type holds.
#include "platform/jet/DecimalDigits.h"

#include <algorithm>

namespace jet {

namespace {

/// Drops all but `keep` digits, rounding half to even.
QByteArray rounded(const QByteArray &digits, qsizetype keep)
{
    QByteArray kept = digits.first(keep);
    const QByteArray rest = digits.sliced(keep);
    const bool odd = !kept.isEmpty() && (kept.back() - '0') % 2 != 0;
    const bool aboveHalf = rest > QByteArray("5").leftJustified(rest.size(), '0');
    const bool half = rest == QByteArray("5").leftJustified(rest.size(), '0');
    if (!aboveHalf && !(half && odd))
        return kept;
    kept.prepend('0');
    qsizetype at = kept.size() - 1;
    for (; kept[at] == '9'; --at)
        kept[at] = '0';
    ++kept[at];
    return kept;
}

QByteArray withoutLeadingZeros(const QByteArray &digits)
{
    const auto first = std::find_if(digits.begin(), digits.end(), [](char digit) { return digit != '0'; });
    return first == digits.end() ? QByteArray("0") : digits.sliced(first - digits.begin());
}

} // namespace

std::optional<DecimalDigits> DecimalDigits::parse(QStringView text, int scale)
{
    DecimalDigits number;
    if (text.startsWith(u'-') || text.startsWith(u'+')) {
        number.negative = text.front() == u'-';
        text = text.sliced(1);
    }
    const qsizetype point = text.indexOf(u'.');
    const QByteArray whole = (point < 0 ? text : text.first(point)).toLatin1();
    QByteArray fraction = point < 0 ? QByteArray() : text.sliced(point + 1).toLatin1();
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (whole.isEmpty() && fraction.isEmpty())
        return std::nullopt;
    if (!std::all_of(whole.begin(), whole.end(), isDigit) || !std::all_of(fraction.begin(), fraction.end(), isDigit))
        return std::nullopt;
    if (fraction.size() < scale)
        fraction = fraction.leftJustified(scale, '0');
    const QByteArray all = whole + fraction;
    const qsizetype keep = whole.size() + scale;
    number.digits = withoutLeadingZeros(keep < all.size() ? rounded(all, keep) : all);
    number.negative = number.negative && number.digits != "0";
    return number;
}

QString DecimalDigits::toText(int scale) const
{
    QByteArray text = digits.rightJustified(scale + 1, '0');
    if (scale > 0)
        text.insert(text.size() - scale, '.');
    if (negative)
        text.prepend('-');
    return QString::fromLatin1(text);
}

DecimalDigits DecimalDigits::fromMagnitude(bool negative, Magnitude magnitude)
{
    DecimalDigits number;
    number.negative = negative;
    while (std::any_of(magnitude.begin(), magnitude.end(), [](std::uint32_t part) { return part != 0; })) {
        std::uint64_t rest = 0;
        for (std::uint32_t &part : magnitude) {
            rest = rest << 32 | part;
            part = static_cast<std::uint32_t>(rest / 10);
            rest %= 10;
        }
        number.digits.prepend(static_cast<char>('0' + rest));
    }
    if (number.digits.isEmpty())
        number.digits = "0";
    return number;
}

std::optional<DecimalDigits::Magnitude> DecimalDigits::magnitude() const
{
    Magnitude magnitude{};
    for (const char digit : digits) {
        std::uint64_t carry = static_cast<std::uint64_t>(digit - '0');
        for (auto part = magnitude.rbegin(); part != magnitude.rend(); ++part) {
            carry += std::uint64_t{*part} * 10;
            *part = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0)
            return std::nullopt;
    }
    return magnitude;
}

} // namespace jet
