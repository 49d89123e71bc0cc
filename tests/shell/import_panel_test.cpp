#include "window.h"

#include "field_book.h"

#include <QComboBox>
#include <QDropEvent>
#include <QListWidget>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QTableWidget>

using testing::HasSubstr;

namespace {

class ImportWindows : public MainWindow {
  protected:
    ImportWindows() {
        setenv("XDG_CONFIG_HOME", folder.path().c_str(), 1);
        open();
    }

    /// Imports `file` and hands the panel that comes to `use`, which must close it.
    void importFile(const std::string& file, const std::function<void(QDialog&)>& use) {
        bool asked = false, used = false;
        const Answers answers([&](QWidget& modal) {
            if (auto* files = dynamic_cast<QFileDialog*>(&modal); files != nullptr) {
                if (std::exchange(asked, true)) return;
                auto* name = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
                name->setText(shell::fromUtf8(file));
                QTest::keyClick(name, Qt::Key_Return);
            } else if (auto* panel = dynamic_cast<QDialog*>(&modal);
                       panel != nullptr && !std::exchange(used, true)) {
                use(*panel);
            }
        });
        choose("mnuImportFile");
        EXPECT_TRUE(used);
    }
    template <typename Control>
    static Control& in(QDialog& panel, const char* name) {
        auto* found = panel.findChild<Control*>(QLatin1String(name));
        if (found == nullptr) throw std::runtime_error(std::string("no control ") + name);
        return *found;
    }
    static std::string notes(QDialog& panel) {
        std::string all;
        auto& list = in<QListWidget>(panel, "lstNotes");
        for (int row = 0; row < list.count(); ++row)
            all += shell::toUtf8(list.item(row)->text()) + "|";
        return all;
    }
    static void accept(QDialog& panel) {
        QTest::mouseClick(&in<QPushButton>(panel, "cmdImport"), Qt::LeftButton);
    }
};

TEST_F(ImportWindows, TheColumnsOfATableAreChosenAndRemembered) {
    const std::string file = folder.write("a.csv", "Peg,Staff,F.S.\n00-010,1.5,x\n00-020,1.6,\n");
    for (const bool again : {false, true}) {
        importFile(file, [&](QDialog& panel) {
            auto& box = in<QComboBox>(panel, "cboCol1");
            EXPECT_EQ(shell::toUtf8(box.currentText()), again ? "I.S." : "-");
            EXPECT_THAT(notes(panel), HasSubstr("Column C: 1 cell is no reading"));
            box.setCurrentText(QStringLiteral("I.S."));
            in<QAbstractButton>(panel, "chkRemember").setChecked(true);
            if (again) in<QAbstractButton>(panel, "optBelow").setChecked(true);
            accept(panel);
        });
    }
    EXPECT_EQ(shownRows(book()), "00-010,,,,,1.5|00-020,,,,,1.6|00-010,,,,,1.5|00-020,,,,,1.6");
    EXPECT_THAT(status(), HasSubstr("Cal reduces the levels"));
}

TEST_F(ImportWindows, ALineOfADigitalLevelThatDisagreesIsTakenOnlyWhenTicked) {
    importFile(testData("digital-levels/dna03-bffb-cc0.gsi"), [&](QDialog& panel) {
        auto& lines = in<QTableWidget>(panel, "tblLines");
        EXPECT_EQ(lines.rowCount(), 32);
        lines.selectRow(7);
        EXPECT_THAT(notes(panel), HasSubstr("line 256"));
        EXPECT_FALSE(in<QPushButton>(panel, "cmdImport").isEnabled());
        in<QAbstractButton>(panel, "chkTake").setChecked(true);
        accept(panel);
    });
    EXPECT_EQ(book().Rows(), 24);
    EXPECT_EQ(cell(1, sheet::Remark), "U");
}

TEST_F(ImportWindows, ABadOrDroppedFileLeavesTheBook) {
    type("1");
    const std::string before = shownRows(book());
    importFile(folder.write("a.xlsx", "PK\x03\x04"), [&](QDialog& box) {
        EXPECT_THAT(shell::toUtf8(dynamic_cast<QMessageBox&>(box).text()), HasSubstr("damaged"));
        box.accept();
    });
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(shell::fromUtf8(folder.write("b.csv", "Ch,IS\n00-010,1.5\n")))});
    QDropEvent drop(QPointF(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    const Answers answers([](QWidget& modal) { dynamic_cast<QDialog&>(modal).reject(); });
    QDragEnterEvent enter(QPoint(9, 9), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    QCoreApplication::sendEvent(window.get(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_TRUE(QTest::qWaitFor([&answers] { return answers.count > 0; }));
    EXPECT_EQ(shownRows(book()), before);
    const QList<QAction*> tools = window->menu("mnuTools").actions();
    EXPECT_EQ(tools.indexOf(&control<QAction>("mnuImportFile")),
              tools.indexOf(&control<QAction>("mnuImport")) + 1);
}

} // namespace
