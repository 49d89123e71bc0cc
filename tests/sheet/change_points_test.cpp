#include "sheet/change_points.h"

#include "error_number.h"
#include "field_book.h"
#include "scripted_desktop.h"

#include <gmock/gmock.h>

namespace {

struct ChangePoints : testing::Test {
    ScriptedDesktop desktop;
    sheet::Book book;

    /// The rows of the list, the number of the book row behind the remark; the book stands as before.
    std::string listed() {
        const sheet::Grid list = sheet::listChangePoints(book, desktop);
        EXPECT_TRUE(book.MSFG.Visible());
        EXPECT_FALSE(desktop.progressShown);
        EXPECT_FALSE(book.BookChanged);
        return shownRows(list);
    }
};

TEST_F(ChangePoints, StandWithTheChainageAboveAndTheirRow) {
    keyRows(book.MSFG,
            {"00-000,,,,,,,,,BM", "00-010,2.5,,,1,1.2", "00-020,2.5,,,,1.3,,,98,culvert", "CP,,,,,,0.9",
             "CP,,,,,,1.1,,,peg on kerb", "cp,,,,,,1.4", " CP,,,,,,1.5", "00-030,,,,,1.0,,,, "});
    book.MSFG.moveTo(3, 4);
    EXPECT_EQ(listed(), "00-000,,,,,,,,,BM|00-010,2.5,,,,1.3,,,98,culvert,3|00-020,,,,,,0.9,,,,4|"
                        "CP,,,,,,1.1,,,peg on kerb,5| CP,,,,,1.0,,,, ,8");
    EXPECT_THAT(desktop.progress, testing::ElementsAre(25, 37.5, 50, 62.5, 75, 87.5, 100));
    EXPECT_EQ(book.MSFG.Row(), 3);
    EXPECT_EQ(book.MSFG.Col(), 4);
}

TEST_F(ChangePoints, OfAFreshBookAreItsStartingRow) {
    EXPECT_EQ(listed(), "");
    const sheet::Grid list = sheet::listChangePoints(book, desktop);
    EXPECT_EQ(list.Rows(), 2);
    for (int col = 0; col < sheet::columnCount; ++col)
        EXPECT_EQ(list.Text(0, col), book.MSFG.Text(0, col));
    EXPECT_EQ(list.ColWidth(sheet::bookRowColumn), 1);
    book.MSFG.setRows(1);
    EXPECT_EQ(errorOf([&] { listed(); }), basic::SubscriptOutOfRange);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
}

} // namespace
