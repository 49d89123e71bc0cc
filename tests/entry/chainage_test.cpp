#include "entry/chainage.h"

#include "entry_fixture.h"

#include <tuple>

namespace {

using namespace sheet;

TEST(Chainage, KilometresToText) {
    const struct {
        float kilometres;
        const char* text;
    } cases[] = {{0, "00-000"},       {1.25F, "01-250"},   {12.005F, "12-005"}, {0.0999F, "00-100"},
                 {1.0094F, "01-009"}, {0.0995F, "00-100"}, {-0.75F, "0-1-250"}};
    for (const auto& each : cases)
        EXPECT_EQ(entry::FtoS(each.kilometres), each.text) << each.kilometres;
    EXPECT_THROW((void)entry::FtoS(40000), basic::RuntimeError);
}

TEST(Chainage, TextToMetres) {
    const struct {
        std::string text;
        int metres;
        const char* left;
    } cases[] = {{"01-250", 1250, "01-250"}, {"  01-250xyz", 1250, "01-250"},
                 {"1-2507", 3507, "1-2507"}, {"100-250", 100025, "100-25"},
                 {"250", 250000, "250"},     {"", 0, ""},
                 {"1-2.5", 1025, "1-2.5"},   {"a-5", 5, "a-5"},
                 {"0.5-1", 501, "0.5-1"}};
    for (const auto& each : cases) {
        std::string text = each.text;
        EXPECT_EQ(entry::StoF(text), each.metres) << each.text;
        EXPECT_EQ(text, each.left);
    }
}

TEST(Chainage, OneIncrementFurther) {
    const struct {
        const char* chainage;
        const char* increment;
        const char* next;
    } cases[] = {
        {"01-990", "20", "02-010"},    {"01-250", "20", "01-270"}, {"01-250", "12.5", "01-262.5"},
        {"01-250", "-300", "00-950"},  {"00-000", "0", "00-000"},  {"01-995.5", "10", "02-006"},
        {"00-000", "2500", "01-1500"}, {"0", "10", "00-010"},      {"01-100.25", "-100.5", "00-999.75"},
        {"00-100", "-200", "-01-900"}, {"TBM", "10", "00-010"},    {"9-999", "1", "10-000"},
        {"01-250", "20 m", "01-270"},  {"01-250", "", "01-250"},   {"01-999.9", "0.05", "01-999.95"},
    };
    for (const auto& each : cases)
        EXPECT_EQ(entry::StrToFig(each.chainage, each.increment), each.next)
            << each.chainage << " + " << each.increment;
    try {
        (void)entry::StrToFig("TBM-5", "-10");
        ADD_FAILURE();
    } catch (const basic::RuntimeError& error) {
        EXPECT_EQ(error.number(), basic::TypeMismatch);
    }
}

TEST_F(Entry, LeavingACell) {
    const struct {
        int col;
        const char* text;
        const char* left;
        const char* asked; // "" when no message is shown
    } cases[] = {
        {Chainage, "0.120", "0-120", "0-120"},
        {Chainage, ".5", "0-5", "0-5"},
        {Chainage, "1250", "1250", "1250"},
        {Chainage, "TBM", "TBM", "TBM"},
        {Chainage, "1.2.3", "1-2-3", "1-2-3"},
        {Chainage, "1.250-5", "1.250-5", ""},
        {Chainage, "01-250.5", "01-250.5", ""},
        {Chainage, "CP", "CP", ""},
        {Chainage, "cp", "cp", ""},
        {Chainage, "", "", ""},
        {Left, ".5", "0.5", ""},
        {Remark, ".x", "0.x", ""},
        {InterSight, "1.25", "1.25", ""},
    };
    for (const auto& each : cases) {
        grid.moveTo(1, each.col);
        grid.setText(each.text);
        desktop.boxes.clear();
        entry::leaveCell(book, desktop);
        EXPECT_EQ(grid.Text(), each.left) << each.text;
        if (*each.asked == 0) {
            EXPECT_TRUE(desktop.boxes.empty()) << each.text;
            continue;
        }
        ASSERT_EQ(desktop.boxes.size(), 1U) << each.text;
        EXPECT_EQ(desktop.boxes[0].text, std::string("Chainage must be ") + each.asked +
                                             " format i.e. '-' is used between Km and Meter");
    }
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Entry, LeavingASmallReadingClearsItsMark) {
    for (const auto& [col, text, kept] : {std::tuple{InterSight, "9.99", false},
                                          {InterSight, "10", true},
                                          {InterSight, "", false},
                                          {BackSight, "1", true}}) {
        grid.moveTo(1, col);
        grid.setText(text);
        grid.setCellBackColor(suspiciousReading);
        entry::leaveCell(book, desktop);
        EXPECT_EQ(marked(1, col), kept) << text;
    }
}

TEST_F(Entry, LeavingAnAbsurdReadingShowsTheError) {
    grid.moveTo(1, InterSight);
    grid.setText("1e999");
    grid.setCellBackColor(suspiciousReading);
    entry::leaveCell(book, desktop);
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, "Overflow");
    EXPECT_EQ(grid.Text(), "1e999");
}

} // namespace
