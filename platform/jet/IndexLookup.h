#pragma once

#include <span>
#include <vector>

#include "platform/jet/RowPointer.h"
#include "platform/jet/RowView.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Value.h"

namespace jet {

/// What a row has in the columns of an index, in index order.
std::vector<storage::Value> indexedValues(PageStore &store, const TextCodec &codec, const TableDef &def,
                                          const IndexDef &index, const RowView &row);

/// The rows whose values have the same key as these. The rows have the last word: not all programs make the same keys
/// (see IndexKeyMaker::span). Throws StorageError::Damaged for an entry without its row.
std::vector<RowPointer> rowsWith(PageStore &store, const TextCodec &codec, const TableDef &def, const IndexDef &index,
                                 std::span<const storage::Value> values);

} // namespace jet
