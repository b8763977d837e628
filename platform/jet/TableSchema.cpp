// Translating table definitions for the users of the storage interface.
#include "platform/jet/TableSchema.h"

#include <algorithm>

#include "platform/jet/Format.h"
#include "platform/jet/IndexKey.h"
#include "platform/jet/PropertyBlob.h"

using namespace Qt::StringLiterals;

namespace jet {

namespace {

storage::Type typeOf(ColumnType type)
{
    switch (type) {
    case ColumnType::Boolean:
        return storage::Type::Boolean;
    case ColumnType::Byte:
        return storage::Type::Byte;
    case ColumnType::Integer:
        return storage::Type::Integer;
    case ColumnType::Long:
        return storage::Type::Long;
    case ColumnType::Currency:
        return storage::Type::Currency;
    case ColumnType::Single:
        return storage::Type::Single;
    case ColumnType::Double:
        return storage::Type::Double;
    case ColumnType::DateTime:
        return storage::Type::DateTime;
    case ColumnType::LongBinary:
        return storage::Type::LongBinary;
    case ColumnType::Text:
        return storage::Type::Text;
    case ColumnType::Memo:
        return storage::Type::Memo;
    case ColumnType::Guid:
        return storage::Type::Guid;
    case ColumnType::Numeric:
        return storage::Type::Numeric;
    case ColumnType::Binary:
    case ColumnType::FixedBinary:
        break;
    }
    return storage::Type::Binary;
}

int sizeOf(const ColumnDef &column, bool jet4)
{
    switch (typeOf(column.type)) {
    case storage::Type::Text:
        return column.length / (jet4 ? 2 : 1);
    case storage::Type::Binary:
        return column.length;
    case storage::Type::Numeric:
        return column.precision;
    default:
        return 0;
    }
}

void applyProperties(storage::Column &column, const PropertyBlock &block, const TextCodec &codec)
{
    const auto textOf = [&](QStringView name) {
        const Property *property = block.find(name);
        return property ? property->toText(codec) : QString();
    };
    if (const Property *required = block.find(u"Required"))
        column.required = required->toBool();
    if (const Property *allowed = block.find(u"AllowZeroLength"))
        column.zeroLengthAllowed = allowed->toBool();
    column.defaultValue = textOf(u"DefaultValue");
    column.validationRule = textOf(u"ValidationRule");
    column.validationText = textOf(u"ValidationText");
}

storage::Index makeIndex(const LogicalIndexDef &logical, const TableDef &def, const std::vector<ColumnDef> &columns,
                         const TextCodec &codec)
{
    const IndexDef &real = def.indexes[logical.real];
    storage::Index index;
    index.name = logical.name;
    index.unique = real.isUnique();
    index.primary = logical.kind == LogicalIndexDef::Kind::Primary;
    index.required = real.isRequired() || index.primary;
    index.ignoreNulls = real.ignoresNulls();
    index.usable = keySupport(def, real, codec.isJet4(), codec.codePage()) == KeySupport::Full;
    for (const IndexColumnDef &part : real.columns) {
        const auto column
            = std::find_if(columns.begin(), columns.end(), [&](const ColumnDef &c) { return c.number == part.column; });
        index.columns.push_back({static_cast<int>(column - columns.begin()), !part.ascending});
    }
    return index;
}

} // namespace

bool hasKnownOrder(const ColumnDef &column, bool jet4)
{
    switch (column.type) {
    case ColumnType::Text:
    case ColumnType::Memo:
        return column.sortLcid == generalLcid && (!jet4 || column.sortVersion == 0);
    case ColumnType::LongBinary:
    case ColumnType::FixedBinary:
        return false;
    default:
        return true;
    }
}

SchemaMap makeSchema(const QString &name, const TableDef &def, const QByteArray &properties, const TextCodec &codec)
{
    SchemaMap map{{name, {}, {}}, def.columns, {}};
    std::ranges::sort(map.columns, {}, &ColumnDef::number);
    for (const ColumnDef &column : map.columns) {
        storage::Column made{column.name, typeOf(column.type), sizeOf(column, codec.isJet4())};
        made.scale = column.scale;
        made.autonumber = column.isAutonumber();
        map.schema.columns.push_back(made);
    }
    if (!properties.isEmpty()) {
        const auto blob = std::as_bytes(std::span(properties.constData(), static_cast<std::size_t>(properties.size())));
        for (const PropertyBlock &block : parseProperties(blob, codec)) {
            const auto column = map.schema.find(block.owner);
            if (const Property *rule = block.find(u"ValidationRule"); rule && block.kind == PropertyBlock::OfTable)
                map.tableRule = rule->toText(codec);
            if (block.kind == PropertyBlock::OfColumn && column)
                applyProperties(map.schema.columns[static_cast<std::size_t>(*column)], block, codec);
        }
    }
    for (const LogicalIndexDef &logical : def.logicalIndexes) {
        if (logical.side == LogicalIndexDef::Side::Referenced)
            continue;
        map.schema.indexes.push_back(makeIndex(logical, def, map.columns, codec));
        map.trees.push_back(logical.real);
    }
    return map;
}

} // namespace jet
