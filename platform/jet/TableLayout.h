#pragma once

#include <cstddef>

#include "platform/jet/FileHeader.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Storage.h"

namespace jet {

/// The length of a type's fields in the fixed area; 0 for types without one.
std::size_t fixedLength(ColumnType type);

/// Gives the columns of a new table their numbers, slots and offsets, in their order.
void numberColumns(TableDef &def, const FileHeader &header);

/// Adds a real index and the logical one of that name; the logical ones stay sorted by name. Returns its number.
std::uint32_t addIndex(TableDef &def, const QString &name, LogicalIndexDef::Kind kind, IndexDef real, bool jet4);

/// The same with a logical index that shares a real one; `logical.number` is filled in.
std::uint32_t addLogicalIndex(TableDef &def, LogicalIndexDef logical);

/// A new table's definition, without pages. Throws StorageError: Unsupported, TooLong, OutOfRange, AlreadyExists, each
/// naming what is wrong with the schema.
TableDef makeTableDef(const storage::TableSchema &schema, const FileHeader &header);

/// The same for one more index of a table; `columns` are those of the table's schema.
void addSchemaIndex(TableDef &def, const storage::Index &index, const std::vector<ColumnDef> &columns,
                    const FileHeader &header);

/// Throws StorageError::Unsupported for what Jet takes for no name of a table, column or index.
void requireName(const QString &name);

/// The property list that keeps defaults, rules and the like.
QByteArray makeProperties(const storage::TableSchema &schema, const TextCodec &codec);

} // namespace jet
