#include "window.h"

#include "shell/frmCP.h"

#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>

using testing::HasSubstr;

namespace {

/// A spreadsheet program that a test holds in its hand.
class Held : public spreadsheet::RunningSpreadsheet {
  public:
    std::vector<spreadsheet::Row> rows;
    bool runs = true;
    bool hangs = false;

    std::vector<spreadsheet::Row> readSheet(const spreadsheet::GoOn& goOn) override {
        if (!runs) throw spreadsheet::Error(spreadsheet::Failure::NotRunning, "none");
        for (; hangs; QTest::qSleep(5))
            if (!goOn(0)) throw spreadsheet::Error(spreadsheet::Failure::Cancelled, "Import cancelled");
        return rows;
    }
};

class ExchangeWindows : public MainWindow {
  protected:
    std::shared_ptr<Held> held = std::make_shared<Held>();
    ExchangeWindows() {
        spreadsheet = held;
        open();
        window->book().setProjectPath(folder / "Site1.grl");
    }
    /// Opens the change-point list and hands it with its grid to `look`, which must leave it open.
    void withList(const std::function<void(shell::frmCP&, shell::FlexGrid&)>& look) {
        const Answers answers([&](QWidget& modal) {
            auto* list = dynamic_cast<shell::frmCP*>(&modal);
            ASSERT_NE(list, nullptr);
            look(*list, *dynamic_cast<shell::FlexGrid*>(list->findChild<QWidget*>(QStringLiteral("MSFG"))));
            QTest::mouseClick(list->findChild<QPushButton*>(QStringLiteral("cmdClose")), Qt::LeftButton);
        });
        click("cmdCP");
        EXPECT_EQ(answers.count, 1);
    }
};

TEST_F(ExchangeWindows, AListThatCannotBeWrittenSaysSoWhereItIsSeen) {
    window->book().setProjectPath(folder / "none/Site1.grl");
    withList([](shell::frmCP& list, shell::FlexGrid& grid) {
        QTest::keyClick(&grid, Qt::Key_Enter);
        EXPECT_THAT(shell::toUtf8(list.findChild<QLabel*>(QStringLiteral("lblHint"))->text()),
                    testing::AllOf(testing::StartsWith("Path not found: "),
                                   testing::EndsWith("Site1cp.csv is not created")));
    });
    EXPECT_THAT(status(), HasSubstr("is not created"));
}

TEST_F(ExchangeWindows, TheListIsNeverSmallerThanHalfTheScreen) {
    withList([](shell::frmCP& list, shell::FlexGrid& grid) {
        const QSize half = list.screen()->geometry().size() / 2;
        EXPECT_GT(list.width(), half.width());
        list.resize(half.width() - 60, half.height() - 80);
        EXPECT_EQ(list.size(), half);
        list.resize(half.width() + 33, half.height() + 74);
        EXPECT_EQ(grid.size(), half);
    });
}

TEST_F(ExchangeWindows, TheCsvCommandFinishesTheCellAndWritesTheBook) {
    book().setText(1, sheet::BackSight, ".5");
    moveTo(1, sheet::BackSight);
    EXPECT_THAT(answering({"OK"}, [this] { choose("mnuExcel"); }),
                ElementsAre(folder / "Site1.csv File is Created"));
    EXPECT_THAT(folder.read("Site1.csv"), HasSubstr("\r\n,,,,0.5,,,,,,\r\n"));
}

TEST_F(ExchangeWindows, ImportComesByItsKeyAndByItsMenu) {
    EXPECT_FALSE(shown("cmdImpExl"));
    held->rows = {{"01-250", "", "0", "", "", "1.5", "", "", "", "from the menu"}};
    choose("mnuImport");
    EXPECT_EQ(window->grid().model()->index(0, 9).data().toString(), QStringLiteral("from the menu"));
    EXPECT_THAT(status(), HasSubstr("1 row imported; Cal"));

    QTest::keyClick(&control("cmdExpTxt"), Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(shown("cmdImpExl"));
    held->rows[0][9] = "from the button";
    click("cmdImpExl");
    EXPECT_EQ(cell(1, sheet::Remark), "from the button");
    held->runs = false;
    EXPECT_THAT(answering({"OK"}, [this] { click("cmdImpExl"); }),
                ElementsAre("1st Start Excel and Open Your Existing Field book Sheet"));
    EXPECT_EQ(cell(1, sheet::Remark), "from the button");
}

TEST_F(ExchangeWindows, AHangingSpreadsheetCanBeGivenUp) {
    book().setText(1, sheet::RLevel, "100");
    held->hangs = true;
    for (const bool byKey : {false, true}) {
        const Answers cancel([byKey](QWidget& modal) {
            auto& box = dynamic_cast<QProgressDialog&>(modal);
            if (byKey)
                QTest::keyClick(&box, Qt::Key_Escape);
            else
                QTest::mouseClick(box.findChild<QPushButton*>(), Qt::LeftButton);
        });
        choose("mnuImport");
        EXPECT_EQ(cancel.count, 1);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(cell(1, sheet::RLevel), "100");
        EXPECT_EQ(status(), "Import cancelled; the book is as it was");
    }
}

} // namespace
