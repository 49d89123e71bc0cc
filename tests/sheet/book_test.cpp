#include "sheet/book.h"
#include "sheet/cells.h"

#include <gtest/gtest.h>

namespace {

using namespace sheet;

TEST(Book, OpensWithItsHeaderAndOneRow) {
    const Book book;
    const struct {
        const char* text;
        int twips;
    } heads[] = {{"Chainage", 900}, {"Left", 700}, {"Center", 650},   {"Right", 700},    {"B.S.", 700},
                 {"I.S.", 700},     {"F.S.", 700}, {"Hgt.Inst", 830}, {"R.Level.", 920}, {"Remark", 1600}};
    int col = 0;
    for (const auto& head : heads) {
        EXPECT_EQ(book.MSFG.Text(0, col), head.text);
        EXPECT_EQ(book.MSFG.ColWidth(col++), head.twips);
    }
    EXPECT_EQ(book.MSFG.Cols(), col);
    EXPECT_EQ(book.MSFG.Rows(), 2);
    EXPECT_EQ(book.MSFG.Row(), 1);
    EXPECT_EQ(book.MSFG.Col(), 0);
}

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

TEST(Cells, ReadLenientlyAndWritePlainly) {
    Book book;
    book.MSFG.setText(1, InterSight, " 1.235m");
    EXPECT_EQ(cellValue(book.MSFG, 1, InterSight), 1.235);
    EXPECT_EQ(cellValue(book.MSFG, 0, Left), 0);
    EXPECT_EQ(levelText(0.5), "0.500");
    EXPECT_EQ(plainText(2.50F), "2.5");
    EXPECT_EQ(plainText(1e8F), "100000000");
}

} // namespace
