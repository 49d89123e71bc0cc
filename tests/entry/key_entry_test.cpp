#include "entry_fixture.h"

#include <tuple>

namespace {

using namespace sheet;
using entry::EditKey;

TEST_F(Entry, CharactersByColumn) {
    const struct {
        int col;
        std::u32string keys;
        const char* text;
        bool changed;
    } cases[] = {
        {InterSight, U"1.2.3", "1.23", true},
        {Left, U".5", ".5", true},
        {RLevel, U"-5", "5", true},
        {Chainage, U"1-2-50", "1-250", true},
        {Chainage, U"1.2", "1.2", true},
        {InterSight, U"1.250-", "-1.25", true},
        {InterSight, U"1.25--", "1.25", true},
        {InterSight, U"0-", "-", true},
        {InterSight, U"-1.5", "-1.5", true},
        {InterSight, U"12345678.9-", "-12345678.9", true},
        {BackSight, U"1\b2", "2", true},
        {BackSight, U"\b", "", false},
        {Remark, U"a1.b.2-c + \u00fcx", "a1.b.2-c  \u00fcx", true},
        {Remark, U"tTlrpcs*", "tTlrpcs*", true},
        {Remark, U"a\u00fc\b", "a", true},
        {Remark, {U'a', 7, 127, 27}, "a", true},
        {BackSight, {U'1', 7, 127, 27, 9}, "1", true},
        {HgtInst, {2}, "", true},
        {BackSight, U"x,/ \u00fc", "", true},
        {Remark, U"+", "", false},
    };
    for (const auto& each : cases) {
        grid.setRows(1);
        grid.setRows(2);
        grid.moveTo(1, each.col);
        book.BookChanged = false;
        type(each.keys);
        EXPECT_EQ(grid.Text(), each.text);
        EXPECT_EQ(book.BookChanged, each.changed) << each.text;
    }
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Entry, TMarksABenchMark) {
    for (const char32_t key : {U't', U'T'}) {
        grid.moveTo(1, BackSight);
        type({&key, 1});
        EXPECT_EQ(row(1), ",,,,,,,,,TBM");
        EXPECT_EQ(cursor(), "1,4");
        grid.setText(1, Remark, "");
    }
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Entry, PlusOnAChainageOpensTheNextKilometre) {
    const struct {
        const char* chainage;
        const char* next;
    } cases[] = {{"09-340", "10-000"}, {"03-990", "04-000"},  {"", "01-000"},
                 {"9-340", "10-000"},  {"99-000", "100-000"}, {"CP", "01-000"}};
    for (const auto& each : cases) {
        put(1, {each.chainage, "", ""});
        grid.moveTo(1, Chainage);
        type(U"+");
        EXPECT_EQ(grid.Text(1, Chainage), each.next) << each.chainage;
        EXPECT_EQ(grid.Text(1, Center), "0");
        EXPECT_EQ(cursor(), "1,5");
    }
}

TEST_F(Entry, PlusAddsUpOffsets) {
    put(1, {"", "2.5", "", "x"});
    put(2, {"", "1.25", "", "3"});
    grid.moveTo(2, Left);
    type(U"+");
    EXPECT_EQ(cursor(), "2,5");
    grid.moveTo(2, Right);
    type(U"+");
    grid.moveTo(1, Left); // above it stands the header, which is no number
    type(U"+");
    EXPECT_EQ(row(1), ",2.5,,x,,,,,,");
    EXPECT_EQ(row(2), ",3.75,,3.0,,,,,,");
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Entry, PlusAddsToReadings) {
    for (int r = 1; r <= 4; ++r)
        put(r, {"", "", "", "", "", r == 3 ? "" : "1.5"});
    const auto readings = [&] {
        std::string all;
        for (int r = 1; r <= 4; ++r)
            all += grid.Text(r, InterSight) + " ";
        return all;
    };
    desktop.inputs = {"", "0", "x"};
    grid.moveTo(4, InterSight);
    grid.setSelection(2, InterSight);
    type(U"+++");
    EXPECT_EQ(readings(), "1.5 1.5  1.5 ");
    desktop.inputs = {"0.1004"};
    type(U"+");
    EXPECT_EQ(readings(), "1.5 1.6 0.1 1.6 ");
    EXPECT_EQ(grid.RowSel(), 2);
    grid.moveTo(1, InterSight);
    desktop.inputs = {"-2"};
    type(U"+");
    EXPECT_EQ(readings(), "-0.5 1.6 0.1 1.6 ");
    EXPECT_EQ(desktop.prompts.front(), "Enter Value to Add...|Addition|");
}

TEST_F(Entry, SideLetters) {
    for (const auto& [key, side, col] :
         {std::tuple{U'l', 'L', Left}, {U'L', 'L', Left}, {U'r', 'R', Right}, {U'R', 'R', Right}}) {
        grid.moveTo(1, InterSight);
        type({&key, 1});
        EXPECT_EQ(book.CurrentSide, side);
        EXPECT_EQ(grid.Col(), col);
    }
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Entry, SRepeatsTheCellAbove) {
    put(1, {"01-000", "", "", "", "1.5"});
    put(2, {});
    grid.moveTo(2, BackSight);
    type(U"9S");
    EXPECT_EQ(grid.Text(2, BackSight), "1.5");
    grid.moveTo(1, BackSight);
    type(U"s");
    EXPECT_EQ(grid.Text(1, BackSight), "1.5");
    EXPECT_EQ(cursor(), "1,4");
}

TEST_F(Entry, PMakesAChangePoint) {
    put(2, {"00-010", "1", "0", "2", "3", "4", "5", "6", "7", "8"});
    grid.moveTo(2, InterSight);
    type(U"p");
    EXPECT_EQ(row(2), "CP,,,,3,,5,6,7,8");
    EXPECT_EQ(cursor(), "2,6");
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Entry, COpensAChainageLine) {
    type(U"c");
    EXPECT_EQ(row(1), ",,0,,,,,,,");
    EXPECT_EQ(cursor(), "1,4");
    EXPECT_EQ(book.CurrentSide, 'C');

    put(2, {"", "1", "", "2"});
    grid.moveTo(2, Left);
    type(U"*");
    EXPECT_EQ(row(2), "00-010,,0,,,,,,,");
    EXPECT_EQ(cursor(), "2,5");

    put(3, {"CP"});
    put(4, {"CP"});
    put(5, {"x"});
    book.settings.cboIncr = "12.5";
    grid.moveTo(5, Left);
    type(U"C");
    EXPECT_EQ(grid.Text(5, Chainage), "00-022.5");

    put(1, {"CP"});
    put(2, {"CP", "7"});
    grid.moveTo(2, InterSight);
    type(U"c");
    EXPECT_EQ(row(2), "CP,7,0,,,,,,,");
    EXPECT_EQ(cursor(), "1,4");
}

// The check runs once when a letter takes the cursor out of a cell whose text stays.
TEST_F(Entry, LettersCheckTheCellTheyLeave) {
    const struct {
        char32_t key;
        int row;
        int col;
        const char* text;
        const char* left;
        std::size_t boxes;
    } cases[] = {
        {U'l', 2, Chainage, "1.250", "1-250", 1}, {U'r', 2, BackSight, ".5", "0.5", 0},
        {U'l', 2, Left, ".5", ".5", 0},           {U'p', 2, Chainage, "1.250", "CP", 0},
        {U'p', 2, BackSight, ".5", "0.5", 0},     {U'p', 2, Left, ".5", "", 0},
        {U'p', 2, ForeSight, ".5", ".5", 0},      {U'c', 2, Chainage, "1.250", "00-010", 0},
        {U'c', 1, Chainage, "1.250", "1-250", 1}, {U'*', 2, RLevel, ".5", "0.5", 0},
        {U'c', 2, InterSight, ".5", ".5", 0},     {U'c', 1, BackSight, ".5", ".5", 0},
        {U'c', 2, Center, ".5", "0", 0},          {U's', 1, Chainage, "1.250", "1.250", 0},
    };
    for (const auto& each : cases) {
        grid.setRows(1);
        grid.setRows(3);
        desktop.boxes.clear();
        grid.moveTo(each.row, each.col);
        grid.setText(each.text);
        type({&each.key, 1});
        EXPECT_EQ(grid.Text(each.row, each.col), each.left) << each.text << " col " << each.col;
        EXPECT_EQ(desktop.boxes.size(), each.boxes) << each.text << " col " << each.col;
    }
    // No chainage above: the cursor goes to the same column of row 1.
    grid.setText(1, Chainage, "CP");
    grid.moveTo(2, BackSight);
    grid.setText(".5");
    type(U"c");
    EXPECT_EQ(grid.Text(2, BackSight) + " " + cursor(), "0.5 1,4");
}

TEST_F(Entry, EditingKeys) {
    put(1, {"", "", "", "", "1.5"});
    grid.moveTo(1, BackSight);
    desktop.inputs = {""};
    press(EditKey::F2);
    EXPECT_EQ(grid.Text(), "1.5");
    EXPECT_TRUE(book.BookChanged); // also when cancelled
    desktop.inputs = {"2.5 x"};
    press(EditKey::F2);
    EXPECT_EQ(grid.Text(), "2.5 x");
    EXPECT_EQ(desktop.prompts[1], "Enter New Value |Check|1.5");

    book.BookChanged = false;
    desktop.inputs = {"", "abc"};
    press(EditKey::F3);
    press(EditKey::F3);
    EXPECT_FALSE(book.BookChanged);
    desktop.inputs = {"-0.25"};
    press(EditKey::F3);
    EXPECT_EQ(grid.Text(), "2.25");
    EXPECT_TRUE(book.BookChanged);
    EXPECT_EQ(desktop.prompts.back(), "Enter Number to Add OR Subtract...|Check|");

    book.BookChanged = false;
    press(EditKey::Delete);
    EXPECT_EQ(grid.Text(), "");
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Entry, F9SearchesUpwards) {
    put(8, {});
    for (const int r : {1, 4})
        grid.setCellBackColor(r, Chainage, dataError);
    grid.setCellBackColor(6, Chainage, suspiciousReading);
    grid.moveTo(8, BackSight);
    for (const char* where : {"4,0", "1,0", "1,0"}) {
        press(EditKey::F9);
        EXPECT_EQ(cursor(), where);
    }
    grid.setCellBackColor(1, Chainage, noColour);
    grid.moveTo(3, 3);
    press(EditKey::F9);
    EXPECT_EQ(cursor(), "1,0");
}

TEST_F(Entry, F12CyclesTheFont) {
    for (const double size : {9.75, 12.0, 8.25, 9.75}) {
        press(EditKey::F12);
        EXPECT_EQ(grid.FontSize(), size);
    }
    grid.setFontSize(10);
    press(EditKey::F12);
    EXPECT_EQ(grid.FontSize(), 10);
}

TEST_F(Entry, ErrorsAreShownButForPermissionDenied) {
    struct Refusing : ScriptedDesktop {
        int number = 0;
        std::string inputBox(std::string_view, std::string_view, std::string_view) override {
            throw basic::RuntimeError(number);
        }
    } refusing;
    for (const auto& [number, boxes] : {std::pair{basic::PermissionDenied, 0U}, {basic::DeviceIoError, 1U}}) {
        refusing.number = number;
        refusing.boxes.clear();
        entry::keyDown(book, refusing, EditKey::F2);
        EXPECT_EQ(refusing.boxes.size(), boxes);
        EXPECT_FALSE(book.BookChanged);
    }
    EXPECT_EQ(refusing.boxes[0].text, "Device I/O error");
}

} // namespace
