// Values as JSON.
#include "tools/veldrak-db/Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include <QDateTime>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/DateText.h"

using namespace Qt::StringLiterals;

namespace json {

namespace {

/// The shortest text that reads back as the same number. JSON has no infinite ones.
template <typename Float> QString number(Float value)
{
    if (!std::isfinite(value))
        return text(std::isnan(value) ? u"NaN"_s : value > 0 ? u"Infinity"_s : u"-Infinity"_s);
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    return QString::fromLatin1(digits, end - digits);
}

QString currency(storage::Currency amount)
{
    const bool negative = amount.tenThousandths < 0;
    const auto all = static_cast<std::uint64_t>(amount.tenThousandths);
    QString digits = QString::number(negative ? 0 - all : all).rightJustified(5, u'0');
    digits.insert(digits.size() - 4, u'.');
    return text(negative ? u'-' + digits : digits);
}

QString date(QDate day, QTime time)
{
    const QString clock = time.toString(time.msec() == 0 ? Qt::ISODate : Qt::ISODateWithMs);
    return text(day.toString(Qt::ISODate) + u'T' + clock);
}

/// A number that is no day of the calendar is shown as the number that it is.
QString date(storage::DateTime moment)
{
    const auto [day, time] = dao::dayAndTimeOf(moment);
    return day.isValid() ? date(day, time) : number(moment.days);
}

QString bytes(const QByteArray &value)
{
    return object({{u"$hex"_s, text(QString::fromLatin1(value.toHex()))}});
}

} // namespace

QString text(const QString &value)
{
    const bool plain = std::none_of(value.begin(), value.end(), [](QChar character) {
        const char16_t unit = character.unicode();
        return unit == u'"' || unit == u'\\' || unit < 0x20 || unit == 0x7F || character.isSurrogate();
    });
    if (plain) // as nearly every text is
        return u'"' + value + u'"';

    QString quoted = u"\""_s;
    for (const QChar character : value) {
        const char16_t unit = character.unicode();
        if (unit == u'"' || unit == u'\\')
            quoted += u'\\' + QString(character);
        else if (unit == u'\n')
            quoted += u"\\n"_s;
        else if (unit == u'\r')
            quoted += u"\\r"_s;
        else if (unit == u'\t')
            quoted += u"\\t"_s;
        else if (unit < 0x20 || unit == 0x7F || character.isSurrogate())
            quoted += u"\\u%1"_s.arg(static_cast<int>(unit), 4, 16, QLatin1Char('0'));
        else
            quoted += character;
    }
    return quoted + u'"';
}

QString truth(bool value)
{
    return value ? u"true"_s : u"false"_s;
}

QString value(const storage::Value &value, storage::Type type)
{
    struct Visitor {
        storage::Type type;
        QString operator()(std::monostate) const { return u"null"_s; }
        QString operator()(bool yes) const { return truth(yes); }
        QString operator()(std::int64_t whole) const { return QString::number(whole); }
        QString operator()(double real) const
        {
            return type == storage::Type::Single ? number(static_cast<float>(real)) : number(real);
        }
        QString operator()(storage::Currency amount) const { return currency(amount); }
        QString operator()(storage::DateTime moment) const { return date(moment); }
        QString operator()(const storage::Decimal &decimal) const { return text(decimal.text); }
        QString operator()(const QString &string) const { return text(string); }
        QString operator()(const QByteArray &binary) const { return bytes(binary); }
    };
    return std::visit(Visitor{type}, value);
}

QString value(const QVariant &value)
{
    if (!value.isValid())
        return u"null"_s;
    const int type = value.typeId();
    if (type == qMetaTypeId<storage::Currency>())
        return currency(value.value<storage::Currency>());
    if (type == qMetaTypeId<storage::Decimal>())
        return text(value.value<storage::Decimal>().text);
    switch (type) {
    case QMetaType::Bool:
        return truth(value.toBool());
    case QMetaType::Float:
        return number(value.toFloat());
    case QMetaType::Double:
        return number(value.toDouble());
    case QMetaType::QDateTime:
        return date(value.toDateTime().date(), value.toDateTime().time());
    case QMetaType::QByteArray:
        return bytes(value.toByteArray());
    case QMetaType::QString:
        return text(value.toString());
    default:
        return QString::number(value.toLongLong());
    }
}

QString object(const Members &members)
{
    QString all = u"{"_s;
    for (const auto &[name, content] : members)
        all += (all.size() > 1 ? u", "_s : QString()) + text(name) + u": "_s + content;
    return all + u'}';
}

QString array(const QStringList &elements)
{
    return u"["_s + elements.join(u", "_s) + u"]"_s;
}

} // namespace json
