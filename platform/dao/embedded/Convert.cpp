// One place for every conversion on the way into a column and out of it.
#include "platform/dao/embedded/Convert.h"

#include <cmath>
#include <limits>

#include <QRegularExpression>
#include <QUuid>

#include "platform/dao/Dao.h"
#include "platform/dao/embedded/DateText.h"
#include "platform/dao/embedded/DecimalText.h"

using namespace Qt::StringLiterals;
using storage::Column;
using storage::StorageError;
using storage::Type;
using storage::Value;

namespace dao {

namespace {

template <typename... Cases> struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <typename... Cases> Overloaded(Cases...) -> Overloaded<Cases...>;

/// A value as people read it, for texts and messages.
QString shown(const Value &value)
{
    return std::visit(Overloaded{
                          [](std::monostate) { return u"Null"_s; },
                          [](bool yes) { return textOf(yes); },
                          [](std::int64_t number) { return QString::number(number); },
                          [](double number) { return textOf(number); },
                          [](storage::DateTime moment) { return textOf(calendarOf(moment)); },
                          [](const QString &text) { return text; },
                          [](const QByteArray &bytes) { return u"%1 Bytes"_s.arg(bytes.size()); },
                          [](const auto &amount) { return textOf(QVariant::fromValue(amount)); },
                      },
                      value);
}

/// `limit` says what the column would take.
[[noreturn]] void refuse(StorageError::Kind kind, const Value &value, const Column &column, const QString &limit = {})
{
    const QString text = u"Wert: '"_s + shown(value).left(80) + u'\'';
    throw StorageError(kind, limit.isEmpty() ? text : u"%1 (%2)"_s.arg(text, limit), column.name);
}

void requireLength(qsizetype length, const QString &unit, const Value &value, const Column &column)
{
    if (length > column.size)
        refuse(StorageError::TooLong, value, column,
               u"%1 %2, möglich sind %3"_s.arg(length).arg(unit).arg(column.size));
}

/// The value as an exact decimal; nothing if it is no number.
std::optional<QString> decimalOf(const Value &value)
{
    using Result = std::optional<QString>;
    return std::visit(Overloaded{
                          [](bool yes) -> Result { return yes ? u"-1"_s : u"0"_s; },
                          [](std::int64_t number) -> Result { return QString::number(number); },
                          [](double number) -> Result {
                              return std::isfinite(number) ? Result(decimalFromDouble(number)) : std::nullopt;
                          },
                          [](storage::Currency amount) -> Result { return decimalFromCurrency(amount); },
                          [](storage::DateTime moment) -> Result { return decimalFromDouble(moment.days); },
                          [](const storage::Decimal &decimal) -> Result { return decimal.text; },
                          [](const QString &text) -> Result { return decimalFromText(text); },
                          [](const auto &) -> Result { return std::nullopt; },
                      },
                      value);
}

QString decimalFor(const Value &value, const Column &column)
{
    const auto decimal = decimalOf(value);
    if (decimal)
        return *decimal;
    const auto *number = std::get_if<double>(&value);
    refuse(number && std::isinf(*number) ? StorageError::OutOfRange : StorageError::WrongType, value, column);
}

Value wholeNumber(const Value &value, const Column &column, std::int64_t least, std::int64_t greatest)
{
    bool fits = false;
    const qlonglong number = roundedDecimal(decimalFor(value, column), 0).toLongLong(&fits);
    if (!fits || number < least || number > greatest)
        refuse(StorageError::OutOfRange, value, column, u"möglich ist %1 bis %2"_s.arg(least).arg(greatest));
    return std::int64_t{number};
}

Value currency(const Value &value, const Column &column)
{
    bool fits = false;
    const qlonglong scaled = roundedDecimal(decimalFor(value, column), 4).remove(u'.').toLongLong(&fits);
    if (!fits) {
        refuse(StorageError::OutOfRange, value, column,
               u"möglich ist -922337203685477,5808 bis 922337203685477,5807"_s);
    }
    return storage::Currency{scaled};
}

Value real(const Value &value, const Column &column, double greatest)
{
    // What is nearer to the greatest single than to the next power of two is that: people write it as 3.4028235E+38
    constexpr double endOfSingles = 0x1.ffffffp+127;
    const auto fits = [&](double number) {
        return std::abs(number) <= greatest || (column.type == Type::Single && std::abs(number) < endOfSingles);
    };
    if (const auto *number = std::get_if<double>(&value); number != nullptr && fits(*number))
        return *number;
    const double number = decimalFor(value, column).toDouble();
    if (!fits(number))
        refuse(StorageError::OutOfRange, value, column, u"möglich ist ±%1"_s.arg(textOf(greatest)));
    return number;
}

Value numeric(const Value &value, const Column &column)
{
    const QString text = roundedDecimal(decimalFor(value, column), column.scale);
    const bool beginsWithZero = text.startsWith(u"0.") || text.startsWith(u"-0.");
    const auto digits = text.size() - text.count(u'-') - text.count(u'.') - (beginsWithZero ? 1 : 0);
    if (digits > column.size) {
        refuse(StorageError::OutOfRange, value, column,
               u"möglich sind %1 Stellen, davon %2 hinter dem Komma"_s.arg(column.size).arg(column.scale));
    }
    return storage::Decimal{text};
}

Value yesNo(const Value &value, const Column &column)
{
    if (const auto *text = std::get_if<QString>(&value)) {
        const QString word = text->trimmed().toCaseFolded();
        if (word == u"wahr" || word == u"ja" || word == u"true" || word == u"yes")
            return true;
        if (word == u"falsch" || word == u"nein" || word == u"false" || word == u"no")
            return false;
    }
    return decimalFor(value, column).contains(QRegularExpression(u"[1-9]"_s));
}

Value dateTime(const Value &value, const Column &column)
{
    constexpr double earliest = -657434; // the year 100
    constexpr double afterLast = 2958466; // the year 10000
    if (const auto *text = std::get_if<QString>(&value)) {
        if (const auto moment = dateFromText(*text, localeDateOrder()))
            return *moment;
    }
    const double days = decimalFor(value, column).toDouble();
    if (!(days > earliest - 1 && days < afterLast))
        refuse(StorageError::OutOfRange, value, column, u"möglich ist 01.01.100 bis 31.12.9999"_s);
    return storage::DateTime{days};
}

Value text(const Value &value, const Column &column)
{
    if (std::holds_alternative<QByteArray>(value))
        refuse(StorageError::WrongType, value, column);
    QString result = shown(value);
    if (column.type == Type::Text)
        requireLength(result.size(), u"Zeichen"_s, value, column);
    return result;
}

Value bytes(const Value &value, const Column &column)
{
    const auto *content = std::get_if<QByteArray>(&value);
    if (content == nullptr)
        refuse(StorageError::WrongType, value, column);
    if (column.type == Type::Binary)
        requireLength(content->size(), u"Bytes"_s, value, column);
    return *content;
}

Value guid(const Value &value, const Column &column)
{
    const auto *content = std::get_if<QString>(&value);
    const QUuid parsed = content == nullptr ? QUuid() : QUuid::fromString(*content);
    if (parsed.isNull() && (content == nullptr || *content != QUuid().toString()))
        refuse(StorageError::WrongType, value, column);
    return parsed.toString().toUpper();
}

} // namespace

Value valueOf(const QVariant &value, const QString &field)
{
    switch (value.typeId()) {
    case QMetaType::UnknownType:
    case QMetaType::Nullptr:
        return {};
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Float:
    case QMetaType::Double:
        return value.toDouble();
    case QMetaType::QString:
        return value.toString();
    case QMetaType::QByteArray:
        return value.toByteArray();
    case QMetaType::QDate:
        return momentOf(QDateTime(value.toDate(), QTime(0, 0)));
    case QMetaType::QTime:
        return momentOf(QDateTime(QDate(1899, 12, 30), value.toTime()));
    case QMetaType::QDateTime:
        return momentOf(value.toDateTime());
    default:
        break;
    }
    if (value.typeId() == qMetaTypeId<storage::Currency>())
        return value.value<storage::Currency>();
    if (value.typeId() == qMetaTypeId<storage::Decimal>())
        return value.value<storage::Decimal>();
    bool isWhole = false;
    const qlonglong whole = value.toLongLong(&isWhole);
    if (!isWhole)
        throw StorageError(StorageError::WrongType, u"Typ: %1"_s.arg(QLatin1StringView(value.typeName())), field);
    return std::int64_t{whole};
}

QVariant variantOf(const Value &value, Type type)
{
    if (const auto *number = std::get_if<std::int64_t>(&value)) {
        switch (type) {
        case Type::Byte:
            return QVariant::fromValue(static_cast<uchar>(*number));
        case Type::Integer:
            return QVariant::fromValue(static_cast<short>(*number));
        default:
            return static_cast<int>(*number);
        }
    }
    if (const auto *number = std::get_if<double>(&value))
        return type == Type::Single ? QVariant(static_cast<float>(*number)) : QVariant(*number);
    return std::visit(Overloaded{
                          [](std::monostate) { return QVariant(); },
                          [](storage::DateTime moment) { return QVariant(calendarOf(moment)); },
                          [](const auto &other) { return QVariant::fromValue(other); },
                      },
                      value);
}

Value coerced(const Value &value, const Column &column)
{
    if (storage::isNull(value))
        return value;
    switch (column.type) {
    case Type::Boolean:
        return yesNo(value, column);
    case Type::Byte:
        return wholeNumber(value, column, 0, 255);
    case Type::Integer:
        return wholeNumber(value, column, std::numeric_limits<short>::min(), std::numeric_limits<short>::max());
    case Type::Long:
        return wholeNumber(value, column, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    case Type::Currency:
        return currency(value, column);
    case Type::Single:
        return real(value, column, static_cast<double>(std::numeric_limits<float>::max()));
    case Type::Double:
        return real(value, column, std::numeric_limits<double>::max());
    case Type::DateTime:
        return dateTime(value, column);
    case Type::Text:
    case Type::Memo:
        return text(value, column);
    case Type::Binary:
    case Type::LongBinary:
        return bytes(value, column);
    case Type::Guid:
        return guid(value, column);
    case Type::Numeric:
        return numeric(value, column);
    }
    Q_UNREACHABLE();
}

int dataTypeOf(Type type)
{
    switch (type) {
    case Type::Boolean:
        return dbBoolean;
    case Type::Byte:
        return dbByte;
    case Type::Integer:
        return dbInteger;
    case Type::Long:
        return dbLong;
    case Type::Currency:
        return dbCurrency;
    case Type::Single:
        return dbSingle;
    case Type::Double:
        return dbDouble;
    case Type::DateTime:
        return dbDate;
    case Type::Binary:
        return dbBinary;
    case Type::Text:
        return dbText;
    case Type::LongBinary:
        return dbLongBinary;
    case Type::Memo:
        return dbMemo;
    case Type::Guid:
        return dbGUID;
    case Type::Numeric:
        return dbNumeric;
    }
    Q_UNREACHABLE();
}

bool isText(Type type)
{
    return type == Type::Text || type == Type::Memo;
}

} // namespace dao
