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

struct Listener : sheet::GridListener {
    std::string heard;
    void cellChanged(int row, int col) override {
        heard += "c" + std::to_string(row) + std::to_string(col) + " ";
    }
    void rowsChanged(int oldRows, int newRows) override {
        heard += "r" + std::to_string(oldRows) + std::to_string(newRows) + " ";
    }
    void cursorMoved() override { heard += "m "; }
    void visibleChanged() override { heard += "v "; }
    void allChanged() override { heard += "a "; }
};

TEST(Grid, TellsItsListenerNothingWhileHidden) {
    Grid grid(3, 2);
    Listener listener;
    grid.setListener(&listener);
    const auto change = [&] {
        grid.setText(1, 2, "x");
        grid.setRows(grid.Rows() + 1);
        grid.setCellBackColor(1, 1, sheet::dataError);
        grid.moveTo(1, 1);
        grid.setFontSize(12);
    };
    change();
    EXPECT_EQ(std::exchange(listener.heard, {}), "c12 r23 c11 m a ");
    grid.setVisible(false);
    change();
    EXPECT_EQ(std::exchange(listener.heard, {}), "v ");
    grid.setVisible(true);
    grid.setVisible(true);
    EXPECT_EQ(std::exchange(listener.heard, {}), "v a ");
    {
        const Grid::Hold hold(grid);
        change();
        const Grid::Hold inner(grid);
    }
    EXPECT_EQ(listener.heard, "a ");
}

} // namespace
