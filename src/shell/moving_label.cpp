#include "moving_label.h"

#include <cmath>
#include <random>

namespace shell {

void MovingLabel::tick() {
    left += leftward ? -25 : 25;
    if (left > 3800)
        leftward = true;
    else if (left <= 1000)
        leftward = false;
}

std::array<int, 3> randomColour(std::uint64_t seed) {
    std::mt19937_64 generator(seed);
    std::uniform_real_distribution<double> share(0.0, 1.0);
    std::array<int, 3> parts{};
    for (int& part : parts)
        part = static_cast<int>(std::lround(share(generator) * 255));
    return parts;
}

} // namespace shell
