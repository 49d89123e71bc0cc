#include "entry/row_editing.h"

#include "entry_fixture.h"

namespace {

using RowEditing = Entry;

TEST_F(RowEditing, InsertsAndDeletes) {
    using Command = void (*)(sheet::Book&, desktop::Desktop&);
    const struct {
        const char* what;
        Command command;
        const char* before;
        int row;
        const char* answer;
        const char* after;
        const char* end;
    } cases[] = {
        {"one above", entry::insertRow, "1,a|2?,b|3", 2, "", "1,a|?|2,b|3", "2,6 C changed"},
        {"one above the only one", entry::insertRow, "1", 1, "", "|1", "1,6 C changed"},
        {"one above the last", entry::insertRow, "1|2?|3", 3, "", "1|2?||3", "3,6 C changed"},
        {"several", entry::insertRows, "1|2?,,,,,,,,,b|3", 2, "2", "1|||2?,,,,,,,,,b|3", "2,6 C changed"},
        {"several at the end", entry::insertRows, "1|2?|3", 3, "2", "1|2?|||3", "3,6 C changed"},
        {"more than there are", entry::insertRows, "1|2?", 1, "5", "|||||1|2?", "1,6 C changed"},
        {"emptied rows have no colour", entry::insertRows, "1,,,?", 1, "1", "|1", "1,6 C changed"},
        {"halves go to the even", entry::insertRows, "1", 1, "2.5", "||1", "1,6 C changed"},
        {"none", entry::insertRows, "1|2?", 2, "0.5", "1|2?", "2,6 C"},
        {"less than none", entry::insertRows, "1|2?", 2, "-3", "1|2?", "2,6 C"},
        {"cancelled", entry::insertRows, "1|2?", 2, "", "1|2?", "2,6 C"},
        {"beyond sixteen bits", entry::insertRows, "1|2?", 2, "32768", "1|2?", "2,6 C, 1 box"},
        {"delete the first", entry::deleteRow, "1|2?|3", 1, "", "2?|3", "1,6 C changed"},
        {"delete the last", entry::deleteRow, "1|2?|3", 3, "", "1|2?", "2,6 C changed"},
        {"delete the only one", entry::deleteRow, "1,a", 1, "", "", "1,6 C"},
        {"delete several", entry::deleteRows, "1|2?|3|4,,,,,,,,,d", 2, "2", "1|4,,,,,,,,,d",
         "2,6 C changed, 1 box"},
        {"delete to the end", entry::deleteRows, "1|2?|3|4", 3, "99", "1|2?", "2,6 C changed, 1 box"},
        {"delete all", entry::deleteRows, "1|2|3|4", 1, "4", "", "1,6 C changed, 1 box"},
        {"delete the only one by number", entry::deleteRows, "1,a", 1, "1", "", "1,6 C, 1 box"},
        {"delete none", entry::deleteRows, "1|2?", 1, "x", "1|2?", "1,6 C"},
        {"delete beyond sixteen bits", entry::deleteRows, "1|2?", 1, "32768", "1|2?", "1,6 C, 1 box"},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.what);
        start(each.before, each.row, 6);
        desktop.inputs = {each.answer};
        desktop.answers = {desktop::Answer::Yes};
        each.command(book, desktop);
        EXPECT_EQ(rows(), each.after);
        EXPECT_EQ(state(), each.end);
        EXPECT_TRUE(grid.Visible());
    }
    EXPECT_EQ(desktop.boxes[0].text, "Overflow");
    start("1|2|3", 1, 0);
    desktop.inputs = {"32767", "32767"};
    entry::insertRows(book, desktop);
    entry::insertRows(book, desktop);
    EXPECT_EQ(grid.Rows(), 4 + 2 * 32767);
}

TEST_F(RowEditing, AsksAndConfirms) {
    start("1|2|3|4|5|6", 3, 0);
    for (const auto answer : {desktop::Answer::No, desktop::Answer::Cancel}) {
        desktop.inputs = {"50"};
        desktop.answers = {answer};
        entry::deleteRows(book, desktop);
    }
    EXPECT_EQ(rows(), "1|2|3|4|5|6");
    EXPECT_EQ(state(), "3,0 C, 2 box");
    EXPECT_EQ(
        desktop.prompts[0],
        "Enter Number of Rows want to Delete...(it counts from current row to below...)|Rows Deleting|");
    EXPECT_EQ(desktop.boxes[0].text, "Are you sure to delete 4 Rows, Because ones delete then never come..");
    EXPECT_EQ(desktop.boxes[0].title, "Conferm!!!");
    EXPECT_EQ(desktop.boxes[0].buttons, desktop::Buttons::YesNoCancel);
    entry::insertRows(book, desktop);
    EXPECT_EQ(desktop.prompts[2], "Enter Number of Rows that you want to Insert|Rows Inserting|");
}

} // namespace
