#include "basic/numbers.h"
#include "basic/runtime_error.h"

#include "error_number.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>

namespace {

TEST(Numbers, ValTakesTheLeadingNumber) {
    const std::pair<const char*, double> cases[] = {
        {"", 0},           {"abc", 0},     {"1.235m", 1.235}, {"  2.5", 2.5}, {"\t\r\n3", 3}, {"-1.5", -1.5},
        {"+7", 7},         {"-", 0},       {".", 0},          {".5", 0.5},    {"5.", 5},      {"1.2.3", 1.2},
        {"1,235", 1},      {"1e2", 100},   {"1E-2x", 0.01},   {"1e", 1},      {"1e+", 1},     {"2ex", 2},
        {"1 2", 1},        {"&HFF", 0},    {"0x10", 0},       {"12&", 12},    {"1d2", 1},     {"inf", 0},
        {"nan", 0},        {"--1", 0},     {"- 1", 0},        {"1e-400", 0},  {"0e999", 0},   {"-0", 0},
        {"007.250", 7.25}, {"1e22", 1e22},
    };
    for (const auto& [text, value] : cases)
        EXPECT_EQ(basic::val(text), value) << text;
    EXPECT_EQ(basic::val("9007199254740993"), 9007199254740992.0);
    EXPECT_EQ(basic::val("1e-400e999"), 0);
    EXPECT_EQ(basic::val("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(basic::val("1" + std::string(400, '0') + "e-400"), 1);
    for (const std::string& text : {std::string("1e999"), std::string("1e999e-999"),
                                    std::string("-1e99999999999999999999"), std::string(400, '9')})
        EXPECT_EQ(errorOf([&] { (void)basic::val(text); }), basic::Overflow) << text;
}

TEST(Numbers, ValReadsAsTheLibraryDoes) {
    std::mt19937 random(20);
    for (int i = 0; i < 20000; ++i) {
        std::string text;
        const auto digits = 1 + random() % 20;
        const auto point = random() % 22;
        for (auto at = 0UL; at < digits; ++at) {
            if (at == point) text += '.';
            text += static_cast<char>('0' + random() % 10);
        }
        if (random() % 8 == 0) text += "e" + std::to_string(static_cast<int>(random() % 60) - 30);
        text += std::array{"", "", "e", "E-", ".", "x"}[random() % 6];
        EXPECT_EQ(basic::val(text), std::strtod(text.c_str(), nullptr)) << text;
    }
}

TEST(Numbers, StrictConversionsRefuseWhatIsNoNumber) {
    for (const char* text : {"", " ", "x", "1x", "1 2", "1e", "1,5", "."}) {
        EXPECT_FALSE(basic::isNumber(text)) << text;
        EXPECT_EQ(errorOf([&] { (void)basic::cDbl(text); }), basic::TypeMismatch) << text;
    }
    for (const char* text : {"1", " -1.5 ", "+.5", "5.", "1e3"})
        EXPECT_TRUE(basic::isNumber(text)) << text;
    EXPECT_EQ(basic::cDbl(" -1.5 "), -1.5);
}

TEST(Numbers, WholeNumbersRoundHalfToEvenAndOverflow) {
    const std::pair<double, int> cases[] = {{0.5, 0},   {1.5, 2},         {2.5, 2},          {-0.5, 0},
                                            {-1.5, -2}, {32767.4, 32767}, {-32768.5, -32768}};
    for (const auto& [value, whole] : cases) {
        EXPECT_EQ(basic::cInt(value), whole) << value;
        EXPECT_EQ(basic::cLng(value), whole) << value;
    }
    for (const double value : {32767.5, -32769.0, 1e30, std::nan("")})
        EXPECT_EQ(errorOf([&] { (void)basic::cInt(value); }), basic::Overflow) << value;
    for (const double value : {2147483647.5, -2147483649.0, HUGE_VAL})
        EXPECT_EQ(errorOf([&] { (void)basic::cLng(value); }), basic::Overflow) << value;
    EXPECT_EQ(basic::cSng(3.4028235e38), 3.4028235e38F);
    for (const double value : {1e39, -3.5e38, HUGE_VAL, std::nan("")})
        EXPECT_EQ(errorOf([&] { (void)basic::cSng(value); }), basic::Overflow) << value;
}

TEST(Numbers, ShortestTexts) {
    const std::pair<float, const char*> singles[] = {{0, "0"},
                                                     {-0.0F, "0"},
                                                     {0.75F, "0.75"},
                                                     {-2.5F, "-2.5"},
                                                     {0.1F, "0.1"},
                                                     {250, "250"},
                                                     {1.0F / 3, "0.3333333"},
                                                     {101.525F, "101.525"},
                                                     {9999999, "9999999"},
                                                     {1e7F, "1E+07"},
                                                     {16777216, "1.677722E+07"},
                                                     {1e-7F, "0.0000001"},
                                                     {1.5e-7F, "1.5E-07"},
                                                     {1e38F, "1E+38"}};
    for (const auto& [value, text] : singles)
        EXPECT_EQ(basic::text(value), text);
    const std::pair<double, const char*> doubles[] = {
        {0.1, "0.1"},       {1.0 / 3, "0.333333333333333"},
        {0.1 + 0.2, "0.3"}, {123456789012345, "123456789012345"},
        {1e15, "1E+15"},    {-1e-300, "-1E-300"}};
    for (const auto& [value, text] : doubles)
        EXPECT_EQ(basic::text(value), text);
    EXPECT_EQ(basic::plainText(1e10F), "10000000000");
    EXPECT_EQ(basic::plainText(1.5e-9F), "0.0000000015");
    EXPECT_EQ(basic::plainText(-1.23456789), "-1.23456789");
    EXPECT_EQ(basic::plainText(-0.0), "0");
}

TEST(Format, EveryPatternOfTheProgram) {
    using basic::pattern;
    using Numbers = std::vector<std::pair<double, const char*>>;
    const std::pair<basic::Pattern, Numbers> cases[] = {
        {pattern("#0.000"), {{100, "100.000"}, {0.5, "0.500"}, {-0.0004, "0.000"}, {-0.0005, "-0.001"}}},
        {pattern("#0.000"), {{1.0005, "1.001"}, {2.6745, "2.675"}, {double{101.525F}, "101.525"}}},
        {pattern("#0.000"), {{999.9995, "1000.000"}, {1e-20, "0.000"}}},
        {pattern("#00.00"), {{2.5, "02.50"}, {100, "100.00"}, {-2, "-02.00"}}},
        {pattern("#0.0##"), {{4, "4.0"}, {1.25, "1.25"}, {1.2345, "1.235"}}},
        {pattern("000"), {{5, "005"}, {5.5, "006"}, {1234, "1234"}}},
        {pattern("000.###"), {{262.5, "262.5"}, {262, "262"}, {0.0004, "000"}}},
        {pattern("#00"), {{9, "09"}, {-1, "-01"}}},
        {pattern("#0.###"), {{12.5, "12.5"}, {3, "3"}}},
        {pattern("0.0##"), {{0.5, "0.5"}}},
        {pattern("#0.00"), {{1.005, "1.01"}}},
        {pattern("#0.00#"), {{1.5, "1.50"}, {1.505, "1.505"}}},
    };
    for (const auto& [form, numbers] : cases)
        for (const auto& [value, text] : numbers)
            EXPECT_EQ(basic::format(value, form), text);
    EXPECT_EQ(basic::format(1e20, pattern("#0.000")), "100000000000000000000.000");
    EXPECT_EQ(errorOf([] { (void)basic::format(HUGE_VAL, pattern("#0.000")); }), basic::Overflow);
}

// The quick way and the digits that the C library prints must agree, above all next to the ties.
TEST(Format, RoundsThePrintedDigitsHalfAway) {
    std::mt19937 random(7);
    for (int i = 0; i < 50000; ++i) {
        double value = static_cast<double>(random() % 40'000'000) / 10000 - 2000;
        for (auto step = random() % 4; step > 0; --step)
            value = std::nextafter(value, random() % 2 ? 1e9 : -1e9);
        char digits[64];
        std::snprintf(digits, sizeof digits, "%.15g", value);
        const long double printed = std::strtold(digits, nullptr);
        // Lifted by less than a 16th digit, so that a printed tie is one in binary too.
        const long double rounded = std::round(printed * 1000.0L * (1 + 1e-18L)) / 1000.0L;
        std::snprintf(digits, sizeof digits, "%.3Lf", rounded);
        const std::string want = std::string(digits) == "-0.000" ? "0.000" : digits;
        EXPECT_EQ(basic::format(value, basic::pattern("#0.000")), want) << i;
    }
}

} // namespace
