#include "exchange/sheet_import.h"

#include "field_book.h"
#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

using spreadsheet::Failure;
using spreadsheet::Row;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

struct SheetImport : testing::Test {
    TempFolder folder;
    ScriptedDesktop desktop;
    project::Book book;

    SheetImport() {
        desktop.folder = folder.path();
        keyRows(book.MSFG, {",,,,,,,,100", "", "", ",,,,,,,,,kept"});
        book.MSFG.setCellBackColor(1, sheet::Chainage, sheet::dataError);
        book.MSFG.moveTo(2, sheet::InterSight);
    }
    void import(const std::vector<Row>& rows) {
        exchange::importSheet(book, desktop, [&] { return rows; });
    }
};

TEST_F(SheetImport, PutsEachColumnIntoItsForm) {
    import({
        {"01-250", "2.5", "0", "3.00049", "1.2345", "12.5", "3", "12.5", "100", "12.5"},
        {"1250", "1E+15", "-0.00001", "1E-05", "True", "abc", "1.2m", "#DIV/0!", "-0.0004", "0"},
        {" CP ", " 2.5", "0.1", "0.3333333333333333", "1e999", "-1.0005", ".5", "1E3", "x", "two\nlines"},
        {"", "", "", "", "", "", "", "", "", " "}, // a blank is not empty
    });
    EXPECT_EQ(shownRows(book.MSFG), "01-250,2.5,0,3,1.235,12.5,3,12.500,100.000,12.5|"
                                    "1250,1000000000000000,0,0,True,abc,1.2m,#DIV/0!,0.000,0|"
                                    " CP ,2.5,0.1,0.333,1e999,-1.001,0.5,1000.000,x,two\nlines|,,,,,,,,, ||");
}

TEST_F(SheetImport, StopsAtTheFirstEmptyRow) {
    import({Row{"00-010"}, Row{}, Row { "00-020" }});
    EXPECT_EQ(shownRows(book.MSFG), "00-010||") << "the empty row that was read, the row added after it";
    import({Row{}, Row { "00-020" }});
    EXPECT_EQ(shownRows(book.MSFG), "|");
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(SheetImport, ReplacesTheBookAndLeavesTheLevelsToCal) {
    book.CurrentHI = 101.5F;
    book.BookChanged = true;
    import({Row{"00-010", "", "0", "", "", "1.5"}, Row { "00-020" }});
    EXPECT_TRUE(book.MSFG.CellBackColor(1, sheet::Chainage).isNone());
    EXPECT_EQ(shownRows(book.MSFG), "00-010,,0,,,1.5|00-020||");
    EXPECT_EQ(book.MSFG.Row(), 3);
    EXPECT_EQ(book.MSFG.Col(), static_cast<int>(sheet::Remark));
    EXPECT_EQ(book.CurrentHI, 101.5F);
    EXPECT_FALSE(std::filesystem::is_empty(folder.path())) << "the unsaved book is set aside";
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(desktop.statuses.back(), "2 rows imported; Cal reduces the levels");
}

TEST_F(SheetImport, KeepsTheBookWhateverGoesWrong) {
    for (const Failure failure :
         {Failure::NotRunning, Failure::NotAnswering, Failure::Lost, Failure::Cancelled, Failure::NoReader}) {
        desktop.boxes.clear();
        desktop.statuses.clear();
        exchange::importSheet(book, desktop,
                              [&]() -> std::vector<Row> { throw spreadsheet::Error(failure, "The reason"); });
        EXPECT_EQ(shownRows(book.MSFG), ",,,,,,,,100|||,,,,,,,,,kept");
        EXPECT_EQ(book.MSFG.CellBackColor(1, sheet::Chainage), sheet::dataError);
        EXPECT_EQ(book.MSFG.Row(), 2);
        EXPECT_TRUE(book.MSFG.Visible());
        EXPECT_TRUE(std::filesystem::is_empty(folder.path())) << "nothing was dropped, nothing is set aside";
        if (failure == Failure::NotRunning)
            EXPECT_EQ(desktop.boxes.at(0).text, "1st Start Excel and Open Your Existing Field book Sheet");
        else
            EXPECT_THAT(desktop.statuses, ElementsAre("The reason; the book is as it was"));
        EXPECT_EQ(desktop.boxes.size(), failure == Failure::NotRunning ? 1U : 0U);
    }
}

} // namespace
