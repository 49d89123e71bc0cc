#include "exchange/sheet_import.h"

#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

using spreadsheet::Failure;
using spreadsheet::Row;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StrEq;

namespace {

struct Import {
    TempFolder folder;
    ScriptedDesktop desktop;
    sheet::Book book;
    std::vector<Row> sheet;
    std::optional<Failure> failure;

    Import() {
        desktop.folder = folder.path();
        book.MSFG.setRows(5);
        book.MSFG.setText(1, sheet::RLevel, "100");
        book.MSFG.setText(4, sheet::Remark, "kept");
        book.MSFG.setCellBackColor(1, sheet::Chainage, sheet::dataError);
        book.MSFG.moveTo(2, sheet::InterSight);
    }
    void run() {
        exchange::importSheet(book, desktop, [this] {
            if (failure) throw spreadsheet::Error(*failure, "The reason");
            return sheet;
        });
    }
    [[nodiscard]] Row row(int number) const {
        Row texts;
        for (int col = 0; col < sheet::columnCount; ++col)
            texts[static_cast<std::size_t>(col)] = book.MSFG.Text(number, col);
        return texts;
    }
};

} // namespace

TEST(SheetImport, PutsEachColumnIntoItsForm) {
    Import made;
    made.sheet = {
        {"01-250", "2.5", "0", "3.00049", "1.2345", "12.5", "3", "12.5", "100", "12.5"},
        {"1250", "1E+15", "-0.00001", "1E-05", "True", "abc", "1.2m", "#DIV/0!", "-0.0004", "0"},
        {" CP ", " 2.5", "0.1", "0.3333333333333333", "1e999", "-1.0005", ".5", "1E3", "x", "two\nlines"},
        {"", "", "", "", "", "", "", "", "", " "},
    };
    made.run();
    EXPECT_EQ(made.row(1),
              (Row{"01-250", "2.5", "0", "3", "1.235", "12.5", "3", "12.500", "100.000", "12.5"}));
    EXPECT_EQ(made.row(2),
              (Row{"1250", "1000000000000000", "0", "0", "True", "abc", "1.2m", "#DIV/0!", "0.000", "0"}));
    EXPECT_EQ(made.row(3),
              (Row{" CP ", "2.5", "0.1", "0.333", "1e999", "-1.001", "0.5", "1000.000", "x", "two\nlines"}));
    EXPECT_EQ(made.row(4), (Row{"", "", "", "", "", "", "", "", "", " "})) << "a blank is not empty";
    EXPECT_EQ(made.row(5), Row{});
    EXPECT_EQ(made.row(6), Row{});
    EXPECT_EQ(made.book.MSFG.Rows(), 7);
}

TEST(SheetImport, StopsAtTheFirstEmptyRow) {
    Import made;
    made.sheet = {Row{"00-010"}, Row{}, Row{"00-020"}};
    made.run();
    EXPECT_EQ(made.book.MSFG.Rows(), 4);
    EXPECT_EQ(made.row(1), Row{"00-010"});

    made.sheet = {Row{}, Row{"00-020"}};
    made.run();
    EXPECT_EQ(made.book.MSFG.Rows(), 3) << "header, the empty row that was read, the row added after it";
    EXPECT_EQ(made.row(1), Row{});
    EXPECT_EQ(made.row(2), Row{});
}

TEST(SheetImport, ReplacesTheBookAndLeavesTheLevelsToCal) {
    Import made;
    made.book.CurrentHI = 101.5F;
    made.sheet = {Row{"00-010", "", "0", "", "", "1.5"}, Row{"00-020"}};
    made.run();
    EXPECT_TRUE(made.book.MSFG.CellBackColor(1, sheet::Chainage).isNone());
    EXPECT_EQ(made.row(1)[sheet::RLevel], "");
    EXPECT_EQ(made.book.MSFG.Row(), 3);
    EXPECT_EQ(made.book.MSFG.Col(), static_cast<int>(sheet::Remark));
    EXPECT_EQ(made.book.CurrentHI, 101.5F);
    EXPECT_FALSE(made.book.BookChanged);
    EXPECT_TRUE(made.book.MSFG.Visible());
    EXPECT_FALSE(made.desktop.progressShown);
    EXPECT_THAT(made.desktop.boxes, IsEmpty());
    ASSERT_THAT(made.desktop.statuses, testing::Not(IsEmpty()));
    EXPECT_THAT(made.desktop.statuses.back(), HasSubstr("2 rows imported; Cal"));
}

TEST(SheetImport, SetsAnUnsavedBookAside) {
    Import made;
    made.book.BookChanged = true;
    made.sheet = {Row{"00-010"}};
    made.run();
    EXPECT_FALSE(std::filesystem::is_empty(made.folder.path()));
}

TEST(SheetImport, KeepsTheBookWhateverGoesWrong) {
    for (const Failure failure :
         {Failure::NotRunning, Failure::NotAnswering, Failure::Lost, Failure::Cancelled, Failure::NoReader}) {
        Import made;
        made.sheet = {Row{"00-010"}};
        made.failure = failure;
        made.run();
        EXPECT_EQ(made.book.MSFG.Rows(), 5);
        EXPECT_EQ(made.book.MSFG.Text(4, sheet::Remark), "kept");
        EXPECT_EQ(made.book.MSFG.CellBackColor(1, sheet::Chainage), sheet::dataError);
        EXPECT_EQ(made.book.MSFG.Row(), 2);
        EXPECT_TRUE(made.book.MSFG.Visible());
        EXPECT_TRUE(std::filesystem::is_empty(made.folder.path()))
            << "nothing was dropped, so nothing is set aside";
        if (failure == Failure::NotRunning) {
            ASSERT_THAT(made.desktop.boxes, SizeIs(1));
            EXPECT_EQ(made.desktop.boxes[0].text, "1st Start Excel and Open Your Existing Field book Sheet");
        } else {
            EXPECT_THAT(made.desktop.boxes, IsEmpty());
            EXPECT_THAT(made.desktop.statuses, ElementsAre(StrEq("The reason; the book is as it was")));
        }
    }
}
