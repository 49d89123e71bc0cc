#include "sheet/book.h"

#include "field_book.h"

#include <gtest/gtest.h>

namespace {

using namespace sheet;

TEST(Notices, FollowTheRowsOfOneBook) {
    Book book;
    Grid& grid = book.MSFG;
    Notices& notices = book.notices;
    grid.addListener(notices);
    const auto list = [&] {
        std::string all;
        for (const Notice& each : notices.list(grid))
            all += std::to_string(each.row) + ' ' + each.text + '|';
        return all;
    };
    keyRows(grid, {"", "00-000", ",,,,,1.5", "x"});
    notices.addChange(grid, 2, Chainage, "00-020", Notice::UndoOrGuard);
    notices.addChange(grid, 3, BackSight, "1.2", Notice::Undo);
    notices.add({.text = "The gutter has no depth"});
    EXPECT_EQ(list(), "") << "told first";
    const Notices::Line line = notices.takeLine();
    EXPECT_EQ(line.text, "Row 2: chainage 00-020 became 00-000, and 2 more.");
    EXPECT_EQ(line.remedy, Notice::UndoOrGuard);
    EXPECT_EQ(notices.takeLine().text, "");
    grid.insertRows(3, 2, Marks::Stay);
    EXPECT_EQ(list(), "2 chainage 00-020 became 00-000|5 B.S. 1.2 was emptied|0 The gutter has no depth|");
    grid.setText(2, Chainage, "00-020"); // as it was: there is nothing to see any more
    grid.removeRows(4, 1, Marks::Stay);
    EXPECT_EQ(list(), "4 B.S. 1.2 was emptied|0 The gutter has no depth|");
    grid.removeRows(4, 1, Marks::Stay);
    EXPECT_EQ(list(), "0 The gutter has no depth|");
    for (std::size_t k = 0; k < 2 * Notices::mostKept; ++k)
        notices.add({.row = 1, .text = std::to_string(k)});
    EXPECT_EQ(notices.takeLine().text, "Row 1: 0, and 999 more.");
    EXPECT_EQ(notices.list(grid).size(), Notices::mostKept);
    grid.beginBook();
    EXPECT_EQ(list(), "");
    grid.removeListener(notices);
}

} // namespace
