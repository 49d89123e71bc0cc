#include "credits.h"

namespace shell {

void Credits::tick(int innerHeight, int labelHeight, const std::function<double()>& share) {
    if (!animating) return;

    constexpr int step = 50;
    if (top >= 0 && !downward) top -= step;
    if (top < 0) downward = true;
    if (downward) {
        if (top <= innerHeight - labelHeight)
            top += step;
        else
            downward = false;
    }

    if (size > smallest && !growing) --size;
    if (size <= smallest) growing = true;
    if (growing && size < largest) ++size;
    if (size >= largest) growing = false;

    for (int& part : colour)
        part = part >= 245 ? static_cast<int>(share() * 250) : part + static_cast<int>(share() * 20);
}

} // namespace shell
