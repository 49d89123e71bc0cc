#include "sheet/sight.h"

#include "field_book.h"

#include <gtest/gtest.h>

namespace {

using namespace sheet;

// Where a row stands by each rule: side and offset, "-" without a point, "." when it is no ground.
std::string placed(const std::string& row) {
    Book book;
    keyRows(book.MSFG, {"", row});
    std::string text;
    for (const GroundRule* rule : {&transferRule, &formationRule, &formationUpdateRule, &fileRule}) {
        const auto point = pointAt(book.MSFG, 2, *rule);
        if (!isGround(book.MSFG, 2, *rule))
            text += ". ";
        else
            text += point ? point->side() + std::to_string(int(point->offset)) + " " : "- ";
    }
    return text;
}

TEST(Sight, GroundByTheRuleOfEachCommand) {
    const std::pair<const char*, const char*> cases[] = {
        {"00-000,2,,,,1,,,99", "L2 L2 L2 L2 "},
        {"00-000,2,0,3,,1,,,99", "R3 C0 L2 R3 "},
        {"00-000,2,5,,,1,,,99", "C5 C5 L2 L2 "},
        {"00-000,,0,3,,1,,,99", "R3 C0 R3 R3 "},
        {"00-000,2,,,,1,,,", "L2 . . L2 "},  // no level
        {"cp,2,,,,,1,,99", ". . . . "},      // in any case
        {" cp ,2,,,,,1,,99", "L2 L2 . L2 "}, // the blanks count but in one command
        {"00-000,2,,,,1,,,99,TBM", ". L2 L2 L2 "},
        {"00-000,,,,,1,,,99,BM 1 = 99.5", ". . . . "},
        {"00-000,,0,,,1,,,99,BM 1 = 99.5", "C0 C0 C0 C0 "}, // with an offset it is ground
        {"00-000,,,,,1,,,99", "- - - - "},
    };
    for (const auto& [row, want] : cases)
        EXPECT_EQ(placed(row), want) << row;
}

TEST(Sight, KnownLevelIsTheWholeRest) {
    const auto read = [](std::string_view remark) {
        const auto known = knownLevelIn(remark);
        return known ? std::string(known->name) + "|" + std::to_string(known->level) : "none";
    };
    EXPECT_EQ(read("BM 1 = 101.235 "), "BM 1|101.235000");
    EXPECT_EQ(read("=-2"), "|-2.000000");
    EXPECT_EQ(read("a=b=7"), "a=b|7.000000");
    for (const char* remark : {"", "101.235", "BM 1", "BM =", "BM = 101,235", "BM = 101.235 m", "BM = 1e999"})
        EXPECT_EQ(read(remark), "none") << remark;
}

} // namespace
