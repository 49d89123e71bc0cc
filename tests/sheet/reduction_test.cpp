#include "sheet/reduction.h"

#include "basic/numbers.h"
#include "sheet/cells.h"

#include "field_book.h"
#include "scripted_desktop.h"

#include <gtest/gtest.h>

namespace {

using namespace sheet;

struct Reduction : testing::Test {
    Book book;
    ScriptedDesktop desktop;

    std::string reduced(const std::vector<std::string>& rows) {
        keyRows(book.MSFG, rows);
        reduceLevels(book, desktop);
        return shownRows(book.MSFG);
    }
};

TEST_F(Reduction, EveryKindOfRow) {
    EXPECT_EQ(reduced({",,,,1.5,,,,100",
                       "00-000,,,,9,0.75,4", // an intermediate sight whatever else the row holds
                       "CP,,,,1.000,,2.000",
                       "00-010,,,,,abc",  // present, with a reading of 0
                       "1-5,,,,,,0,,old", // no reading at all
                       ",,,,,,1.5", ",,,,,0.1"}),
              ",,,,1.5,,,101.500,100|00-000,,,,9,0.75,4,,100.750|CP,,,,1.000,,2.000,100.500,99.500|"
              "00-010,,,,,abc,,,100.500|1-5,,,,,,0,,old|,,,,,,1.5,99.000,99.000|,,,,,0.1,,,98.900");
    EXPECT_EQ(book.CurrentHI, 99.0F);
    EXPECT_EQ(book.LastReading, 0.1F);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
    EXPECT_EQ(desktop.progress, (std::vector<float>{25, 37.5, 50, 62.5, 75, 87.5}));
    EXPECT_FALSE(book.BookChanged);
    EXPECT_EQ(reduced({",,,,1"}), ",,,,1") << "a starting row alone";
}

TEST_F(Reduction, ChainagesBecomeSixCharacters) {
    const std::pair<const char*, const char*> cases[] = {{"1-5", "01-005"},
                                                         {"1-50", "01-050"},
                                                         {"01-50", "01-050"},
                                                         {"1-500", "01-500"},
                                                         {"CP", "CP"},
                                                         {"01-250", "01-250"},
                                                         {"-", "-"},
                                                         {"--", "0--"},
                                                         {"01-5", "01-005"},
                                                         {"1-2.55", "01-2.55"},
                                                         {"12345678", "12345678"},
                                                         {"1234", "123004"},
                                                         {"\u00fc-50", "0\u00fc-050"}};
    for (const auto& [keyed, want] : cases)
        EXPECT_EQ(reduced({"", std::string(keyed) + ",,,,,1"}),
                  ",,,,,,,0.000|" + std::string(want) + ",,,,,1,,,-1.000");
    EXPECT_EQ(book.notices.takeLine().text, "Row 2: chainage 1234 became 123004."); // no other lost its "-"
}

TEST_F(Reduction, AbsurdReadingStopsWithWhatIsWritten) {
    EXPECT_EQ(reduced({",,,,1.5,,,,100", ",,,,,1", ",,,,,1e39", ",,,,,1"}),
              ",,,,1.5,,,101.500,100|,,,,,1,,,100.500|,,,,,1e39|,,,,,1");
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, "Overflow");
    EXPECT_EQ(desktop.statuses, std::vector<std::string>{"Cal stopped at row 3"});
    EXPECT_FALSE(book.MSFG.Visible());
    EXPECT_TRUE(desktop.progressShown);
}

// Steps of a single are 8 mm here: each height and level is rounded to them, but not the sum on the way to a
// height.
TEST_F(Reduction, RoundsToSinglePrecisionBetweenRows) {
    EXPECT_EQ(reduced({",,,,0,,,,131072.005", ",,,,,0.001", ",,,,0.0035,,0.005"}),
              ",,,,0,,,131072.000,131072.005|,,,,,0.001,,,131072.000|"
              ",,,,0.0035,,0.005,131072.000,131071.992");
}

// The levels that the books' own sources print, to as many decimals as they print, three at most.
TEST_F(Reduction, GivesThePublishedLevels) {
    const struct {
        const char* name;
        int levels;        // published, but for the one that the run starts from
        int heights;       // published heights of instrument
        double misclosure; // of a last level that is a known height and no result
    } cases[] = {{"gsi-pv16", 47, 0, 0},        {"sprinter-211264", 16, 0, 0}, {"ge120-loop", 18, 0, 0},
                 {"fleming-tbm-loop", 8, 8, 0}, {"nptel-ex14-1", 8, 4, 0},     {"geocalc-abcg", 1, 0, 0.001},
                 {"tramo1-derived", 32, 0, 0}};
    for (const auto& each : cases) {
        SCOPED_TRACE(each.name);
        const auto published = bookRows(each.name);
        loadBook(book, each.name);
        for (int row = 1; row < book.MSFG.Rows(); ++row) {
            book.MSFG.setText(row, HgtInst, "");
            if (row > 1) book.MSFG.setText(row, RLevel, "");
        }
        reduceLevels(book, desktop);
        const auto compared = [&](int col, int from, double off) {
            int count = 0;
            for (int row = from; row < book.MSFG.Rows(); ++row) {
                const std::string& want = published[std::size_t(row)][std::size_t(col)];
                if (want.empty()) continue;
                ++count;
                EXPECT_EQ(book.MSFG.Text(row, col), levelText(basic::val(want) + off)) << row;
            }
            return count;
        };
        EXPECT_EQ(compared(RLevel, 2, each.misclosure), each.levels);
        EXPECT_EQ(compared(HgtInst, 1, 0), each.heights);
    }
    EXPECT_TRUE(desktop.boxes.empty());
}

} // namespace
