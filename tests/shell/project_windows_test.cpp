#include "window.h"

#include "shell/frmDorvan.h"

#include <gmock/gmock.h>

#include <QComboBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTreeView>

#include <deque>
#include <filesystem>

using testing::ElementsAre;
using testing::EndsWith;
using testing::IsEmpty;

namespace {

class ProjectWindows : public MainWindow {
  protected:
    ProjectWindows() {
        std::filesystem::copy_file(ZAVRO_TEMPLATES "/grl.mdb", folder / "grl.mdb");
        std::filesystem::create_directory(folder / "work");
    }

    /// Runs `action` and answers the dialogs that it brings: a path for a file dialog (empty: Cancel), the
    /// text of a button for a message box. Notes the texts of the boxes.
    void answering(std::deque<std::string> answers, const std::function<void()>& action) {
        boxes.clear();
        const Answers watcher([&](QWidget& modal) {
            const std::string answer = answers.empty() ? std::string() : answers.front();
            if (!answers.empty()) answers.pop_front();
            if (auto* files = dynamic_cast<QFileDialog*>(&modal)) {
                auto* name = files->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
                EXPECT_TRUE(name->hasFocus());
                if (answer.empty()) return files->reject();
                name->clear();
                QTest::keyClicks(name, shell::fromUtf8(answer));
                QTest::keyClick(name, Qt::Key_Return);
            } else if (auto* box = dynamic_cast<QMessageBox*>(&modal)) {
                boxes.push_back(shell::toUtf8(box->text()));
                for (QAbstractButton* button : box->buttons())
                    if (shell::toUtf8(button->text().remove(u'&')) == answer || box->buttons().size() == 1)
                        return QTest::mouseClick(button, Qt::LeftButton);
                ADD_FAILURE() << "no button " << answer << " in: " << boxes.back();
                box->reject();
            }
        });
        action();
        EXPECT_THAT(answers, IsEmpty());
    }
    void choose(const char* item) { control<QAction>(item).trigger(); }
    std::string title() { return shell::toUtf8(window->windowTitle()); }
    std::string at(const std::string& name) { return folder / ("work/" + name); }

    std::vector<std::string> boxes;
};

TEST_F(ProjectWindows, ABookIsMadeSavedOpenedAndClosed) {
    open();
    answering({at("a & b")}, [&] { click("cmdNew"); });
    EXPECT_EQ(title(), "ZavroGrl-" + at("a & b.grl")) << "the dialog adds the extension";
    EXPECT_EQ(cursor(), std::pair(1, int(sheet::RLevel)));
    type("100\r1.5\r");
    EXPECT_TRUE(window->book().BookChanged);
    click("cmdSave");
    EXPECT_EQ(status(), "Saved " + at("a & b.grl") + ".");
    auto& recent = control<QAction>("mnuX1");
    EXPECT_TRUE(recent.isVisible());
    EXPECT_EQ(shell::toUtf8(recent.text()), at("a && b.grl")) << "an ampersand is shown as itself";
    EXPECT_FALSE(control<QAction>("mnuX2").isVisible());

    answering({at("copy.grl")}, [&] { choose("mnuSaveas"); });
    EXPECT_EQ(title(), "ZavroGrl-" + at("copy.grl"));
    answering({"Cancel"}, [&] { click("cmdOpen"); });
    EXPECT_THAT(boxes, ElementsAre("Do you want to Save the changes you made to this file"));
    answering({"No", at("missing.grl"), "OK"}, [&] { choose("mnuOpen"); });
    EXPECT_THAT(boxes.back(), testing::StartsWith("3024  "));
    EXPECT_EQ(book().Rows(), 2);

    choose("mnuX1");
    EXPECT_EQ(title(), "ZavroGrl-" + at("a & b.grl")) << "and read back as itself";
    EXPECT_EQ(cell(1, sheet::RLevel), "100.000");
    EXPECT_EQ(cell(1, sheet::BackSight), "1.5");
    const int rows = book().Rows();
    answering({at("copy.grl")}, [&] { choose("mnuAppend"); });
    EXPECT_EQ(book().Rows(), 2 * rows - 1);
    EXPECT_EQ(cursor().first, book().Rows() - 1);

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
    shell::Surroundings surroundings;
    surroundings.programFolder = folder.path();
    surroundings.templateFolder = folder.path();
    surroundings.endProgram = [this] { ++ends; };
    answering({"Yes"}, [&] {
        window = std::make_unique<shell::frmGrl>(surroundings);
        window->Form_Load();
        QTest::qWait(200);
    });
    ASSERT_EQ(boxes.size(), 1);
    EXPECT_THAT(boxes[0],
                testing::MatchesRegex("An unsaved book from [0-9][0-9]:[0-9][0-9] was found. Open it."));
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
    const auto inDialog = [&](const std::function<void(QDialog&)>& look) {
        const Answers watcher([&](QWidget& modal) { look(dynamic_cast<shell::frmDorvan&>(modal)); });
        choose("mnuSetPath");
    };
    const auto press = [](QDialog& dialog, const char* name) {
        QTest::mouseClick(dialog.findChild<QPushButton*>(QLatin1String(name)), Qt::LeftButton);
    };

    inDialog([&](QDialog& dialog) {
        EXPECT_EQ(shell::toUtf8(dialog.windowTitle()), "Select Default Drive & Directory");
        EXPECT_EQ(shell::toUtf8(dialog.findChild<QLabel*>("lblDD")->text()), at("roads/gone"));
        EXPECT_EQ(shell::toUtf8(dialog.findChild<QLineEdit*>("txtPath")->text()), at("roads"))
            << "the nearest parent";
        EXPECT_EQ(dialog.findChild<QPushButton*>("cmdCancel")->text(), QStringLiteral("Cancel"));
        EXPECT_FALSE(dialog.findChild<QComboBox*>("Drive1")->isVisible()) << "there is one drive here";
        press(dialog, "cmdOK"); // without a choice
    });
    EXPECT_EQ(window->book().DefaultFolder, at("roads/gone"));

    inDialog([&](QDialog& dialog) {
        auto* tree = dialog.findChild<QTreeView*>("Dir1");
        EXPECT_TRUE(QTest::qWaitFor([&] { return tree->model()->rowCount(tree->currentIndex()) == 1; }));
        QTest::keyClick(tree, Qt::Key_Right);
        QTest::keyClick(tree, Qt::Key_Right);
        QTest::qWait(50);
        QTest::keyClick(tree, Qt::Key_Down);
        press(dialog, "cmdCancel");
    });
    EXPECT_EQ(window->book().DefaultFolder, at("roads/gone"));

    inDialog([&](QDialog& dialog) {
        auto* path = dialog.findChild<QLineEdit*>("txtPath");
        path->setFocus();
        path->selectAll();
        QTest::keyClicks(path, shell::fromUtf8(at("roads/nor")));
        EXPECT_FALSE(dialog.findChild<QPushButton*>("cmdOK")->isEnabled()) << "no folder yet";
        QTest::keyClicks(path, QStringLiteral("th"));
        press(dialog, "cmdOK");
    });
    EXPECT_EQ(window->book().DefaultFolder, at("roads/north"));
    EXPECT_EQ(folder.read("set.ini"), "002 " + at("roads/north") + "\r\n");
}

} // namespace
