#pragma once

#include <optional>
#include <vector>

#include "platform/jet/TableSchema.h"
#include "platform/storage/Storage.h"
#include "platform/storage/Value.h"

namespace jet {

/// Whether an autonumber column takes random numbers instead of counting.
bool countsUp(const storage::Column &column);

/// What a table demands of the values that its users write: types, lengths, required columns, empty texts, rules.
class Constraints
{
public:
    /// Both must outlive it. Throws StorageError::Unsupported if the table has a rule that we cannot check.
    Constraints(const SchemaMap &map, const TextCodec &codec);

    /// The values of a new row by schema column: those given, else the defaults, else Null. The autonumber column is
    /// left Null when it was not given.
    std::vector<storage::Value> newRow(std::span<const storage::Assignment> given) const;
    /// The changed values, in the columns' own forms; of several for a column the last counts.
    std::vector<storage::Assignment> changes(std::span<const storage::Assignment> given) const;

private:
    storage::Value checked(std::size_t column, const storage::Value &value, bool given) const;

    const SchemaMap &m_map;
    const TextCodec &m_codec;
};

} // namespace jet
