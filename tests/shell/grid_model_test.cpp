#include "shell/controls/grid_model.h"

#include "sheet/book.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QColor>
#include <QSignalSpy>

namespace {

class GridModelTest : public testing::Test {
  protected:
    sheet::Book book;
    sheet::Grid& grid = book.MSFG;
    shell::GridModel model{grid};
    QAbstractItemModelTester checker{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};

    QString shown(int row, int col, int role = Qt::DisplayRole) {
        return model.index(row - 1, col).data(role).toString();
    }
};

TEST_F(GridModelTest, FollowsTheGridThroughRowsTextsAndHiddenRuns) {
    struct Step {
        const char* name;
        std::vector<int> rows; ///< that the grid gets one after the other; the last row is written each time
        bool hidden;
        int resets;
    };
    const Step steps[] = {
        {"grow", {6}, false, 0},
        {"shrink", {3}, false, 0},
        {"grow and shrink at once", {9, 3}, false, 0},
        {"write below what is left", {9, 4}, false, 0},
        {"header alone", {1}, false, 0},
        {"hidden run", {500}, true, 1},
    };
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    for (const Step& step : steps) {
        SCOPED_TRACE(step.name);
        resets.clear();
        grid.setVisible(!step.hidden);
        for (const int rows : step.rows) {
            grid.setRows(rows);
            if (rows > 1) grid.setText(rows - 1, 0, "x");
        }
        grid.setVisible(true);
        model.flush();
        EXPECT_EQ(model.rowCount(), step.rows.back() - 1);
        EXPECT_EQ(resets.count(), step.resets);
    }
    grid.setRows(2);
    EXPECT_EQ(model.rowCount(), 499);
    EXPECT_EQ(shown(499, 0), QString()) << "gone before the flush";
}

TEST_F(GridModelTest, AManyTimesChangedGridBringsOneSignal) {
    grid.setRows(40);
    model.flush();
    QSignalSpy changes(&model, &QAbstractItemModel::dataChanged);
    int woken = 0;
    model.pending = [&woken] { ++woken; };
    for (int row = 3; row < 30; ++row)
        grid.setText(row, 4 + row % 3, "1.5");
    EXPECT_EQ(woken, 1);
    model.flush();
    ASSERT_EQ(changes.count(), 1);
    EXPECT_EQ(changes[0][0].toModelIndex(), model.index(2, 4));
    EXPECT_EQ(changes[0][1].toModelIndex(), model.index(28, 6));
}

TEST_F(GridModelTest, TellsWhatACellIs) {
    grid.setRows(7);
    grid.setText(5, sheet::InterSight, "1.235");
    grid.setCellBackColor(5, sheet::InterSight, sheet::suspiciousReading);
    model.flush();
    EXPECT_EQ(shown(5, sheet::InterSight), QStringLiteral("1.235"));
    EXPECT_EQ(shown(5, sheet::InterSight, Qt::AccessibleTextRole), QStringLiteral("row 5, I.S., 1.235"));
    EXPECT_EQ(shown(6, sheet::Remark, Qt::AccessibleTextRole), QStringLiteral("row 6, Remark, empty"));
    EXPECT_EQ(shown(5, sheet::InterSight, Qt::AccessibleDescriptionRole),
              QStringLiteral("suspicious reading"));
    EXPECT_EQ(shown(5, sheet::ForeSight, Qt::AccessibleDescriptionRole), QString());
    EXPECT_EQ(model.index(4, sheet::InterSight).data(Qt::BackgroundRole).value<QColor>(),
              QColor(250, 210, 230));
    EXPECT_FALSE(model.index(4, sheet::ForeSight).data(Qt::BackgroundRole).isValid());

    EXPECT_EQ(model.headerData(4, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("B.S."));
    for (int col = 0; col < 10; ++col)
        EXPECT_EQ(shell::columnAlignment(col).testFlag(Qt::AlignRight), col >= 1 && col <= 8) << col;
}

} // namespace
