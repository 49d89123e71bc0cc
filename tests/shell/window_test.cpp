#include "window.h"

#include <QRegularExpression>
#include <QScreen>
#include <QScrollBar>

namespace {

class Window : public MainWindow {
  protected:
    void hover(const char* name) {
        auto& widget = control<QWidget>(name);
        const QPoint point = widget.rect().center();
        QMouseEvent move(QEvent::MouseMove, point, widget.mapToGlobal(point), Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(&widget, &move);
    }
};

TEST_F(Window, HoveringGivesAButtonTheFocusAndABoldCaption) {
    open();
    QTest::keyClick(&control("cmdExpTxt"), Qt::Key_Return, Qt::ControlModifier); // the import button comes
    const auto buttons =
        control<QWidget>("form").findChildren<shell::CommandButton*>(QRegularExpression("^cmd"));
    int seen = 0;
    for (shell::CommandButton* button : buttons) {
        const std::string name = shell::toUtf8(button->objectName());
        if (!button->isVisible()) continue;
        SCOPED_TRACE(name);
        hover(name.c_str());
        EXPECT_TRUE(button->hasFocus());
        EXPECT_EQ(button->captionBold(),
                  !(name == "cmdS" || name == "cmdL" || name == "cmdR" || name == "cmdP"));
        EXPECT_LE(button->heightForWidth(button->width()), button->height()) << "no caption is cut";
        ++seen;
    }
    EXPECT_EQ(seen, 18);
    hover("form");
    for (const shell::CommandButton* button : buttons)
        EXPECT_FALSE(button->captionBold());
    hover("MSFG");
    EXPECT_FALSE(window->grid().hasFocus()) << "the frame of the grid is not its cells";
    for (const int place : {40, 30}) // the pointer may stand at one of them
        QTest::mouseMove(window->grid().viewport(), QPoint(place, place));
    EXPECT_TRUE(window->grid().hasFocus());
}

TEST_F(Window, OpensAsDesigned) {
    folder.write("GRL.LVX", "/srv/A & B.grl\r\n\r\n/srv/c.grl\r\n");
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("ZavroGRL-NoName.grl"));
    EXPECT_TRUE(control("cmdOpen").hasFocus());
    EXPECT_EQ(cursor(), std::pair(1, 0));
    EXPECT_EQ(book().Rows(), 2);
    EXPECT_TRUE(live("cmdExport"));
    EXPECT_FALSE(shown("ff") || shown("pbr1") || shown("cmdImpExl"));
    EXPECT_EQ(control<QAction>("mnuX1").text(), QStringLiteral("/srv/A && B.grl"));
    for (const auto& [entry, listed] : {std::pair("mnuX1", true), {"mnuX2", false}, {"mnuX3", true}})
        EXPECT_EQ(control<QAction>(entry).isVisible(), listed) << entry;
}

TEST_F(Window, MissesTheDrawing) {
    std::filesystem::remove(folder / "Rod.dwg");
    open();
    EXPECT_FALSE(live("cmdExport"));
    EXPECT_TRUE(control<QAction>("mnuExport").isEnabled());
}

TEST_F(Window, ReturnClicksTheButtonWithTheFocus) {
    open();
    book().setRows(3);
    struct Case {
        Qt::Key key;
        Qt::KeyboardModifiers modifiers;
        int rows;
    };
    for (const Case& c : {Case{Qt::Key_Return, {}, 4}, Case{Qt::Key_Enter, Qt::KeypadModifier, 5},
                          Case{Qt::Key_Return, Qt::ControlModifier, 5}, Case{Qt::Key_Space, {}, 6}}) {
        hover("cmdIns");
        QTest::keyClick(QApplication::focusWidget(), c.key, c.modifiers);
        EXPECT_EQ(book().Rows(), c.rows) << c.key;
    }
}

TEST_F(Window, ASharedAccessKeyMovesTheFocusAndClicksNothing) {
    open();
    hover("cmdNew");
    std::vector<QString> focused;
    for (int k = 0; k < 3; ++k) {
        QTest::keyClick(window.get(), Qt::Key_S, Qt::AltModifier);
        focused.push_back(QApplication::focusWidget()->objectName());
    }
    EXPECT_NE(focused[0], focused[1]);
    EXPECT_EQ(focused[0], focused[2]);
    EXPECT_FALSE(shown("ff"));
    QTest::keyClick(window.get(), Qt::Key_I, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return book().Rows() == 3; }))
        << "an access key of one control clicks it";
}

TEST_F(Window, EntryButtonsTypeTheirLetterUnlessTheGridIsAway) {
    open();
    book().setRows(4);
    const std::tuple<const char*, char, int> buttons[] = {
        {"cmdL", 'L', 1}, {"cmdR", 'R', 3}, {"cmdS", 'C', 5}, {"cmdP", 'C', 6}};
    for (const auto& [button, side, col] : buttons) {
        moveTo(3, 0);
        click(button);
        EXPECT_EQ(window->book().CurrentSide, side) << button;
        EXPECT_EQ(book().Col(), col) << button;
        EXPECT_TRUE(window->grid().hasFocus()) << button;
    }
    EXPECT_EQ(cell(3, 0), "CP");
    for (const bool hidden : {true, false}) {
        book().setVisible(!hidden);
        if (!hidden) click("cmdList");
        window->showBook();
        moveTo(2, 5);
        click("cmdL");
        EXPECT_EQ(cursor(), std::pair(2, 5));
        EXPECT_FALSE(window->grid().hasFocus());
    }
}

TEST_F(Window, KeepsHalfTheScreenAndLeavesTheGridItsShare) {
    open();
    const QSize half = window->screen()->geometry().size() / 2;
    for (const auto& [asked, got] : {std::pair(half + QSize(50, 60), half + QSize(50, 60)),
                                     {half + QSize(-100, 60), half + QSize(0, 60)},
                                     {half + QSize(1, -80), half + QSize(1, 0)},
                                     {half - QSize(1, 1), half}}) {
        window->resize(asked);
        QApplication::processEvents();
        EXPECT_EQ(window->size(), got) << asked.width() << 'x' << asked.height();
        EXPECT_EQ(window->grid().size(), got - QSize(2100, 1110) / 15);
    }
    // Remark takes what the other columns leave.
    EXPECT_GE(window->grid().columnViewportPosition(9) + window->grid().columnWidth(9),
              window->grid().viewport()->width());
}

TEST_F(Window, TheStatusBarFollowsTheBook) {
    open();
    window->grid().setFocus();
    moveTo(1, 8);
    type("100\r1.525\r1.31\r");
    std::vector<std::string> fields;
    for (const char* name : {"lblSide", "lblHI", "lblReading", "lblRow"})
        fields.push_back(shell::toUtf8(control<QLabel>(name).text()));
    EXPECT_THAT(fields, ElementsAre("Side L", "H.I. 101.525", "Reading 1.310", "Row 3 of 3"));
    window->desktop().status("The file could not be written.");
    type("7");
    EXPECT_EQ(status(), "The file could not be written.") << "stays until the next command";
    click("cmdIns");
    EXPECT_EQ(status(), "");
}

TEST_F(Window, TheViewStaysWhereItIsWhenARowCommandRewritesTheGrid) {
    open();
    book().setRows(201);
    moveTo(120, 4);
    moveTo(110, 4);
    const int scrolled = window->grid().verticalScrollBar()->value();
    ASSERT_GT(scrolled, 0);
    for (const char* command : {"cmdIns", "cmdDel", "cmdCal"}) {
        click(command);
        QApplication::processEvents();
        EXPECT_EQ(window->grid().verticalScrollBar()->value(), scrolled) << command;
        EXPECT_EQ(cursor(), std::pair(110, 4)) << command;
    }
}

TEST_F(Window, TabGoesThroughTheControlsInTheirOrder) {
    open();
    window->grid().setFocus();
    for (const char* name :
         {"cmdNew", "cmdOpen", "cmdSave", "cmdCal", "cmdCP", "cmdList", "cmdIns", "cmdInss", "cmdDel",
          "cmdDels", "cmdS", "cmdL", "cmdR", "cmdP", "cmdExpTxt", "cmdExport", "cmdExit", "MSFG"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(shell::toUtf8(QApplication::focusWidget()->objectName()), name);
    }
}

} // namespace
