#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <QString>

#include "platform/jet/TableDef.h"
#include "platform/storage/Bytes.h"
#include "platform/storage/Value.h"

namespace jet {

/// The bytes by which an index orders its rows; unsigned comparison of them is the order.
using KeyBytes = std::vector<std::byte>;

/// Below, equal to or above 0; a key that continues another one sorts behind it.
int compareKeys(storage::Bytes left, storage::Bytes right);

/// One end of a range of keys: a key of the index's first columns. The end lies before or behind all that begin so.
struct KeyBound {
    KeyBytes key;
    bool inclusive = true;
};

/// How far an index is within our means.
enum class KeySupport {
    Full,
    KeptOnly, ///< its entries can be kept, but their order is not that of the values: do not walk it for a range
    None ///< its keys cannot be computed: rows of its table must not be written
};
KeySupport keySupport(const TableDef &table, const IndexDef &index, bool jet4, std::uint16_t codePage);

/// Makes the keys of one index.
class IndexKeyMaker
{
public:
    /// Throws StorageError::Damaged if the index names a column that the table does not have.
    IndexKeyMaker(const TableDef &table, const IndexDef &index, bool jet4);

    std::size_t columnCount() const { return m_columns.size(); }

    /// The key of the index's first columns, or of all of them; `values` in index order, in the columns' own forms
    /// (see ColumnType), else StorageError::WrongType. OutOfRange for a number that its column cannot hold.
    /// The key of fewer columns is a prefix of every key that begins with the same values.
    KeyBytes make(std::span<const storage::Value> values) const;
    /// Whether an entry with this key can be that of a row with these values: the key is the one made of them, or of
    /// texts with letters like "ß" that some programs get wrong.
    bool explains(std::span<const storage::Value> values, storage::Bytes key) const;
    /// One end of a range: between ends made so lie all the rows wanted, and perhaps others with the same letters.
    KeyBound bound(std::span<const storage::Value> values, bool inclusive) const;

private:
    struct Part;
    void append(const Part &part, const storage::Value &value, KeyBytes &key) const;

    struct Part {
        ColumnType type;
        bool ascending;
        std::uint8_t scale;
    };
    std::vector<Part> m_columns{};
    bool m_jet4;
};

} // namespace jet
