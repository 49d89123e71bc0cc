#include "sheet/book.h"
#include "sheet/cells.h"

#include <gtest/gtest.h>

namespace {

using namespace sheet;

TEST(Book, PathStandsBehindTheCaptionsPrefix) {
    Book book;
    EXPECT_EQ(book.projectPath(), "NoName.grl");
    EXPECT_FALSE(book.hasFile());
    book.setProjectPath("/road/Site1.grl");
    EXPECT_EQ(book.Caption, "ZavroGrl-/road/Site1.grl");
    EXPECT_EQ(book.projectPath(), "/road/Site1.grl");
    EXPECT_TRUE(book.hasFile());
    book.setProjectPath("");
    EXPECT_FALSE(book.hasFile());
    EXPECT_EQ(book.projectPath(), "");
}

TEST(Cells, ReadLeniently) {
    Book book;
    book.MSFG.setText(1, InterSight, " 1.235m");
    EXPECT_EQ(cellValue(book.MSFG, 1, InterSight), 1.235);
    EXPECT_EQ(cellValue(book.MSFG, 0, Left), 0);
}

} // namespace
