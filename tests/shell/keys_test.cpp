#include "shell/controls/characters.h"
#include "window.h"

#include "field_book.h"

#include <QAbstractItemModelTester>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScreen>
#include <QScrollBar>

#include <random>

namespace {

TEST(Characters, AreTheCodesThatTheKeysType) {
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        const char* text;
        char32_t expected;
    };
    const Case cases[] = {
        {Qt::Key_5, Qt::NoModifier, "5", U'5'},
        {Qt::Key_Enter, Qt::KeypadModifier, "\r", 13},
        {Qt::Key_Comma, Qt::KeypadModifier, ",", U'.'},
        {Qt::Key_Comma, Qt::NoModifier, ",", U','},
        {Qt::Key_Return, Qt::ControlModifier, "\r", 10},
        {Qt::Key_Backspace, Qt::NoModifier, "\b", 8},
        {Qt::Key_Escape, Qt::NoModifier, "\x1b", 27},
        {Qt::Key_A, Qt::ControlModifier, "\x01", 1},
        {Qt::Key_C, Qt::ControlModifier, "", 3},
        {Qt::Key_V, Qt::ControlModifier | Qt::ShiftModifier, "\x16", 22},
        {Qt::Key_N, Qt::AltModifier, "n", 0},
        {Qt::Key_5, Qt::ControlModifier, "5", 0},
        {Qt::Key_Q, Qt::ControlModifier | Qt::AltModifier, "@", U'@'},
        {Qt::Key_Shift, Qt::ShiftModifier, "", 0},
        {Qt::Key_unknown, Qt::NoModifier, "म", U'म'},
    };
    for (const Case& c : cases) {
        const QKeyEvent event(QEvent::KeyPress, c.key, c.modifiers, QString::fromUtf8(c.text));
        EXPECT_EQ(shell::characterOf(event), c.expected) << c.text << ' ' << c.key;
    }
}

class Keys : public MainWindow {
  protected:
    Keys() {
        open();
        window->grid().setFocus();
    }
    void clickCell(int row, int col, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(window->grid().viewport(), Qt::LeftButton, modifiers, pointIn(row, col));
    }
    std::pair<int, int> farEnd() { return {book().RowSel(), book().ColSel()}; }
};

TEST_F(Keys, NavigationStaysInTheBookAndSelectsWithShift) {
    book().setRows(101);
    const Qt::KeyboardModifiers none, shift = Qt::ShiftModifier, control = Qt::ControlModifier;
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int row, col, rowSel, colSel;
    };
    const Case cases[] = {
        {Qt::Key_Up, none, 1, 0, 1, 0},           {Qt::Key_Left, none, 1, 0, 1, 0},
        {Qt::Key_Right, none, 1, 1, 1, 1},        {Qt::Key_Down, none, 2, 1, 2, 1},
        {Qt::Key_End, none, 2, 9, 2, 9},          {Qt::Key_Right, none, 2, 9, 2, 9},
        {Qt::Key_Home, none, 2, 0, 2, 0},         {Qt::Key_Down, shift, 2, 0, 3, 0},
        {Qt::Key_Right, shift, 2, 0, 3, 1},       {Qt::Key_Up, shift, 2, 0, 2, 1},
        {Qt::Key_Up, shift, 2, 0, 1, 1},          {Qt::Key_Up, shift, 2, 0, 1, 1},
        {Qt::Key_End, control, 100, 9, 100, 9},   {Qt::Key_Down, none, 100, 9, 100, 9},
        {Qt::Key_PageDown, none, 100, 9, 100, 9}, {Qt::Key_Home, control, 1, 0, 1, 0},
        {Qt::Key_PageUp, none, 1, 0, 1, 0},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << "key " << c.key << " to " << c.row << ',' << c.col);
        press(c.key, c.modifiers);
        EXPECT_EQ(cursor(), std::pair(c.row, c.col));
        EXPECT_EQ(farEnd(), std::pair(c.rowSel, c.colSel));
        const QModelIndex current = window->grid().currentIndex();
        EXPECT_EQ(std::pair(current.row() + 1, current.column()), std::pair(c.rowSel, c.colSel))
            << "the view's";
    }
    press(Qt::Key_PageDown);
    EXPECT_GT(book().Row(), 5);
    EXPECT_TRUE(window->grid().viewport()->rect().contains(pointIn(book().Row(), book().Col())));
}

TEST_F(Keys, TheMouseSetsCursorAndSelection) {
    book().setRows(12);
    window->grid().flush();
    QWidget* cells = window->grid().viewport();
    clickCell(4, 5);
    EXPECT_EQ(cursor(), std::pair(4, 5));
    QTest::mousePress(cells, Qt::LeftButton, {}, pointIn(7, 6));
    QMouseEvent drag(QEvent::MouseMove, pointIn(3, 4), cells->mapToGlobal(pointIn(3, 4)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(cells, &drag);
    QTest::mouseRelease(cells, Qt::LeftButton, {}, pointIn(3, 4));
    EXPECT_EQ(cursor(), std::pair(7, 6)) << "the anchor stays and is typed into";
    EXPECT_EQ(farEnd(), std::pair(3, 4));
    clickCell(9, 8, Qt::ShiftModifier);
    EXPECT_EQ(cursor(), std::pair(7, 6));
    EXPECT_EQ(farEnd(), std::pair(9, 8));
    clickCell(7, 6);
    EXPECT_EQ(farEnd(), std::pair(7, 6)) << "the anchor alone";
    QTest::mouseClick(cells, Qt::LeftButton, {}, QPoint(20, cells->height() - 3));
    EXPECT_EQ(cursor(), std::pair(7, 6)) << "below the last row there is nothing";
}

TEST_F(Keys, LeavingACellChecksItOnceAndOnlyWhenTheCursorMoves) {
    book().setRows(4);
    struct Case {
        const char* name;
        std::function<void()> move;
        bool leaves;
    };
    const Case cases[] = {
        {"arrow", [this] { press(Qt::Key_Right); }, true},
        {"arrow at the edge", [this] { press(Qt::Key_Left); }, false},
        {"selecting", [this] { press(Qt::Key_Down, Qt::ShiftModifier); }, false},
        {"End", [this] { press(Qt::Key_End); }, true},
        {"a click elsewhere", [&] { clickCell(3, 7); }, true},
        {"a click on the cell itself", [&] { clickCell(2, 0); }, false},
        {"Cal", [this] { click("cmdCal"); }, true},
        {"the settings", [this] { click("cmdList"), click("cmdOK"); }, false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        moveTo(2, 0);
        book().setText("1.250");
        Answers ok([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); });
        c.move();
        EXPECT_EQ(ok.count, c.leaves ? 1 : 0);
        EXPECT_EQ(cell(2, 0), c.leaves ? "1-250" : "1.250");
    }
}

TEST_F(Keys, CommandsThatWalkTheGridCheckTheCellFirst) {
    window->book().setProjectPath(folder / "Site1.grl");
    const Answers out([](QWidget& modal) { QTest::keyClick(&modal, Qt::Key_Escape); });
    for (const char* name : {"cmdSave", "cmdCal", "cmdCP", "cmdExpTxt", "cmdExport", "mnuSave", "mnuSaveas",
                             "mnuExcel", "mnuExport"}) {
        book().setRows(4);
        moveTo(2, 0);
        book().setText("1.250");
        if (*name == 'c')
            click(name);
        else
            choose(name);
        EXPECT_EQ(cell(2, 0), "1-250") << name;
        if (shown("fExport")) click("cmdCancel");
    }
}

TEST_F(Keys, EditingKeysAreNoCharacters) {
    moveTo(1, 9);
    type("bridge/2");
    for (const auto& [col, text] : {std::pair(1, ""), {3, ""}, {9, "bridge/2/"}}) {
        moveTo(1, col);
        press(Qt::Key_Slash, Qt::KeypadModifier);
        EXPECT_EQ(cell(1, col), text) << "the keypad's divide";
    }
    press(Qt::Key_Backspace);
    press(Qt::Key_Escape);
    EXPECT_EQ(cell(1, 9), "bridge/2");
    press(Qt::Key_Delete);
    EXPECT_EQ(cell(1, 9), "");
    const int width = window->grid().columnWidth(sheet::RLevel);
    const int height = window->grid().rowHeight(0);
    for (const double points : {9.75, 12.0, 8.25}) {
        press(Qt::Key_F12);
        EXPECT_EQ(window->grid().font().pointSizeF(), points);
        EXPECT_EQ(window->grid().columnWidth(sheet::RLevel) > width * 5 / 4, points == 12.0);
        EXPECT_EQ(window->grid().rowHeight(0) > height, points > 9);
    }
    QTest::keyClick(&window->grid(), Qt::Key_Tab);
    EXPECT_FALSE(window->grid().hasFocus()) << "Tab goes on to the buttons";
    EXPECT_EQ(cursor(), std::pair(1, 9));
}

// Keys in any order, boxes answered or backed out of: the window keeps what it shows and what the book is in
// step.
/// Rows that come at the bottom are scrolled in; what is on the screen then is what painting anew shows.
TEST_F(Keys, KeyedRowsAreScrolledInAsTheyAre) {
    QScreen* screen = window->screen();
    const auto shown = [&] { return screen->grabWindow(window->winId()).toImage(); };
    QScrollBar& bar = *window->grid().verticalScrollBar();
    int scrolled = 0;
    for (int turn = 0; turn < 60; ++turn) {
        book().moveTo(book().Rows() - 1, sheet::InterSight);
        book().setText("1." + std::to_string(100 + turn));
        const int before = bar.value();
        press(Qt::Key_Return);
        for (int k = 0; k < 5; ++k)
            QApplication::processEvents();
        scrolled += bar.value() > before;
        if (turn % 7 != 0) continue;
        const QImage seen = shown();
        window->grid().viewport()->update();
        window->grid().verticalHeader()->viewport()->update();
        QApplication::processEvents();
        ASSERT_FALSE(seen.isNull());
        ASSERT_TRUE(seen == shown()) << turn;
    }
    EXPECT_GT(scrolled, 10);
}

TEST_F(Keys, AnyKeysLeaveGridAndViewInStep) {
    std::minstd_rand random(20);
    Answers boxes([&](QWidget& box) {
        if (auto* input = box.findChild<QLineEdit*>()) input->setText(QString::number(int(random() % 7) - 1));
        QTest::keyClick(&box, random() % 3 == 0 ? Qt::Key_Escape : Qt::Key_Return);
    });
    const Qt::Key keys[] = {Qt::Key_Return, Qt::Key_Return, Qt::Key_Up,  Qt::Key_Down,     Qt::Key_Left,
                            Qt::Key_Right,  Qt::Key_Home,   Qt::Key_End, Qt::Key_PageDown, Qt::Key_Delete,
                            Qt::Key_F2,     Qt::Key_F3,     Qt::Key_F9,  Qt::Key_F12,      Qt::Key_Backspace};
    const char* buttons[] = {"cmdIns", "cmdInss", "cmdDel", "cmdDels", "cmdCal",
                             "cmdS",   "cmdL",    "cmdR",   "cmdP"};
    const std::string characters = "0123456789.-+*lrcpstLRCPST/ x\r\r\r";
    QAbstractItemModel& model = *window->grid().model();
    QWidget* cells = window->grid().viewport();
    const QAbstractItemModelTester checker(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int step = 0; step < 3000; ++step) {
        SCOPED_TRACE(step);
        const auto kind = random() % 16;
        if (kind < 2)
            press(keys[random() % std::size(keys)], random() % 4 == 0 ? Qt::ShiftModifier : Qt::NoModifier);
        else if (kind == 2)
            click(buttons[random() % std::size(buttons)]);
        else if (kind == 3)
            press(random() % 2 == 0 ? Qt::Key_C : Qt::Key_V, Qt::ControlModifier);
        else if (kind == 4)
            QTest::mouseClick(cells, Qt::LeftButton, random() % 2 == 0 ? Qt::ShiftModifier : Qt::NoModifier,
                              {int(random()) % cells->width(), int(random()) % cells->height()});
        else
            type(std::string(1, characters[random() % characters.size()]));
        window->showBook();
        ASSERT_GE(book().Rows(), 2);
        ASSERT_GE(book().Row(), 1);
        ASSERT_EQ(book().Text(0, 5), "I.S.") << "the header is nobody's";
        if (!book().Visible()) { // an error in Cal leaves it so
            book().setVisible(true);
            window->showBook();
        }
        ASSERT_EQ(model.rowCount(), book().Rows() - 1);
        const QModelIndex current = window->grid().currentIndex();
        ASSERT_EQ(std::pair(current.row() + 1, current.column()), farEnd());
        ASSERT_EQ(shell::toUtf8(model.index(book().Row() - 1, book().Col()).data().toString()),
                  book().Text());
    }
    const std::string ended = shownRows(book());
    const auto goThrough = [this](const char* item, auto steps) {
        while ((window->journal().*steps)() > 0)
            choose(item);
    };
    goThrough("mnuUndo", &sheet::Journal::undoSteps);
    EXPECT_EQ(shownRows(book()), "") << "as it was opened";
    EXPECT_EQ(book().Rows(), 2);
    goThrough("mnuRedo", &sheet::Journal::redoSteps);
    EXPECT_EQ(shownRows(book()), ended);
}

} // namespace
