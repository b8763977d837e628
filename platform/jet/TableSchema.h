#pragma once

#include <cstddef>
#include <vector>

#include <QByteArray>
#include <QString>

#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Storage.h"

namespace jet {

/// A table's definition and properties in the terms of the storage interface, and the way between the two.
struct SchemaMap {
    storage::TableSchema schema;
    std::vector<ColumnDef> columns; ///< of each schema column
    std::vector<std::size_t> trees; ///< of each schema index: its position in TableDef::indexes
    QString tableRule{}; ///< a rule over several columns; empty: none
};

/// `properties` is the table's property list, empty if it has none. Columns go by number; hidden indexes of
/// relationships are left out.
SchemaMap makeSchema(const QString &name, const TableDef &def, const QByteArray &properties, const TextCodec &codec);

/// Whether we know the order that a text column's index keys follow.
bool hasKnownOrder(const ColumnDef &column, bool jet4);

} // namespace jet
