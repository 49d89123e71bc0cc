#include "sheet/search.h"

#include "field_book.h"

#include <gtest/gtest.h>

namespace {

std::string found(const sheet::Grid& grid, const sheet::Wanted& wanted, int row, int col) {
    const auto hit = sheet::find(grid, wanted, row, col);
    if (!hit) return "none";
    return std::to_string(hit->row) + ',' + std::to_string(hit->col) + (hit->wrapped ? " wrapped" : "");
}

TEST(Search, FindsTheNextCellRoundTheBook) {
    sheet::Book book;
    keyRows(book.MSFG,
            splitAt("00-000,,0,,1.500,,,,100.000,Kerb|00-010,2.5,,,,1.5,,,99.500,kerb left|,,,,,1.50", '|'));
    struct Case {
        sheet::Wanted wanted;
        int row, col;
        const char* expected;
    };
    constexpr bool whole = true, backwards = true;
    for (const Case& c : {Case{{"KERB"}, 1, 0, "1,9"},
                          {{"kerb"}, 1, 9, "2,9"},
                          {{"kerb"}, 2, 9, "1,9 wrapped"},
                          {{"kerb", -1, false, backwards}, 2, 9, "1,9"},
                          {{"kerb", -1, false, backwards}, 1, 9, "2,9 wrapped"},
                          {{"kerb", -1, whole}, 1, 9, "1,9 wrapped"},
                          {{"1.5", -1, whole}, 1, 0, "1,4"},
                          {{"1.5", sheet::InterSight, whole}, 1, 0, "2,5"},
                          {{"1.5", sheet::InterSight, whole}, 2, 5, "3,5"},
                          {{"1.5", sheet::InterSight, false, backwards}, 2, 9, "2,5"},
                          {{"1.5", sheet::InterSight, whole}, 3, 9, "2,5 wrapped"},
                          {{"9e999", -1, whole}, 1, 0, "none"},
                          {{"peg"}, 1, 0, "none"},
                          {{""}, 1, 0, "none"}})
        EXPECT_EQ(found(book.MSFG, c.wanted, c.row, c.col), c.expected) << c.wanted.text << ' ' << c.row;
}

} // namespace
