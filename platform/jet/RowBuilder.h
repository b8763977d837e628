#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include <QByteArray>

#include "platform/jet/RowView.h"
#include "platform/jet/TableDef.h"

namespace jet {

/// The fields of a row that is to be written, and the row's bytes.
class RowBuilder
{
public:
    /// A row in which everything is Null and all Booleans are false.
    RowBuilder(const TableDef &def, bool jet4);
    /// The fields of an existing row.
    RowBuilder(const TableDef &def, bool jet4, const RowView &row);

    /// A column's field; nothing for Null. Not for Boolean columns. Fixed columns take their full length.
    void setField(const ColumnDef &column, std::optional<QByteArray> field);
    void setBoolean(const ColumnDef &column, bool value);
    const std::optional<QByteArray> &field(const ColumnDef &column) const { return m_fields[column.number]; }

    /// The row as it stands in the file. Its length is the caller's matter; Jet 3 cannot say where fields start
    /// beyond its row limit anyway.
    std::vector<std::byte> build() const;

private:
    void appendFixed(std::vector<std::byte> &row) const;
    void appendTrailer(std::vector<std::byte> &row, const std::vector<std::size_t> &offsets) const;
    std::vector<std::size_t> appendVariable(std::vector<std::byte> &row) const;
    void appendMask(std::vector<std::byte> &row) const;

    const TableDef &m_def;
    bool m_jet4;
    std::vector<std::optional<QByteArray>> m_fields; // by column number; Booleans: empty bytes for true
};

} // namespace jet
