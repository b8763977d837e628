#pragma once

#include "platform/jet/PageStore.h"
#include "platform/jet/RowView.h"
#include "platform/jet/TableDef.h"
#include "platform/jet/TextCodec.h"
#include "platform/storage/Value.h"

namespace jet {

/// The value of one column of a row, long values included.
storage::Value readField(PageStore &store, const TextCodec &codec, const RowView &row, const ColumnDef &column);

/// The column of that name, case-insensitively; nullptr if there is none.
const ColumnDef *findColumn(const TableDef &def, QStringView name);

} // namespace jet
