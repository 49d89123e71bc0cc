#include "shell/credits.h"
#include "shell/moving_label.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

using testing::ElementsAre;

TEST(MovingLabel, BouncesBetweenItsTurningPoints) {
    shell::MovingLabel label;
    label.left = 1050;
    std::vector<int> places;
    for (int tick = 0; tick < 4; ++tick) {
        label.tick();
        places.push_back(label.left);
    }
    EXPECT_THAT(places, ElementsAre(1025, 1000, 1025, 1050)); // turns at 1000
    label.left = 3775;
    places.clear();
    for (int tick = 0; tick < 4; ++tick) {
        label.tick();
        places.push_back(label.left);
    }
    EXPECT_THAT(places, ElementsAre(3800, 3825, 3800, 3775)); // turns beyond 3800
}

TEST(MovingLabel, ColoursAreOfTheWholeRangeAndFollowTheClock) {
    int least = 255;
    int most = 0;
    for (std::uint64_t seed = 0; seed < 1000; ++seed)
        for (const int part : shell::randomColour(seed)) {
            least = std::min(least, part);
            most = std::max(most, part);
        }
    EXPECT_LE(least, 2);
    EXPECT_GE(most, 253);
    EXPECT_GE(least, 0);
    EXPECT_LE(most, 255);
    EXPECT_EQ(shell::randomColour(7), shell::randomColour(7));
    EXPECT_NE(shell::randomColour(7), shell::randomColour(8));
}

struct Tick {
    const char* what;
    int top, size;
    bool downward, growing;
    int topAfter, sizeAfter;
    bool downwardAfter, growingAfter;
};

TEST(Credits, BounceAndPulse) {
    // An inner height of 3000 twips and a label of 600: it turns beyond 2400.
    const Tick ticks[] = {
        {"up and smaller", 1000, 30, false, false, 950, 29, false, false},
        {"over the upper edge it comes back", 20, 20, false, false, 20, 19, true, false},
        {"down", 1000, 20, true, true, 1050, 21, true, true},
        {"at the lower edge one more step", 2400, 20, true, true, 2450, 21, true, true},
        {"beyond it turns", 2450, 20, true, true, 2450, 21, false, true},
        {"smallest turns at once", 1000, 17, false, false, 950, 17, false, true},
        {"largest turns", 1000, 29, false, true, 950, 30, false, false},
    };
    for (const Tick& tick : ticks) {
        SCOPED_TRACE(tick.what);
        shell::Credits credits;
        credits.animating = true;
        credits.top = tick.top;
        credits.size = tick.size;
        credits.downward = tick.downward;
        credits.growing = tick.growing;
        credits.tick(3000, 600, [] { return 0.0; });
        EXPECT_EQ(credits.top, tick.topAfter);
        EXPECT_EQ(credits.size, tick.sizeAfter);
        EXPECT_EQ(credits.downward, tick.downwardAfter);
        EXPECT_EQ(credits.growing, tick.growingAfter);
    }
}

TEST(Credits, ColoursClimbAndStartAnew) {
    shell::Credits credits;
    credits.colour = {244, 245, 100};
    credits.tick(3000, 600, [] { return 0.999; });
    EXPECT_THAT(credits.colour, ElementsAre(244, 245, 100)); // not while it stands still
    credits.animating = true;
    credits.tick(3000, 600, [] { return 0.999; });
    EXPECT_THAT(credits.colour, ElementsAre(263, 249, 119));
    credits.tick(3000, 600, [] { return 0.5; });
    EXPECT_THAT(credits.colour, ElementsAre(125, 125, 129));
}

} // namespace
