#include "file_faults.h"
#include "window.h"

#include "desktop/desktop.h"
#include "project/recovery.h"
#include "shell/application.h"

#include <QContextMenuEvent>
#include <QPushButton>
#include <QScrollBar>

namespace {

/// A spreadsheet that fails as nobody expects.
class Failing final : public spreadsheet::RunningSpreadsheet {
  public:
    std::function<void()> fail;
    std::vector<spreadsheet::Row> readSheet(const spreadsheet::GoOn&) override {
        fail();
        return {};
    }
};

class Edge : public MainWindow {
  protected:
    int copies() {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
            count += entry.path().filename().string().starts_with(project::copyPrefix) ? 1 : 0;
        return count;
    }
};

TEST_F(Edge, WhatNobodyExpectsIsToldTheBookSetAsideAndTheProgramGoesOn) {
    const auto failing = std::make_shared<Failing>();
    spreadsheet = failing;
    open();
    struct Case {
        std::function<void()> fail;
        const char* told;
    };
    const Case cases[] = {
        {[] { throw std::bad_alloc(); }, "Import stopped: Out of memory. "},
        {[] { throw std::runtime_error("Page 7 is damaged."); }, "Import stopped: Page 7 is damaged. "},
        {[] { throw 7; }, "Import stopped: an unknown error. "},
    };
    moveTo(1, sheet::Remark);
    for (const Case& c : cases) {
        type("x");
        failing->fail = c.fail;
        choose("mnuImport");
        EXPECT_EQ(status(), std::string(c.told) + project::setAsideNote);
    }
    EXPECT_EQ(copies(), 3) << "a new one each time: none takes the place of an older one";
    EXPECT_EQ(cell(1, sheet::Remark), "xxx");
}

TEST_F(Edge, WhatEscapesTheSmallWindowsAndPanelsIsCaughtToo) {
    folder.write("lgn.lgn", "\r\n");
    open();
    auto& net = dynamic_cast<shell::Application&>(*QCoreApplication::instance()).unexpected;
    net = [this] { window->rescue("The program"); };
    moveTo(1, sheet::Remark);
    const auto expectRescued = [this](const char* where) {
        EXPECT_EQ(status(), std::string("The program stopped: Out of memory. ") + project::setAsideNote)
            << where;
        window->desktop().status({});
        type("x"); // a later state, and the program goes on
    };
    type("x");
    // A call about a file in a window that runs a loop of its own.
    const Answers answers([&](QWidget& password) {
        bool thrown = false;
        {
            const FileFaults faults([&](files::Call, const std::string&) {
                if (!std::exchange(thrown, true)) throw std::bad_alloc();
                return 0;
            });
            for (int click = 0; click < 2; ++click) // the old password, then the new one
                QTest::mouseClick(password.findChild<QPushButton*>("cmdOK"), Qt::LeftButton);
        }
        EXPECT_TRUE(thrown);
        EXPECT_TRUE(password.isVisible());
        dynamic_cast<QDialog&>(password).reject();
    });
    choose("mnuPass");
    EXPECT_EQ(answers.count, 1);
    expectRescued("the password");
    EXPECT_EQ(folder.read("lgn.lgn"), "\r\n");
    // Handlers of a bar and of the frames, and a timer.
    const auto fails = [] { throw std::bad_alloc(); };
    choose("mnuFind");
    auto& find = control<QLineEdit>("txtFind");
    QObject::connect(&find, &QLineEdit::textEdited, &find, fails);
    QTest::keyClick(&find, 'a');
    expectRescued("a bar");
    click("cmdList");
    auto& box = control<QAbstractButton>("chkOft");
    QObject::connect(&box, &QAbstractButton::clicked, &box, fails);
    QTest::keyClick(&box, Qt::Key_Space);
    expectRescued("a frame");
    click("cmdOK");
    QTimer::singleShot(0, window.get(), fails);
    QTest::qWait(1);
    expectRescued("a timer");
    EXPECT_EQ(copies(), 4);
    EXPECT_EQ(cell(1, sheet::Remark), "xxxx") << "an open frame takes no key for the grid";
    net = nullptr;
}

TEST_F(Edge, AFolderThatCannotBeSyncedIsToldBesideEachSuccess) {
    copyTemplates();
    open();
    answering({folder / "Site1.grl"}, [this] { click("cmdNew"); });
    click("cmdList");
    const FileFaults faults(
        [](files::Call call, const std::string&) { return call == files::Call::SyncFolder ? EIO : 0; });
    const auto expectTold = [this](const char* name, const std::deque<std::string>& answers) {
        answering(answers, [this, name] { click(name); });
        EXPECT_THAT(status(), testing::HasSubstr("a power cut may undo the last change.")) << name;
    };
    expectTold("cmdOK", {}); // of the settings
    expectTold("cmdSave", {});
    expectTold("cmdExpTxt", {"OK"});
    EXPECT_EQ(folder.read("Site1.csv").substr(0, 8), "Chainage");
}

TEST_F(Edge, FramesHoldTheRowCommandsAndTheShortcuts) {
    copyTemplates();
    open();
    book().setRows(4);
    for (const auto& [opens, closes] : {std::pair("cmdList", "cmdOK"), {"cmdExport", "cmdCancel"}}) {
        click(opens);
        click("cmdIns");
        click("cmdDels");
        QTest::keyClick(window.get(), Qt::Key_Q, Qt::ControlModifier);
        EXPECT_EQ(book().Rows(), 4) << opens;
        EXPECT_EQ(ends, 0) << opens;
        click(closes);
    }
    // The grid behind the transfer's panel hears keys; those of commands do nothing there and mark nothing.
    book().setText(2, sheet::Remark, "peg");
    moveTo(1, sheet::RLevel);
    type("5");
    click("cmdExport");
    window->grid().setFocus();
    moveTo(2, sheet::Remark);
    window->desktop().setClipboardText("x");
    window->book().BookChanged = false;
    const int steps = window->journal().undoSteps();
    for (const Qt::Key key : {Qt::Key_Z, Qt::Key_Y, Qt::Key_X, Qt::Key_V, Qt::Key_F, Qt::Key_G, Qt::Key_N,
                              Qt::Key_O, Qt::Key_S, Qt::Key_P, Qt::Key_Q})
        press(key, Qt::ControlModifier);
    press(Qt::Key_F4);
    EXPECT_EQ(cell(2, sheet::Remark), "peg");
    EXPECT_FALSE(window->book().BookChanged || shown("txtFind") || ends > 0);
    EXPECT_EQ(window->journal().undoSteps(), steps);
    press(Qt::Key_Escape);
    QTest::keyClick(&window->grid(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(ends, 1) << "the key of a command is not heard by the grid and marks nothing";
}

TEST_F(Edge, FiguresTypedOnAButtonGoToTheGridUnlessAFrameIsOpen) {
    open();
    moveTo(1, sheet::RLevel);
    const auto typeOn = [this](const char* name) {
        control<QWidget>(name).setFocus();
        for (const char key : {'l', '1', '.', '5'})
            QTest::keyClick(QApplication::focusWidget(), key);
    };
    for (const char* name : {"cmdSave", "cmdExpTxt", "cmdL"})
        typeOn(name);
    EXPECT_EQ(cell(1, sheet::RLevel), "1.51515") << "a letter is nothing there";
    EXPECT_TRUE(window->grid().hasFocus());
    click("cmdList");
    typeOn("cmdSave");
    EXPECT_EQ(cell(1, sheet::RLevel), "1.51515");
}

TEST_F(Edge, FocusReturnsToTheGridAfterAMenuOrAnAccessKey) {
    open();
    control<QWidget>("cmdSave").setFocus();
    choose("mnuCopy");
    EXPECT_TRUE(window->grid().hasFocus());
    QTest::keyClick(window.get(), Qt::Key_I, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return book().Rows() == 3; }));
    EXPECT_TRUE(window->grid().hasFocus());
    click("cmdIns");
    EXPECT_TRUE(control<QWidget>("cmdIns").hasFocus()) << "a click leaves it, for Return to click again";
}

TEST_F(Edge, EscClosesTheSettingsAsIfTheyHadNotBeenOpened) {
    open();
    window->book().settings.lstOft = {"L02.50", "R04.00"};
    click("cmdList");
    click("chkOft");
    click("chkFinal");
    control<QLineEdit>("txtOft").setText("7");
    click("cmdAdd");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    EXPECT_FALSE(shown("ff"));
    EXPECT_TRUE(window->grid().hasFocus());
    const sheet::Settings& settings = window->book().settings;
    EXPECT_THAT(settings.lstOft, ElementsAre("L02.50", "R04.00"));
    EXPECT_FALSE(settings.chkOft || settings.chkFinal);
}

TEST_F(Edge, FindAndGoToMoveTheCursorWithTheCheckOfTheCellThatIsLeft) {
    open();
    book().setRows(4);
    book().setText(3, sheet::Remark, "kerb");
    book().setText(2, sheet::Chainage, "1.250");
    moveTo(2, sheet::Chainage);
    const Answers ok([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); });
    QTest::keyClick(&window->grid(), Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(control<QWidget>("txtFind").hasFocus());
    auto& find = control<QLineEdit>("txtFind");
    QTest::keyClicks(&find, "KERB");
    QTest::keyClick(&find, Qt::Key_Return);
    EXPECT_EQ(cursor(), std::pair(3, 9));
    EXPECT_EQ(cell(2, 0), "1-250");
    QTest::keyClick(&find, Qt::Key_Escape);
    EXPECT_FALSE(find.isVisible());
    choose("mnuFindNext");
    EXPECT_EQ(status(), "The search went on from the top.");
    choose("mnuGoto");
    auto& answer = control<QLineEdit>("txtGoto");
    for (const auto& [text, row] : {std::pair("2-000", 3), {"1+200", 2}}) {
        answer.setText(text);
        QTest::keyClick(&answer, Qt::Key_Return);
        EXPECT_EQ(book().Row(), row);
        EXPECT_EQ(status(), row == 3 ? "There is no chainage 2-000 or beyond." : "");
    }
    EXPECT_FALSE(window->book().BookChanged) << "none of these keys is the grid's";
}

TEST_F(Edge, CutAndTheMenuOfARightClick) {
    open();
    book().setRows(5);
    book().setText(2, 4, "1.5");
    book().setText(3, 5, "2.5");
    moveTo(2, 4);
    book().setSelection(3, 5);
    QTest::keyClick(&window->grid(), Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(window->desktop().clipboardText(), "1.5\t\t\r\t2.5\t\r");
    EXPECT_EQ(cell(2, 4) + cell(3, 5), "");
    const auto rightClick = [this](int row, int col) {
        const QPoint place = pointIn(row, col);
        QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                                window->grid().viewport()->mapToGlobal(place));
        QApplication::sendEvent(window->grid().viewport(), &event);
        QApplication::activePopupWidget()->close();
    };
    rightClick(3, 4);
    EXPECT_EQ(std::pair(book().RowSel(), book().ColSel()), std::pair(3, 5)) << "inside, the selection stays";
    rightClick(4, 8);
    EXPECT_EQ(cursor(), std::pair(4, 8));
}

// A program that dies now loses nothing that could have been done again.
TEST_F(Edge, TheRecoveryCopyHoldsWhatRedoBringsBack) {
    open();
    moveTo(1, sheet::Remark);
    type("kerb");
    ASSERT_TRUE(QTest::qWaitFor([this] { return copies() == 1; }, 30000));
    choose("mnuUndo");
    QTest::qWait(1500); // the timer runs again, over a book that is as it was opened
    EXPECT_EQ(cell(1, sheet::Remark), "");
    EXPECT_EQ(window->journal().redoSteps(), 1);
    ASSERT_EQ(copies(), 1);
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        if (const std::string name = entry.path().filename(); name.starts_with(project::copyPrefix)) {
            EXPECT_THAT(folder.read(name), testing::HasSubstr("kerb"));
        }
    choose("mnuRedo");
    type("s");
    choose("mnuUndo");
    EXPECT_EQ(cell(1, sheet::Remark), "kerb");
}

TEST_F(Edge, TheWindowIsRememberedAndTheRowNumbersNameTheChainageThatIsOutOfSight) {
    open();
    const QSize size = window->size() - QSize(40, 30);
    window->resize(size);
    press(Qt::Key_F12);
    const std::string file = folder / "state/window.ini";
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(file); }, 30000)) << "without an Exit";
    const std::string kept = folder.read("state/window.ini");
    window.reset();
    folder.write("state/window.ini", kept); // as a crash leaves it
    open();
    EXPECT_EQ(window->size(), size);
    EXPECT_EQ(book().FontSize(), 9.75);

    book().setText(1, sheet::Chainage, "01-250");
    const auto number = [this] {
        return shell::toUtf8(window->grid().model()->headerData(0, Qt::Vertical, Qt::DisplayRole).toString());
    };
    EXPECT_EQ(number(), "1");
    window->resize(window->minimumSize());
    book().setColWidth(sheet::Remark, 20000);
    window->showBook();
    QScrollBar* across = window->grid().horizontalScrollBar();
    across->setValue(across->maximum());
    EXPECT_EQ(number(), "1  01-250");
    across->setValue(0);
    EXPECT_EQ(number(), "1");
}

} // namespace
