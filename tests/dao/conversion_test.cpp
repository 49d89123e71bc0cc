#include "conversion.h"

#include "error_number.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

using dao::Value;
using jet::ColumnType;

jet::Column column(ColumnType type, int size = 0) {
    jet::Column result;
    result.name = "F";
    result.type = type;
    result.size = size;
    result.precision = 10;
    result.scale = 2;
    return result;
}

const std::string e = "\xC3\xA9";            // two bytes, one character
const std::string road = "\xF0\x9F\x9B\xA3"; // four bytes, two characters as the file counts them

// What is assigned, and what the program then reads from the field.
TEST(Conversion, AssignedAndReadBack) {
    struct Case {
        jet::Column column;
        Value assigned, read;
    };
    const std::vector<Case> cases = {
        {column(ColumnType::Single), "100.525", 100.525F},
        {column(ColumnType::Single), 0.09, 0.09F},
        {column(ColumnType::Single), " 1e2 ", 100.0F},
        {column(ColumnType::Double), "-3.000", -3.0},
        {column(ColumnType::Double), std::int32_t{7}, 7.0},
        {column(ColumnType::Double), true, -1.0},
        {column(ColumnType::Byte), "2.5", std::int32_t{2}},
        {column(ColumnType::Byte), 3.5, std::int32_t{4}},
        {column(ColumnType::Byte), true, std::int32_t{255}},
        {column(ColumnType::Integer), std::int32_t{-32768}, std::int32_t{-32768}},
        {column(ColumnType::Long), 2147483647.0, std::int32_t{2147483647}},
        {column(ColumnType::Currency), "1.23456", 1.2346},
        {column(ColumnType::Numeric), "-12.345", -12.34},
        {column(ColumnType::Numeric), 7.0, 7.0},
        {column(ColumnType::Boolean), "True", true},
        {column(ColumnType::Boolean), 0.0, false},
        {column(ColumnType::Boolean), "-1", true},
        {column(ColumnType::Boolean), dao::Null{}, false},
        {column(ColumnType::DateTime), "2015-11-21 12:00:00", 42329.5},
        {column(ColumnType::DateTime), "1899-12-29", -1.0},
        {column(ColumnType::DateTime), 1.25, 1.25},
        {column(ColumnType::Text, 4), 2.5F, "2.5"},
        {column(ColumnType::Text, 6), true, "True"},
        {column(ColumnType::Text, 3), e + e + e, e + e + e},
        {column(ColumnType::Text, 2), road, road},
        {column(ColumnType::Memo), std::string(70000, 'x'), std::string(70000, 'x')},
        {column(ColumnType::Guid), "bc96303a-53b8-474d-acc1-d2eb8d0b09d5",
         "{BC96303A-53B8-474D-ACC1-D2EB8D0B09D5}"},
        {column(ColumnType::Binary, 2), std::vector<std::uint8_t>{1, 2}, std::vector<std::uint8_t>{1, 2}},
        {column(ColumnType::Long), dao::Null{}, dao::Null{}},
    };
    for (const Case& c : cases) {
        const Value read = dao::fromColumn(dao::toColumn(c.assigned, c.column), c.column);
        EXPECT_EQ(read, c.read) << dao::toText(c.assigned) << " became " << dao::toText(read);
    }
}

TEST(Conversion, WhatAFieldRefuses) {
    struct Case {
        jet::Column column;
        Value assigned;
        int error;
    };
    constexpr double endless = std::numeric_limits<double>::infinity();
    const std::vector<Case> cases = {
        {column(ColumnType::Double), "", 3421},
        {column(ColumnType::Double), "1.5m", 3421},
        {column(ColumnType::Double), endless, 3421},
        {column(ColumnType::Single), 1e39, 3421},
        {column(ColumnType::Byte), std::int32_t{256}, 3421},
        {column(ColumnType::Byte), "-1", 3421},
        {column(ColumnType::Integer), 32767.5, 3421},
        {column(ColumnType::Long), "2147483648", 3421},
        {column(ColumnType::Currency), 1e15, 3421},
        {column(ColumnType::Numeric), "123456789", 3421},
        {column(ColumnType::Boolean), "perhaps", 3421},
        {column(ColumnType::DateTime), "21/11/2015", 3421},
        {column(ColumnType::DateTime), "2015-13-01", 3421},
        {column(ColumnType::Guid), "{BC96303A}", 3421},
        {column(ColumnType::Binary, 2), 1.0, 3421},
        {column(ColumnType::Binary, 2), std::vector<std::uint8_t>{1, 2, 3}, 3163},
        {column(ColumnType::Text, 3), "four", 3163},
        {column(ColumnType::Text, 1), road, 3163},
        {column(ColumnType::Text, 1), 12.0, 3163},
    };
    for (const Case& c : cases)
        EXPECT_EQ(errorOf([&] { static_cast<void>(dao::toColumn(c.assigned, c.column)); }), c.error)
            << dao::toText(c.assigned);
}

TEST(Conversion, ZeroIsNeverMinusZero) {
    EXPECT_FALSE(std::signbit(std::get<double>(dao::toColumn(-0.0, column(ColumnType::Double)))));
    EXPECT_FALSE(std::signbit(std::get<double>(dao::toColumn("-0", column(ColumnType::Double)))));
    EXPECT_FALSE(std::signbit(std::get<float>(dao::toColumn(-1e-60, column(ColumnType::Single)))));
}

TEST(Conversion, NumbersAsText) {
    EXPECT_EQ(dao::toText(dao::Null{}), "");
    EXPECT_EQ(dao::toText(0.75F), "0.75");
    EXPECT_EQ(dao::toText(-12.5), "-12.5");
    EXPECT_EQ(dao::toText(100.525F), "100.525");
    EXPECT_EQ(dao::toText(1e16), "10000000000000000");
    EXPECT_EQ(dao::toText(std::int32_t{-7}), "-7");
}

} // namespace
