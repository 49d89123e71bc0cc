#include "sheet/grid.h"

#include "error_number.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace {

using sheet::Grid;

std::vector<int> selection(const Grid& grid) {
    return {grid.Row(), grid.Col(), grid.RowSel(), grid.ColSel()};
}

TEST(Grid, RowsComeAndGoAtTheBottom) {
    Grid grid(3, 2);
    grid.setText(1, 2, "kept");
    grid.setRows(5);
    grid.setText(4, 0, "dropped");
    grid.moveTo(4, 1);
    grid.setRows(3);
    EXPECT_EQ(selection(grid), (std::vector{2, 1, 2, 1}));
    grid.setRows(5);
    EXPECT_EQ(grid.Text(4, 0), "");
    EXPECT_EQ(grid.Text(1, 2), "kept");
    grid.setRows(0);
    EXPECT_EQ(grid.Rows(), 1);
}

TEST(Grid, SelectionHasAnAnchorAndAFarEnd) {
    Grid grid(4, 6);
    grid.moveTo(2, 1);
    grid.setSelection(4, 3);
    grid.setText("x");
    EXPECT_EQ(grid.Text(2, 1), "x");
    EXPECT_EQ(selection(grid), (std::vector{2, 1, 4, 3}));
    grid.setCol(0);
    EXPECT_EQ(selection(grid), (std::vector{2, 0, 2, 0}));
}

TEST(Grid, RefusesWhatLiesOutside) {
    Grid grid(3, 3);
    const std::vector<std::function<void()>> calls{
        [&] { grid.setRow(3); },          [&] { grid.setRow(0); },
        [&] { grid.setRow(-1); },         [&] { grid.setCol(3); },
        [&] { grid.setCol(-1); },         [&] { grid.setSelection(0, 1); },
        [&] { grid.setSelection(1, 3); }, [&] { (void)grid.Text(3, 0); },
        [&] { grid.setText(0, 3, ""); },  [&] { grid.setColWidth(3, 1); },
        [&] { (void)grid.ColWidth(-1); }, [&] { grid.setCellBackColor(-1, 0, sheet::dataError); },
    };
    for (std::size_t i = 0; i < calls.size(); ++i)
        EXPECT_EQ(errorOf(calls[i]), basic::SubscriptOutOfRange) << i;
    EXPECT_EQ(selection(grid), (std::vector{1, 0, 1, 0}));
}

// The chainages and, in brackets, the marks of columns 0 and 1, a row each.
std::string shown(const Grid& grid) {
    std::string text;
    for (int row = 1; row < grid.Rows(); ++row) {
        text += grid.Text(row, 0);
        for (int col = 0; col < 2; ++col)
            if (const sheet::Colour mark = grid.CellBackColor(row, col); !mark.isNone())
                text += "(" + std::to_string(col) + std::to_string(mark.rgb) + ")";
        text += ' ';
    }
    return text;
}

TEST(Grid, RowsTakeTheirTextsAlongAndColoursStayButTheFirstCells) {
    Grid grid(2, 5);
    for (int row = 1; row < 5; ++row)
        grid.setText(row, 0, std::string(1, char('a' + row - 1)));
    grid.setCellBackColor(2, 0, {7});
    grid.setCellBackColor(2, 1, {8});
    grid.setCellBackColor(4, 1, {9});
    ASSERT_EQ(shown(grid), "a b(07)(18) c d(19) ");
    grid.insertRows(2, 1, sheet::Marks::Stay);
    EXPECT_EQ(shown(grid), "a (07)(18) b c(19) d ");
    grid.insertRows(1, 2, sheet::Marks::Move);
    EXPECT_EQ(shown(grid), " (18) a (07)(19) b c d ") << "only the mark of a first cell moved";
    grid.removeRows(1, 3, sheet::Marks::Move);
    EXPECT_EQ(shown(grid), "(07) b(18) c d(19) ");
}

struct Listener : sheet::GridListener {
    std::string heard;
    void textChanged(int row, int col, const std::string& before) override {
        heard += "t" + std::to_string(row) + std::to_string(col) + before + " ";
    }
    void colourChanged(int row, int col, sheet::Colour before) override {
        heard += "c" + std::to_string(row) + std::to_string(col) + (before.isNone() ? "" : "!") + " ";
    }
    void rowsInserted(int row, int count, sheet::Marks) override {
        heard += "i" + std::to_string(row) + std::to_string(count) + " ";
    }
    void rowsRemoved(int row, const sheet::RemovedRows& before, sheet::Marks) override {
        heard += "r" + std::to_string(row) + std::to_string(before.count());
        heard += before.texts.back()[2] + std::to_string(before.colours.size()) + " ";
    }
    void cursorMoved() override { heard += "m "; }
    void visibleChanged() override { heard += "v "; }
    void lookChanged() override { heard += "l "; }
    void bookBegins() override { heard += "b "; }
};

TEST(Grid, TellsEveryListenerWhatWasThereBefore) {
    Grid grid(3, 2);
    Listener first;
    Listener second;
    grid.addListener(first);
    grid.addListener(second);
    grid.setText(1, 2, "x");
    grid.setText(1, 2, "x"); // no change
    grid.setVisible(false);
    grid.setRows(4);
    grid.setText(3, 2, "y");
    grid.setCellBackColor(3, 1, sheet::dataError);
    grid.setCellBackColor(3, 1, sheet::dataError);
    grid.moveTo(1, 1);
    grid.setRows(2);
    grid.setVisible(true);
    grid.setFontSize(12);
    grid.setText(1, 2, "");
    grid.setCellBackColor(1, 1, sheet::dataError);
    grid.beginBook();
    EXPECT_EQ(first.heard, "t12 v i22 t32 c31 m r22y1 v l t12x c11 b c11! ");
    EXPECT_EQ(second.heard, first.heard);
    EXPECT_TRUE(grid.CellBackColor(1, 1).isNone());
    grid.removeListener(first);
    grid.setText(1, 0, "z");
    EXPECT_NE(second.heard, first.heard);
}

} // namespace
