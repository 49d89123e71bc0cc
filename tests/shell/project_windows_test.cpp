#include "window.h"

#include "shell/frmDorvan.h"

#include <QComboBox>
#include <QPushButton>
#include <QTreeView>

namespace {

class ProjectWindows : public MainWindow {
  protected:
    ProjectWindows() {
        copyTemplates();
        std::filesystem::create_directory(folder / "work");
    }
    std::string title() { return shell::toUtf8(window->windowTitle()); }
    std::string at(const std::string& name) { return folder / ("work/" + name); }
};

TEST_F(ProjectWindows, ABookIsSavedAndAppendedByItsRecentEntryAndClosedByExitAlone) {
    open();
    answering({at("a & b")}, [&] { click("cmdNew"); });
    type("100\r1.5\r");
    click("cmdSave");
    EXPECT_EQ(shell::toUtf8(control<QAction>("mnuX1").text()), at("a && b.grl")) << "shown as itself";
    answering({at("copy.grl")}, [&] { choose("mnuSaveas"); });
    EXPECT_EQ(title(), "ZavroGrl-" + at("copy.grl"));
    choose("mnuX1");
    EXPECT_EQ(title(), "ZavroGrl-" + at("a & b.grl")) << "and read back as itself";
    EXPECT_EQ(cell(1, sheet::RLevel), "100.000");
    answering({at("copy.grl")}, [&] { choose("mnuAppend"); });
    EXPECT_EQ(book().Rows(), 5);

    type("7");
    answering({"Cancel"}, [&] { window->close(); });
    EXPECT_EQ(ends, 0);
    EXPECT_TRUE(window->isVisible());
    answering({"Yes"}, [&] { choose("mnuExit"); });
    EXPECT_EQ(ends, 1);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        EXPECT_FALSE(entry.path().filename().string().starts_with(project::copyPrefix))
            << "no copy after an Exit";
}

TEST_F(ProjectWindows, AnUnsavedBookIsOfferedAtTheNextStart) {
    open();
    answering({at("road.grl")}, [&] { click("cmdNew"); });
    type("100\r1.5\r");
    QTest::qWait(1300); // keys rest
    window.reset();     // not by Exit
    offersRecovery = true;
    EXPECT_THAT(answering({"Yes"},
                          [&] {
                              open();
                              QTest::qWait(200);
                          }),
                ElementsAre(testing::StartsWith("An unsaved book \"road.grl\" from ")));
    EXPECT_EQ(title(), "ZavroGrl-" + at("road.grl"));
    EXPECT_EQ(cell(1, sheet::RLevel), "100");
    EXPECT_EQ(cell(1, sheet::BackSight), "1.5");
    EXPECT_TRUE(window->book().BookChanged);
    answering({"No"}, [&] { click("cmdExit"); });
    EXPECT_EQ(ends, 1);
}

TEST_F(ProjectWindows, TheFolderDialogTakesAFolderOfTheTree) {
    std::filesystem::create_directories(folder / "work/roads/north");
    folder.write("set.ini", "002 " + at("roads/gone") + "\r\n");
    open();
    const auto inDialog = [&](const char* ending, const std::function<void(QDialog&)>& look) {
        const Answers watcher([&](QWidget& modal) {
            auto& dialog = dynamic_cast<shell::frmDorvan&>(modal);
            look(dialog);
            QTest::mouseClick(dialog.findChild<QPushButton*>(QLatin1String(ending)), Qt::LeftButton);
        });
        choose("mnuSetPath");
    };
    inDialog("cmdOK", [&](QDialog& dialog) { // without a choice
        EXPECT_EQ(shell::toUtf8(dialog.findChild<QLabel*>("lblDD")->text()), at("roads/gone"));
        EXPECT_EQ(shell::toUtf8(dialog.findChild<QLineEdit*>("txtPath")->text()), at("roads"))
            << "the nearest parent";
        EXPECT_FALSE(dialog.findChild<QComboBox*>("Drive1")->isVisible()) << "there is one drive here";
    });
    inDialog("cmdCancel", [&](QDialog& dialog) {
        auto* tree = dialog.findChild<QTreeView*>("Dir1");
        EXPECT_TRUE(QTest::qWaitFor([&] { return tree->model()->rowCount(tree->currentIndex()) == 1; }));
        for (const Qt::Key key : {Qt::Key_Right, Qt::Key_Right, Qt::Key_Down})
            QTest::keyClick(tree, key, Qt::NoModifier, 20);
    });
    EXPECT_EQ(window->book().DefaultFolder, at("roads/gone"));
    inDialog("cmdOK", [&](QDialog& dialog) {
        auto* path = dialog.findChild<QLineEdit*>("txtPath");
        path->selectAll();
        QTest::keyClicks(path, shell::fromUtf8(at("roads/nor")));
        EXPECT_FALSE(dialog.findChild<QPushButton*>("cmdOK")->isEnabled()) << "no folder yet";
        QTest::keyClicks(path, QStringLiteral("th"));
    });
    EXPECT_EQ(window->book().DefaultFolder, at("roads/north"));
    EXPECT_EQ(folder.read("set.ini"), "002 " + at("roads/north") + "\r\n");
}

} // namespace
