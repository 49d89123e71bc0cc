#include "sheet/reduction.h"

#include "basic/numbers.h"
#include "sheet/cells.h"

#include "field_book.h"
#include "scripted_desktop.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace sheet;

struct Reduction : testing::Test {
    Book book;
    ScriptedDesktop desktop;

    void addRow(int row, const char* chainage, const char* back, const char* inter, const char* fore) {
        if (row >= book.MSFG.Rows()) book.MSFG.setRows(row + 1);
        book.MSFG.setText(row, Chainage, chainage);
        book.MSFG.setText(row, BackSight, back);
        book.MSFG.setText(row, InterSight, inter);
        book.MSFG.setText(row, ForeSight, fore);
    }
    std::string levels(int row) { return book.MSFG.Text(row, HgtInst) + "|" + book.MSFG.Text(row, RLevel); }
};

TEST_F(Reduction, EveryKindOfRow) {
    book.MSFG.setText(1, RLevel, "100");
    addRow(1, "", "1.5", "", "");
    addRow(2, "00-000", "9", "0.75", "4"); // an intermediate sight whatever else the row holds
    addRow(3, "CP", "1.000", "", "2.000");
    addRow(4, "00-010", "", "abc", ""); // present, with a reading of 0
    addRow(5, "1-5", "", "", "0");      // no reading at all
    book.MSFG.setText(5, RLevel, "old");
    addRow(6, "", "", "", "1.5");
    addRow(7, "", "", "0.1", "");
    reduceLevels(book, desktop);
    const char* want[] = {"101.500|100", "|100.750",      "100.500|99.500", "|100.500",
                          "|old",        "99.000|99.000", "|98.900"};
    for (int row = 1; row <= 7; ++row)
        EXPECT_EQ(levels(row), want[row - 1]) << row;
    EXPECT_EQ(book.MSFG.Text(5, Chainage), "1-5");
    EXPECT_EQ(book.CurrentHI, 99.0F);
    EXPECT_EQ(book.LastReading, 0.1F);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
    EXPECT_EQ(desktop.progress, (std::vector<float>{25, 37.5, 50, 62.5, 75, 87.5}));
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Reduction, ChainagesBecomeSixCharacters) {
    const struct {
        const char* keyed;
        const char* want;
    } cases[] = {{"1-5", "01-005"},
                 {"1-50", "01-050"},
                 {"01-50", "01-050"},
                 {"1-500", "01-500"},
                 {"CP", "CP"},
                 {"01-250", "01-250"},
                 {"", ""},
                 {"-", "-"},
                 {"--", "0--"},
                 {"01-5", "01-005"},
                 {"1-2.55", "01-2.55"},
                 {"12345678", "12345678"},
                 {"1234", "123004"},
                 {"\u00fc-50", "0\u00fc-050"}};
    for (const auto& each : cases) {
        addRow(2, each.keyed, "", "1", "");
        reduceLevels(book, desktop);
        EXPECT_EQ(book.MSFG.Text(2, Chainage), each.want) << each.keyed;
    }
}

TEST_F(Reduction, NothingToDoInAStartingRow) {
    book.MSFG.setText(1, BackSight, "1");
    reduceLevels(book, desktop);
    EXPECT_EQ(levels(1), "|");
    EXPECT_TRUE(desktop.progress.empty());
}

TEST_F(Reduction, AbsurdReadingStopsWithWhatIsWritten) {
    book.MSFG.setText(1, RLevel, "100");
    addRow(1, "", "1.5", "", "");
    addRow(2, "", "", "1", "");
    addRow(3, "", "", "1e39", "");
    addRow(4, "", "", "1", "");
    book.MSFG.moveTo(2, 5);
    reduceLevels(book, desktop);
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, "Overflow");
    EXPECT_EQ(desktop.boxes[0].title, "");
    EXPECT_EQ(desktop.statuses, std::vector<std::string>{"Cal stopped at row 3"});
    EXPECT_EQ(levels(2), "|100.500");
    EXPECT_EQ(levels(4), "|");
    EXPECT_FALSE(book.MSFG.Visible());
    EXPECT_TRUE(desktop.progressShown);
    EXPECT_EQ(book.MSFG.Row(), 2);
}

// Steps of a single are 8 mm here: each height and level is rounded to them, but not the sum on the way to a
// height.
TEST_F(Reduction, RoundsToSinglePrecisionBetweenRows) {
    book.MSFG.setText(1, RLevel, "131072.005");
    addRow(1, "", "0", "", "");
    addRow(2, "", "", "0.001", "");
    addRow(3, "", "0.0035", "", "0.005");
    reduceLevels(book, desktop);
    EXPECT_EQ(levels(1), "131072.000|131072.005");
    EXPECT_EQ(levels(2), "|131072.000");
    EXPECT_EQ(levels(3), "131072.000|131071.992");
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
        const auto published = bookRows(each.name);
        loadBook(book, each.name);
        for (int row = 1; row < book.MSFG.Rows(); ++row) {
            book.MSFG.setText(row, HgtInst, "");
            if (row > 1) book.MSFG.setText(row, RLevel, "");
        }
        reduceLevels(book, desktop);
        int levels = 0;
        int heights = 0;
        const auto compare = [&](int row, int col, double off, int& count) {
            const std::string& want = published[static_cast<std::size_t>(row)][static_cast<std::size_t>(col)];
            if (want.empty()) return;
            ++count;
            EXPECT_EQ(book.MSFG.Text(row, col), levelText(basic::val(want) + off))
                << each.name << " row " << row;
        };
        for (int row = 1; row < book.MSFG.Rows(); ++row) {
            if (row > 1) compare(row, RLevel, each.misclosure, levels);
            compare(row, HgtInst, 0, heights);
        }
        EXPECT_EQ(levels, each.levels) << each.name;
        EXPECT_EQ(heights, each.heights) << each.name;
    }
    EXPECT_TRUE(desktop.boxes.empty());
}

} // namespace
