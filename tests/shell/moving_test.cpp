#include "shell/credits.h"
#include "shell/moving_label.h"

#include <gmock/gmock.h>

#include <set>

namespace {

using testing::ElementsAre;

std::pair<int, int> rangeOf(const std::set<int>& numbers) {
    return {*numbers.begin(), *numbers.rbegin()};
}

TEST(MovingTexts, BounceBetweenTheirTurningPointsPulseAndChangeColour) {
    shell::MovingLabel label;
    label.left = 1050;
    shell::Credits credits;
    credits.top = 1000;
    credits.tick(3000, 600, [] { return 0.0; });
    EXPECT_EQ(credits.top, 1000) << "stands still";
    credits.size = 20;
    credits.animating = true;
    std::set<int> places, tops, sizes;
    for (int tick = 0; tick < 400; ++tick) {
        label.tick();
        credits.tick(3000, 600, [] { return 0.0; });
        places.insert(label.left), tops.insert(credits.top), sizes.insert(credits.size);
    }
    EXPECT_EQ(rangeOf(places), std::pair(1000, 3825));
    EXPECT_EQ(places.size(), 114) << "25 twips a tick";
    EXPECT_EQ(rangeOf(tops), std::pair(0, 2450)) << "turns at the upper edge and one step below the lower";
    EXPECT_EQ(rangeOf(sizes), std::pair(17, 30));
    credits.colour = {244, 245, 100};
    credits.tick(3000, 600, [] { return 0.999; });
    EXPECT_THAT(credits.colour, ElementsAre(263, 249, 119));
    credits.tick(3000, 600, [] { return 0.5; });
    EXPECT_THAT(credits.colour, ElementsAre(125, 125, 129));
}

} // namespace
