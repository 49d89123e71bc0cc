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
        void (*change)(sheet::Grid&);
        int rows;
        int resets;
    };
    const Step steps[] = {
        {"grow", [](sheet::Grid& g) { g.setRows(6); }, 5, 0},
        {"write", [](sheet::Grid& g) { g.setText(5, 9, "last"); }, 5, 0},
        {"shrink", [](sheet::Grid& g) { g.setRows(3); }, 2, 0},
        {"grow and shrink at once",
         [](sheet::Grid& g) {
             g.setRows(9);
             g.setText(8, 0, "x");
             g.setRows(3);
         },
         2, 0},
        {"write below what is left",
         [](sheet::Grid& g) {
             g.setRows(9);
             g.setText(8, 0, "x");
             g.setRows(4);
         },
         3, 0},
        {"header alone", [](sheet::Grid& g) { g.setRows(1); }, 0, 0},
        {"hidden run",
         [](sheet::Grid& g) {
             g.setVisible(false);
             g.setRows(500);
             g.setVisible(true);
         },
         499, 1},
    };
    QSignalSpy resets(&model, &QAbstractItemModel::modelReset);
    for (const Step& step : steps) {
        SCOPED_TRACE(step.name);
        resets.clear();
        step.change(grid);
        model.flush();
        EXPECT_EQ(model.rowCount(), step.rows);
        EXPECT_EQ(resets.count(), step.resets);
    }
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

TEST_F(GridModelTest, ShowsNothingOfRowsThatAreGoneBeforeTheFlush) {
    grid.setRows(10);
    grid.setText(9, 0, "gone");
    model.flush();
    grid.setRows(2);
    EXPECT_EQ(model.rowCount(), 9);
    EXPECT_EQ(shown(9, 0), QString());
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

    const char* header[] = {"Chainage", "Left", "Center",   "Right",    "B.S.",
                            "I.S.",     "F.S.", "Hgt.Inst", "R.Level.", "Remark"};
    for (int col = 0; col < 10; ++col) {
        EXPECT_EQ(model.headerData(col, Qt::Horizontal, Qt::DisplayRole).toString(),
                  QLatin1String(header[col]));
        const bool right = col >= 1 && col <= 8;
        EXPECT_EQ(shell::columnAlignment(col).testFlag(Qt::AlignRight), right) << col;
    }
}

} // namespace
