// Values of dBASE fields as text in a fixed width, in both directions.
#include "platform/dbf/Field.h"

#include <charconv>
#include <chrono>
#include <cmath>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;
using storage::Value;

namespace dbf {

namespace {

constexpr std::chrono::sys_days dayZero = std::chrono::year(1899) / 12 / 30;

std::string_view textOf(storage::Bytes bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), bytes.size()};
}

/// Without blanks at the end. NULs count as blanks: some programs never fill a field that was left empty.
std::string_view trimmedEnd(std::string_view text)
{
    constexpr std::string_view blanks = "        "; // most of a wide field
    while (text.ends_with(blanks))
        text.remove_suffix(blanks.size());
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0'))
        text.remove_suffix(1);
    return text;
}

std::string_view trimmed(std::string_view text)
{
    text = trimmedEnd(text);
    const auto first = text.find_first_not_of(' ');
    return text.substr(first == std::string_view::npos ? text.size() : first);
}

std::optional<Value> decodeNumber(std::string_view text)
{
    // Asterisks stand for a number that was too long for the field: there is no number any more.
    if (text.empty() || text.find_first_not_of('*') == std::string_view::npos)
        return Value();
    if (text.front() == '+')
        text.remove_prefix(1);
    if (text.find_first_not_of("0123456789+-.eE") != std::string_view::npos)
        return std::nullopt;
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return Value(number);
}

std::optional<Value> decodeDate(std::string_view text)
{
    // Some programs keep an empty date as zeros.
    if (text.find_first_not_of('0') == std::string_view::npos)
        return Value();
    if (text.size() != 8 || text.find_first_not_of("0123456789") != std::string_view::npos)
        return std::nullopt;
    const auto digits = [text](std::size_t from, std::size_t count) {
        int number = 0;
        std::from_chars(text.data() + from, text.data() + from + count, number);
        return number;
    };
    using namespace std::chrono;
    const year_month_day date(year(digits(0, 4)), month(static_cast<unsigned>(digits(4, 2))),
                              day(static_cast<unsigned>(digits(6, 2))));
    if (!date.ok())
        return std::nullopt;
    return Value(storage::DateTime{static_cast<double>((sys_days(date) - dayZero).count())});
}

std::optional<Value> decodeLogical(std::string_view text)
{
    if (text.empty() || text == "?")
        return Value();
    switch (text.front()) {
    case 'T':
    case 't':
    case 'Y':
    case 'y':
        return Value(true);
    case 'F':
    case 'f':
    case 'N':
    case 'n':
        return Value(false);
    default:
        return std::nullopt;
    }
}

QString place(const Field &field)
{
    return u"Feld %1: "_s.arg(field.name);
}

[[noreturn]] void wrongType(const Field &field)
{
    throw StorageError(StorageError::WrongType, place(field) + u"Der Wert ist nicht von der Art des Feldes"_s,
                       field.name);
}

QByteArray encodeText(const Field &field, const Value &value, const storage::Codepage &codepage)
{
    const QString *text = std::get_if<QString>(&value);
    if (!text)
        wrongType(field);
    try {
        return codepage.encode(*text);
    } catch (const StorageError &error) {
        throw StorageError(error.kind(), place(field) + error.text(), field.name);
    }
}

QByteArray encodeCharacters(const Field &field, const Value &value, const storage::Codepage &codepage)
{
    QByteArray bytes = encodeText(field, value, codepage);
    while (bytes.size() > field.width && bytes.endsWith(' '))
        bytes.chop(1);
    if (bytes.size() > field.width) {
        throw StorageError(StorageError::TooLong,
                           place(field)
                               + u"Der Text hat %1 Zeichen, Platz ist für %2"_s.arg(bytes.size()).arg(field.width),
                           field.name);
    }
    return bytes.leftJustified(field.width, ' ');
}

std::optional<double> numberOf(const Value &value)
{
    if (const auto *number = std::get_if<double>(&value))
        return *number;
    if (const auto *whole = std::get_if<std::int64_t>(&value))
        return static_cast<double>(*whole);
    if (const auto *amount = std::get_if<storage::Currency>(&value))
        return static_cast<double>(amount->tenThousandths) / 10000;
    if (const auto *decimal = std::get_if<storage::Decimal>(&value)) {
        bool ok = false;
        const double number = decimal->text.toDouble(&ok);
        return ok ? std::optional(number) : std::nullopt;
    }
    return std::nullopt;
}

QByteArray encodeNumeric(const Field &field, const Value &value)
{
    const std::optional<double> number = numberOf(value);
    if (!number)
        wrongType(field);
    const std::optional<QByteArray> bytes = encodeNumber(*number, field.width, field.decimals);
    if (!bytes) {
        throw StorageError(
            StorageError::OutOfRange,
            place(field)
                + u"Die Zahl %1 passt nicht in %2 Stellen, davon %3 hinter dem Komma"_s.arg(*number, 0, 'g', 15)
                      .arg(field.width)
                      .arg(field.decimals),
            field.name);
    }
    return *bytes;
}

QByteArray encodeDate(const Field &field, const Value &value)
{
    const auto *moment = std::get_if<storage::DateTime>(&value);
    if (!moment)
        wrongType(field);
    // 0001-01-01 and 9999-12-31
    if (!(moment->days >= -693593 && moment->days <= 2958465) || moment->days != std::floor(moment->days)) {
        throw StorageError(StorageError::OutOfRange,
                           place(field) + u"Hier steht nur ein Datum (Jahre 1 bis 9999), keine Uhrzeit"_s, field.name);
    }
    const std::chrono::year_month_day date(dayZero + std::chrono::days(static_cast<int>(moment->days)));
    return QByteArray::number(int(date.year()) * 10000 + int(unsigned(date.month())) * 100 + int(unsigned(date.day())))
        .rightJustified(field.width, '0');
}

QByteArray encodeLogical(const Field &field, const Value &value)
{
    const bool *truth = std::get_if<bool>(&value);
    if (!truth)
        wrongType(field);
    return *truth ? "T"_ba : "F"_ba;
}

} // namespace

storage::Column columnOf(const Field &field)
{
    switch (field.type) {
    case 'N':
    case 'F':
        return {.name = field.name, .type = storage::Type::Double};
    case 'D':
        return {.name = field.name, .type = storage::Type::DateTime};
    case 'L':
        return {.name = field.name, .type = storage::Type::Boolean};
    case 'M':
        return {.name = field.name, .type = storage::Type::Memo};
    default:
        return {.name = field.name, .type = storage::Type::Text, .size = field.width};
    }
}

std::optional<Value> decode(const Field &field, storage::Bytes bytes, const storage::Codepage &codepage)
{
    const std::string_view text = textOf(bytes);
    switch (field.type) {
    case 'C': {
        QString content;
        return decodeText(field, bytes, codepage, content) ? Value(std::move(content)) : Value();
    }
    case 'D':
        return decodeDate(trimmed(text));
    case 'L':
        return decodeLogical(trimmed(text));
    default:
        return decodeNumber(trimmed(text));
    }
}

bool decodeText(const Field &field, storage::Bytes bytes, const storage::Codepage &codepage, QString &into)
{
    const std::size_t length = field.type == 'C' ? trimmedEnd(textOf(bytes)).size() : 0;
    if (length > 0)
        codepage.decode(bytes.first(length), into);
    return length > 0;
}

QByteArray encode(const Field &field, const Value &value, const storage::Codepage &codepage)
{
    if (storage::isNull(value))
        return QByteArray(field.width, ' ');
    switch (field.type) {
    case 'C':
        return encodeCharacters(field, value, codepage);
    case 'D':
        return encodeDate(field, value);
    case 'L':
        return encodeLogical(field, value);
    default:
        return encodeNumeric(field, value);
    }
}

QByteArray encodeMemo(const Field &field, const Value &value, const storage::Codepage &codepage)
{
    return storage::isNull(value) ? QByteArray() : encodeText(field, value, codepage);
}

std::optional<QByteArray> encodeNumber(double number, int width, int decimals)
{
    if (!std::isfinite(number))
        return std::nullopt;
    std::array<char, 400> buffer; // the longest double has 309 digits before the point
    const auto end
        = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number, std::chars_format::fixed, decimals).ptr;
    QByteArray text(buffer.data(), end - buffer.data());
    if (text.startsWith('-') && text.toDouble() == 0)
        text.remove(0, 1);
    // The zero before the point is the first to go.
    if (text.size() == width + 1 && text.startsWith("0."))
        text.remove(0, 1);
    else if (text.size() == width + 1 && text.startsWith("-0."))
        text.remove(1, 1);
    if (text.size() > width)
        return std::nullopt;
    return text.rightJustified(width, ' ');
}

std::optional<qint64> decodeMemoBlock(storage::Bytes bytes)
{
    const std::string_view text = trimmed(textOf(bytes));
    qint64 block = 0;
    if (text.empty())
        return block;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), block);
    if (error != std::errc() || end != text.data() + text.size() || block < 0)
        return std::nullopt;
    return block;
}

QByteArray encodeMemoBlock(qint64 block, int width)
{
    return block == 0 ? QByteArray(width, ' ') : QByteArray::number(block).rightJustified(width, ' ');
}

} // namespace dbf
