#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>

/// The General order of texts as data; TextKey.cpp says how keys come of it.
namespace jet {

/// Jet 3: one character of code page 1252.
struct TextWeight3 {
    char16_t unicode;
    std::uint8_t first; ///< byte of the key
    std::uint8_t second; ///< second byte of a character that sorts as two letters, else 0
    std::uint8_t accentPlaces; ///< places it takes in the list of accents although it has none
    std::uint8_t accent; ///< 0: none
};
extern const std::array<TextWeight3, 256> textWeights3;

/// Jet 4: what a run of UTF-16 units has in common.
struct TextKind4 {
    enum Class : std::uint8_t { Sorting, Unprintable, Modifier };
    enum Form : std::uint8_t { Counted = 5 };

    std::uint8_t what; ///< Class
    std::uint8_t weight; ///< positions that a unit takes: more than one if it sorts as several letters
    std::uint8_t form; ///< number of key bytes, or Counted: two bytes, 254 * first + second - 2
    std::uint16_t prefix; ///< of key bytes in front of the last two
    std::uint8_t extraCount;
    std::uint8_t extra[2]; ///< accents
    std::uint8_t flag; ///< kana marks: 2 or 3, else 0
    std::uint8_t step; ///< by which the value grows from unit to unit
};
extern const std::span<const TextKind4> textKinds4;

/// Runs in ascending order, each as bits: first unit (16), number of units (12), first value (16), kind (12).
/// The value is the key's bytes, or the code of an unprintable unit or a modifier. Units in no run are ignored.
extern const std::span<const std::uint64_t> textRuns4;

/// Runs written with ten digits each, to the base of 57, the lowest digit first; '#' is 0.
template <std::size_t Count> consteval std::array<std::uint64_t, Count> unpackRuns(std::string_view digits)
{
    constexpr std::size_t perRun = 10;
    constexpr std::uint64_t base = 57;
    std::array<std::uint64_t, Count> runs{};
    for (std::size_t i = 0; i < Count * perRun; ++i) {
        const std::size_t fromTheEnd = Count * perRun - 1 - i;
        std::uint64_t &run = runs[fromTheEnd / perRun];
        run = run * base + static_cast<std::uint64_t>(digits[fromTheEnd] - '#');
    }
    return runs;
}

} // namespace jet
