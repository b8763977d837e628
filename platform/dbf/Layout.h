#pragma once

#include <vector>

#include "platform/dbf/Field.h"
#include "platform/dbf/TableFile.h"

/// The head of a .dbf file: how its records are built. It stays the same while the table is open.
namespace dbf {

enum class MemoKind { None, FoxPro, DBase3, DBase4 };

struct Layout {
    std::uint8_t version = 0;
    int headerLength = 0; ///< bytes before the first record
    int recordLength = 0; ///< bytes, with the deletion mark
    MemoKind memo = MemoKind::None;
    const storage::Codepage *codepage = nullptr; ///< one of the constants, never null
    std::vector<Field> fields; ///< in record order, without gaps

    /// Where record `id` (from 1) begins in the file.
    qint64 positionOf(storage::RowId id) const { return headerLength + (id - 1) * qint64(recordLength); }
};

/// What other programs may change in the head meanwhile.
struct HeaderFacts {
    std::uint8_t version = 0;
    qint64 recordCount = 0; ///< with the deleted ones
    int headerLength = 0;
    int recordLength = 0;
    bool structuralIndex = false; ///< an index file belongs to the table and would have to be kept with it
};

/// Throws StorageError: NotThisFormat, Damaged, Unsupported.
Layout readLayout(const TableFile &file);
HeaderFacts readFacts(const TableFile &file);

/// Writes are for the caller to place: the bytes of the head that hold the record count and today's date.
constexpr qint64 recordCountPosition = 4;
constexpr qint64 datePosition = 1;
QByteArray recordCountBytes(qint64 count);
QByteArray todayBytes();

/// The whole file of a new, empty FoxPro 2.x table (code page Windows-1252). Throws StorageError::Unsupported for a
/// schema that the format cannot keep: other types, longer or other names, defaults, rules, autonumbers, required
/// columns, indexes.
QByteArray newTable(const storage::TableSchema &schema);
bool needsMemoFile(const storage::TableSchema &schema);

} // namespace dbf
