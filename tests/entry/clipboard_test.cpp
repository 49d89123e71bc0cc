#include "entry_fixture.h"

namespace {

using namespace sheet;

constexpr char32_t ctrlA = 1, ctrlC = 3, ctrlV = 22;

struct Clipboard : Entry {
    void paste(std::string text) {
        desktop.clipboard = std::move(text);
        type({&ctrlV, 1});
    }
};

TEST_F(Clipboard, CopiesTheRangeFromItsSmallerCorner) {
    put(1, {"a", "b", "c"});
    put(2, {"d", "", "f"});
    put(3, {"g", "h", "i"});
    grid.moveTo(2, 2);
    grid.setSelection(1, 1);
    type({&ctrlC, 1});
    EXPECT_EQ(desktop.clipboard, "b\tc\t\r\tf\t\r");
    EXPECT_EQ(cursor(), "2,2");
    EXPECT_EQ(grid.RowSel(), 1);
    EXPECT_EQ(grid.ColSel(), 1);
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Clipboard, SelectsTheWholeDataArea) {
    put(4, {});
    grid.moveTo(3, 5);
    type({&ctrlA, 1});
    EXPECT_EQ(cursor(), "1,0");
    EXPECT_EQ(grid.RowSel(), 4);
    EXPECT_EQ(grid.ColSel(), 9);
    EXPECT_TRUE(book.BookChanged);
}

TEST_F(Clipboard, PastesCellByCell) {
    const struct {
        const char* what;
        int col;
        const char* text;
        std::vector<std::string> rows;
        const char* cursor;
    } cases[] = {
        {"the first cell is added to, the others are cleared first",
         1,
         "5\tx",
         {"k,old5,x,old,,,,,,"},
         "1,2"},
        {"rows are added as needed",
         1,
         "1\t2\r3\t4\r",
         {"k,old1,2,old,,,,,,", ",3,4,,,,,,,", ",,,,,,,,,"},
         "3,1"},
        {"the line feed of a pair stays", 1, "1\r\n2", {"k,old1,,old,,,,,,", ",\n2,,,,,,,,"}, "2,1"},
        {"a lone line feed ends the row", 1, "1\n2", {"k,old1,,old,,,,,,", ",2,,,,,,,,"}, "2,1"},
        {"a tab in the last column is ignored", 9, "a\tb", {"k,old,,old,,,,,,ab"}, "1,9"},
        {"no other control character arrives",
         1,
         "1\x01\x7f\x1b"
         "2",
         {"k,old12,,old,,,,,,"},
         "1,1"},
        {"characters of several bytes", 9, "m\u00fc", {"k,old,,old,,,,,,m\u00fc"}, "1,9"},
    };
    for (const auto& each : cases) {
        grid.setRows(1);
        grid.setRows(2);
        put(1, {"k", "old", "", "old"});
        book.BookChanged = false;
        grid.moveTo(1, each.col);
        paste(each.text);
        ASSERT_EQ(grid.Rows(), static_cast<int>(each.rows.size()) + 1) << each.what;
        for (std::size_t i = 0; i < each.rows.size(); ++i)
            EXPECT_EQ(row(static_cast<int>(i) + 1), each.rows[i]) << each.what;
        EXPECT_EQ(cursor(), each.cursor) << each.what;
        EXPECT_TRUE(book.BookChanged) << each.what;
    }
}

TEST_F(Clipboard, WithoutTextNothingIsPasted) {
    put(1, {"k"});
    type({&ctrlV, 1});
    EXPECT_EQ(row(1), "k,,,,,,,,,");
    EXPECT_TRUE(book.BookChanged);
}

TEST_F(Clipboard, WholeBookTravelsThere) {
    put(1, {"", "", "", "", "1.5", "", "", "", "100", "BM 1"});
    put(2, {"00-000", "2.5", "", "", "", "1.2"});
    type({&ctrlA, 1});
    type({&ctrlC, 1});
    const std::string first = row(1);
    const std::string second = row(2);
    grid.setRows(1);
    grid.setRows(2);
    grid.moveTo(1, 0);
    type({&ctrlV, 1});
    EXPECT_EQ(row(1), first);
    EXPECT_EQ(row(2), second);
    EXPECT_EQ(grid.Rows(), 4); // the carriage return behind the last row opens one more
}

TEST_F(Clipboard, FiftyThousandLines) {
    std::string text;
    for (int line = 0; line < 50000; ++line)
        text += "00-000\t2.5\t\t\t\t" + std::to_string(line) + "\r";
    paste(text);
    ASSERT_EQ(grid.Rows(), 50002);
    EXPECT_EQ(row(50000), "00-000,2.5,,,,49999,,,,");
    EXPECT_EQ(cursor(), "50001,0");
}

} // namespace
