#include "basic/strings.h"

#include <gtest/gtest.h>

namespace {

TEST(Strings, CountCharactersAndNotBytes) {
    const std::string word = "z\u00fcri\u20ac\U0001F600";
    EXPECT_EQ(basic::length(word), 6U);
    EXPECT_EQ(basic::left(word, 2), "z\u00fc");
    EXPECT_EQ(basic::left(word, 9), word);
    EXPECT_EQ(basic::right(word, 2), "\u20ac\U0001F600");
    EXPECT_EQ(basic::right(word, 9), word);
    std::string text = word;
    for (const char* rest : {"z\u00fcri\u20ac", "z\u00fcri", "z\u00fcr", "z\u00fc", "z", "", ""}) {
        basic::dropLast(text);
        EXPECT_EQ(text, rest);
    }
    for (const char32_t c : U"z\u00fcri\u20ac\U0001F600") {
        if (c != 0) basic::append(text, c);
    }
    EXPECT_EQ(text, word);
}

TEST(Strings, TrimAndCase) {
    EXPECT_EQ(basic::trim("  a b\t "), "a b\t");
    EXPECT_EQ(basic::trim("   "), "");
    EXPECT_EQ(basic::upper("cp \u00fc"), "CP \u00fc");
    EXPECT_TRUE(basic::sameText("ZavroGRL.lvx", "zavrogrl.LVX"));
    EXPECT_FALSE(basic::sameText("ab", "abc"));
}

} // namespace
