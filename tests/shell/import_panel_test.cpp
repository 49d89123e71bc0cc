#include "window.h"

#include "field_book.h"

#include <QComboBox>
#include <QDropEvent>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QTableWidget>

using testing::HasSubstr;

namespace {

class ImportWindows : public MainWindow {
  protected:
    ImportWindows() {
        setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
        open();
    }

    /// Chooses `file`; the panel that then lies over the grid.
    QWidget* importFile(const std::string& file) {
        answering({file}, [this] { choose("mnuImportFile"); });
        window->activateWindow(); // the dialog of files was
        EXPECT_TRUE(QTest::qWaitForWindowActive(window.get()));
        return panel();
    }
    QWidget* panel() {
        for (const char* name : {"importPanel", "levelPanel"})
            for (auto* found : window->findChildren<QWidget*>(QLatin1String(name)))
                if (found->isVisible()) return found;
        return nullptr;
    }
    std::string notes() {
        std::string all;
        auto& list = control<QListWidget>("lstNotes");
        for (int row = 0; row < list.count(); ++row)
            all += shell::toUtf8(list.item(row)->text()) + "|";
        return all;
    }
    void accept() {
        click("cmdImport");
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    static std::string focus() {
        const QWidget* has = QApplication::focusWidget();
        return has == nullptr ? "nothing" : shell::toUtf8(has->objectName());
    }
};

TEST_F(ImportWindows, TheColumnsOfATableAreChosenAndRemembered) {
    const std::string file = folder.write("a.csv", "Peg,Staff,F.S.\n00-010,1.5,x\n00-020,1.6,\n");
    for (const bool again : {false, true}) {
        ASSERT_NE(importFile(file), nullptr);
        auto& box = control<QComboBox>("cboCol1");
        EXPECT_EQ(shell::toUtf8(box.currentText()), again ? "I.S." : "-");
        EXPECT_THAT(notes(), HasSubstr("Column C: 1 cell is no reading"));
        box.setCurrentText(QStringLiteral("I.S."));
        control<QAbstractButton>("chkRemember").setChecked(true);
        if (again) control<QAbstractButton>("optBelow").setChecked(true);
        accept();
    }
    EXPECT_EQ(shownRows(book()), "00-010,,,,,1.5|00-020,,,,,1.6|00-010,,,,,1.5|00-020,,,,,1.6");
    EXPECT_THAT(status(), HasSubstr("Cal reduces the levels"));
}

TEST_F(ImportWindows, TheBookOfBeforeComesBackWithOneStep) {
    type("1.2345");
    book().setRows(4);
    book().setText(2, sheet::Remark, "kerb");
    book().setCellBackColor(2, sheet::Chainage, sheet::dataError);
    book().moveTo(2, sheet::InterSight);
    const std::string before = shownRows(book());
    const std::string file =
        folder.write("a.csv", "Ch,B.S.,I.S.,R.L.\n,1.5,,100\n00-010,,1.5,\n00-020,,1.6,\n");
    ASSERT_NE(importFile(file), nullptr);
    accept();
    EXPECT_EQ(panel(), nullptr);
    EXPECT_EQ(book().Rows(), 4);
    EXPECT_EQ(cell(2, sheet::RLevel), "") << "Cal is not run";
    EXPECT_EQ(book().CellBackColor(2, sheet::Chainage), sheet::Colour{});
    choose("mnuUndo");
    EXPECT_EQ(shownRows(book()), before);
    EXPECT_EQ(book().CellBackColor(2, sheet::Chainage), sheet::dataError);
    EXPECT_EQ(book().Row(), 2);
    EXPECT_EQ(book().Col(), sheet::InterSight);
}

TEST_F(ImportWindows, ThePanelLiesOverTheGridAndTheKeysAreItsOwn) {
    ASSERT_NE(importFile(folder.write("a.csv", "Ch,IS\n00-010,1.5\n")), nullptr);
    EXPECT_TRUE(window->frameIsOpen());
    EXPECT_FALSE(live("MSFG"));
    EXPECT_FALSE(live("cmdCal"));
    EXPECT_FALSE(control<QAction>("mnuSettings").isEnabled());
    std::string order;
    for (int step = 0; step < 9; ++step) {
        order += focus() + " ";
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    EXPECT_EQ(order,
              "tblPreview cboCol0 cboCol1 lstNotes optReplace chkRemember cmdImport cmdNoImport spnHeading ");
    const std::string before = shownRows(book());
    QTest::keyClick(&control<QWidget>("cboCol0"), Qt::Key_Escape);
    EXPECT_EQ(panel(), nullptr);
    EXPECT_FALSE(window->frameIsOpen());
    EXPECT_TRUE(live("cmdCal"));
    EXPECT_TRUE(control<QAction>("mnuSettings").isEnabled());
    EXPECT_EQ(focus(), "MSFG");
    EXPECT_EQ(shownRows(book()), before);
}

// A second line goes on from the point that the first ends with, and nowhere else.
TEST_F(ImportWindows, ALineOfADigitalLevelIsTakenWhereItCanGo) {
    const auto choose = [this](int line, bool below) {
        ASSERT_NE(importFile(testData("digital-levels/dna03-bffb-cc0.gsi")), nullptr);
        auto& lines = control<QTableWidget>("tblLines");
        EXPECT_EQ(lines.rowCount(), 32);
        lines.selectRow(line);
        control<QAbstractButton>("optBelow").setChecked(below);
    };
    choose(7, false);
    EXPECT_THAT(notes(), HasSubstr("line 256"));
    EXPECT_FALSE(live("cmdImport"));
    control<QAbstractButton>("chkTake").setChecked(true);
    accept();
    EXPECT_EQ(book().Rows(), 24);
    EXPECT_EQ(cell(1, sheet::Remark), "U");
    choose(0, false);
    accept();
    EXPECT_EQ(book().Rows(), 4);
    choose(0, true); // from G again, where the book ends on F
    EXPECT_THAT(notes(), HasSubstr("a back sight on \"G\""));
    EXPECT_FALSE(live("cmdImport"));
    QTest::keyClick(&control<QWidget>("tblLines"), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    choose(1, true); // from F back to G
    EXPECT_THAT(notes(), HasSubstr("goes into row 3, where the book ends"));
    QTest::keyClick(&control<QWidget>("tblLines"), Qt::Key_Return);
    ASSERT_EQ(book().Rows(), 6);
    click("cmdCal");
    EXPECT_EQ(cell(5, sheet::Remark), "G");
    EXPECT_EQ(cell(5, sheet::RLevel), "0.000") << "the sum of both lines, not of the second alone";
}

TEST_F(ImportWindows, ABadOrDroppedFileLeavesTheBook) {
    type("1");
    const std::string before = shownRows(book());
    const auto boxes =
        answering({folder.write("a.xlsx", "PK\x03\x04"), "OK"}, [this] { choose("mnuImportFile"); });
    EXPECT_THAT(boxes, ElementsAre(HasSubstr("damaged")));
    EXPECT_EQ(panel(), nullptr);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(shell::fromUtf8(folder.write("b.csv", "Ch,IS\n00-010,1.5\n")))});
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    QCoreApplication::sendEvent(window.get(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_TRUE(QTest::qWaitFor([this] { return panel() != nullptr; }));
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_EQ(panel(), nullptr);
    EXPECT_EQ(shownRows(book()), before);
    const QList<QAction*> tools = window->menu("mnuTools").actions();
    EXPECT_EQ(tools.indexOf(&control<QAction>("mnuImportFile")),
              tools.indexOf(&control<QAction>("mnuImport")) + 1);
}

} // namespace
