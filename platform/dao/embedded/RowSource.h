#pragma once

#include <memory>
#include <span>
#include <vector>

#include <QVariant>

#include "platform/dao/embedded/Keyset.h"

namespace dao {

/// A column of a result.
struct ResultColumn {
    QString name;
    int type = 0; ///< a DataType
    storage::Column stored{}; ///< of an editable result: the column behind it
    int position = -1; ///< its place in the stored table; -1 if there is none behind it
};

/// The rows of a query, in a fixed number and order. Rows and columns count from 0; row Keyset::last is the last one.
class RowSource
{
public:
    virtual ~RowSource() = default;

    virtual bool has(qsizetype row) const = 0; ///< `last` if there is any
    virtual qsizetype count() const = 0; ///< may have to find them all first
    /// Throws why its rows cannot be written, if so.
    virtual void requireEditable() const = 0;
    virtual QVariant value(qsizetype row, std::size_t column) const = 0;
    /// The user has moved: what is read from now on is the row as it is then.
    virtual void moved() { }
    /// Throws, as storage::Table::requireStorable, if a column of an editable result does not take the value.
    virtual void requireStorable(std::size_t column, const storage::Value &value) const = 0;
    /// Writes one row of an editable result; `values` name columns of the stored table.
    virtual void update(qsizetype row, std::span<const storage::Assignment> values) = 0;

    const std::vector<ResultColumn> &columns() const { return m_columns; }

protected:
    explicit RowSource(std::vector<ResultColumn> columns)
        : m_columns(std::move(columns))
    { }

private:
    std::vector<ResultColumn> m_columns;
};

/// Runs a table's name or a SELECT. Rows of one table are kept as addresses and read when asked for, so that they can
/// be edited and show their exact values; anything else is kept as values.
std::unique_ptr<RowSource> openRows(const std::shared_ptr<Connection> &connection, const QString &source);

} // namespace dao
