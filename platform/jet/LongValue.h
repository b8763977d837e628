#pragma once

#include <vector>

#include <QByteArray>

#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"
#include "platform/jet/TableDef.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// The content of a Memo or LongBinary field, wherever it is kept. `field` is the field in the row.
/// Throws StorageError::Damaged for pieces that are missing, run in a circle or do not add up to the stated length.
QByteArray readLongValue(PageStore &store, storage::Bytes field);

/// Stores a content on the column's pages where it is too long for the row, and returns the field for the row.
/// `inRow` false: never in the row, however short.
QByteArray writeLongValue(PageStore &store, const ColumnDef &column, storage::Bytes content, bool inRow = true);

/// Frees what a field keeps outside of its row.
void freeLongValue(PageStore &store, const ColumnDef &column, storage::Bytes field);

/// The rows that a field keeps outside of its own, in order. Throws as readLongValue does.
std::vector<RowPointer> longValueRows(PageStore &store, storage::Bytes field);

/// Whether the field keeps its content in the row itself.
bool isInRow(storage::Bytes field);

} // namespace jet
