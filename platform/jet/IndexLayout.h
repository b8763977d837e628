#pragma once

// The pages of index trees.
//
//   Jet 3  Jet 4  size
//   0      0      2     03 01 above the leaves, 04 01 leaf
//   2      2      2     free bytes behind the last entry
//   4      4      4     owner: page of the table's definition
//   8      12     4     previous page of the level, 0 = none
//   12     16     4     next page of the level, 0 = none
//   16     20     4     tail: child of all that is larger than the entries; 0 on leaves
//   20     24     1, 2  length of the prefix that all entries but the first leave out
//   21     26     1     level, 0 = leaf
//   22     27           bitmap: bit p is set if an entry ends p bytes behind the start of the entries
//   0xF8   0x1E0        entries: key, row address (page 3, slot 1), above the leaves also child page (4); big-endian
#include <cstddef>
#include <cstdint>

#include "platform/storage/Bytes.h"

namespace jet {

inline constexpr std::uint16_t upperIndexTag = 0x0103;
inline constexpr std::uint16_t leafIndexTag = 0x0104;
inline constexpr std::size_t indexFreeAt = 2;
inline constexpr std::size_t indexOwnerAt = 4;
inline constexpr std::size_t indexRowSize = 4;
inline constexpr std::size_t indexLinkSize = 4;

struct IndexLayout {
    std::size_t pageSize;
    std::size_t previousAt;
    std::size_t prefixSize;
    std::size_t prefixAt;
    std::size_t levelAt;
    std::size_t bitmapAt;
    std::size_t entriesAt;

    std::size_t nextAt() const { return previousAt + indexLinkSize; }
    std::size_t tailAt() const { return previousAt + 2 * indexLinkSize; }
    std::size_t capacity() const { return pageSize - entriesAt; }
    std::size_t prefixLimit() const { return prefixSize == 1 ? 0xFF : 0xFFFF; }
    std::size_t bitmapSize() const { return entriesAt - bitmapAt; }
    std::size_t prefixIn(storage::Bytes page) const
    {
        return prefixSize == 1 ? storage::readLE<std::uint8_t>(page, prefixAt)
                               : storage::readLE<std::uint16_t>(page, prefixAt);
    }
};
inline constexpr IndexLayout jet3IndexLayout{2048, 8, 1, 20, 21, 22, 0xF8};
inline constexpr IndexLayout jet4IndexLayout{4096, 12, 2, 24, 26, 27, 0x1E0};

inline const IndexLayout &indexLayoutOf(bool jet4)
{
    return jet4 ? jet4IndexLayout : jet3IndexLayout;
}

inline std::uint32_t readBigEndian(storage::Bytes bytes)
{
    std::uint32_t number = 0;
    for (const std::byte byte : bytes)
        number = number << 8 | std::to_integer<std::uint32_t>(byte);
    return number;
}

} // namespace jet
