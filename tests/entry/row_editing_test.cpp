#include "entry/row_editing.h"

#include "entry_fixture.h"

namespace {

using namespace sheet;

struct RowEditing : Entry {
    // Rows 1 to `count` with their number in column 0 and 9; the chainage cell of row 2 marked.
    void fill(int count) {
        grid.setRows(1);
        for (int r = 1; r <= count; ++r) {
            const std::string number = std::to_string(r);
            put(r, {number.c_str(), "", "", "", "", "", "", "", "", number.c_str()});
        }
        if (count > 1) grid.setCellBackColor(2, Chainage, dataError);
        book.BookChanged = false;
        grid.moveTo(1, 0);
    }
    // Column 0 of every row, with "*" where it is marked; column 9 must agree.
    std::string rows() const {
        std::string all;
        for (int r = 1; r < grid.Rows(); ++r) {
            EXPECT_EQ(grid.Text(r, 0), grid.Text(r, 9)) << r;
            all += grid.Text(r, 0) + (grid.CellBackColor(r, 0).isNone() ? "" : "*") + ",";
        }
        return all;
    }
};

TEST_F(RowEditing, InsertsAndDeletes) {
    using Command = void (*)(Book&, desktop::Desktop&);
    const struct {
        const char* what;
        Command command;
        int count;
        int row;
        const char* answer;
        const char* rows;
        int cursor;
        bool changed;
    } cases[] = {
        {"one above", entry::insertRow, 3, 2, "", "1,*,2,3,", 2, true},
        {"one above the first of one", entry::insertRow, 1, 1, "", ",1,", 1, true},
        {"one above the last", entry::insertRow, 3, 3, "", "1,2*,,3,", 3, true},
        {"several", entry::insertRows, 3, 2, "2", "1,,,2*,3,", 2, true},
        {"several at the end", entry::insertRows, 3, 3, "2", "1,2*,,,3,", 3, true},
        {"more than there are", entry::insertRows, 2, 1, "5", ",,,,,1,2*,", 1, true},
        {"halves go to the even", entry::insertRows, 1, 1, "2.5", ",,1,", 1, true},
        {"none", entry::insertRows, 3, 2, "0.5", "1,2*,3,", 2, false},
        {"less than none", entry::insertRows, 3, 2, "-3", "1,2*,3,", 2, false},
        {"cancelled", entry::insertRows, 3, 2, "", "1,2*,3,", 2, false},
        {"delete the first", entry::deleteRow, 3, 1, "", "2*,3,", 1, true},
        {"delete the last", entry::deleteRow, 3, 3, "", "1,2*,", 2, true},
        {"delete the only one", entry::deleteRow, 1, 1, "", ",", 1, false},
        {"delete several", entry::deleteRows, 4, 2, "2", "1,4,", 2, true},
        {"delete to the end", entry::deleteRows, 4, 3, "99", "1,2*,", 2, true},
        {"delete all", entry::deleteRows, 4, 1, "4", ",", 1, true},
        {"delete the only one by number", entry::deleteRows, 1, 1, "1", ",", 1, false},
        {"delete none", entry::deleteRows, 3, 1, "x", "1,2*,3,", 1, false},
    };
    for (const auto& each : cases) {
        fill(each.count);
        grid.moveTo(each.row, 6);
        desktop.inputs = {each.answer};
        desktop.answers = {desktop::Answer::Yes};
        each.command(book, desktop);
        EXPECT_EQ(rows(), each.rows) << each.what;
        EXPECT_EQ(cursor(), std::to_string(each.cursor) + ",6") << each.what;
        EXPECT_EQ(book.BookChanged, each.changed) << each.what;
        EXPECT_TRUE(grid.Visible()) << each.what;
    }
}

TEST_F(RowEditing, AsksAndConfirms) {
    fill(6);
    grid.moveTo(3, 0);
    for (const auto answer : {desktop::Answer::No, desktop::Answer::Cancel}) {
        desktop.inputs = {"50"};
        desktop.answers = {answer};
        entry::deleteRows(book, desktop);
    }
    EXPECT_EQ(rows(), "1,2*,3,4,5,6,");
    EXPECT_FALSE(book.BookChanged);
    EXPECT_EQ(
        desktop.prompts[0],
        "Enter Number of Rows want to Delete...(it counts from current row to below...)|Rows Deleting|");
    EXPECT_EQ(desktop.boxes[0].text, "Are you sure to delete 4 Rows, Because ones delete then never come..");
    EXPECT_EQ(desktop.boxes[0].title, "Conferm!!!");
    EXPECT_EQ(desktop.boxes[0].buttons, desktop::Buttons::YesNoCancel);
    entry::insertRows(book, desktop);
    EXPECT_EQ(desktop.prompts[2], "Enter Number of Rows that you want to Insert|Rows Inserting|");
}

TEST_F(RowEditing, NumbersBeyondSixteenBitsOverflow) {
    for (const auto command : {entry::insertRows, entry::deleteRows}) {
        fill(3);
        desktop.inputs = {"32768"};
        desktop.boxes.clear();
        command(book, desktop);
        ASSERT_EQ(desktop.boxes.size(), 1U);
        EXPECT_EQ(desktop.boxes[0].text, "Overflow");
        EXPECT_EQ(rows(), "1,2*,3,");
        EXPECT_TRUE(grid.Visible());
    }
    desktop.inputs = {"32767", "32767"};
    entry::insertRows(book, desktop);
    entry::insertRows(book, desktop);
    EXPECT_EQ(grid.Rows(), 4 + 2 * 32767);
}

TEST_F(RowEditing, EmptiedRowsHaveNoColour) {
    fill(3);
    grid.setCellBackColor(2, InterSight, suspiciousReading);
    grid.moveTo(2, 0);
    desktop.inputs = {"1"};
    entry::insertRows(book, desktop);
    EXPECT_FALSE(marked(2, InterSight));
}

} // namespace
