#include "field_book.h"
#include "window.h"

#include "tools/road_tables.h"

#include <QComboBox>
#include <QRadioButton>

namespace {

namespace fs = std::filesystem;

class ExportPanelTest : public MainWindow {
  protected:
    /// Opens the frame over a book with these rows.
    void openWithBook(const std::vector<std::string>& rows = {
                          "00-000,3.15,,,,,,,11.366", "00-000,,0,,,,,,11.350", "00-000,,,3.15,,,,,11.514"}) {
        copyTemplates();
        fs::copy_file(folder / "grl.mdb", folder / "Site1.grl");
        fs::create_directory(folder / "roads");
        mdlTools::InitLSectFieldTable();
        open();
        window->book().setProjectPath(folder / "Site1.grl");
        window->book().DefaultFolder = folder / "roads";
        keyRows(book(), rows);
        window->showBook();
        click("cmdExport");
    }
    /// What `act` says in boxes, which are confirmed; the window has the focus again afterwards.
    std::vector<std::string> boxesOf(const std::function<void()>& act) {
        auto texts = answering({"OK"}, [&act] {
            act();
            QTest::qWait(20);
        });
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get())) ADD_FAILURE() << "the window is not active again";
        return texts;
    }

    QLineEdit& box(const char* name) { return control<QLineEdit>(name); }
    std::string textOf(const char* name) { return shell::toUtf8(box(name).text()); }
    void choose(const char* name) { control<QRadioButton>(name).click(); }
    void fill(const char* name, const char* text) { box(name).setText(QLatin1String(text)); }
};

TEST_F(ExportPanelTest, LocksTheCommandsAndCutsNoText) {
    openWithBook();
    const auto& panel = control<QWidget>("fExport");
    const char* commands[] = {"cmdDel",  "cmdIns",  "cmdList", "cmdNew",
                              "cmdOpen", "cmdSave", "cmdCal",  "cmdExit"};
    for (const char* name : commands)
        EXPECT_FALSE(live(name)) << name;
    EXPECT_TRUE(live("cmdExport") && live("cmdCP"));
    EXPECT_TRUE(live("txtTW") && live("cboGIS") && !live("txtLW") && !live("txtRW") && !live("txtTopW"));
    EXPECT_EQ(textOf("txtTW") + "|" + textOf("txtCrgWid"), "7.5|3.75");
    for (const char* name : {"optName0", "optName1", "optName2", "optName3"})
        EXPECT_FALSE(control<QRadioButton>(name).isChecked());
    for (QLabel* label : panel.findChildren<QLabel*>()) {
        if (label->objectName() == QLatin1String("lblProj")) continue; // a path shortens itself
        EXPECT_GE(label->width(), label->sizeHint().width()) << shell::toUtf8(label->text());
    }
    EXPECT_TRUE(window->centralWidget()->rect().contains(panel.geometry()));

    click("cmdCancel");
    EXPECT_FALSE(panel.isVisible());
    EXPECT_TRUE(window->grid().hasFocus());
    for (const char* name : commands)
        EXPECT_TRUE(live(name)) << name;
}

TEST_F(ExportPanelTest, ControlsFollowTheFrameAndTheFrameThem) {
    openWithBook();
    choose("optName1");
    EXPECT_EQ(textOf("txtName"), "Constructing New Road From");
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
    choose("optWTot");

    // Leaving one of the gutter's boxes works out the others.
    choose("optGut1");
    EXPECT_TRUE(live("txtTopW") && !live("cboGIS") && !live("cboGOS"));
    fill("txtDDrn", "1");
    fill("txtTopW", "0.2");
    box("txtTopW").setFocus();
    EXPECT_THAT(boxesOf([this] { box("txtDDrn").setFocus(); }),
                ElementsAre("Top width of gutter is Less than Bottom width, Please check it"));
    choose("optGut0");
    control<QComboBox>("cboGIS").setFocus();
    control<QComboBox>("cboGIS").setEditText(QStringLiteral("1"));
    box("txtDDrn").setFocus();
    QTest::qWait(5);
    EXPECT_EQ(textOf("txtTopW"), "2.00");
}

TEST_F(ExportPanelTest, TabGoesThroughTheBoxesInReadingOrder) {
    openWithBook();
    box("txtName").setFocus();
    for (const char* name :
         {"txtSubDiv", "txtDiv", "txtSurvey", "optWTot", "txtTW", "txtCrgWid", "cboFill", "cboCut", "optGut0",
          "cboGIS", "cboGOS", "txtDDrn", "txtWDrn", "chkLG", "chkRg", "chkFRL", "cmdSel", "cmdTr"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(shell::toUtf8(QApplication::focusWidget()->objectName()), name);
    }
}

TEST_F(ExportPanelTest, EscapeClosesItFromItsBoxesAndFromTheButtonsBesideIt) {
    openWithBook();
    for (const char* name : {"txtSurvey", "cboGIS", "chkLG", "cmdCP", "cmdExport"}) {
        click("cmdExport");
        EXPECT_FALSE(control<QWidget>("fExport").isHidden()) << name;
        control<QWidget>(name).setFocus();
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
        EXPECT_TRUE(control<QWidget>("fExport").isHidden()) << name;
        EXPECT_TRUE(live("cmdSave")) << name;
    }
}

TEST_F(ExportPanelTest, TransfersTheBookAndItsFormationLevels) {
    openWithBook();
    const std::string road = folder / "roads/Site1/Road.mdb";
    EXPECT_THAT(boxesOf([this] { click("cmdTr"); }),
                ElementsAre((folder / "roads/Site1") + " Folder is Created"));
    EXPECT_TRUE(fs::exists(road));
    EXPECT_FALSE(shown("fExport"));
    EXPECT_TRUE(live("cmdSave"));

    click("cmdExport");
    answering({road}, [this] { click("cmdSel"); });
    EXPECT_EQ(shell::toUtf8(control<QLabel>("lblProj").text()), road);
    control("cmdTr").setFocus();
    QTest::keyClick(&control("cmdTr"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(status(), "3 formation levels sent to " + road + ".");
    EXPECT_TRUE(shown("fExport"));
}

TEST_F(ExportPanelTest, RefusedRowsAreFoundUpwards) {
    openWithBook(
        {"00-000,3.15,,,,,,,11.366", "00-000,3.15,,,,,,,11.366", "00-000,,0,,,,,,11.350", "00-010,,0"});
    EXPECT_THAT(boxesOf([this] { click("cmdTr"); }),
                ElementsAre("There are 2 Errors in your dataentry Please ckeck & then transfer it..."));
    EXPECT_EQ(cursor(), std::pair(4, 0));
    EXPECT_TRUE(window->grid().hasFocus());
    EXPECT_EQ(status(), "2 rows marked; row 4: no reading; delete it if it is a spare row");
    press(Qt::Key_F9);
    EXPECT_EQ(cursor(), std::pair(2, 0));
    EXPECT_EQ(status(), "2 rows marked; row 2: left 3.15 m of 00-000 repeats row 1");
    EXPECT_FALSE(fs::exists(folder / "roads/Site1"));
}

} // namespace
