#include "window.h"

#include "shell/controls/profile_view.h"

#include "field_book.h"

#include <QDockWidget>

namespace {

struct SectionPanes : MainWindow {
    shell::ProfileView& view(const char* name) { return control<shell::ProfileView>(name); }
    /// Opens the book with both panes and waits until they show it.
    void openPanes() {
        open();
        window->act({.name = "Open"}, [this] {
            loadBook(window->book(), "tramo1-derived");
            book().moveTo(6, sheet::InterSight);
        });
        for (const Qt::Key key : {Qt::Key_F6, Qt::Key_F7})
            press(key);
        waitFor([this] { return view("paneCrossView").markedPoint() == 1; });
    }
    static void waitFor(const std::function<bool()>& condition) {
        ASSERT_TRUE(QTest::qWaitFor(condition, 2000));
    }
};

TEST_F(SectionPanes, FollowTheCursorAndTheLevels) {
    openPanes();
    EXPECT_FALSE(window->book().BookChanged);
    const shell::ProfileView& road = view("paneLongView");
    const shell::ProfileView& cross = view("paneCrossView");
    EXPECT_EQ(road.content().ground.size(), 10U);
    EXPECT_EQ(road.markedPoint(), 1);
    EXPECT_EQ(shell::toUtf8(cross.content().title), "Cross-section 00-010");
    EXPECT_EQ(cross.content().neighbours.size(), 2U);
    EXPECT_EQ(shell::toUtf8(road.accessibleDescription()),
              "Long section 00-000 to 00-090, 10 points, lowest level 11.240, highest level 11.807");

    moveTo(18, sheet::InterSight); // the change point belongs to the chainage above it
    press(Qt::Key_Up);
    waitFor([&] { return cross.content().title.endsWith(QStringLiteral("00-040")); });
    // Keys that change the level change the plots.
    moveTo(3, sheet::RLevel);
    type("\b\b\b\b\b\b9");
    waitFor([&] { return !road.content().ground.empty() && road.content().ground.front().level == 9; });
    EXPECT_EQ(cross.content().ground[1].level, 9);
    press(Qt::Key_F6);
    EXPECT_FALSE(shown("paneLong"));
    EXPECT_FALSE(control<QAction>("mnuLong").isChecked());
}

TEST_F(SectionPanes, AClickOnAPointGoesToItsRow) {
    openPanes();
    shell::ProfileView& road = view("paneLongView");
    QTest::mouseClick(&road, Qt::LeftButton, {}, road.pointAt(4).toPoint());
    EXPECT_EQ(cursor(), (std::pair<int, int>{15, sheet::InterSight}));
    EXPECT_EQ(road.markedPoint(), 4);
    QTest::keyClick(&road, Qt::Key_Right);
    EXPECT_EQ(book().Row(), 19);

    // Zoomed and dragged, a point is still found where it is drawn; a double click shows all again.
    const QPointF before = road.pointAt(0);
    QTest::keyClick(&road, Qt::Key_Plus);
    const QPointF zoomed = road.pointAt(4);
    QTest::mousePress(&road, Qt::LeftButton, {}, {300, 60});
    QMouseEvent drag(QEvent::MouseMove, QPointF(340, 60), road.mapToGlobal(QPointF(340, 60)), Qt::NoButton,
                     Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&road, &drag);
    QTest::mouseRelease(&road, Qt::LeftButton, {}, {340, 60});
    EXPECT_NEAR(road.pointAt(4).x() - zoomed.x(), 40, 1);
    QTest::mouseClick(&road, Qt::LeftButton, {}, road.pointAt(4).toPoint());
    EXPECT_EQ(book().Row(), 15);
    QTest::mouseDClick(&road, Qt::LeftButton, {}, {340, 60});
    EXPECT_NEAR(road.pointAt(0).x(), before.x(), 0.01);
    EXPECT_EQ(book().Row(), 15);
}

TEST_F(SectionPanes, SayThatALevelIsMissing) {
    open();
    window->act({.name = "Open"}, [this] { keyRows(book(), {",,,,1,,,,100", "00-000,,0,,,1.5"}); });
    press(Qt::Key_F6);
    waitFor([this] { return view("paneLongView").accessibleDescription() == QStringLiteral("Cal first"); });
    click("cmdCal");
    waitFor([this] { return view("paneLongView").content().ground.size() == 1; });
}

TEST_F(SectionPanes, LettersHaveTheSizesOfF12) {
    open();
    std::vector<double> sizes;
    for (const char* item : {"mnuBigger", "mnuBigger", "mnuBigger", "mnuSmaller"}) {
        choose(item);
        sizes.push_back(book().FontSize());
    }
    EXPECT_THAT(sizes, ElementsAre(9.75, 12, 12, 9.75));
}

} // namespace
