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

/// The order of a key and the key of an index's first columns: 0 if it begins with that.
int compareWithStart(storage::Bytes key, storage::Bytes start);

/// Turns the bytes from `start` on round: a descending column's key.
void invertFrom(std::size_t start, KeyBytes &key);

/// One end of a range of keys: a key of the index's first columns. The end lies before or behind all that begin so.
struct KeyBound {
    KeyBytes key;
    bool inclusive = true;
};

/// Where rows with certain values stand: their keys begin with one of the ends or lie between them.
struct KeySpan {
    KeyBytes first;
    KeyBytes last;

    KeyBound lower(bool inclusive = true) const { return {first, inclusive}; }
    KeyBound upper(bool inclusive = true) const { return {last, inclusive}; }
    bool contains(storage::Bytes key) const;
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
    /// Whether all programs make the same key of these values, and of none that differ (see isCertainText).
    bool isCertain(std::span<const storage::Value> values) const;
    /// Where the rows with these values stand, and perhaps others with the same letters, whoever made their keys. Where
    /// `values` are certain it has but one key, that of make().
    KeySpan span(std::span<const storage::Value> values) const;
    /// Whether some program may have made this key of values of which we make another.
    bool isOthersKey(std::span<const storage::Value> values, storage::Bytes key) const;

private:
    struct Part;
    void append(const Part &part, const storage::Value &value, KeyBytes &key) const;

    struct Part {
        ColumnType type;
        bool ascending;
        std::uint8_t scale;

        bool isText() const { return type == ColumnType::Text || type == ColumnType::Memo; }
    };
    std::vector<Part> m_columns{};
    bool m_jet4;
};

} // namespace jet
