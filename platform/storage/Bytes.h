#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <span>

namespace storage {

using Bytes = std::span<const std::byte>;
using MutableBytes = std::span<std::byte>;

[[noreturn]] void refuseBytes(std::size_t available, std::size_t offset, std::size_t size);

/// Throws StorageError::Damaged unless `size` bytes lie at `offset` within `available` bytes. Drivers catch nothing:
/// they name page or record in an outer check where they can.
inline void requireBytes(std::size_t available, std::size_t offset, std::size_t size)
{
    if (offset > available || size > available - offset) [[unlikely]]
        refuseBytes(available, offset, size);
}

/// Little-endian number at an offset, bounds checked.
template <std::unsigned_integral T> T readLE(Bytes bytes, std::size_t offset)
{
    requireBytes(bytes.size(), offset, sizeof(T));
    T number = 0;
    for (std::size_t i = sizeof(T); i-- > 0;)
        number = static_cast<T>((static_cast<std::uint64_t>(number) << 8) | std::to_integer<T>(bytes[offset + i]));
    return number;
}

template <std::unsigned_integral T> void writeLE(MutableBytes bytes, std::size_t offset, T number)
{
    requireBytes(bytes.size(), offset, sizeof(T));
    for (std::size_t i = 0; i < sizeof(T); ++i)
        bytes[offset + i] = static_cast<std::byte>((static_cast<std::uint64_t>(number) >> (8 * i)) & 0xFF);
}

/// A part of a byte sequence, bounds checked.
inline Bytes part(Bytes bytes, std::size_t offset, std::size_t size)
{
    requireBytes(bytes.size(), offset, size);
    return bytes.subspan(offset, size);
}

} // namespace storage
