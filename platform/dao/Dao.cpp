// What every implementation of the object model shares: the text form of its values.
#include "platform/dao/Dao.h"

#include <QDateTime>
#include <QLocale>

using namespace Qt::StringLiterals;

namespace dao {

namespace {

QString currencyText(std::int64_t tenThousandths)
{
    const bool negative = tenThousandths < 0;
    const auto magnitude = negative ? 0 - static_cast<std::uint64_t>(tenThousandths) //
                                    : static_cast<std::uint64_t>(tenThousandths);
    QString text = QString::number(magnitude / 10000);
    QString decimals = QString::number(magnitude % 10000).rightJustified(4, u'0');
    while (decimals.endsWith(u'0'))
        decimals.chop(1);
    if (!decimals.isEmpty())
        text += QLocale().decimalPoint() + decimals;
    return negative ? u'-' + text : text;
}

QString realText(double number, int digits)
{
    QString text = QString::number(number, 'g', digits);
    return text.replace(u"."_s, QLocale().decimalPoint());
}

// The user's short form, but always with the whole year.
QString dateText(const QDateTime &moment)
{
    QString form = QLocale().dateFormat(QLocale::ShortFormat);
    if (!form.contains(u"yyyy"_s))
        form.replace(u"yy"_s, u"yyyy"_s);
    QString text = QLocale().toString(moment.date(), form);
    if (moment.time() != QTime(0, 0))
        text += u' ' + moment.time().toString(u"HH:mm:ss"_s);
    return text;
}

} // namespace

QString textOf(const QVariant &value)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType: // Null
    case QMetaType::Nullptr: // Empty
        return {};
    case QMetaType::Bool:
        return value.toBool() ? u"Wahr"_s : u"Falsch"_s;
    case QMetaType::UChar: // Qt would take it for a letter
        return QString::number(value.value<uchar>());
    case QMetaType::Float:
        return realText(static_cast<double>(value.toFloat()), 7);
    case QMetaType::Double:
        return realText(value.toDouble(), 15);
    case QMetaType::QDateTime:
        return dateText(value.toDateTime());
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray());
    default:
        break;
    }
    if (value.canConvert<storage::Currency>())
        return currencyText(value.value<storage::Currency>().tenThousandths);
    if (value.canConvert<storage::Decimal>())
        return value.value<storage::Decimal>().text.replace(u"."_s, QLocale().decimalPoint());
    if (!value.canConvert<QString>()) // an object, say: "" would look like a value
        throw RunTimeError(RunTimeError::TypeMismatch);
    return value.toString();
}

} // namespace dao
