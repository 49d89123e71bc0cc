#include "window.h"

#include <QAccessible>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
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

TEST_F(Window, TheButtonsSayWhatTheyDo) {
    open();
    struct Case {
        const char* name;
        const char* caption;
        const char* tooltip;
        bool bold;
    };
    const Case cases[] = {
        {"cmdNew", "&New", "To Create New Project.", true},
        {"cmdOpen", "&Open", "To Open Existing Project.", true},
        {"cmdSave", "&Save", "It Saves current Project", true},
        {"cmdCal", "&Cal", "To Calculates HI & RL's", true},
        {"cmdCP", "CP", "", true},
        {"cmdExit", "E&xit", "To Close the Software.", true},
        {"cmdList", "&Settings", "For Seting the chainage Increments & fixed Offsets", true},
        {"cmdIns", "&Ins Row", "It Inserts Row above the Current row.", true},
        {"cmdInss", "...", "It inserts Number of Rows above the Current Row", true},
        {"cmdDel", "&Del Row", "It Delete Current Row.", true},
        {"cmdDels", "...", "It Deletes Number of Rows from Current Row to below permanantly.", true},
        {"cmdS", "* =>Next Chainage", "To set Next Chainage by given Chainage Increment.", false},
        {"cmdL", "L =>Left Side", "To goto the LEFT side", false},
        {"cmdR", "R =>Right Side", "To goto the RIGHT side", false},
        {"cmdP", "P =>Change Point", "To Enter the CP (Change Point)", false},
        {"cmdImpExl", "Import From Excel",
         "It Imports the Data from EXCEL(but excel sheet must be open and data must be in format.)", true},
        {"cmdExpTxt", "Export to CSV-File",
         "To create CSV files that directly open to EXCEL for Printing Purpose", true},
        {"cmdExport", "Export to Zavro Road Software", "To Exports the Rls to Road Software.", true},
    };
    EXPECT_FALSE(control("cmdImpExl").isVisible());
    QTest::keyClick(&control("cmdExpTxt"), Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(control("cmdImpExl").isVisible());
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        auto& button = control(c.name);
        EXPECT_EQ(shell::toUtf8(button.text()), c.caption);
        EXPECT_EQ(shell::toUtf8(button.toolTip()), c.tooltip);
        EXPECT_FALSE(button.accessibleName().isEmpty());
        EXPECT_NE(button.accessibleName(), QStringLiteral("..."));
        hover(c.name);
        EXPECT_TRUE(button.hasFocus());
        EXPECT_EQ(button.captionBold(), c.bold);
        EXPECT_GE(button.heightForWidth(button.width()), button.fontMetrics().height());
        EXPECT_LE(button.heightForWidth(button.width()), button.height()) << "no caption is cut";
    }
    hover("form");
    for (const Case& c : cases)
        EXPECT_FALSE(control(c.name).captionBold()) << c.name;
    hover("MSFG");
    EXPECT_FALSE(window->grid().hasFocus()) << "the frame of the grid is not its cells";
    QTest::mouseMove(window->grid().viewport(), QPoint(30, 30));
    EXPECT_TRUE(window->grid().hasFocus());
}

TEST_F(Window, TheMenusHoldTheirItems) {
    open();
    const std::vector<std::pair<const char*, std::vector<const char*>>> menus{
        {"&File",
         {"&New...", "&Open...", "Save &as...", "&Save", "&Append File", "-", "x1", "x2", "x3", "x4", "-",
          "E&xit"}},
        {"&Tools",
         {"&Settings", "&Export to Road Soft.", "Ex&port to Excel", "&Import From Excel", "-", "Set Path",
          "-", "&Passward"}},
        {"&Help", {"&Help", "&About"}},
    };
    const auto bar = window->menuBar()->actions();
    ASSERT_EQ(bar.size(), qsizetype(menus.size()));
    for (std::size_t m = 0; m < menus.size(); ++m) {
        EXPECT_EQ(shell::toUtf8(bar[qsizetype(m)]->text()), menus[m].first);
        const auto items = bar[qsizetype(m)]->menu()->actions();
        ASSERT_EQ(items.size(), qsizetype(menus[m].second.size()));
        for (std::size_t i = 0; i < menus[m].second.size(); ++i) {
            const QAction& item = *items[qsizetype(i)];
            const std::string caption = item.isSeparator() ? "-" : shell::toUtf8(item.text());
            EXPECT_EQ(caption, menus[m].second[i]);
            EXPECT_FALSE(item.objectName().isEmpty());
            EXPECT_EQ(item.isVisible(), caption[0] != 'x') << "recent entries wait for their paths";
        }
    }
}

TEST_F(Window, RecentEntriesShowTheirPathAsItIs) {
    folder.write("GRL.LVX", "/srv/A & B.grl\r\n\r\n/srv/c.grl\r\n");
    open();
    EXPECT_EQ(control<QAction>("mnuX1").text(), QStringLiteral("/srv/A && B.grl"));
    EXPECT_EQ(window->book().mnuX[0], "/srv/A & B.grl");
    EXPECT_TRUE(control<QAction>("mnuX1").isVisible());
    EXPECT_FALSE(control<QAction>("mnuX2").isVisible());
    EXPECT_TRUE(control<QAction>("mnuX3").isVisible());
}

TEST_F(Window, OpensAsDesigned) {
    open();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("ZavroGRL-NoName.grl"));
    EXPECT_TRUE(control("cmdOpen").hasFocus());
    EXPECT_EQ(cursor(), std::pair(1, 0));
    EXPECT_EQ(book().Rows(), 2);
    EXPECT_EQ(window->book().CurrentSide, 'C');
    EXPECT_EQ(window->book().DefaultFolder, "C:\\Road");
    EXPECT_TRUE(control("cmdExport").isEnabled());
    EXPECT_FALSE(control<QWidget>("ff").isVisible());
    EXPECT_FALSE(control<QWidget>("pbr1").isVisible());
}

TEST_F(Window, ReadsTheDefaultFolderAndMissesTheDrawing) {
    std::filesystem::remove(folder / "Rod.dwg");
    folder.write("SET.INI", "002 D:\\Survey\r\nmore\r\n");
    open();
    EXPECT_EQ(window->book().DefaultFolder, "D:\\Survey");
    EXPECT_FALSE(control("cmdExport").isEnabled());
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
    EXPECT_FALSE(control<QWidget>("ff").isVisible());
    QTest::keyClick(window.get(), Qt::Key_I, Qt::AltModifier);
    EXPECT_TRUE(QTest::qWaitFor([this] { return book().Rows() == 3; }))
        << "an access key of one control clicks it";
}

TEST_F(Window, EntryButtonsTypeTheirLetterUnlessTheGridIsAway) {
    open();
    book().setRows(4);
    struct Case {
        const char* button;
        char side;
        int col;
    };
    for (const Case& c :
         {Case{"cmdL", 'L', 1}, Case{"cmdR", 'R', 3}, Case{"cmdS", 'C', 5}, Case{"cmdP", 'C', 6}}) {
        moveTo(3, 0);
        click(c.button);
        EXPECT_EQ(window->book().CurrentSide, c.side) << c.button;
        EXPECT_EQ(book().Col(), c.col) << c.button;
        EXPECT_TRUE(window->grid().hasFocus()) << c.button;
    }
    EXPECT_EQ(cell(3, 0), "CP");
    EXPECT_TRUE(status().empty());
    for (const bool hidden : {true, false}) {
        if (hidden)
            book().setVisible(false);
        else
            click("cmdList");
        window->showBook();
        moveTo(3, 9);
        click("cmdL");
        EXPECT_EQ(book().Col(), 9);
        EXPECT_FALSE(window->grid().hasFocus());
        book().setVisible(true);
        window->showBook();
    }
}

TEST_F(Window, TheGridIsHiddenOnlyWhenACommandLeavesItHidden) {
    open();
    int hides = 0;
    class Watcher : public QObject {
      public:
        explicit Watcher(int& count) : m_count(count) {}
        bool eventFilter(QObject*, QEvent* event) override {
            m_count += event->type() == QEvent::Hide;
            return false;
        }
        int& m_count;
    } watcher(hides);
    window->grid().installEventFilter(&watcher);
    window->grid().setFocus();
    book().setRows(5);
    click("cmdCal");
    QApplication::processEvents();
    EXPECT_EQ(hides, 0) << "no flicker";

    book().setText(2, 5, "1e39");
    Answers ok([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); });
    click("cmdCal");
    EXPECT_EQ(ok.count, 1);
    EXPECT_EQ(hides, 1);
    EXPECT_FALSE(window->grid().isVisible());
    EXPECT_TRUE(control<QProgressBar>("pbr1").isVisible());
    click("cmdIns");
    EXPECT_TRUE(window->grid().isVisible()) << "a row command shows it again";
}

TEST_F(Window, KeepsHalfTheScreenAndLeavesTheGridItsShare) {
    open();
    const QSize half = window->screen()->geometry().size() / 2;
    struct Case {
        QSize asked, got;
    };
    const Case cases[] = {
        {{half.width() + 50, half.height() + 60}, {half.width() + 50, half.height() + 60}},
        {{half.width() - 100, half.height() + 60}, {half.width(), half.height() + 60}},
        {{half.width() + 1, half.height() - 80}, {half.width() + 1, half.height()}},
        {{half.width() - 1, half.height() - 1}, half},
        {half * 3 / 2, half * 3 / 2},
    };
    for (const Case& c : cases) {
        window->resize(c.asked);
        QApplication::processEvents();
        EXPECT_EQ(window->size(), c.got) << c.asked.width() << 'x' << c.asked.height();
        EXPECT_EQ(window->grid().width(), c.got.width() - 2100 / 15);
        EXPECT_EQ(window->grid().height(), c.got.height() - 1110 / 15);
    }
    // Remark takes what the other columns leave.
    EXPECT_GE(window->grid().columnViewportPosition(9) + window->grid().columnWidth(9),
              window->grid().viewport()->width());
}

TEST_F(Window, ClosingRunsExitAndNeverClosesByItself) {
    open();
    window->book().BookChanged = true;
    QString text;
    Answers cancel([&](QWidget& box) {
        text = box.property("text").toString();
        QTest::keyClick(&box, Qt::Key_Escape);
    });
    window->close();
    EXPECT_EQ(text, QStringLiteral("Do you want to Save the changes you made to this file"));
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(ends, 0);
    window->book().BookChanged = false;
    window->close();
    EXPECT_EQ(ends, 1);
    EXPECT_TRUE(window->ended());
}

TEST_F(Window, TheStatusBarFollowsTheBook) {
    open();
    window->grid().setFocus();
    moveTo(1, 8);
    type("100\r1.525\r1.31\r");
    const auto field = [this](const char* name) { return shell::toUtf8(control<QLabel>(name).text()); };
    EXPECT_EQ(field("lblSide"), "Side L");
    EXPECT_EQ(field("lblHI"), "H.I. 101.525");
    EXPECT_EQ(field("lblReading"), "Reading 1.310");
    EXPECT_EQ(field("lblRow"), "Row 3 of 3");
    window->desktop().status("The file could not be written.");
    EXPECT_EQ(status(), "The file could not be written.");
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

TEST_F(Window, EveryControlHasANameForAScreenReader) {
    open();
    click("cmdList");
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        if (widget->window() != window.get() || widget->focusPolicy() == Qt::NoFocus ||
            widget->objectName().startsWith(QLatin1String("qt_")))
            continue;
        // Parts that a control is made of speak through it.
        if (widget == widget->parentWidget()->focusProxy() || widget->parentWidget()->inherits("QComboBox"))
            continue;
        EXPECT_FALSE(widget->accessibleName().isEmpty())
            << shell::toUtf8(widget->objectName()) << " (" << widget->metaObject()->className() << ')';
    }
    click("cmdOK");
    book().setRows(7);
    book().setText(5, sheet::InterSight, "1.235");
    window->showBook();
    QAccessibleInterface* grid = QAccessible::queryAccessibleInterface(&window->grid());
    ASSERT_NE(grid, nullptr);
    ASSERT_NE(grid->tableInterface(), nullptr);
    EXPECT_EQ(grid->tableInterface()->rowCount(), 6);
    EXPECT_EQ(grid->tableInterface()->cellAt(4, 5)->text(QAccessible::Name),
              QStringLiteral("row 5, I.S., 1.235"));
}

TEST_F(Window, TabGoesThroughTheControlsInTheirOrder) {
    open();
    window->grid().setFocus();
    const char* order[] = {"cmdNew", "cmdOpen", "cmdSave",   "cmdCal",    "cmdCP",   "cmdList",
                           "cmdIns", "cmdInss", "cmdDel",    "cmdDels",   "cmdS",    "cmdL",
                           "cmdR",   "cmdP",    "cmdExpTxt", "cmdExport", "cmdExit", "MSFG"};
    for (const char* name : order) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(shell::toUtf8(QApplication::focusWidget()->objectName()), name);
    }
}

} // namespace
