#include "field_book.h"
#include "window.h"

#include "shell/frmCP.h"

#include <gmock/gmock.h>

#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QScreen>

using spreadsheet::Failure;
using testing::EndsWith;
using testing::HasSubstr;

namespace {

/// A spreadsheet program that a test holds in its hand.
class Held : public spreadsheet::RunningSpreadsheet {
  public:
    std::vector<spreadsheet::Row> rows;
    bool runs = true;
    bool hangs = false;
    int asked = 0;

    std::vector<spreadsheet::Row> readSheet(const spreadsheet::GoOn& goOn) override {
        if (!runs) throw spreadsheet::Error(Failure::NotRunning, "none");
        while (hangs) {
            ++asked;
            if (!goOn(0)) throw spreadsheet::Error(Failure::Cancelled, "Import cancelled");
            QTest::qSleep(5);
        }
        return rows;
    }
};

class ExchangeWindows : public MainWindow {
  protected:
    std::shared_ptr<Held> held = std::make_shared<Held>();
    std::vector<std::string> boxes;

    ExchangeWindows() { spreadsheet = held; }

    /// Runs `action`, which ends in message boxes, and notes their texts.
    void confirming(const std::function<void()>& action) {
        const Answers ok([this](QWidget& modal) {
            auto* box = dynamic_cast<QMessageBox*>(&modal);
            if (box == nullptr) return;
            boxes.push_back(shell::toUtf8(box->text()));
            QTest::mouseClick(box->button(QMessageBox::Ok), Qt::LeftButton);
        });
        action();
    }
    /// Opens the change-point list and hands it to `look`, which must leave it open.
    void withList(const std::function<void(shell::frmCP&)>& look) {
        const Answers answers([&](QWidget& modal) {
            auto* list = dynamic_cast<shell::frmCP*>(&modal);
            ASSERT_NE(list, nullptr);
            look(*list);
            QTest::mouseClick(list->findChild<QPushButton*>(QStringLiteral("cmdClose")), Qt::LeftButton);
        });
        click("cmdCP");
        EXPECT_EQ(answers.count, 1);
    }
    static shell::FlexGrid& gridOf(const shell::frmCP& list) {
        return *dynamic_cast<shell::FlexGrid*>(list.findChild<QWidget*>(QStringLiteral("MSFG")));
    }
    void nameBook() { window->book().setProjectPath(folder / "Site1.grl"); }
};

} // namespace

TEST_F(ExchangeWindows, TheListShowsChangePointsAndADoubleClickWritesThem) {
    open();
    loadBook(window->book(), "tramo1-derived");
    nameBook();
    withList([this](shell::frmCP& list) {
        EXPECT_EQ(list.windowTitle(), QStringLiteral("All Change Points."));
        const QAbstractItemModel& model = *gridOf(list).model();
        EXPECT_EQ(model.rowCount(), 3);
        EXPECT_EQ(model.index(1, 0).data().toString(), QStringLiteral("00-040"));
        EXPECT_EQ(model.index(1, 10).data().toString(), QStringLiteral("17"));
        EXPECT_TRUE(gridOf(list).isColumnHidden(10) || gridOf(list).columnWidth(10) <= 1);
        const QPoint cell = gridOf(list).visualRect(model.index(1, 1)).center();
        confirming([&] { QTest::mouseDClick(gridOf(list).viewport(), Qt::LeftButton, {}, cell); });
        QFile::rename(QString::fromStdString(folder / "Site1cp.csv"),
                      QString::fromStdString(folder / "first"));
        confirming([&] { QTest::keyClick(&gridOf(list), Qt::Key_Return); });
        EXPECT_TRUE(gridOf(list).isVisible());
    });
    EXPECT_THAT(boxes, testing::ElementsAre(folder / "Site1cp.csv File is Created",
                                            folder / "Site1cp.csv File is Created"));
    EXPECT_EQ(folder.read("first"), TempFolder::readFile(testData("exchange/tramo1-derivedcp.csv")));
    EXPECT_EQ(folder.read("Site1cp.csv"), folder.read("first"));
    EXPECT_FALSE(window->book().BookChanged);
}

TEST_F(ExchangeWindows, AListThatCannotBeWrittenSaysSoWhereItIsSeen) {
    open();
    window->book().setProjectPath(folder / "none/Site1.grl");
    withList([](shell::frmCP& list) {
        QTest::keyClick(&gridOf(list), Qt::Key_Enter);
        EXPECT_THAT(
            shell::toUtf8(list.findChild<QLabel*>(QStringLiteral("lblHint"))->text()),
            testing::AllOf(testing::StartsWith("Path not found: "), EndsWith("Site1cp.csv is not created")));
    });
    EXPECT_THAT(status(), HasSubstr("is not created"));
}

TEST_F(ExchangeWindows, TheListIsNeverSmallerThanHalfTheScreen) {
    open();
    withList([](shell::frmCP& list) {
        const QSize half = list.screen()->geometry().size() / 2;
        EXPECT_GT(list.width(), half.width());
        EXPECT_GT(list.height(), half.height());
        list.resize(half.width() - 60, half.height() - 80);
        EXPECT_EQ(list.size(), half);
        list.resize(half.width() + 33, half.height() + 74);
        EXPECT_EQ(gridOf(list).size(), half);
    });
}

TEST_F(ExchangeWindows, TheCsvButtonFinishesTheCellAndWritesTheBook) {
    open();
    nameBook();
    book().setText(1, sheet::BackSight, ".5");
    moveTo(1, sheet::BackSight);
    confirming([this] { click("cmdExpTxt"); });
    EXPECT_THAT(folder.read("Site1.csv"), HasSubstr("\r\n,,,,0.5,,,,,,\r\n"));
    folder.write("Site1.csv", "");
    confirming([this] { control<QAction>("mnuExcel").trigger(); });
    EXPECT_THAT(boxes, testing::ElementsAre(folder / "Site1.csv File is Created",
                                            folder / "Site1.csv File is Created"));
    EXPECT_THAT(folder.read("Site1.csv"), HasSubstr("0.5"));
}

TEST_F(ExchangeWindows, ImportComesByItsKeyAndByItsMenu) {
    open();
    EXPECT_TRUE(control("cmdImpExl").isHidden());
    held->rows = {{"01-250", "", "0", "", "", "1.5", "", "", "", "from the menu"}};
    control<QAction>("mnuImport").trigger();
    EXPECT_EQ(cell(1, sheet::Remark), "from the menu");
    EXPECT_EQ(window->grid().model()->index(0, 9).data().toString(), QStringLiteral("from the menu"));
    EXPECT_THAT(status(), HasSubstr("1 row imported; Cal"));

    QTest::keyClick(&control("cmdExpTxt"), Qt::Key_Return, Qt::ControlModifier);
    ASSERT_TRUE(control("cmdImpExl").isVisible());
    held->rows[0][9] = "from the button";
    click("cmdImpExl");
    EXPECT_EQ(cell(1, sheet::Remark), "from the button");
    EXPECT_EQ(book().Rows(), 4);

    held->runs = false;
    confirming([this] { click("cmdImpExl"); });
    EXPECT_THAT(boxes, testing::ElementsAre("1st Start Excel and Open Your Existing Field book Sheet"));
    EXPECT_EQ(cell(1, sheet::Remark), "from the button");
}

TEST_F(ExchangeWindows, AHangingSpreadsheetCanBeGivenUp) {
    open();
    book().setText(1, sheet::RLevel, "100");
    held->hangs = true;
    for (const bool byKey : {false, true}) {
        const Answers cancel([byKey](QWidget& modal) {
            auto* box = dynamic_cast<QProgressDialog*>(&modal);
            ASSERT_NE(box, nullptr);
            EXPECT_EQ(box->labelText(), QStringLiteral("Waiting for the spreadsheet program..."));
            if (byKey)
                QTest::keyClick(box, Qt::Key_Escape);
            else
                QTest::mouseClick(box->findChild<QPushButton*>(), Qt::LeftButton);
        });
        control<QAction>("mnuImport").trigger();
        EXPECT_EQ(cancel.count, 1);
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr);
        EXPECT_EQ(cell(1, sheet::RLevel), "100");
        EXPECT_EQ(status(), "Import cancelled; the book is as it was");
    }
    EXPECT_GT(held->asked, 2);
}
