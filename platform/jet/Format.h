#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/jet/PageStore.h"

namespace jet {

/// The figures in which the two versions differ, in bytes; chosen once from the file's header.
struct Format {
    std::size_t pageSize;
    std::uint64_t fileSizeLimit;
    std::size_t dataHeader; ///< of a data page, in front of the slots
    std::size_t slotCountAt; ///< in that header
    std::size_t rowLimit; ///< longest row
    std::size_t mapRow; ///< usual length of a usage map's row
    std::size_t inlineLongLimit; ///< long values up to here stand in the row
    std::size_t commitArea; ///< in page 0

    // Offsets in a table definition
    std::size_t rowCountAt;
    std::size_t autonumberAt;
    std::size_t tableTypeAt;
    std::size_t columnsEverAt;
    std::size_t ownedMapAt;
    std::size_t indexStatisticsAt;
    std::size_t indexStatisticsSize;
    std::size_t columnSize;
    std::size_t indexSize;
    std::size_t logicalIndexSize;
};

inline constexpr std::size_t slotSize = 2;
inline constexpr std::size_t maxSlots = 255;
inline constexpr std::size_t worthwhileRoom = 128; // pages with less are not tried for new rows
inline constexpr std::size_t maxNameLength = 64; // characters
inline constexpr std::size_t maxColumns = 255;
inline constexpr std::size_t maxIndexes = 32;
inline constexpr std::size_t maxIndexColumns = 10;
inline constexpr std::size_t maxTextLength = 255; // characters
inline constexpr std::uint32_t longestLongValue = 0x3FFFFFFF; // bytes; what its length field can say
inline constexpr std::uint16_t generalLcid = 0x0409;

inline constexpr Format jet3Format{
    .pageSize = 2048,
    .fileSizeLimit = 1ULL << 30,
    .dataHeader = 10,
    .slotCountAt = 8,
    .rowLimit = 2012,
    .mapRow = 133,
    .inlineLongLimit = 32,
    .commitArea = 0x600,
    .rowCountAt = 12,
    .autonumberAt = 16,
    .tableTypeAt = 20,
    .columnsEverAt = 21,
    .ownedMapAt = 35,
    .indexStatisticsAt = 43,
    .indexStatisticsSize = 8,
    .columnSize = 18,
    .indexSize = 39,
    .logicalIndexSize = 20,
};

inline constexpr Format jet4Format{
    .pageSize = 4096,
    .fileSizeLimit = 1ULL << 31,
    .dataHeader = 14,
    .slotCountAt = 12,
    .rowLimit = 4060,
    .mapRow = 69,
    .inlineLongLimit = 64,
    .commitArea = 0xE00,
    .rowCountAt = 16,
    .autonumberAt = 20,
    .tableTypeAt = 40,
    .columnsEverAt = 41,
    .ownedMapAt = 55,
    .indexStatisticsAt = 63,
    .indexStatisticsSize = 12,
    .columnSize = 25,
    .indexSize = 52,
    .logicalIndexSize = 28,
};

inline const Format &formatOf(const PageStore &store)
{
    return store.isJet4() ? jet4Format : jet3Format;
}

} // namespace jet
