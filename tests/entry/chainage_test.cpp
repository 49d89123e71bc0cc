#include "entry/chainage.h"

#include "entry_fixture.h"
#include "error_number.h"

namespace {

using namespace sheet;

TEST(Chainage, KilometresToText) {
    const std::pair<float, const char*> cases[] = {
        {0, "00-000"},       {1.25F, "01-250"},   {12.005F, "12-005"}, {0.0999F, "00-100"},
        {1.0094F, "01-009"}, {0.0995F, "00-100"}, {-0.75F, "0-1-250"}};
    for (const auto& [kilometres, text] : cases)
        EXPECT_EQ(entry::FtoS(kilometres), text) << kilometres;
    EXPECT_EQ(errorOf([] { (void)entry::FtoS(40000); }), basic::Overflow);
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
    EXPECT_EQ(errorOf([] { (void)entry::StrToFig("TBM-5", "-10"); }), basic::TypeMismatch);
}

TEST_F(Entry, LeavingACell) {
    const struct {
        int col;
        const char* keyed;
        const char* left;
        const char* asked = ""; // the chainage of the message, if one is shown
    } cases[] = {
        {Chainage, "0.120", "0-120", "0-120"},
        {Chainage, ".5", "0-5", "0-5"},
        {Chainage, "1250", "1250", "1250"},
        {Chainage, "TBM", "TBM", "TBM"},
        {Chainage, "1.2.3", "1-2-3", "1-2-3"},
        {Chainage, "1.250-5", "1.250-5"},
        {Chainage, "01-250.5", "01-250.5"},
        {Chainage, "CP", "CP"},
        {Chainage, "cp", "cp"},
        {Chainage, "", ""},
        {Left, ".5", "0.5"},
        {Remark, ".x", "0.x"},
        {InterSight, "1.25", "1.25"},
        {InterSight, "9.99?", "9.99"},
        {InterSight, "10?", "10?"},
        {InterSight, "?", ""},
        {BackSight, "1?", "1?"},
    };
    const auto at = [](int col, std::string text) {
        return text.empty() ? text : std::string(static_cast<std::size_t>(col), ',') + text;
    };
    for (const auto& each : cases) {
        start(at(each.col, each.keyed), 1, each.col);
        entry::leaveCell(book, desktop);
        EXPECT_EQ(rows(), at(each.col, each.left));
        const std::string box = desktop.boxes.empty() ? "" : desktop.boxes.at(0).text;
        EXPECT_EQ(box, *each.asked == 0 ? ""
                                        : "Chainage must be " + std::string(each.asked) +
                                              " format i.e. '-' is used between Km and Meter");
        EXPECT_FALSE(book.BookChanged);
    }
    start(",,,,,1e999?", 1, InterSight);
    entry::leaveCell(book, desktop);
    EXPECT_EQ(desktop.boxes.at(0).text, "Overflow");
    EXPECT_EQ(rows(), ",,,,,1e999?");
}

} // namespace
