#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <QString>

#include "platform/jet/PageStore.h"
#include "platform/jet/RowPointer.h"

namespace jet {

/// Column types by their number in the file. A column's values always take one form of storage::Value:
/// bool; int64 for Byte, Integer and Long; Currency; double for Single and Double; DateTime; QByteArray for Binary,
/// LongBinary and FixedBinary; QString for Text, Memo and Guid (in braces); Decimal for Numeric. Any may be Null but
/// bool.
enum class ColumnType : std::uint8_t {
    Boolean = 1,
    Byte = 2,
    Integer = 3,
    Long = 4,
    Currency = 5,
    Single = 6,
    Double = 7,
    DateTime = 8,
    Binary = 9,
    Text = 10,
    LongBinary = 11,
    Memo = 12,
    Guid = 15,
    Numeric = 16,
    FixedBinary = 17 // seen in one of Access' own tables only
};

struct ColumnDef {
    enum Flag : std::uint8_t { Fixed = 0x01, Usual = 0x02, Autonumber = 0x04, GuidAutonumber = 0x40, Hyperlink = 0x80 };
    enum ExtendedFlag : std::uint8_t { CompressedText = 0x01 };

    QString name;
    ColumnType type = ColumnType::Text;
    std::uint16_t number = 0; ///< counts from 0, dropped columns included; not a position in TableDef::columns
    std::uint16_t slot = 0; ///< place among the variable columns
    std::uint16_t ordinal = 0;
    std::uint16_t sortLcid = 0; ///< 0x0409 is the General order
    std::uint8_t sortVersion = 0; ///< Jet 4: 0 is the order that we know; Jet 3: 0 or 1, the same order
    std::uint8_t precision = 0; ///< Numeric
    std::uint8_t scale = 0; ///< Numeric
    std::uint8_t flags = Usual;
    std::uint8_t extendedFlags = 0;
    std::uint16_t fixedOffset = 0; ///< from the start of the row's fixed area
    std::uint16_t length = 0; ///< bytes; Jet 4 text: two for each character
    RowPointer longOwnedMap{}; ///< Memo and LongBinary: their long-value pages
    RowPointer longFreeMap{};

    bool isFixed() const { return (flags & Fixed) != 0; }
    bool isLong() const { return type == ColumnType::Memo || type == ColumnType::LongBinary; }
    bool isText() const { return type == ColumnType::Text || type == ColumnType::Memo; }
    bool isAutonumber() const
    {
        return (type == ColumnType::Long && (flags & Autonumber) != 0)
            || (type == ColumnType::Guid && (flags & GuidAutonumber) != 0);
    }
};

struct IndexColumnDef {
    std::uint16_t column = 0; ///< ColumnDef::number
    bool ascending = true;
};

/// A real index: one tree of entries. Several logical indexes may share it.
struct IndexDef {
    enum Flag : std::uint8_t { Unique = 0x01, IgnoreNulls = 0x02, Required = 0x08, AlwaysInJet4 = 0x80 };

    std::vector<IndexColumnDef> columns; ///< 1 to 10
    RowPointer map{}; ///< usage map of the tree's pages, root included
    PageNo rootPage = 0;
    std::uint8_t flags = 0;
    std::uint32_t entriesAtCompact = 0; ///< statistics
    std::uint32_t distinctKeys = 0; ///< statistics; counted up, never down

    bool isUnique() const { return (flags & Unique) != 0; }
    bool ignoresNulls() const { return (flags & IgnoreNulls) != 0; }
    bool isRequired() const { return (flags & Required) != 0; }
};

/// What the user sees as an index or as one side of a relationship.
struct LogicalIndexDef {
    enum class Kind : std::uint8_t { Plain = 0, Primary = 1, Relation = 2 };
    enum class Side : std::uint8_t { None = 0, Referenced = 1, Referencing = 2 };

    QString name;
    std::uint32_t number = 0; ///< unique in the table, in order of creation
    std::uint32_t real = 0; ///< position in TableDef::indexes
    Side side = Side::None;
    std::optional<std::uint32_t> partner{}; ///< number of the other table's logical index
    PageNo partnerTable = 0;
    bool cascadeUpdates = false;
    bool cascadeDeletes = false;
    Kind kind = Kind::Plain;
};

/// A table definition as it stands in the file.
struct TableDef {
    enum Type : std::uint8_t { System = 0x53, User = 0x4E };

    PageNo page = 0; ///< the definition's first page; owner of the table's data and index pages
    std::uint32_t rowCount = 0;
    std::uint32_t lastAutonumber = 0;
    std::uint8_t type = User;
    std::uint16_t columnsEver = 0; ///< highest column number + 1
    std::uint16_t variableSlots = 0; ///< those of dropped columns included
    RowPointer ownedMap{};
    RowPointer freeMap{};
    std::vector<ColumnDef> columns{}; ///< in file order
    std::vector<IndexDef> indexes{}; ///< the real ones
    std::vector<LogicalIndexDef> logicalIndexes{}; ///< in file order

    /// The column of that number, nullptr if it was dropped.
    const ColumnDef *column(std::uint16_t number) const;
};

} // namespace jet
