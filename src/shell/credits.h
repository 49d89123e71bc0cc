#pragma once

#include <array>
#include <functional>

namespace shell {

/// The credits display of the help window: a label that bounces, pulses and changes its colour. Lengths are
/// twips, sizes points.
struct Credits {
    static constexpr int smallest = 16;
    static constexpr int largest = 30;

    bool animating = false;
    bool downward = false; ///< the vertical-direction flag
    bool growing = false;  ///< the font-size-direction flag
    int top = 0;
    int size = largest;
    std::array<int, 3> colour{255, 255, 255}; ///< red, green, blue; above 255 counts as 255

    /// One tick of the timer. `share` gives a random value from 0 up to but not including 1.
    void tick(int innerHeight, int labelHeight, const std::function<double()>& share);
};

} // namespace shell
