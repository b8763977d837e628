// Fields between bytes and values. All numbers are little-endian; Currency counts ten-thousandths, a date is a double
// of days, a Numeric a sign byte and 128 bits with the most significant 32 first.
#include "platform/jet/ValueCodec.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>

#include <QUuid>
#include <QtEndian>

#include "platform/jet/Damage.h"
#include "platform/jet/DecimalDigits.h"
#include "platform/jet/TableLayout.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Bytes;
using storage::MutableBytes;
using storage::readLE;
using storage::StorageError;
using storage::Value;
using storage::writeLE;

namespace jet {

namespace {

constexpr std::size_t numericSize = 17;
constexpr std::byte negativeSign{0x80};

Value decodeNumeric(const ColumnDef &column, Bytes bytes)
{
    DecimalDigits::Magnitude magnitude{};
    for (std::size_t i = 0; i < magnitude.size(); ++i)
        magnitude[i] = readLE<std::uint32_t>(bytes, 1 + 4 * i);
    const DecimalDigits digits = DecimalDigits::fromMagnitude(bytes[0] == negativeSign, magnitude);
    return storage::Decimal{digits.toText(column.scale)};
}

QByteArray encodeNumeric(const ColumnDef &column, const storage::Decimal &value)
{
    const auto digits = DecimalDigits::parse(value.text, column.scale);
    const auto magnitude = digits ? digits->magnitude() : std::nullopt;
    if (!magnitude)
        throw StorageError(StorageError::WrongType, u"%1: keine Dezimalzahl"_s.arg(column.name), column.name);
    QByteArray field(numericSize, '\0');
    const MutableBytes bytes = std::as_writable_bytes(std::span(field.data(), numericSize));
    bytes[0] = digits->negative ? negativeSign : std::byte{0};
    for (std::size_t i = 0; i < magnitude->size(); ++i)
        writeLE(bytes, 1 + 4 * i, (*magnitude)[i]);
    return field;
}

Value decodeGuid(Bytes bytes)
{
    quint8 tail[8];
    for (std::size_t i = 0; i < 8; ++i)
        tail[i] = std::to_integer<quint8>(bytes[8 + i]);
    const QUuid uuid(readLE<std::uint32_t>(bytes, 0), readLE<std::uint16_t>(bytes, 4), readLE<std::uint16_t>(bytes, 6),
                     tail[0], tail[1], tail[2], tail[3], tail[4], tail[5], tail[6], tail[7]);
    return uuid.toString(QUuid::WithBraces);
}

QByteArray encodeGuid(const QString &text)
{
    const QUuid uuid = QUuid::fromString(text);
    QByteArray field(16, '\0');
    const MutableBytes bytes = std::as_writable_bytes(std::span(field.data(), 16));
    writeLE<std::uint32_t>(bytes, 0, uuid.data1);
    writeLE<std::uint16_t>(bytes, 4, uuid.data2);
    writeLE<std::uint16_t>(bytes, 6, uuid.data3);
    for (std::size_t i = 0; i < 8; ++i)
        bytes[8 + i] = std::byte{uuid.data4[i]};
    return field;
}

QByteArray number(std::uint64_t bits, std::size_t size)
{
    QByteArray field(static_cast<qsizetype>(size), '\0');
    for (char &byte : field) {
        byte = static_cast<char>(bits & 0xFF);
        bits >>= 8;
    }
    return field;
}

QByteArray encodeText(const ColumnDef &column, const QString &text, const TextCodec &codec)
{
    const bool compress = (column.extendedFlags & ColumnDef::CompressedText) != 0 && !column.isFixed();
    try {
        return compress ? codec.encodeCompressed(text) : codec.encode(text);
    } catch (const StorageError &error) {
        throw StorageError(error.kind(), u"%1: %2"_s.arg(column.name, error.text()), column.name);
    }
}

/// Fixed-length text is filled up with blanks, fixed binary with zeros.
QByteArray padded(const ColumnDef &column, QByteArray field, const TextCodec &codec)
{
    if (!column.isFixed())
        return field;
    if (column.type != ColumnType::Text)
        return field.leftJustified(column.length, '\0');
    const QByteArray blank = codec.encode(u" "_s);
    while (field.size() < column.length)
        field += blank;
    return field;
}

} // namespace

Value decodeValue(const ColumnDef &column, Bytes bytes, const TextCodec &codec)
{
    if (const std::size_t size = fixedLength(column.type); size != 0 && size != bytes.size())
        damaged(u"%1: ein Feld hat %2 statt %3 Bytes"_s.arg(column.name).arg(bytes.size()).arg(size));
    switch (column.type) {
    case ColumnType::Byte:
        return std::int64_t{readLE<std::uint8_t>(bytes, 0)};
    case ColumnType::Integer:
        return std::int64_t{static_cast<std::int16_t>(readLE<std::uint16_t>(bytes, 0))};
    case ColumnType::Long:
        return std::int64_t{static_cast<std::int32_t>(readLE<std::uint32_t>(bytes, 0))};
    case ColumnType::Currency:
        return storage::Currency{static_cast<std::int64_t>(readLE<std::uint64_t>(bytes, 0))};
    case ColumnType::Single:
        return double{std::bit_cast<float>(readLE<std::uint32_t>(bytes, 0))};
    case ColumnType::Double:
        return std::bit_cast<double>(readLE<std::uint64_t>(bytes, 0));
    case ColumnType::DateTime:
        return storage::DateTime{std::bit_cast<double>(readLE<std::uint64_t>(bytes, 0))};
    case ColumnType::Guid:
        return decodeGuid(bytes);
    case ColumnType::Numeric:
        return decodeNumeric(column, bytes);
    case ColumnType::Text:
    case ColumnType::Memo:
        return codec.decode(bytes);
    case ColumnType::Binary:
    case ColumnType::LongBinary:
    case ColumnType::FixedBinary:
        return QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size()));
    case ColumnType::Boolean:
        break;
    }
    damaged(u"%1: unbekannter Datentyp %2"_s.arg(column.name).arg(static_cast<int>(column.type)));
}

QByteArray encodeValue(const ColumnDef &column, const Value &value, const TextCodec &codec)
{
    const std::size_t size = fixedLength(column.type);
    switch (column.type) {
    case ColumnType::Byte:
    case ColumnType::Integer:
    case ColumnType::Long:
        return number(static_cast<std::uint64_t>(std::get<std::int64_t>(value)), size);
    case ColumnType::Currency:
        return number(static_cast<std::uint64_t>(std::get<storage::Currency>(value).tenThousandths), size);
    case ColumnType::Single:
        return number(std::bit_cast<std::uint32_t>(static_cast<float>(std::get<double>(value))), size);
    case ColumnType::Double:
        return number(std::bit_cast<std::uint64_t>(std::get<double>(value)), size);
    case ColumnType::DateTime:
        return number(std::bit_cast<std::uint64_t>(std::get<storage::DateTime>(value).days), size);
    case ColumnType::Guid:
        return encodeGuid(std::get<QString>(value));
    case ColumnType::Numeric:
        return encodeNumeric(column, std::get<storage::Decimal>(value));
    case ColumnType::Text:
    case ColumnType::Memo:
        return padded(column, encodeText(column, std::get<QString>(value), codec), codec);
    case ColumnType::Binary:
    case ColumnType::LongBinary:
    case ColumnType::FixedBinary:
        return padded(column, std::get<QByteArray>(value), codec);
    case ColumnType::Boolean:
        break;
    }
    Q_UNREACHABLE();
}

} // namespace jet
