// From a row's field to its value.
#include "platform/jet/FieldReader.h"

#include "platform/jet/LongValue.h"
#include "platform/jet/ValueCodec.h"

namespace jet {

storage::Value readField(PageStore &store, const TextCodec &codec, const RowView &row, const ColumnDef &column)
{
    if (column.type == ColumnType::Boolean)
        return row.boolean(column);
    const auto field = row.field(column);
    if (!field)
        return {};
    if (!column.isLong())
        return decodeValue(column, *field, codec);
    const QByteArray content = readLongValue(store, *field);
    return decodeValue(column, std::as_bytes(std::span(content.constData(), static_cast<std::size_t>(content.size()))),
                       codec);
}

const ColumnDef *findColumn(const TableDef &def, QStringView name)
{
    for (const ColumnDef &column : def.columns) {
        if (name.compare(column.name, Qt::CaseInsensitive) == 0)
            return &column;
    }
    return nullptr;
}

} // namespace jet
