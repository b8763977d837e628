#pragma once

#include <cstdint>

#include "platform/jet/PageStore.h"

namespace jet {

/// The address of a row: a data page and the slot on it. In the file one number of 32 bits, the slot in its low byte.
struct RowPointer {
    PageNo page = 0;
    std::uint8_t row = 0;

    static constexpr RowPointer fromNumber(std::uint32_t number)
    {
        return {number >> 8, static_cast<std::uint8_t>(number & 0xFF)};
    }
    constexpr std::uint32_t number() const { return (page << 8) | row; }
    /// Pointers into usage maps and long values: 0 stands for "none".
    constexpr bool isNull() const { return number() == 0; }
    auto operator<=>(const RowPointer &) const = default; // NOLINT(modernize-use-nullptr): there is no pointer here
};

} // namespace jet
