// The file of a new table: engine columns as FoxPro 2.x fields.
#include "platform/dbf/Layout.h"

#include <QRegularExpression>
#include <QSet>

#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::Column;
using storage::StorageError;
using storage::Type;

namespace dbf {

namespace {

[[noreturn]] void unsupported(const Column &column, const QString &what)
{
    throw StorageError(StorageError::Unsupported, u"Spalte %1: %2"_s.arg(column.name, what), column.name);
}

void checkColumn(const Column &column)
{
    static const QRegularExpression name(u"^[A-Za-z][A-Za-z0-9_]{0,9}$"_s);
    if (!name.match(column.name).hasMatch())
        unsupported(column, u"Ein Feldname hat bis zu zehn Buchstaben, Ziffern und Unterstriche"_s);
    if (column.required || column.autonumber || !column.defaultValue.isEmpty() || !column.validationRule.isEmpty())
        unsupported(column, u"Pflichtfelder, Zähler, Standardwerte und Regeln gibt es in diesem Format nicht"_s);
}

/// A numeric field is as wide as its digits, a sign and, where there are decimals, a point.
Field numeric(const Column &column, int digits, int decimals)
{
    const int width = digits + 1 + (decimals > 0 ? 1 : 0);
    if (digits < 1 || decimals < 0 || decimals > digits || width > 20)
        unsupported(column, u"Eine Zahl hat bis zu 18 Stellen, davon beliebig viele hinter dem Komma"_s);
    return {.type = 'N', .width = width, .decimals = decimals};
}

Field shapeFor(const Column &column)
{
    switch (column.type) {
    case Type::Text:
        if (column.size < 1 || column.size > 254)
            unsupported(column, u"Ein Textfeld hat 1 bis 254 Zeichen"_s);
        return {.type = 'C', .width = column.size};
    case Type::Memo:
        return {.type = 'M', .width = 10};
    case Type::Boolean:
        return {.type = 'L', .width = 1};
    case Type::DateTime:
        return {.type = 'D', .width = 8};
    case Type::Byte:
        return numeric(column, 3, 0);
    case Type::Integer:
        return numeric(column, 5, 0);
    case Type::Long:
        return numeric(column, 10, 0);
    case Type::Currency:
        return numeric(column, 18, 4);
    case Type::Single:
    case Type::Double:
        return numeric(column, 18, 5);
    case Type::Numeric:
        return numeric(column, column.size, column.scale);
    default:
        unsupported(column, u"Diese Art von Spalte gibt es in diesem Format nicht"_s);
    }
}

QByteArray description(const Field &field)
{
    QByteArray bytes = field.name.toLatin1().leftJustified(32, '\0');
    const storage::MutableBytes writable = std::as_writable_bytes(std::span(bytes.data(), 32));
    writable[11] = std::byte(field.type);
    storage::writeLE(writable, 12, static_cast<std::uint32_t>(field.offset));
    writable[16] = std::byte(field.width);
    writable[17] = std::byte(field.decimals);
    return bytes;
}

} // namespace

QByteArray newTable(const storage::TableSchema &schema)
{
    if (schema.columns.empty() || schema.columns.size() > 255 || !schema.indexes.empty()) {
        throw StorageError(StorageError::Unsupported,
                           u"Tabelle %1: Eine Tabelle hat 1 bis 255 Spalten und keine Indizes"_s.arg(schema.name),
                           schema.name);
    }
    QByteArray fields;
    QSet<QString> names;
    int offset = 1;
    for (const Column &column : schema.columns) {
        checkColumn(column);
        Field field = shapeFor(column);
        field.name = column.name.toUpper();
        field.offset = offset;
        if (names.contains(field.name))
            throw StorageError(StorageError::AlreadyExists, u"Die Spalte %1 gibt es schon"_s.arg(field.name));
        names.insert(field.name);
        offset += field.width;
        fields += description(field);
    }
    if (offset > 65535)
        throw StorageError(StorageError::TooLong, u"Tabelle %1: Ein Satz wäre zu lang"_s.arg(schema.name));

    QByteArray head(32, '\0');
    head.replace(datePosition, 3, todayBytes());
    const storage::MutableBytes bytes = std::as_writable_bytes(std::span(head.data(), 32));
    bytes[0] = std::byte(needsMemoFile(schema) ? 0xF5 : 0x03);
    storage::writeLE(bytes, 8, static_cast<std::uint16_t>(32 + fields.size() + 1));
    storage::writeLE(bytes, 10, static_cast<std::uint16_t>(offset));
    bytes[29] = std::byte{0x03};
    return head + fields + '\x0D' + '\x1A';
}

bool needsMemoFile(const storage::TableSchema &schema)
{
    return std::ranges::any_of(schema.columns, [](const Column &column) { return column.type == Type::Memo; });
}

} // namespace dbf
