#include "entry_fixture.h"

#include <tuple>

namespace {

using namespace sheet;

constexpr char32_t ctrlA = 1, ctrlC = 3, ctrlV = 22;

struct Clipboard : Entry {
    void paste(std::string text) {
        desktop.clipboard = std::move(text);
        type({&ctrlV, 1});
    }
    [[nodiscard]] std::string selection() const {
        return state() + " to " + std::to_string(grid.RowSel()) + "," + std::to_string(grid.ColSel());
    }
};

TEST_F(Clipboard, CopiesTheRangeFromItsSmallerCorner) {
    start("a,b,c|d,,f|g,h,i", 2, 2);
    grid.setSelection(1, 1);
    type({&ctrlC, 1});
    EXPECT_EQ(desktop.clipboard, "b\tc\t\r\tf\t\r");
    EXPECT_EQ(selection(), "2,2 C to 1,1");
}

TEST_F(Clipboard, PastesCellByCell) {
    const std::tuple<const char*, int, const char*, const char*, const char*> cases[] = {
        {"the first cell is added to, the others are cleared first", 1, "5\tx", "k,old5,x,old", "1,2"},
        {"rows are added as needed", 1, "1\t2\r3\t4\r", "k,old1,2,old|,3,4|", "3,1"},
        {"the line feed of a pair stays", 1, "1\r\n2", "k,old1,,old|,\n2", "2,1"},
        {"a lone line feed ends the row", 1, "1\n2", "k,old1,,old|,2", "2,1"},
        {"a tab in the last column is ignored", 9, "a\tb", "k,old,,old,,,,,,ab", "1,9"},
        {"no other control character arrives", 1, "1\x01\x7f\x1b\x02", "k,old1,,old", "1,1"},
        {"characters of several bytes", 9, "m\u00fc", "k,old,,old,,,,,,m\u00fc", "1,9"},
    };
    for (const auto& [what, col, text, after, end] : cases) {
        SCOPED_TRACE(what);
        start("k,old,,old", 1, col);
        paste(text);
        EXPECT_EQ(rows(), after);
        EXPECT_EQ(state(), std::string(end) + " C changed");
    }
    desktop.clipboard.reset();
    play({"without text nothing is pasted", "k", 1, 0, {&ctrlV, 1}, "k", "1,0 C changed"});
}

TEST_F(Clipboard, WholeBookTravelsThere) {
    const std::string whole = ",,,,1.5,,,,100,BM 1|00-000,2.5,,,,1.2";
    start(whole, 2, 5);
    type({&ctrlA, 1});
    EXPECT_EQ(selection(), "1,0 C changed to 2,9");
    type({&ctrlC, 1});
    start("", 1, 0);
    type({&ctrlV, 1});
    EXPECT_EQ(rows(), whole + "|"); // the carriage return behind the last row opens one more
}

} // namespace
