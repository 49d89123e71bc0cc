#include "window.h"

#include "field_book.h"

#include <QComboBox>
#include <QDockWidget>
#include <QLineEdit>
#include <QStatusBar>
#include <QTableView>
#include <QTreeWidget>

namespace {

class SurveyPanes : public MainWindow {
  protected:
    void openWith(const std::vector<std::string>& rows) {
        open();
        window->act({.name = "Preset"}, [&] { keyRows(book(), rows); });
        settle();
    }
    static void settle() { QTest::qWait(60); }
    std::string said(const char* label) { return shell::toUtf8(control<QLabel>(label).text()); }
    std::string table(const char* name, int row, int column) {
        return shell::toUtf8(control<QTableView>(name).model()->index(row, column).data().toString());
    }

    const std::vector<std::string> run{",,,,1.5,,,,100,A", "00-000,,0,,,1.4,,,,", "CP,,,,1.4,,1.5,,,",
                                       "00-010,,0,,,1.3,,,,", "CP,,,,,,1.398,,,B = 100.006"};
};

TEST_F(SurveyPanes, LevelsFollowTheKeysAndGoIntoTheBook) {
    openWith(run);
    EXPECT_FALSE(shown("paneLevels"));
    choose("mnuMisclosure");
    settle();
    EXPECT_TRUE(shown("paneLevels") && control<QAction>("mnuMisclosure").isChecked());
    EXPECT_EQ(said("lblClosing"), "Does not close: 4 mm, allowed 1 mm"); // 10 m of road
    EXPECT_EQ(table("tblLevels", 1, 2), "100.102");
    control<QComboBox>("cboClass").lineEdit()->setText(QStringLiteral("5rN"));
    QTest::keyClick(control<QComboBox>("cboClass").lineEdit(), Qt::Key_Return);
    settle();
    EXPECT_EQ(said("lblClosing"), "Closes: 4 mm, allowed 7 mm (5 mm √2)");
    auto* sections = control<QTableView>("tblSections").model();
    EXPECT_FALSE(sections->setData(sections->index(0, 3), QStringLiteral("far")));
    EXPECT_TRUE(sections->setData(sections->index(0, 3), QStringLiteral("0.5")));
    EXPECT_EQ(table("tblSections", 0, 3), "0.5");
    window->grid().setFocus();
    window->act({.name = "Key"}, [&] { book().setText(2, sheet::InterSight, "1.3"); });
    settle();
    EXPECT_EQ(table("tblLevels", 1, 2), "100.202");
    choose("mnuPutLevels");
    EXPECT_EQ(said("lblStatus"), "4 levels adjusted; Cal brings back the raw ones");
    EXPECT_EQ(cell(5, sheet::RLevel), "100.006");
    EXPECT_TRUE(window->book().BookChanged);
    choose("mnuRiseFall"); // the pane stays and shows the other check
    EXPECT_TRUE(shown("paneLevels") && !control<QAction>("mnuMisclosure").isChecked());
    QTest::qWait(400);
    EXPECT_THAT(said("lblClosing"), testing::StartsWith("They agree: B.S. - F.S. 0.002"));
    choose("mnuRiseFall");
    EXPECT_FALSE(shown("paneLevels"));
    // Without a closing mark nothing is put anywhere.
    window->act({.name = "Key"}, [&] { book().setText(5, sheet::Remark, ""); });
    choose("mnuPutLevels");
    EXPECT_EQ(said("lblStatus"), "Not closed: no known level at the end");
}

TEST_F(SurveyPanes, FindingsAreCountedListedAndSetAside) {
    std::vector<std::string> rows = run;
    rows[3] = "00-000,,0,,,1.3,,,,";
    rows[4] = "CP,,,,,,1.398,,,";
    openWith(rows);
    window->book().setProjectPath(folder / "a.grl");
    EXPECT_EQ(said("lblFindings"), "1 finding, F8");
    QTest::keyClick(&window->grid(), Qt::Key_F8);
    settle();
    ASSERT_TRUE(shown("paneFindings"));
    auto& list = control<QTreeWidget>("lstFindings");
    ASSERT_EQ(list.topLevelItemCount(), 2); // with "not closed", which is not counted
    EXPECT_EQ(shell::toUtf8(list.topLevelItem(0)->text(2)), "The same point (the centre) was read in row 2");
    choose("mnuNextFinding");
    EXPECT_EQ(book().Row(), 4);
    EXPECT_THAT(said("lblStatus"), testing::StartsWith("Row 4: The same point"));
    settle();
    list.setCurrentItem(list.topLevelItem(0));
    click("cmdAside");
    EXPECT_FALSE(shown("lblFindings"));
    EXPECT_EQ(list.topLevelItemCount(), 1);
    // Kept for the book, and over when a cell changes that it rests on.
    window.reset();
    openWith(rows);
    window->act({.name = "Open"}, [&] { window->book().setProjectPath(folder / "a.grl"); });
    settle();
    EXPECT_FALSE(shown("lblFindings"));
    window->act({.name = "Key"}, [&] { book().setText(2, sheet::InterSight, "1.35"); });
    settle();
    EXPECT_TRUE(shown("lblFindings"));
}

TEST_F(SurveyPanes, NoticesAreToldBehindWhatTheActionSaysAndListed) {
    copyTemplates();
    std::vector<std::string> rows = run;
    rows[1] = "1250,,0,,,1.4,,,,";
    rows[3] = "1260,,0,,,1.3,,,,";
    openWith(rows);
    const std::string sums = "Sums agree: B.S. 2.900 - F.S. 2.898 = 0.002, level 100.000 to 100.002.";
    const std::string notice = " Row 2: chainage 1250 became 125000, and 1 more.";
    moveTo(2, sheet::InterSight);
    click("cmdCal");
    EXPECT_EQ(status(), sums + notice + " Ctrl+Z takes it back.");
    type("5"); // another step
    EXPECT_EQ(status(), sums + notice);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(status(), sums) << "the user is elsewhere";
    QTest::keyClick(&window->grid(), Qt::Key_F8);
    settle();
    auto& list = control<QTreeWidget>("lstFindings");
    const auto listed = [&](int fromEnd) {
        return shell::toUtf8(list.topLevelItem(list.topLevelItemCount() - fromEnd)->text(2));
    };
    EXPECT_EQ(listed(3), "What keys and commands did besides");
    EXPECT_EQ(listed(2) + listed(1), "chainage 1250 became 125000chainage 1260 became 126000");
    EXPECT_EQ(list.topLevelItemCount(), 5);
    EXPECT_EQ(said("lblFindings"), "2 findings, F8") << "notices are not counted";
    moveTo(2, 0);
    press(Qt::Key_P, Qt::ShiftModifier); // over a key's work: how to be spared it, too
    EXPECT_EQ(status(), "Row 2: chainage 125000 became CP, and 2 more. Ctrl+Z takes it back; Guarded editing "
                        "keeps it from happening.");
    answering({"Yes", folder / "New.grl"}, [&] { click("cmdNew"); });
    settle();
    EXPECT_EQ(list.topLevelItemCount(), 0);
}

TEST_F(SurveyPanes, TheHeadingIsPartOfTheBook) {
    openWith(run);
    window->book().BookChanged = false;
    const Answers answers([this](QWidget& modal) {
        modal.findChild<QLineEdit*>(QStringLiteral("txtHeading_work"))->setText(QStringLiteral("Road 5"));
        QTest::keyClick(&modal, Qt::Key_Return);
    });
    choose("mnuHeading");
    EXPECT_EQ(window->book().JobHeading.text("work"), "Road 5");
    EXPECT_TRUE(window->book().BookChanged);
    click("cmdExport");
    EXPECT_EQ(shell::toUtf8(control<QLineEdit>("txtName").text()), "Road 5");
}

} // namespace
