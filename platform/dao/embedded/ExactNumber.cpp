// Exact numbers as bytes in order, and their sums.
//
//   8  mark
//   1  sign: 7F negative, 80 zero, 81 positive; nothing follows a zero
//   2  exponent + 8000, high byte first: the number is 0.DIGITS times ten to that power
//   n  digits as characters, the last is not "0"
//   1  FF, negative numbers only; their exponent and digits are inverted
#include "platform/dao/embedded/ExactNumber.h"

#include <algorithm>

#include "platform/dao/embedded/DecimalText.h"

using namespace Qt::StringLiterals;

namespace dao {

namespace {

constexpr QByteArrayView mark("\xF1"
                              "exact\xE2\x01",
                              8);
constexpr char negativeSign = '\x7F';
constexpr char zeroSign = '\x80';
constexpr char positiveSign = '\x81';
constexpr int bias = 0x8000;

QByteArray inverted(QByteArray bytes)
{
    std::ranges::transform(bytes, bytes.begin(), [](char byte) { return static_cast<char>(~byte); });
    return bytes;
}

QString digitsAt(const QString &plain, qsizetype scale)
{
    const QString magnitude = plain.startsWith(u'-') ? plain.mid(1) : plain;
    const auto point = magnitude.indexOf(u'.');
    const QString decimals = point < 0 ? QString() : magnitude.mid(point + 1);
    return (point < 0 ? magnitude : magnitude.left(point)) + decimals.leftJustified(scale, u'0');
}

qsizetype scaleOf(const QString &plain)
{
    const auto point = plain.indexOf(u'.');
    return point < 0 ? 0 : plain.size() - point - 1;
}

/// Digit by digit, both equally long; of a difference the left one is not the smaller.
QString combined(const QString &left, const QString &right, int sign)
{
    QString result(left.size() + 1, u'0');
    int carry = 0;
    for (auto i = left.size(); i-- > 0;) {
        const int digit = left[i].digitValue() + sign * right[i].digitValue() + carry;
        carry = digit < 0 ? -1 : digit / 10;
        result[i + 1] = QChar(u'0' + (digit + 10) % 10);
    }
    result[0] = QChar(u'0' + carry);
    return result;
}

} // namespace

QByteArray exactBytes(const QString &plain)
{
    const qsizetype scale = scaleOf(plain);
    QByteArray digits = digitsAt(plain, scale).toLatin1();
    const auto leading = std::ranges::find_if(digits, [](char digit) { return digit != '0'; }) - digits.begin();
    const int exponent = static_cast<int>(digits.size() - scale - leading);
    digits.remove(0, leading);
    while (digits.endsWith('0'))
        digits.chop(1);
    if (digits.isEmpty())
        return mark.toByteArray() + zeroSign;
    const int biased = exponent + bias;
    const QByteArray body = QByteArray(1, static_cast<char>(biased >> 8)) + static_cast<char>(biased & 0xFF) + digits;
    if (plain.startsWith(u'-'))
        return mark.toByteArray() + negativeSign + inverted(body) + '\xFF';
    return mark.toByteArray() + positiveSign + body;
}

std::optional<QString> exactDecimal(QByteArrayView bytes)
{
    if (!bytes.startsWith(mark) || bytes.size() == mark.size())
        return std::nullopt;
    const char sign = bytes[mark.size()];
    QByteArray body = bytes.sliced(mark.size() + 1).toByteArray();
    if (sign == zeroSign && body.isEmpty())
        return u"0"_s;
    if (sign == negativeSign && body.endsWith('\xFF'))
        body = inverted(body.chopped(1));
    else if (sign != positiveSign)
        return std::nullopt;
    const QString digits = QString::fromLatin1(body.mid(2));
    if (digits.isEmpty() || !std::ranges::all_of(digits, [](QChar digit) { return digit >= u'0' && digit <= u'9'; }))
        return std::nullopt;
    const int exponent = (static_cast<uchar>(body[0]) << 8) + static_cast<uchar>(body[1]) - bias;
    QString plain = exponent > 0 ? digits.leftJustified(exponent, u'0') : QString(1 - exponent, u'0') + digits;
    const int point = std::max(exponent, 1);
    if (plain.size() > point)
        plain.insert(point, u'.');
    return sign == negativeSign ? u'-' + plain : plain;
}

QString addedDecimals(const QString &left, const QString &right)
{
    const qsizetype scale = std::max(scaleOf(left), scaleOf(right));
    QString first = digitsAt(left, scale);
    QString second = digitsAt(right, scale);
    const auto length = std::max(first.size(), second.size());
    first = first.rightJustified(length, u'0');
    second = second.rightJustified(length, u'0');
    const bool sameSign = left.startsWith(u'-') == right.startsWith(u'-');
    const bool turned = !sameSign && first < second;
    QString digits = turned ? combined(second, first, -1) : combined(first, second, sameSign ? 1 : -1);
    if (scale > 0)
        digits.insert(digits.size() - scale, u'.');
    return roundedDecimal((turned ? right : left).startsWith(u'-') ? u'-' + digits : digits, static_cast<int>(scale));
}

QString negatedDecimal(const QString &plain)
{
    return plain.startsWith(u'-') ? plain.mid(1) : u'-' + plain;
}

} // namespace dao
