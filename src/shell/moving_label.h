#pragma once

#include <array>
#include <cstdint>

namespace shell {

/// Where the label of the product screen stands, in twips from the left, and which way it goes.
struct MovingLabel {
    int left = 2400;
    bool leftward = true;

    /// 25 twips on; turns to the left beyond 3800 and to the right at 1000.
    void tick();
};

/// Three parts of a colour, each of the whole range; `seed` is the clock.
[[nodiscard]] std::array<int, 3> randomColour(std::uint64_t seed);

} // namespace shell
