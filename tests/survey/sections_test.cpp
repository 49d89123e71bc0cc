#include "survey/sections.h"

#include "survey/chainage_search.h"

#include "field_book.h"
#include "sheet/book.h"

#include <gmock/gmock.h>

#include <random>

namespace {

using survey::GroundPoint;
using testing::ElementsAre;

/// A grid that tells the sections all that happens to it.
struct Followed {
    sheet::Book book;
    sheet::Grid& grid = book.MSFG;
    survey::Sections sections{grid};

    Followed() { grid.addListener(sections); }
    ~Followed() { grid.removeListener(sections); }
};

TEST(Sections, ChainagesInEveryWayOfWriting) {
    const std::pair<const char*, std::optional<double>> cases[] = {
        {"01-250", 1250}, {"1+250.5", 1250.5}, {"A01-000", 1000}, {" 120 ", 120}, {"0.5", 0.5},
        {"00-000", 0},    {"12-5", 12005},     {"CP", {}},        {"", {}},       {"01-", {}},
        {"1-25x", {}},    {"1--2", {}},        {"1-2-3", {}},     {"TBM", {}},    {"100-000.25", 100000.25}};
    for (const auto& [text, metres] : cases)
        EXPECT_EQ(survey::chainageMetres(text), metres) << text;
}

TEST(Sections, PointsInTheOrderOfTheRoad) {
    Followed book;
    keyRows(book.grid, {",,,,1.5,,,101.5,100,BM = 100", // no chainage
                        "00-020,,0,,,1.1,,,100.4", "00-020,2.5,,,,1.2,,,100.3", "00-020,,,3,,1.3,,,100.2",
                        "CP,,0,,1,,1.5,101,100", "00-020,5,,,,1,,,100.0",     // after the change point
                        "00-010,,7,,,1.4,,,100.1",                            // Center is offset 0
                        "00-010,,0,,,1.4,,,99.9",                             // a second centre
                        "00-030,,0,,,1.4,,,101,TBM", "00-030,x,,,,1.4,,,101", // neither is ground
                        "00-030,,0,,,1.4,,,ab", "00-030,,0,,,1.4,,,", "00-040,,0"});
    EXPECT_THAT(book.sections.points(),
                ElementsAre(GroundPoint{10, 0, 100.1, 7}, GroundPoint{10, 0, 99.9, 8},
                            GroundPoint{20, -5, 100, 6}, GroundPoint{20, -2.5, 100.3, 3},
                            GroundPoint{20, 0, 100.4, 2}, GroundPoint{20, 3, 100.2, 4}));
    EXPECT_THAT(book.sections.longSection(),
                ElementsAre(GroundPoint{10, 0, 100.1, 7}, GroundPoint{20, 0, 100.4, 2}));
    EXPECT_EQ(book.sections.at(20).size(), 4U);
    EXPECT_EQ(book.sections.rowsWithoutLevel(), 1);
    EXPECT_EQ(book.sections.inRow(3), (GroundPoint{20, -2.5, 100.3, 3}));
    EXPECT_EQ(book.sections.inRow(5), std::nullopt);
}

// Whatever happens to a book, the sections that followed it are those that are read from it anew.
TEST(Sections, FollowEveryChange) {
    Followed book;
    loadBook(book.book, "tramo1-derived");
    std::mt19937 random(7);
    const std::vector<std::vector<const char*>> texts = {{"00-010", "00-020", "1-5", "CP", ""}, // by column
                                                         {"2.5", "4", "", "x"},
                                                         {"", "", "0"},
                                                         {"2.5", "", ""},
                                                         {"1.5"},
                                                         {"1.2", ""},
                                                         {"", "", "0.9"},
                                                         {"101"},
                                                         {"100", "99.5", "101.25", "x", ""},
                                                         {"", "", "TBM"}};
    const auto change = [&](int row, std::size_t col) {
        book.grid.setText(row, static_cast<int>(col), texts[col][random() % texts[col].size()]);
    };
    std::size_t most = 0;
    for (int step = 0; step < 4000; ++step) {
        const int rows = book.grid.Rows();
        const int row = 1 + static_cast<int>(random() % static_cast<unsigned>(rows - 1));
        if (step % 80 == 0)
            book.grid.insertRows(row, 1 + static_cast<int>(random() % 3), sheet::Marks::Stay);
        else if (step % 40 == 0)
            book.grid.removeRows(row, std::min(2, rows - row), sheet::Marks::Stay);
        else
            change(row, random() % 10);
        if (random() % 3 != 0) continue;
        survey::Sections anew(book.grid);
        ASSERT_TRUE(std::ranges::equal(book.sections.points(), anew.points())) << "step " << step;
        ASSERT_EQ(book.sections.rowsWithoutLevel(), anew.rowsWithoutLevel()) << "step " << step;
        most = std::max(most, anew.points().size());
    }
    EXPECT_GT(most, 10U);
}

TEST(ChainageSearch, TakesTheFirstEqualOrTheNextGreater) {
    sheet::Book book;
    keyRows(book.MSFG, splitAt("01-250|CP|01-300,2|01-250,3|01-275.5", '|'));
    for (const auto& [answer, row] : {std::pair("1-250", 1),
                                      {"1+250", 1},
                                      {"1.250", 1},
                                      {"1250", 1},
                                      {" 01-250 ", 1},
                                      {"1-251", 5},
                                      {"0", 1},
                                      {"1-275.5", 5},
                                      {"1-276", 3},
                                      {"2-000", 0},
                                      {"", 0},
                                      {"peg", 0}})
        EXPECT_EQ(survey::rowOfChainage(book.MSFG, answer).value_or(0), row) << answer;
}

} // namespace
