// Lookups in a table definition.
#include "platform/jet/TableDef.h"

#include <algorithm>

namespace jet {

const ColumnDef *TableDef::column(std::uint16_t number) const
{
    const auto found
        = std::find_if(columns.begin(), columns.end(), [&](const ColumnDef &c) { return c.number == number; });
    return found == columns.end() ? nullptr : &*found;
}

} // namespace jet
