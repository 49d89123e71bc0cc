#include "sheet/change_points.h"

#include "scripted_desktop.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

using Cells = std::vector<std::string>;

/// Rows from 1 on: chainage, I.S., F.S. and remark.
sheet::Book bookOf(const std::vector<std::array<std::string, 4>>& rows) {
    sheet::Book book;
    book.MSFG.setRows(static_cast<int>(rows.size()) + 1);
    for (std::size_t r = 0; r < rows.size(); ++r) {
        const int row = static_cast<int>(r) + 1;
        book.MSFG.setText(row, sheet::Chainage, rows[r][0]);
        book.MSFG.setText(row, sheet::InterSight, rows[r][1]);
        book.MSFG.setText(row, sheet::ForeSight, rows[r][2]);
        book.MSFG.setText(row, sheet::Remark, rows[r][3]);
    }
    return book;
}

/// The list rows in short: chainage, F.S., remark and number of the book row.
std::vector<Cells> inShort(const sheet::Grid& list) {
    std::vector<Cells> result;
    for (int row = 1; row < list.Rows(); ++row)
        result.push_back({list.Text(row, sheet::Chainage), list.Text(row, sheet::ForeSight),
                          list.Text(row, sheet::Remark), list.Text(row, sheet::bookRowColumn)});
    return result;
}

} // namespace

TEST(ChangePoints, OpensWithTheBooksColumnsAndAHiddenOne) {
    const sheet::Book book;
    const sheet::Grid list = sheet::emptyChangePointList();
    EXPECT_EQ(list.Rows(), 2);
    for (int col = 0; col < sheet::columnCount; ++col) {
        EXPECT_EQ(list.Text(0, col), book.MSFG.Text(0, col));
        EXPECT_EQ(list.ColWidth(col), book.MSFG.ColWidth(col));
    }
    EXPECT_EQ(list.Text(0, sheet::bookRowColumn), "");
    EXPECT_EQ(list.ColWidth(sheet::bookRowColumn), 1);
    EXPECT_EQ(list.Row(), 1);
    EXPECT_EQ(list.Col(), 0);
}

TEST(ChangePoints, ListsThemWithTheChainageAboveAndTheirRow) {
    ScriptedDesktop desktop;
    sheet::Book book = bookOf({{"00-000", "", "", "BM"},
                               {"00-010", "1.2", "", ""},
                               {"00-020", "1.3", "", "culvert"},
                               {"CP", "", "0.9", ""},
                               {"CP", "", "1.1", "peg, on kerb"},
                               {"cp", "", "1.4", ""},
                               {" CP", "", "1.5", ""},
                               {"00-030", "1.0", "", " "}});
    const sheet::Grid list = sheet::listChangePoints(book, desktop);
    EXPECT_THAT(inShort(list),
                ElementsAre(Cells{"00-000", "", "BM", ""}, Cells{"00-010", "", "culvert", "3"},
                            Cells{"00-020", "0.9", "", "4"}, Cells{"CP", "1.1", "peg, on kerb", "5"},
                            Cells{" CP", "", " ", "8"}));
    EXPECT_EQ(list.Text(2, sheet::InterSight), "1.3") << "a row's own readings, under the chainage above";
}

TEST(ChangePoints, ShowsItsProgressAndTheBookAgain) {
    ScriptedDesktop desktop;
    sheet::Book book = bookOf({{}, {"00-010"}, {"CP"}, {"00-020"}, {"00-030"}});
    book.MSFG.moveTo(3, 4);
    const sheet::Grid list = sheet::listChangePoints(book, desktop);
    EXPECT_EQ(list.Rows(), 3);
    EXPECT_THAT(desktop.progress, ElementsAre(40, 60, 80, 100));
    EXPECT_FALSE(desktop.progressShown);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_EQ(book.MSFG.Row(), 3);
    EXPECT_EQ(book.MSFG.Col(), 4);
    EXPECT_FALSE(book.BookChanged);
}

TEST(ChangePoints, OfAFreshBookAreItsStartingRow) {
    ScriptedDesktop desktop;
    sheet::Book book;
    EXPECT_THAT(inShort(sheet::listChangePoints(book, desktop)), ElementsAre(Cells{"", "", "", ""}));

    book.MSFG.setRows(1);
    EXPECT_THROW(static_cast<void>(sheet::listChangePoints(book, desktop)), basic::RuntimeError);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
}
