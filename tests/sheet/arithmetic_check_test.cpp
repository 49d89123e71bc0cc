#include "sheet/arithmetic_check.h"

#include "sheet/book.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using namespace sheet;

struct Sight {
    const char* back;
    const char* inter;
    const char* fore;
    const char* level;
};

Grid bookOf(const std::vector<Sight>& sights) {
    Grid grid(columnCount, static_cast<int>(sights.size()) + 1);
    int row = 0;
    for (const Sight& sight : sights) {
        ++row;
        grid.setText(row, BackSight, sight.back);
        grid.setText(row, InterSight, sight.inter);
        grid.setText(row, ForeSight, sight.fore);
        grid.setText(row, RLevel, sight.level);
    }
    return grid;
}

TEST(ArithmeticCheck, ClosesOnWhatWasSighted) {
    struct Case {
        const char* what;
        std::vector<Sight> book;
        const char* line;
    };
    const std::vector<Case> cases = {
        {"closed on a change point",
         {{"1.500", "", "", "100.000"},
          {"", "0.750", "", "100.750"},
          {"1.000", "", "2.000", "99.500"},
          {"", "", "0.500", "100.000"}},
         "Sum B.S. 2.500, sum F.S. 2.500, first level 100.000, last level 100.000: they agree."},
        {"ends on an intermediate sight",
         {{"1.500", "", "", "100.000"}, {"1.000", "", "2.000", "99.500"}, {"", "0.250", "", "100.250"}},
         "Sum B.S. 2.500, sum F.S. 2.250, first level 100.000, last level 100.250: they agree."},
        {"a back sight that nothing was sighted from",
         {{"1.500", "", "", "100.000"}, {"9.000", "", "2.000", "99.500"}, {"", "", "", ""}},
         "Sum B.S. 1.500, sum F.S. 2.000, first level 100.000, last level 99.500: they agree."},
        {"a level that was typed over",
         {{"1.500", "", "", "100.000"}, {"", "", "2.000", "99.520"}},
         "Sum B.S. 1.500, sum F.S. 2.000, first level 100.000, last level 99.520: they differ by -0.020."},
        {"not reduced", {{"1.500", "", "", "100.000"}, {"", "", "2.000", ""}}, ""},
    };
    for (const Case& c : cases)
        EXPECT_EQ(describe(checkArithmetic(bookOf(c.book))), c.line) << c.what;
}

} // namespace
