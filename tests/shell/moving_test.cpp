#include "shell/credits.h"
#include "shell/moving_label.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

TEST(MovingLabel, BouncesBetweenItsTurningPoints) {
    shell::MovingLabel label;
    const auto fourPlacesFrom = [&label](int left) {
        label.left = left;
        std::vector<int> places;
        for (int tick = 0; tick < 4; ++tick, places.push_back(label.left))
            label.tick();
        return places;
    };
    EXPECT_THAT(fourPlacesFrom(1050), ElementsAre(1025, 1000, 1025, 1050)); // turns at 1000
    EXPECT_THAT(fourPlacesFrom(3775), ElementsAre(3800, 3825, 3800, 3775)); // turns beyond 3800
}

TEST(Credits, BounceAndPulse) {
    struct State {
        int top, size;
        bool downward, growing;
        bool operator==(const State&) const = default;
    };
    // An inner height of 3000 twips and a label of 600: it turns beyond 2400.
    const std::pair<State, State> ticks[] = {
        {{1000, 30, false, false}, {950, 29, false, false}}, // up and smaller
        {{20, 20, false, false}, {20, 19, true, false}},     // over the upper edge it comes back
        {{2400, 20, true, true}, {2450, 21, true, true}},    // at the lower edge one more step
        {{2450, 20, true, true}, {2450, 21, false, true}},   // beyond it turns
        {{1000, 17, false, false}, {950, 17, false, true}},  // the smallest turns at once
        {{1000, 29, false, true}, {950, 30, false, false}},  // the largest turns
    };
    for (const auto& [before, after] : ticks) {
        shell::Credits credits;
        credits.animating = true;
        credits.top = before.top;
        credits.size = before.size;
        credits.downward = before.downward;
        credits.growing = before.growing;
        credits.tick(3000, 600, [] { return 0.0; });
        EXPECT_EQ((State{credits.top, credits.size, credits.downward, credits.growing}), after) << before.top;
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
