// The stream cipher of the file header and of encrypted pages.
#include "platform/jet/Rc4.h"

#include <array>
#include <numeric>
#include <utility>

namespace jet {

void rc4(storage::Bytes key, storage::MutableBytes bytes)
{
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    std::uint8_t j = 0;
    for (std::size_t i = 0; i < state.size(); ++i) {
        j = static_cast<std::uint8_t>(j + state[i] + std::to_integer<std::uint8_t>(key[i % key.size()]));
        std::swap(state[i], state[j]);
    }
    std::uint8_t i = 0;
    j = 0;
    for (std::byte &byte : bytes) {
        i = static_cast<std::uint8_t>(i + 1);
        j = static_cast<std::uint8_t>(j + state[i]);
        std::swap(state[i], state[j]);
        byte ^= std::byte{state[static_cast<std::uint8_t>(state[i] + state[j])]};
    }
}

} // namespace jet
