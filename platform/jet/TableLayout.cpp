// From a wished-for table to its definition.
#include "platform/jet/TableLayout.h"

#include <algorithm>
#include <limits>

#include "platform/jet/Format.h"
#include "platform/jet/IndexKey.h"
#include "platform/jet/PropertyBlob.h"
#include "platform/storage/StorageError.h"

using namespace Qt::StringLiterals;
using storage::StorageError;

namespace jet {

namespace {

constexpr int maxPrecision = 28;

ColumnType columnType(storage::Type type)
{
    switch (type) {
    case storage::Type::Boolean:
        return ColumnType::Boolean;
    case storage::Type::Byte:
        return ColumnType::Byte;
    case storage::Type::Integer:
        return ColumnType::Integer;
    case storage::Type::Long:
        return ColumnType::Long;
    case storage::Type::Currency:
        return ColumnType::Currency;
    case storage::Type::Single:
        return ColumnType::Single;
    case storage::Type::Double:
        return ColumnType::Double;
    case storage::Type::DateTime:
        return ColumnType::DateTime;
    case storage::Type::Binary:
        return ColumnType::Binary;
    case storage::Type::Text:
        return ColumnType::Text;
    case storage::Type::LongBinary:
        return ColumnType::LongBinary;
    case storage::Type::Memo:
        return ColumnType::Memo;
    case storage::Type::Guid:
        return ColumnType::Guid;
    case storage::Type::Numeric:
        break;
    }
    return ColumnType::Numeric;
}

void requireSize(const storage::Column &column, int size, int most)
{
    if (size < 1 || size > most) {
        throw StorageError(StorageError::OutOfRange,
                           u"%1: Die Größe %2 liegt nicht zwischen 1 und %3."_s.arg(column.name).arg(size).arg(most),
                           column.name);
    }
}

void setSize(ColumnDef &made, const storage::Column &column, bool jet4)
{
    made.length = static_cast<std::uint16_t>(fixedLength(made.type));
    switch (made.type) {
    case ColumnType::Text:
        requireSize(column, column.size, maxTextLength);
        made.length = static_cast<std::uint16_t>(column.size * (jet4 ? 2 : 1));
        break;
    case ColumnType::Binary:
        requireSize(column, column.size, jet4 ? 2 * maxTextLength : maxTextLength);
        made.length = static_cast<std::uint16_t>(column.size);
        break;
    case ColumnType::Numeric:
        if (!jet4) {
            throw StorageError(StorageError::Unsupported,
                               u"%1: Den Datentyp Dezimal gibt es erst ab Jet 4."_s.arg(column.name), column.name);
        }
        requireSize(column, column.size, maxPrecision);
        requireSize(column, column.scale + 1, column.size + 1);
        made.precision = static_cast<std::uint8_t>(column.size);
        made.scale = static_cast<std::uint8_t>(column.scale);
        break;
    default:
        break;
    }
}

ColumnDef makeColumn(const storage::Column &column, bool jet4)
{
    requireName(column.name);
    ColumnDef made;
    made.name = column.name;
    made.type = columnType(column.type);
    setSize(made, column, jet4);
    if (made.length != 0 && made.type != ColumnType::Text && made.type != ColumnType::Binary)
        made.flags |= ColumnDef::Fixed;
    if (jet4 && made.type == ColumnType::Text)
        made.extendedFlags = ColumnDef::CompressedText;
    if (column.autonumber && made.type != ColumnType::Guid) {
        if (made.type != ColumnType::Long) {
            throw StorageError(StorageError::Unsupported,
                               u"%1: Nur eine Spalte vom Typ Long zählt selbst."_s.arg(column.name), column.name);
        }
        made.flags |= ColumnDef::Autonumber;
    }
    const bool isMade = column.autonumber || column.defaultValue.compare(u"GenGUID()", Qt::CaseInsensitive) == 0;
    if (made.type == ColumnType::Guid && isMade)
        made.flags |= ColumnDef::GuidAutonumber;
    return made;
}

void requireDistinctColumns(const storage::TableSchema &schema)
{
    if (schema.columns.empty() || schema.columns.size() > maxColumns) {
        throw StorageError(StorageError::OutOfRange,
                           u"%1: Eine Tabelle hat 1 bis %2 Spalten."_s.arg(schema.name).arg(maxColumns), schema.name);
    }
    for (std::size_t i = 0; i < schema.columns.size(); ++i) {
        if (schema.find(schema.columns[i].name) != static_cast<int>(i)) {
            throw StorageError(StorageError::AlreadyExists,
                               u"%1: Die Spalte %2 kommt zweimal vor."_s.arg(schema.name, schema.columns[i].name),
                               schema.columns[i].name);
        }
    }
    if (std::ranges::count(schema.columns, true, &storage::Column::autonumber) > 1) {
        throw StorageError(StorageError::Unsupported,
                           u"%1: Nur eine Spalte einer Tabelle zählt selbst."_s.arg(schema.name), schema.name);
    }
}

/// The shortest row of the table must be possible.
void requireRoom(const TableDef &def, const QString &name, const FileHeader &header)
{
    const Format &format = header.jet4 ? jet4Format : jet3Format;
    std::size_t length
        = 8 + def.columns.size() / 8 + (header.jet4 ? std::size_t{2} : std::size_t{1}) * def.variableSlots;
    for (const ColumnDef &column : def.columns)
        length += column.isFixed() ? fixedLength(column.type) : 0;
    if (length > format.rowLimit)
        throw StorageError(StorageError::TooLong, u"%1: Die Zeilen der Tabelle sind zu lang."_s.arg(name), name);
}

} // namespace

std::size_t fixedLength(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
    case ColumnType::Byte:
        return 1;
    case ColumnType::Integer:
        return 2;
    case ColumnType::Long:
    case ColumnType::Single:
        return 4;
    case ColumnType::Currency:
    case ColumnType::Double:
    case ColumnType::DateTime:
        return 8;
    case ColumnType::Guid:
        return 16;
    case ColumnType::Numeric:
        return 17;
    default:
        return 0;
    }
}

void requireName(const QString &name)
{
    const bool hasBad
        = std::ranges::any_of(name, [](QChar c) { return c.unicode() < 0x20 || QStringView(u".!`[]").contains(c); });
    if (name.isEmpty() || name.startsWith(u' ') || name.size() > qsizetype(maxNameLength) || hasBad)
        throw StorageError(StorageError::Unsupported, u"„%1“ ist kein zulässiger Name."_s.arg(name), name);
}

void numberColumns(TableDef &def, const FileHeader &header)
{
    std::uint16_t offset = 0;
    for (std::size_t i = 0; i < def.columns.size(); ++i) {
        ColumnDef &column = def.columns[i];
        column.number = static_cast<std::uint16_t>(i);
        column.ordinal = column.number;
        column.slot = def.variableSlots;
        column.sortLcid = header.sortLcid;
        column.sortVersion = static_cast<std::uint8_t>(header.sortVersion);
        if (!column.isFixed()) {
            ++def.variableSlots;
        } else if (column.type != ColumnType::Boolean) {
            column.fixedOffset = offset;
            offset = static_cast<std::uint16_t>(offset + column.length);
        }
    }
    def.columnsEver = static_cast<std::uint16_t>(def.columns.size());
}

std::uint32_t addLogicalIndex(TableDef &def, LogicalIndexDef logical)
{
    for (const LogicalIndexDef &other : def.logicalIndexes)
        logical.number = std::max(logical.number, other.number + 1);
    const auto place = std::ranges::find_if(def.logicalIndexes, [&](const LogicalIndexDef &other) {
        return other.name.compare(logical.name, Qt::CaseInsensitive) > 0;
    });
    const std::uint32_t number = logical.number;
    def.logicalIndexes.insert(place, std::move(logical));
    return number;
}

std::uint32_t addIndex(TableDef &def, const QString &name, LogicalIndexDef::Kind kind, IndexDef real, bool jet4)
{
    if (jet4)
        real.flags |= IndexDef::AlwaysInJet4;
    LogicalIndexDef logical;
    logical.name = name;
    logical.kind = kind;
    logical.real = static_cast<std::uint32_t>(def.indexes.size());
    def.indexes.push_back(std::move(real));
    return addLogicalIndex(def, std::move(logical));
}

void addSchemaIndex(TableDef &def, const storage::Index &index, const std::vector<ColumnDef> &columns,
                    const FileHeader &header)
{
    requireName(index.name);
    for (const LogicalIndexDef &other : def.logicalIndexes) {
        const bool both = index.primary && other.kind == LogicalIndexDef::Kind::Primary;
        if (both || other.name.compare(index.name, Qt::CaseInsensitive) == 0) {
            throw StorageError(StorageError::AlreadyExists,
                               both ? u"Einen Primärschlüssel gibt es schon."_s
                                    : u"Den Index %1 gibt es schon."_s.arg(index.name),
                               index.name);
        }
    }
    if (index.columns.empty() || index.columns.size() > maxIndexColumns || def.logicalIndexes.size() >= maxIndexes) {
        throw StorageError(StorageError::OutOfRange,
                           u"Der Index %1 geht über die Grenzen von %2 Spalten und %3 Indizes hinaus."_s.arg(index.name)
                               .arg(maxIndexColumns)
                               .arg(maxIndexes),
                           index.name);
    }
    IndexDef real;
    for (const storage::IndexColumn &part : index.columns)
        real.columns.push_back({columns.at(static_cast<std::size_t>(part.column)).number, !part.descending});
    real.flags = static_cast<std::uint8_t>((index.unique || index.primary ? IndexDef::Unique : 0)
                                           | (index.ignoreNulls && !index.primary ? IndexDef::IgnoreNulls : 0)
                                           | (index.required || index.primary ? IndexDef::Required : 0));
    if (keySupport(def, real, header.jet4, header.codePage) == KeySupport::None) {
        throw StorageError(StorageError::Unsupported,
                           u"Über die Spalten des Index %1 kann kein Index geführt werden."_s.arg(index.name),
                           index.name);
    }
    addIndex(def, index.name, index.primary ? LogicalIndexDef::Kind::Primary : LogicalIndexDef::Kind::Plain, real,
             header.jet4);
}

TableDef makeTableDef(const storage::TableSchema &schema, const FileHeader &header)
{
    requireName(schema.name);
    requireDistinctColumns(schema);
    TableDef def;
    for (const storage::Column &column : schema.columns)
        def.columns.push_back(makeColumn(column, header.jet4));
    numberColumns(def, header);
    requireRoom(def, schema.name, header);
    for (const storage::Index &index : schema.indexes)
        addSchemaIndex(def, index, std::vector(def.columns), header);
    return def;
}

QByteArray makeProperties(const storage::TableSchema &schema, const TextCodec &codec)
{
    std::vector<PropertyBlock> blocks;
    for (const storage::Column &column : schema.columns) {
        PropertyBlock block{PropertyBlock::OfColumn, column.name};
        const auto add = [&](const QString &name, Property::Type type, const QString &text) {
            if (!text.isEmpty())
                block.properties.push_back(Property::text(name, type, text, codec));
        };
        block.properties.push_back(Property::truth(u"Required"_s, column.required));
        if (column.type == storage::Type::Text || column.type == storage::Type::Memo)
            block.properties.push_back(Property::truth(u"AllowZeroLength"_s, column.zeroLengthAllowed));
        const bool generated = column.defaultValue.compare(u"GenGUID()", Qt::CaseInsensitive) == 0;
        add(u"DefaultValue"_s, generated ? Property::Text : Property::Memo, column.defaultValue);
        add(u"ValidationRule"_s, Property::Memo, column.validationRule);
        add(u"ValidationText"_s, Property::Text, column.validationText);
        blocks.push_back(std::move(block));
    }
    return writeProperties(blocks, codec);
}

} // namespace jet
