#include "entry_fixture.h"

#include <tuple>

namespace {

using namespace sheet;
using entry::EditKey;

TEST_F(Entry, CharactersByColumn) {
    using Keyed = std::vector<std::pair<const char32_t*, const char*>>;
    const std::pair<int, Keyed> cases[] = {
        {Chainage, {{U"1-2-50", "1-250"}, {U"1.2", "1.2"}}},
        {Left, {{U".5", ".5"}}},
        {BackSight, {{U"1\b2", "2"}, {U"1\a\x7f\x1b\t", "1"}, {U"x,/ \u00fc", ""}}},
        {InterSight, {{U"1.2.3", "1.23"}, {U"1.250-", "-1.25"}, {U"1.25--", "1.25"}, {U"0-", "-"}}},
        {InterSight, {{U"-1.5", "-1.5"}, {U"12345678.9-", "-12345678.9"}}},
        {HgtInst, {{U"\x02", ""}}},
        {RLevel, {{U"-5", "5"}}},
        {Remark, {{U"a1.2-c + \u00fc", "a1.2-c  \u00fc"}, {U"tTlrpcs*", "tTlrpcs*"}, {U"a\u00fc\b", "a"}}},
        {Remark, {{U"a\a\x7f\x1b", "a"}}},
    };
    for (const auto& [col, keyed] : cases)
        for (const auto& [keys, text] : keyed) {
            start("", 1, col);
            type(keys);
            EXPECT_EQ(grid.Text(), text);
            EXPECT_TRUE(book.BookChanged) << text;
        }
}

TEST_F(Entry, LettersAndSigns) {
    const Scene scenes[] = {
        {"backspace in an empty cell", "", 1, BackSight, U"\b", "", "1,4 C"},
        {"+ in a remark", "", 1, Remark, U"+", "", "1,9 C"},
        {"t marks a bench mark", "1.5", 1, Chainage, U"t", "1.5,,,,,,,,,TBM", "1,0 C"},
        {"T too", "", 1, BackSight, U"T", ",,,,,,,,,TBM", "1,4 C"},
        {"l goes to the left", "", 1, InterSight, U"l", "", "1,1 L"},
        {"L too", "", 1, InterSight, U"L", "", "1,1 L"},
        {"r goes to the right", "", 1, InterSight, U"r", "", "1,3 R"},
        {"R too", "", 1, InterSight, U"R", "", "1,3 R"},
        {"s repeats the cell above", ",,,,1.5|,,,,9", 2, BackSight, U"S", ",,,,1.5|,,,,1.5", "2,4 C"},
        {"but not the header", ",,,,1.5", 1, BackSight, U"s", ",,,,1.5", "1,4 C changed"},
        {"p makes a change point", "|00-010,1,0,2,3,4,5,6,7,8", 2, InterSight, U"p", "|CP,,,,3,,5,6,7,8",
         "2,6 C"},
        {"c in the first row", "", 1, Chainage, U"c", ",,0", "1,4 C"},
        {"c opens a chainage line", "|,1,,2", 2, Left, U"*", "|00-010,,0", "2,5 C"},
        {"c below change points", "00-010|CP|CP|x", 4, Left, U"C", "00-010|CP|CP|00-020,,0", "4,5 C"},
        {"c with nothing but change points above", "CP|CP,7", 2, InterSight, U"c", "CP|CP,7,0", "1,4 C"},
        {"+ on a chainage opens the next kilometre", "09-340", 1, Chainage, U"+", "10-000,,0", "1,5 C"},
        {"+ below ten kilometres", "03-990", 1, Chainage, U"+", "04-000,,0", "1,5 C"},
        {"+ on one digit", "9-340", 1, Chainage, U"+", "10-000,,0", "1,5 C"},
        {"+ beyond two digits", "99-000", 1, Chainage, U"+", "100-000,,0", "1,5 C"},
        {"+ on no chainage", "CP", 1, Chainage, U"+", "01-000,,0", "1,5 C"},
        {"+ adds up left offsets", ",2.5|,1.25", 2, Left, U"+", ",2.5|,3.75", "2,5 C"},
        {"+ above no number", ",,,x|,,,3", 2, Right, U"+", ",,,x|,,,3.0", "2,5 C"},
        {"+ below the header", ",2.5", 1, Left, U"+", ",2.5", "1,5 C"},
    };
    for (const Scene& scene : scenes)
        play(scene);
    book.settings.cboIncr = "12.5";
    play({"c by the increment", "00-010|", 2, Left, U"c", "00-010|00-022.5,,0", "2,5 C"});
}

TEST_F(Entry, PlusAddsToReadings) {
    start(",,,,,1.5|,,,,,1.5||,,,,,1.5", 4, InterSight);
    grid.setSelection(2, InterSight);
    desktop.inputs = {"", "0", "x"};
    type(U"+++");
    EXPECT_EQ(rows(), ",,,,,1.5|,,,,,1.5||,,,,,1.5");
    desktop.inputs = {"0.1004"};
    type(U"+");
    EXPECT_EQ(rows(), ",,,,,1.5|,,,,,1.6|,,,,,0.1|,,,,,1.6");
    EXPECT_EQ(grid.RowSel(), 2);
    grid.moveTo(1, InterSight);
    desktop.inputs = {"-2"};
    type(U"+");
    EXPECT_EQ(rows(), ",,,,,-0.5|,,,,,1.6|,,,,,0.1|,,,,,1.6");
    EXPECT_EQ(desktop.prompts.front(), "Enter Value to Add...|Addition|");
}

// The check runs once when a letter takes the cursor out of a cell whose text stays.
TEST_F(Entry, LettersCheckTheCellTheyLeave) {
    const std::tuple<char32_t, int, int, const char*, const char*, std::size_t> cases[] = {
        {U'l', 2, Chainage, "1.250", "1-250", 1}, {U'r', 2, BackSight, ".5", "0.5", 0},
        {U'l', 2, Left, ".5", ".5", 0},           {U'p', 2, Chainage, "1.250", "CP", 0},
        {U'p', 2, BackSight, ".5", "0.5", 0},     {U'p', 2, Left, ".5", "", 0},
        {U'p', 2, ForeSight, ".5", ".5", 0},      {U'c', 2, Chainage, "1.250", "00-010", 0},
        {U'c', 1, Chainage, "1.250", "1-250", 1}, {U'*', 2, RLevel, ".5", "0.5", 0},
        {U'c', 2, InterSight, ".5", ".5", 0},     {U'c', 1, BackSight, ".5", ".5", 0},
        {U'c', 2, Center, ".5", "0", 0},          {U's', 1, Chainage, "1.250", "1.250", 0},
    };
    for (const auto& [key, row, col, text, left, boxes] : cases) {
        start("|", row, col);
        grid.setText(text);
        type({&key, 1});
        EXPECT_EQ(grid.Text(row, col), left) << text << " col " << col;
        EXPECT_EQ(desktop.boxes.size(), boxes) << text << " col " << col;
    }
    play({"no chainage above: the cursor goes to the same column of row 1", "CP|,,,,.5", 2, BackSight, U"c",
          "CP|,,0,,0.5", "1,4 C"});
}

TEST_F(Entry, EditingKeys) {
    const std::tuple<EditKey, const char*, const char*, bool> cases[] = {
        {EditKey::F2, "", ",,,,1.5", true},       {EditKey::F2, "2.5 x", ",,,,2.5 x", true},
        {EditKey::F3, "", ",,,,1.5", false},      {EditKey::F3, "abc", ",,,,1.5", false},
        {EditKey::F3, "-0.25", ",,,,1.25", true}, {EditKey::Delete, "", "", false},
    };
    for (const auto& [key, answer, after, changed] : cases) {
        start(",,,,1.5", 1, BackSight);
        desktop.inputs = {answer};
        press(key);
        EXPECT_EQ(rows(), after) << answer;
        EXPECT_EQ(book.BookChanged, changed) << answer;
    }
    EXPECT_EQ(desktop.prompts.front(), "Enter New Value |Check|1.5");
    EXPECT_EQ(desktop.prompts.back(), "Enter Number to Add OR Subtract...|Check|");
    for (const double size : {9.75, 12.0, 8.25, 9.75}) {
        press(EditKey::F12);
        EXPECT_EQ(grid.FontSize(), size);
    }
    grid.setFontSize(10);
    press(EditKey::F12);
    EXPECT_EQ(grid.FontSize(), 10);
}

TEST_F(Entry, F9SearchesUpwards) {
    start("|||||,|?|", 8, BackSight);
    for (const int r : {1, 4})
        grid.setCellBackColor(r, Chainage, dataError);
    for (const char* end : {"4,0 C", "1,0 C", "1,0 C"}) {
        press(EditKey::F9);
        EXPECT_EQ(state(), end);
    }
    grid.setCellBackColor(1, Chainage, noColour);
    grid.moveTo(3, 3);
    press(EditKey::F9);
    EXPECT_EQ(state(), "1,0 C");
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
        entry::keyDown(book, refusing, EditKey::F2);
        EXPECT_EQ(refusing.boxes.size(), boxes);
        EXPECT_FALSE(book.BookChanged);
    }
    EXPECT_EQ(refusing.boxes[0].text, "Device I/O error");
}

} // namespace
