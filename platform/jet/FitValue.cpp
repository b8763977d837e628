// Bringing a value into the form of the column that it goes into.
#include "platform/jet/ValueCodec.h"

#include <cmath>
#include <limits>
#include <optional>

#include <QLocale>
#include <QUuid>

#include "platform/jet/DecimalDigits.h"
#include "platform/jet/Format.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Currency;
using storage::DateTime;
using storage::Decimal;
using storage::StorageError;
using storage::Value;

namespace jet {

namespace {

constexpr int currencyScale = 4;
// What rounds to the greatest single: below the middle between it and the next power of two.
constexpr double greatestSingle = 0x1.fffffefffffffp+127;
// 100-01-01 to the end of 9999-12-31, as days.
constexpr double firstDate = -657434.0;
constexpr double endOfDates = 2958466.0;

[[noreturn]] void wrongType(const ColumnDef &column)
{
    throw StorageError(StorageError::WrongType, u"%1: Der Wert passt nicht zum Datentyp der Spalte."_s.arg(column.name),
                       column.name);
}

[[noreturn]] void outOfRange(const ColumnDef &column)
{
    throw StorageError(StorageError::OutOfRange,
                       u"%1: Der Wert liegt außerhalb dessen, was die Spalte aufnimmt."_s.arg(column.name),
                       column.name);
}

void requireLength(const ColumnDef &column, qsizetype length, qsizetype most, const QString &unit)
{
    if (length <= most)
        return;
    throw StorageError(
        StorageError::TooLong,
        u"%1: %2 %3 sind zu lang, die Spalte nimmt %4."_s.arg(column.name).arg(length).arg(unit).arg(most),
        column.name);
}

/// A number's plain decimal text; nothing for what is no number.
std::optional<QString> numberText(const Value &value)
{
    if (const bool *truth = std::get_if<bool>(&value))
        return *truth ? u"-1"_s : u"0"_s;
    if (const auto *whole = std::get_if<std::int64_t>(&value))
        return QString::number(*whole);
    if (const auto *real = std::get_if<double>(&value))
        return QString::number(*real, 'f', QLocale::FloatingPointShortest);
    if (const auto *money = std::get_if<Currency>(&value)) {
        const auto whole = QString::number(money->tenThousandths);
        return DecimalDigits{whole.startsWith(u'-'),
                             whole.startsWith(u'-') ? whole.mid(1).toLatin1() : whole.toLatin1()}
            .toText(currencyScale);
    }
    if (const auto *decimal = std::get_if<Decimal>(&value))
        return decimal->text;
    return std::nullopt;
}

DecimalDigits digitsOf(const ColumnDef &column, const Value &value, int scale)
{
    const auto text = numberText(value);
    if (!text)
        wrongType(column);
    const auto digits = DecimalDigits::parse(*text, scale);
    if (!digits) // a number without end, or none
        outOfRange(column);
    return *digits;
}

std::int64_t fitWhole(const ColumnDef &column, const Value &value, int scale, std::int64_t least, std::int64_t most)
{
    const DecimalDigits digits = digitsOf(column, value, scale);
    bool fits = false;
    const qint64 whole = digits.toText(0).toLongLong(&fits);
    if (!fits || whole < least || whole > most)
        outOfRange(column);
    return whole;
}

double fitReal(const ColumnDef &column, const Value &value, double most)
{
    double real = 0;
    if (const auto *exact = std::get_if<double>(&value)) {
        real = *exact;
    } else {
        const auto text = numberText(value);
        if (!text)
            wrongType(column);
        real = text->toDouble();
    }
    if (!(std::abs(real) <= most))
        outOfRange(column);
    return real;
}

Value fitDate(const ColumnDef &column, const Value &value)
{
    const auto *date = std::get_if<DateTime>(&value);
    const double days = date ? date->days : fitReal(column, value, std::numeric_limits<double>::max());
    if (!(days > firstDate - 1 && days < endOfDates))
        outOfRange(column);
    return DateTime{days};
}

Value fitNumeric(const ColumnDef &column, const Value &value)
{
    const DecimalDigits digits = digitsOf(column, value, column.scale);
    if (digits.digits.size() > column.precision)
        outOfRange(column);
    return Decimal{digits.toText(column.scale)};
}

const QString &textOf(const ColumnDef &column, const Value &value)
{
    const auto *text = std::get_if<QString>(&value);
    if (!text)
        wrongType(column);
    return *text;
}

Value fitGuid(const ColumnDef &column, const Value &value)
{
    const QString &text = textOf(column, value);
    const QUuid uuid = QUuid::fromString(text);
    if (uuid.isNull() && text != QUuid().toString())
        wrongType(column);
    return uuid.toString(QUuid::WithBraces);
}

Value fitBinary(const ColumnDef &column, const Value &value)
{
    const auto *bytes = std::get_if<QByteArray>(&value);
    if (!bytes)
        wrongType(column);
    const qsizetype most = column.type == ColumnType::LongBinary ? longestLongValue : column.length;
    requireLength(column, bytes->size(), most, u"Bytes"_s);
    return value;
}

/// `most` in bytes.
Value fitText(const ColumnDef &column, const Value &value, const TextCodec &codec, qsizetype most)
{
    const qsizetype characterSize = codec.isJet4() ? 2 : 1;
    requireLength(column, textOf(column, value).size(), most / characterSize, u"Zeichen"_s);
    return value;
}

} // namespace

Value fitValue(const ColumnDef &column, const Value &value, const TextCodec &codec)
{
    constexpr auto lowest = std::numeric_limits<std::int64_t>::min();
    constexpr auto highest = std::numeric_limits<std::int64_t>::max();
    if (storage::isNull(value))
        return column.type == ColumnType::Boolean ? Value(false) : value;
    switch (column.type) {
    case ColumnType::Boolean:
        return fitReal(column, value, std::numeric_limits<double>::max()) != 0;
    case ColumnType::Byte:
        return fitWhole(column, value, 0, 0, 255);
    case ColumnType::Integer:
        return fitWhole(column, value, 0, -32768, 32767);
    case ColumnType::Long:
        return fitWhole(column, value, 0, -2147483648LL, 2147483647LL);
    case ColumnType::Currency:
        return Currency{fitWhole(column, value, currencyScale, lowest, highest)};
    case ColumnType::Single:
        return double{static_cast<float>(fitReal(column, value, greatestSingle))};
    case ColumnType::Double:
        return fitReal(column, value, std::numeric_limits<double>::max());
    case ColumnType::DateTime:
        return fitDate(column, value);
    case ColumnType::Text:
        return fitText(column, value, codec, column.length);
    case ColumnType::Memo:
        return fitText(column, value, codec, longestLongValue);
    case ColumnType::Guid:
        return fitGuid(column, value);
    case ColumnType::Numeric:
        return fitNumeric(column, value);
    case ColumnType::Binary:
    case ColumnType::LongBinary:
    case ColumnType::FixedBinary:
        return fitBinary(column, value);
    }
    wrongType(column);
}

} // namespace jet
