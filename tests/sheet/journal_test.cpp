#include "sheet/journal.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

using namespace sheet;

struct History : testing::Test {
    Book book;
    Grid& grid = book.MSFG;
    Journal journal{book};

    void act(std::string_view name, const std::function<void()>& change) {
        journal.begin(name);
        change();
        journal.end();
    }
    void type(std::string_view text) {
        for (const char c : text) {
            journal.begin("Typing", Journal::Action::Typing);
            grid.setText(grid.Text() + c);
            journal.end();
        }
    }
    std::string names() const { // of what undo takes back and redo does, and how many there are
        return std::to_string(journal.undoSteps()) + journal.undoName() + "," +
               std::to_string(journal.redoSteps()) + journal.redoName();
    }
};

TEST_F(History, CharactersInOneCellAreOneStepUntilTheCursorMoves) {
    type("1.5");
    act("Look", [] {}); // no change, no step
    type("25");
    EXPECT_EQ(names(), "1Typing,0");
    grid.moveTo(1, 4);
    grid.moveTo(1, 0);
    type("7");
    EXPECT_EQ(names(), "2Typing,0");
    act("Empty", [&] { grid.setText(""); });
    type("8");
    EXPECT_EQ(names(), "4Typing,0");
    book.BookChanged = false;
    ASSERT_TRUE(journal.undo() && journal.undo() && journal.undo());
    EXPECT_TRUE(book.BookChanged);
    EXPECT_EQ(grid.Text(), "1.525");
    type("6"); // not joined to what was typed before the undo, and nothing is left to do again
    EXPECT_EQ(names(), "2Typing,0");
    ASSERT_TRUE(journal.undo());
    EXPECT_EQ(grid.Text(), "1.525");
    EXPECT_EQ(names(), "1Typing,1Typing");
}

TEST_F(History, WhatIsNoStepDropsNoRedo) {
    type("1");
    journal.undo();
    act("Move", [&] { grid.moveTo(1, 3); });
    act("Back and forth", [&] {
        grid.setText("x");
        grid.setText("");
    });
    EXPECT_EQ(names(), "0,1Typing");
    journal.redo();
    EXPECT_EQ(grid.Text(1, 0), "1");
    EXPECT_EQ(grid.Col(), 0) << "where the user stood after the step";
    EXPECT_FALSE(journal.redo());
}

TEST_F(History, AnActionWithinAnotherIsPartOfIt) {
    act("Outer", [&] {
        grid.setText("a");
        act("Inner", [&] { grid.setRows(5); });
        EXPECT_FALSE(journal.undo()) << "not while it runs";
        grid.setText(4, 2, "b");
        EXPECT_TRUE(journal.takeBack());
        EXPECT_EQ(grid.Rows(), 2);
        grid.setText("c");
    });
    EXPECT_EQ(names(), "1Outer,0");
    grid.setVisible(false); // as a stopped reduction leaves it
    ASSERT_TRUE(journal.undo());
    EXPECT_EQ(grid.Text(), "");
    EXPECT_TRUE(grid.Visible());
}

TEST_F(History, ANewBookBeginsWithoutOne) {
    type("1");
    act("Open", [&] { grid.setText(1, 9, "asked, then given up"); });
    EXPECT_EQ(names(), "2Open,0");
    act("Open", [&] {
        grid.beginBook();
        grid.setText("other");
        EXPECT_FALSE(journal.takeBack());
    });
    EXPECT_EQ(names(), "0,0");
    type("2");
    EXPECT_EQ(names(), "1Typing,0");
}

TEST_F(History, TheHeadingIsPartOfIt) {
    const auto work = [this] { return book.JobHeading.text("work"); };
    const auto set = [this](const char* text) { book.JobHeading.setText(*Heading::find("work"), text); };
    act("Job heading", [&] { set("Road"); });
    act("Job heading", [&] { set("Road"); }); // no change, no step
    type("1");
    act("Both", [&] {
        set("Bridge");
        grid.setText("2");
    });
    EXPECT_EQ(names(), "3Both,0");
    EXPECT_TRUE(journal.undo() && journal.undo());
    EXPECT_EQ(work() + grid.Text(), "Road");
    EXPECT_TRUE(journal.undo());
    EXPECT_EQ(work(), "");
    EXPECT_TRUE(journal.redo() && journal.redo() && journal.redo());
    EXPECT_EQ(work() + grid.Text(), "Bridge2");
}

TEST_F(History, HoldsNoMoreThanItsLimit) {
    Journal small(book, 2500);
    for (const char* name : {"1", "2", "3"}) {
        small.begin(name);
        grid.setRows(2);
        grid.setText(1, 9, std::string(name) + std::string(1500, 'x'));
        EXPECT_TRUE(small.end());
    }
    EXPECT_LE(small.bytes(), 2500U);
    ASSERT_TRUE(small.undo());
    EXPECT_FALSE(small.undo()) << "the oldest went";
    EXPECT_EQ(grid.Text(1, 9).front(), '2');
    small.begin("too large");
    for (int i = 0; i < 1000; ++i)
        grid.setText(1, 9, std::to_string(i));
    EXPECT_FALSE(small.end());
    EXPECT_EQ(small.undoSteps() + small.redoSteps(), 0);
    EXPECT_EQ(grid.Text(1, 9), "999") << "the history is cut, not the book";
}

} // namespace
