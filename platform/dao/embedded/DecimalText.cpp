// Decimal numbers kept as digits, so that amounts never pass through binary fractions.
#include "platform/dao/embedded/DecimalText.h"

#include <QLocale>
#include <QRegularExpression>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

/// Adds one to the last of a row of digits; a digit may be gained in front.
QString incremented(QString digits)
{
    for (auto i = digits.size(); i-- > 0;) {
        if (digits[i] != u'9') {
            digits[i] = QChar(digits[i].unicode() + 1);
            return digits;
        }
        digits[i] = u'0';
    }
    return u'1' + digits;
}

} // namespace

std::optional<QString> decimalFromText(const QString &text)
{
    const QLocale locale;
    bool isNumber = false;
    const double number = locale.toDouble(text.trimmed(), &isNumber);
    if (!isNumber || !qIsFinite(number))
        return std::nullopt;
    QString plain = text.trimmed();
    plain.remove(locale.groupSeparator());
    plain.replace(locale.decimalPoint(), u"."_s);
    static const QRegularExpression form(uR"(^([+-]?)(\d*)(?:\.(\d*))?$)"_s);
    const QRegularExpressionMatch match = form.match(plain);
    if (!match.hasMatch())
        return decimalFromDouble(number); // with an exponent
    plain = match.captured(2).isEmpty() ? u"0"_s : match.captured(2);
    if (!match.captured(3).isEmpty())
        plain += u'.' + match.captured(3);
    return match.captured(1) == u"-" ? u'-' + plain : plain;
}

QString decimalFromDouble(double number)
{
    return QString::number(number, 'f', QLocale::FloatingPointShortest);
}

QString decimalFromCurrency(storage::Currency amount)
{
    QString digits = QString::number(amount.tenThousandths);
    const bool negative = digits.startsWith(u'-');
    digits = digits.mid(negative ? 1 : 0).rightJustified(5, u'0');
    digits.insert(digits.size() - 4, u'.');
    return negative ? u'-' + digits : digits;
}

QString roundedDecimal(const QString &plain, int scale)
{
    const bool negative = plain.startsWith(u'-');
    const QString magnitude = negative ? plain.mid(1) : plain;
    const auto point = magnitude.indexOf(u'.');
    QString digits = point < 0 ? magnitude : magnitude.left(point);
    const QString decimals = point < 0 ? QString() : magnitude.mid(point + 1);
    digits += decimals.left(scale).leftJustified(scale, u'0');
    const QString rest = decimals.mid(scale);
    if (!rest.isEmpty() && rest[0] >= u'5') {
        const bool half = rest == u"5"_s.leftJustified(rest.size(), u'0');
        const bool odd = !digits.isEmpty() && digits.back().digitValue() % 2 == 1;
        if (!half || odd)
            digits = incremented(digits);
    }
    digits = digits.rightJustified(scale + 1, u'0');
    while (digits.size() > scale + 1 && digits[0] == u'0')
        digits.remove(0, 1);
    if (scale > 0)
        digits.insert(digits.size() - scale, u'.');
    const bool isZero = digits.count(u'0') + digits.count(u'.') == digits.size();
    return negative && !isZero ? u'-' + digits : digits;
}

} // namespace dao
