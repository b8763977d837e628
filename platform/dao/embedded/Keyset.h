#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "platform/dao/embedded/Connection.h"

namespace dao {

/// The addresses of a query's rows. Rows count from 0; `last` is the last one, whatever its number.
///
/// A query that can be turned round is asked for its first and its last row alone until more is wanted. The others
/// are then found as they are at that moment, at the latest before anything is written through the connection.
class Keyset
{
public:
    static constexpr qsizetype last = -1;

    Keyset(Connection &connection, const SqlText &query); ///< `connection` must outlive it
    explicit Keyset(std::vector<storage::RowId> rows);

    bool has(qsizetype row);
    storage::RowId at(qsizetype row);
    qsizetype count();
    void collect(); ///< finds the rows that are still missing

private:
    void find(bool all);
    storage::RowId findLast();

    Connection *m_connection = nullptr;
    SqlText m_query;
    std::vector<storage::RowId> m_rows; // only the first one unless complete
    std::optional<storage::RowId> m_last; // of an incomplete set, once it was asked for
    bool m_complete = false;
};

} // namespace dao
