#include "tools/road_tables.h"
#include "tools/start_routine.h"

#include <gtest/gtest.h>

namespace {

TEST(Main, FillsTheRoadTablesBeforeTheFirstWindow) {
    EXPECT_EQ(mdlTools::LSectFieldName(1), "");
    bool shown = false;
    mdlTools::Main([&shown] {
        EXPECT_EQ(mdlTools::LSectFieldName(1), "Chn");
        EXPECT_EQ(mdlTools::LSectFieldName(47), "RExCrW");
        shown = true;
    });
    EXPECT_TRUE(shown);
}

} // namespace
