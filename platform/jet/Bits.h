#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "platform/storage/Bytes.h"

/// Bytes as a row of bits, the lowest of each byte first.
namespace jet {

inline bool isSet(storage::Bytes bits, std::size_t bit)
{
    return (std::to_integer<unsigned>(bits[bit / 8]) >> (bit % 8) & 1U) != 0;
}

inline void setBit(storage::MutableBytes bits, std::size_t bit, bool value)
{
    const std::byte mask{static_cast<std::uint8_t>(1U << (bit % 8))};
    bits[bit / 8] = value ? bits[bit / 8] | mask : bits[bit / 8] & ~mask;
}

inline std::size_t bitCount(storage::Bytes bits)
{
    return bits.size() * 8;
}

/// The first set bit from `from` on; bitCount if there is none.
inline std::size_t nextBit(storage::Bytes bits, std::size_t from)
{
    while (from < bitCount(bits)) {
        const auto rest = std::to_integer<unsigned>(bits[from / 8]) >> (from % 8);
        if (rest != 0)
            return from + static_cast<std::size_t>(std::countr_zero(rest));
        from = (from / 8 + 1) * 8;
    }
    return bitCount(bits);
}

/// One above the last set bit below `limit`; 0 if there is none.
inline std::size_t endOfBits(storage::Bytes bits, std::size_t limit)
{
    std::size_t end = std::min(limit, bitCount(bits));
    while (end > 0) {
        if (end % 8 == 0 && bits[end / 8 - 1] == std::byte{0})
            end -= 8;
        else if (isSet(bits, end - 1))
            return end;
        else
            --end;
    }
    return 0;
}

} // namespace jet
