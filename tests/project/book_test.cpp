#include "project/book.h"

#include <gtest/gtest.h>

namespace {

using namespace project;

TEST(Book, PathStandsBehindTheCaptionsPrefix) {
    Book book;
    EXPECT_EQ(book.projectPath(), "NoName.grl");
    EXPECT_FALSE(book.hasFile());
    book.setProjectPath("/road/Site1.grl");
    EXPECT_EQ(book.Caption, "ZavroGrl-/road/Site1.grl");
    EXPECT_EQ(book.projectPath(), "/road/Site1.grl");
    EXPECT_TRUE(book.hasFile());
    book.setProjectPath("");
    EXPECT_FALSE(book.hasFile());
    EXPECT_EQ(book.projectPath(), "");
}

} // namespace
