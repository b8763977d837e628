// Finds the rows of a query, no more of them than are asked for.
#include "platform/dao/embedded/Keyset.h"

#include <utility>

using storage::RowId;

namespace dao {

Keyset::Keyset(Connection &connection, const SqlText &query)
    : m_connection(&connection)
    , m_query(query)
{
    find(query.reversed.isEmpty());
}

Keyset::Keyset(std::vector<RowId> rows)
    : m_rows(std::move(rows))
    , m_complete(true)
{ }

/// Finds all rows, or the first one alone if that spares work: what had to be sorted has been read already.
void Keyset::find(bool all)
{
    const StatementHandle query = m_connection->prepare(m_query, m_query.addresses);
    std::vector<RowId> rows;
    bool more = m_connection->step(query.get());
    while (more) {
        rows.push_back(sqlite3_column_int64(query.get(), 0));
        if (!all && sqlite3_stmt_status(query.get(), SQLITE_STMTSTATUS_SORT, 0) == 0)
            break;
        more = m_connection->step(query.get());
    }
    m_rows = std::move(rows); // only now: a walk that fails leaves the set as it was
    m_complete = !more;
}

void Keyset::collect()
{
    if (m_complete)
        return;
    const RowId first = m_rows.front();
    find(true);
    // What was shown keeps its place, even if another program has written since.
    if (m_rows.empty() || m_rows.front() != first) {
        std::erase(m_rows, first);
        m_rows.insert(m_rows.begin(), first);
    }
    if (m_last && m_rows.back() != *m_last) {
        std::erase(m_rows, *m_last);
        m_rows.push_back(*m_last);
    }
}

RowId Keyset::findLast()
{
    const StatementHandle query = m_connection->prepare(m_query, m_query.reversed);
    m_last = m_connection->step(query.get()) ? sqlite3_column_int64(query.get(), 0) : m_rows.front();
    m_complete = *m_last == m_rows.front();
    return *m_last;
}

bool Keyset::has(qsizetype row)
{
    if (row == 0 || row == last)
        return !m_rows.empty();
    return row < count();
}

RowId Keyset::at(qsizetype row)
{
    if (row == last && !m_complete)
        return m_last ? *m_last : findLast();
    if (row != 0)
        collect();
    return row == last ? m_rows.back() : m_rows[static_cast<std::size_t>(row)];
}

qsizetype Keyset::count()
{
    collect();
    return static_cast<qsizetype>(m_rows.size());
}

} // namespace dao
