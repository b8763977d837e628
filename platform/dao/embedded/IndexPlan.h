#pragma once

#include <optional>

#include <QByteArray>
#include <sqlite3.h>

#include "platform/storage/Storage.h"

namespace dao {

/// How a table is walked, as SQLite hands it back when the values are known.
struct IndexPlan {
    static constexpr int Scan = -1;
    static constexpr int ByAddress = -2; ///< one value: the row's address

    int index = Scan; ///< position in the schema, or one of the above
    /// One letter per value: '=' '>' 'G' (at least) '<' 'L' (at most); a final 'b' for backwards.
    QByteArray steps{};
};

/// Chooses the cheapest walk and tells SQLite about it in `info`.
IndexPlan planWalk(sqlite3_index_info *info, const storage::TableSchema &schema, std::int64_t rows);

/// The range for the values at run time; nothing if no row can match (a comparison with Null). A value that is not
/// exactly a key of its column is left out: the range then gives more rows, which SQLite checks itself.
std::optional<storage::KeyRange> rangeOf(const IndexPlan &plan, const storage::TableSchema &schema,
                                         sqlite3_value **values);

} // namespace dao
