#include "window.h"

#include "tools/road_tables.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QRadioButton>

#include <filesystem>
#include <fstream>

namespace {

namespace fs = std::filesystem;

class ExportPanelTest : public MainWindow {
  protected:
    void openWithBook(const std::vector<std::array<const char*, 5>>& rows) {
        fs::remove(folder / "Rod.dwg");
        for (const char* name : {"grl.mdb", "Rod.mdb", "Rod.dwg", "Rod1.dwg"})
            fs::copy_file(std::string(ZAVRO_TEMPLATES) + "/" + name, folder / name);
        fs::copy_file(folder / "grl.mdb", folder / "Site1.grl");
        fs::create_directory(folder / "roads");
        mdlTools::InitLSectFieldTable();
        open();
        window->book().setProjectPath(folder / "Site1.grl");
        window->book().DefaultFolder = folder / "roads";
        book().setRows(int(rows.size()) + 1);
        for (std::size_t i = 0; i < rows.size(); ++i)
            for (int column = 0; column < 5; ++column)
                book().setText(int(i) + 1, column < 4 ? column : int(sheet::RLevel),
                               rows[i][std::size_t(column)]);
        window->showBook();
    }

    /// Confirms the message boxes that `act` brings and returns their texts.
    template <typename Act>
    std::vector<std::string> boxesOf(Act&& act) {
        std::vector<std::string> texts;
        Answers answers([&texts](QWidget& modal) {
            auto* box = dynamic_cast<QMessageBox*>(&modal);
            if (box == nullptr) return modal.close(), void();
            texts.push_back(shell::toUtf8(box->text()));
            box->accept();
        });
        act();
        QTest::qWait(20);
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get())) ADD_FAILURE() << "the window is not active again";
        return texts;
    }

    QLineEdit& box(const char* name) { return control<QLineEdit>(name); }
    std::string textOf(const char* name) { return shell::toUtf8(box(name).text()); }
    std::string choiceOf(const char* name) { return shell::toUtf8(control<QComboBox>(name).currentText()); }
    bool live(const char* name) { return control<QWidget>(name).isEnabled(); }
    void choose(const char* name) { control<QRadioButton>(name).click(); }
    void fill(const char* name, const char* text) { box(name).setText(QLatin1String(text)); }
};

const std::vector<std::array<const char*, 5>> section{{"00-000", "3.15", "", "", "11.366"},
                                                      {"00-000", "", "0", "", "11.350"},
                                                      {"00-000", "", "", "3.15", "11.514"}};

TEST_F(ExportPanelTest, OpensAsDesignedAndLocksTheCommands) {
    openWithBook(section);
    const char* commands[] = {"cmdDel",  "cmdIns",  "cmdList", "cmdNew",
                              "cmdOpen", "cmdSave", "cmdCal",  "cmdExit"};
    click("cmdExport");
    auto& panel = control<QWidget>("fExport");
    EXPECT_TRUE(panel.isVisible());
    for (const char* name : commands)
        EXPECT_FALSE(live(name)) << name;
    EXPECT_TRUE(live("cmdExport") && live("cmdCP"));

    EXPECT_EQ(textOf("txtSubDiv") + "|" + textOf("txtDiv") + "|" + textOf("txtTW") + "|" +
                  textOf("txtCrgWid"),
              "P. W. Sub-Division|P. W. Division|7.5|3.75");
    EXPECT_TRUE(live("txtTW") && live("cboGIS") && !live("txtLW") && !live("txtRW") && !live("txtTopW"));
    const std::pair<const char*, int> combos[] = {
        {"cboFill", 6}, {"cboCut", 6}, {"cboGIS", 4}, {"cboGOS", 4}};
    for (const auto& [name, count] : combos)
        EXPECT_EQ(control<QComboBox>(name).count(), count) << name;
    for (const char* name : {"optName0", "optName1", "optName2", "optName3"})
        EXPECT_FALSE(control<QRadioButton>(name).isChecked());

    for (QWidget* child : panel.findChildren<QWidget*>()) {
        if (child->focusPolicy() == Qt::NoFocus || !child->isVisible()) continue;
        if (child->objectName().startsWith(QLatin1String("qt_")) ||
            child->parentWidget()->inherits("QComboBox"))
            continue;
        EXPECT_FALSE(child->accessibleName().isEmpty()) << shell::toUtf8(child->objectName());
    }
    for (QLabel* label : panel.findChildren<QLabel*>()) {
        if (label->objectName() == QLatin1String("lblProj")) continue; // a path shortens itself
        EXPECT_GE(label->width(), label->sizeHint().width()) << shell::toUtf8(label->text());
    }
    EXPECT_TRUE(window->centralWidget()->rect().contains(panel.geometry()));
    EXPECT_GT(control("cmdTr").x(), control("cmdCancel").x());

    click("cmdCancel");
    EXPECT_FALSE(panel.isVisible());
    EXPECT_TRUE(window->grid().hasFocus());
    for (const char* name : commands)
        EXPECT_TRUE(live(name)) << name;
}

TEST_F(ExportPanelTest, ControlsFollowTheFrameAndTheFrameThem) {
    openWithBook(section);
    click("cmdExport");
    choose("optName1");
    EXPECT_EQ(textOf("txtName"), "Constructing New Road From");
    choose("optName3");
    EXPECT_EQ(textOf("txtName"), "");
    fill("txtTW", "7");
    choose("optWLR");
    EXPECT_EQ(textOf("txtLW") + textOf("txtRW"), "3.53.5");
    EXPECT_TRUE(live("txtLW") && live("txtRW") && !live("txtTW"));
    fill("txtLW", "4");
    choose("optWTot");
    EXPECT_EQ(textOf("txtTW"), "7.5");
    control<QRadioButton>("optWTot").setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Up);
    EXPECT_TRUE(live("txtLW") && !live("txtTW")) << "an arrow key chooses as a click does";
    EXPECT_EQ(textOf("txtLW"), "3.75");
    choose("optWTot");

    // Leaving one of the gutter's boxes works out the others.
    choose("optGut1");
    EXPECT_TRUE(live("txtTopW") && !live("cboGIS") && !live("cboGOS"));
    fill("txtDDrn", "1");
    fill("txtTopW", "1.5");
    box("txtTopW").setFocus();
    box("txtDDrn").setFocus();
    QTest::qWait(5);
    EXPECT_EQ(choiceOf("cboGIS") + choiceOf("cboGOS"), "0.500.50");
    fill("txtTopW", "0.2");
    box("txtTopW").setFocus();
    EXPECT_EQ(boxesOf([this] { box("txtDDrn").setFocus(); }),
              std::vector<std::string>{"Top width of gutter is Less than Bottom width, Please check it"});
    choose("optGut0");
    control<QComboBox>("cboGIS").setFocus();
    control<QComboBox>("cboGIS").setEditText(QStringLiteral("1"));
    box("txtDDrn").setFocus();
    QTest::qWait(5);
    EXPECT_EQ(textOf("txtTopW"), "2.00");
}

TEST_F(ExportPanelTest, TabGoesThroughTheBoxesInReadingOrder) {
    openWithBook(section);
    click("cmdExport");
    box("txtName").setFocus();
    std::vector<std::string> visited;
    for (int i = 0; i < 18; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        visited.push_back(shell::toUtf8(QApplication::focusWidget()->objectName()));
    }
    const std::vector<std::string> expected{
        "txtSubDiv", "txtDiv", "txtSurvey", "optWTot", "txtTW", "txtCrgWid", "cboFill", "cboCut", "optGut0",
        "cboGIS",    "cboGOS", "txtDDrn",   "txtWDrn", "chkLG", "chkRg",     "chkFRL",  "cmdSel", "cmdTr"};
    EXPECT_EQ(visited, expected);
}

TEST_F(ExportPanelTest, TransfersTheBook) {
    openWithBook(section);
    click("cmdExport");
    EXPECT_EQ(boxesOf([this] { click("cmdTr"); }),
              std::vector<std::string>{(folder / "roads/Site1") + " Folder is Created"});
    EXPECT_TRUE(fs::exists(folder / "roads/Site1/Road.mdb"));
    EXPECT_FALSE(fs::exists(folder / "Rodd.mdb"));
    EXPECT_FALSE(control<QWidget>("fExport").isVisible());
    EXPECT_TRUE(live("cmdSave"));

    // The road takes the levels of the book again, as formation levels, by Ctrl+Enter.
    click("cmdExport");
    Answers choose([this](QWidget& modal) {
        modal.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))
            ->setText(shell::fromUtf8(folder / "roads/Site1/Road.mdb"));
        dynamic_cast<QDialog&>(modal).accept();
    });
    click("cmdSel");
    EXPECT_EQ(shell::toUtf8(control<QLabel>("lblProj").text()), folder / "roads/Site1/Road.mdb");
    control("cmdTr").setFocus();
    QTest::keyClick(&control("cmdTr"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(status(), "3 formation levels sent to " + (folder / "roads/Site1/Road.mdb") + ".");
    EXPECT_TRUE(control<QWidget>("fExport").isVisible());
}

TEST_F(ExportPanelTest, RefusedRowsAreFoundUpwards) {
    openWithBook({{"00-000", "3.15", "", "", "11.366"},
                  {"00-000", "3.15", "", "", "11.366"},
                  {"00-000", "", "0", "", "11.350"},
                  {"00-010", "", "0", "", ""}});
    click("cmdExport");
    EXPECT_EQ(
        boxesOf([this] { click("cmdTr"); }),
        std::vector<std::string>{"There are 2 Errors in your dataentry Please ckeck & then transfer it..."});
    EXPECT_EQ(cursor(), std::pair(4, 0));
    EXPECT_TRUE(window->grid().hasFocus());
    EXPECT_EQ(status(), "2 rows marked; row 4: no reading; delete it if it is a spare row");
    press(Qt::Key_F9);
    EXPECT_EQ(cursor(), std::pair(2, 0));
    EXPECT_EQ(status(), "2 rows marked; row 2: left 3.15 m of 00-000 repeats row 1");
    EXPECT_FALSE(fs::exists(folder / "roads/Site1"));
}

} // namespace
