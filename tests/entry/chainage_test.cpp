#include "entry/chainage.h"

#include "entry_fixture.h"
#include "error_number.h"

#include <array>
#include <tuple>

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
    const std::tuple<std::string, int, const char*> cases[] = {
        {"01-250", 1250, "01-250"}, {"  01-250xyz", 1250, "01-250"},
        {"1-2507", 3507, "1-2507"}, {"100-250", 100025, "100-25"},
        {"250", 250000, "250"},     {"", 0, ""},
        {"1-2.5", 1025, "1-2.5"},   {"a-5", 5, "a-5"},
        {"0.5-1", 501, "0.5-1"}};
    for (auto [text, metres, left] : cases) {
        EXPECT_EQ(entry::StoF(text), metres) << left;
        EXPECT_EQ(text, left);
    }
}

TEST(Chainage, OneIncrementFurther) {
    const std::array<const char*, 3> cases[] = {
        {"01-990", "20", "02-010"},    {"01-250", "20", "01-270"}, {"01-250", "12.5", "01-262.5"},
        {"01-250", "-300", "00-950"},  {"00-000", "0", "00-000"},  {"01-995.5", "10", "02-006"},
        {"00-000", "2500", "01-1500"}, {"0", "10", "00-010"},      {"01-100.25", "-100.5", "00-999.75"},
        {"00-100", "-200", "-01-900"}, {"TBM", "10", "00-010"},    {"9-999", "1", "10-000"},
        {"01-250", "20 m", "01-270"},  {"01-250", "", "01-250"},   {"01-999.9", "0.05", "01-999.95"},
    };
    for (const auto& [chainage, increment, next] : cases)
        EXPECT_EQ(entry::StrToFig(chainage, increment), next) << chainage << " + " << increment;
    EXPECT_EQ(errorOf([] { (void)entry::StrToFig("TBM-5", "-10"); }), basic::TypeMismatch);
}

TEST_F(Entry, LeavingACell) {
    const std::pair<const char*, const char*> asked[] = {
        {"0.120", "0-120"}, {".5", "0-5"}, {"1250", "1250"}, {"TBM", "TBM"}, {"1.2.3", "1-2-3"}};
    for (const auto& [keyed, chainage] : asked) {
        start(keyed, 1, Chainage);
        entry::leaveCell(book, desktop);
        EXPECT_EQ(rows(), chainage);
        EXPECT_EQ(desktop.boxes.at(0).text, "Chainage must be " + std::string(chainage) +
                                                " format i.e. '-' is used between Km and Meter");
        EXPECT_EQ(state(), "1,0 C, 1 box");
    }
    const std::tuple<int, const char*, const char*> silent[] = {
        {Chainage, "01-250.5", "01-250.5"},      {Chainage, "CP", "CP"},
        {Remark, ",,,,,,,,,.x", ",,,,,,,,,0.x"}, {Chainage, "cp", "cp"},
        {InterSight, ",,,,,1.25", ",,,,,1.25"},  {Chainage, "", ""},
        {InterSight, ",,,,,9.99?", ",,,,,9.99"}, {Left, ",.5", ",0.5"},
        {InterSight, ",,,,,10?", ",,,,,10?"},    {InterSight, ",,,,,?", ""},
        {BackSight, ",,,,1?", ",,,,1?"},
    };
    for (const auto& [col, keyed, left] : silent) {
        start(keyed, 1, col);
        entry::leaveCell(book, desktop);
        EXPECT_EQ(rows(), left);
        EXPECT_EQ(state(), "1," + std::to_string(col) + " C") << keyed;
    }
    start(",,,,,1e999?", 1, InterSight);
    entry::leaveCell(book, desktop);
    EXPECT_EQ(desktop.boxes.at(0).text, "Overflow");
    EXPECT_EQ(rows(), ",,,,,1e999?");
}

} // namespace
