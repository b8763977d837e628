#pragma once

#include <cstdint>
#include <optional>

#include "platform/jet/RowPointer.h"
#include "platform/jet/TableDef.h"
#include "platform/storage/Bytes.h"

namespace jet {

/// The fields of one row, found when asked for. Looks at bytes that the maker keeps.
///
/// Errors  StorageError::Damaged, naming the row's page, for a row that contradicts itself or its table.
class RowView
{
public:
    /// Stands on no row; only good for being assigned to.
    RowView() = default;
    RowView(storage::Bytes row, RowPointer where, const TableDef &def, bool jet4);

    /// The bytes of a column; nothing when it is Null. Not for Boolean columns.
    std::optional<storage::Bytes> field(const ColumnDef &column) const;
    /// The value of a Boolean column.
    bool boolean(const ColumnDef &column) const { return isMarked(column.number); }

private:
    bool isMarked(std::uint16_t number) const;
    void readTrailer(std::size_t variableSlots);
    std::size_t variableOffset(std::size_t slot) const;
    std::optional<storage::Bytes> variableField(const ColumnDef &column) const;
    [[noreturn]] void fail(const char16_t *reason) const;

    storage::Bytes m_row{};
    RowPointer m_where{};
    bool m_jet4 = true;
    std::size_t m_columns = 0; // that the row knows of
    std::size_t m_slots = 0; // that the row has
    std::size_t m_maskAt = 0;
    std::size_t m_offsetsEnd = 0; // the table of offsets is read downwards from here
    std::size_t m_jumpsEnd = 0; // Jet 3: so are the jump bytes
    std::size_t m_jumps = 0;
    std::size_t m_fixedEnd = 0; // no fixed value reaches beyond
};

} // namespace jet
