#include "rc4.h"

#include <array>
#include <utility>

namespace jet {

void rc4(ByteSpan bytes, std::uint32_t key) {
    std::array<std::uint8_t, 256> state;
    for (unsigned i = 0; i < state.size(); ++i)
        state[i] = static_cast<std::uint8_t>(i);
    std::uint8_t j = 0;
    for (unsigned i = 0; i < state.size(); ++i) {
        j = static_cast<std::uint8_t>(j + state[i] + (key >> (8 * (i % 4)) & 0xFF));
        std::swap(state[i], state[j]);
    }
    std::uint8_t i = 0;
    j = 0;
    for (std::uint8_t& byte : bytes) {
        ++i;
        j = static_cast<std::uint8_t>(j + state[i]);
        std::swap(state[i], state[j]);
        byte = static_cast<std::uint8_t>(byte ^ state[static_cast<std::uint8_t>(state[i] + state[j])]);
    }
}

} // namespace jet
