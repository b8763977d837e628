// Values as JSON.
#include "tools/veldrak-db/Json.h"

#include <charconv>
#include <cmath>
#include <concepts>

#include <QDateTime>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/DateText.h"

using namespace Qt::StringLiterals;

namespace json {

namespace {

template <std::integral Number> void appendNumber(QByteArray &json, Number value)
{
    char digits[24];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    json.append(digits, end - digits);
}

/// The shortest text that reads back as the same number. JSON has no infinite ones.
template <std::floating_point Number> void appendNumber(QByteArray &json, Number value)
{
    if (!std::isfinite(value))
        return append(json, std::isnan(value) ? u"NaN" : value > 0 ? u"Infinity" : u"-Infinity");
    char digits[32];
    const auto end = std::to_chars(std::begin(digits), std::end(digits), value).ptr;
    json.append(digits, end - digits);
}

void appendTruth(QByteArray &json, bool value)
{
    json += value ? "true" : "false";
}

void appendCurrency(QByteArray &json, storage::Currency amount)
{
    const bool negative = amount.tenThousandths < 0;
    const auto all = static_cast<std::uint64_t>(amount.tenThousandths);
    char digits[24] = {'0', '0', '0', '0'}; // at least one before the point
    char *const start = digits + 4;
    const char *const end = std::to_chars(start, std::end(digits), negative ? 0 - all : all).ptr;
    const char *const first = end - std::max<std::ptrdiff_t>(end - start, 5);
    json += negative ? "\"-" : "\"";
    json.append(first, end - first - 4);
    json += '.';
    json.append(end - 4, 4);
    json += '"';
}

/// With zeros in front.
void appendPadded(QByteArray &json, int number, int width)
{
    char digits[4];
    for (int i = width; i-- > 0; number /= 10)
        digits[i] = static_cast<char>('0' + number % 10);
    json.append(digits, width);
}

void appendTime(QByteArray &json, QTime time)
{
    appendPadded(json, time.hour(), 2);
    json += ':';
    appendPadded(json, time.minute(), 2);
    json += ':';
    appendPadded(json, time.second(), 2);
    if (time.msec() != 0) {
        json += '.';
        appendPadded(json, time.msec(), 3);
    }
}

void appendDate(QByteArray &json, QDate date, QTime time)
{
    int year = 0;
    int month = 0;
    int day = 0;
    date.getDate(&year, &month, &day);
    json += '"';
    if (year > 0 && year <= 9999) {
        appendPadded(json, year, 4);
        json += '-';
        appendPadded(json, month, 2);
        json += '-';
        appendPadded(json, day, 2);
    }
    json += 'T';
    if (time.isValid())
        appendTime(json, time);
    json += '"';
}

/// A number that is no day of the calendar is shown as the number that it is.
void appendDate(QByteArray &json, storage::DateTime moment)
{
    const auto [day, time] = dao::dayAndTimeOf(moment);
    if (day.isValid())
        appendDate(json, day, time);
    else
        appendNumber(json, moment.days);
}

void appendBytes(QByteArray &json, const QByteArray &value)
{
    json += R"({"$hex": ")" + value.toHex() + R"("})";
}

/// A character other than plain ASCII, in at most six bytes; returns what is behind it.
char *putCharacter(char *to, char16_t unit)
{
    const auto put = [&to](unsigned byte) { *to++ = static_cast<char>(byte); };
    const auto escape = [&](char letter) {
        put('\\');
        put(static_cast<unsigned char>(letter));
    };
    if (unit == u'"' || unit == u'\\')
        escape(static_cast<char>(unit));
    else if (unit == u'\n')
        escape('n');
    else if (unit == u'\r')
        escape('r');
    else if (unit == u'\t')
        escape('t');
    else if (unit < 0x20 || unit == 0x7F || QChar(unit).isSurrogate()) {
        escape('u');
        for (int shift = 12; shift >= 0; shift -= 4)
            put(static_cast<unsigned char>("0123456789abcdef"[unit >> shift & 0xF]));
    } else if (unit < 0x800) {
        put(0xC0U | unit >> 6);
        put(0x80U | (unit & 0x3FU));
    } else {
        put(0xE0U | unit >> 12);
        put(0x80U | (unit >> 6 & 0x3FU));
        put(0x80U | (unit & 0x3FU));
    }
    return to;
}

} // namespace

void append(QByteArray &json, QStringView text)
{
    const qsizetype before = json.size();
    json.resize(before + 6 * text.size() + 2);
    char *to = json.data() + before;
    *to++ = '"';
    for (const QChar character : text) {
        const char16_t unit = character.unicode();
        if (unit >= 0x20 && unit < 0x7F && unit != u'"' && unit != u'\\') // as nearly all are
            *to++ = static_cast<char>(unit);
        else
            to = putCharacter(to, unit);
    }
    *to++ = '"';
    json.truncate(to - json.constData());
}

void append(QByteArray &json, const storage::Value &value, storage::Type type)
{
    struct Visitor {
        QByteArray &json;
        storage::Type type;
        void operator()(std::monostate) const { json += "null"; }
        void operator()(bool yes) const { appendTruth(json, yes); }
        void operator()(std::int64_t whole) const { appendNumber(json, whole); }
        void operator()(double real) const
        {
            if (type == storage::Type::Single)
                appendNumber(json, static_cast<float>(real));
            else
                appendNumber(json, real);
        }
        void operator()(storage::Currency amount) const { appendCurrency(json, amount); }
        void operator()(storage::DateTime moment) const { appendDate(json, moment); }
        void operator()(const storage::Decimal &decimal) const { append(json, decimal.text); }
        void operator()(const QString &string) const { append(json, string); }
        void operator()(const QByteArray &binary) const { appendBytes(json, binary); }
    };
    std::visit(Visitor{json, type}, value);
}

QString text(const QString &value)
{
    QByteArray json;
    append(json, value);
    return QString::fromUtf8(json);
}

QString truth(bool value)
{
    return value ? u"true"_s : u"false"_s;
}

QString value(const storage::Value &value, storage::Type type)
{
    QByteArray json;
    append(json, value, type);
    return QString::fromUtf8(json);
}

QString value(const QVariant &value)
{
    QByteArray json;
    const int type = value.typeId();
    if (!value.isValid())
        json = "null";
    else if (type == qMetaTypeId<storage::Currency>())
        appendCurrency(json, value.value<storage::Currency>());
    else if (type == qMetaTypeId<storage::Decimal>())
        append(json, value.value<storage::Decimal>().text);
    else if (type == QMetaType::Bool)
        appendTruth(json, value.toBool());
    else if (type == QMetaType::Float)
        appendNumber(json, value.toFloat());
    else if (type == QMetaType::Double)
        appendNumber(json, value.toDouble());
    else if (type == QMetaType::QDateTime)
        appendDate(json, value.toDateTime().date(), value.toDateTime().time());
    else if (type == QMetaType::QByteArray)
        appendBytes(json, value.toByteArray());
    else if (type == QMetaType::QString)
        append(json, value.toString());
    else
        appendNumber(json, value.toLongLong());
    return QString::fromUtf8(json);
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
