#include "sort_key.h"

#include "hex.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace {

using jet::ColumnType;

std::string key(ColumnType type, const jet::Value& value, bool ascending = true,
                jet::Format format = jet::Format::Jet4) {
    jet::Bytes out;
    jet::appendKey(out, {type, ascending}, value, format);
    return hex(out);
}

jet::Numeric numeric(std::int64_t value) {
    jet::Numeric result;
    result.negative = value < 0;
    auto magnitude = static_cast<std::uint64_t>(std::abs(value));
    for (std::size_t i = result.magnitude.size(); magnitude > 0; magnitude >>= 8)
        result.magnitude[--i] = static_cast<std::uint8_t>(magnitude);
    return result;
}

const jet::Guid someGuid{
    {0xBC, 0x96, 0x30, 0x3A, 0x53, 0xB8, 0x47, 0x4D, 0xAC, 0xC1, 0xD2, 0xEB, 0x8D, 0x0B, 0x09, 0xD5}};

// Keys read from the indexes of files that Access made.
TEST(SortKey, EveryTypeInBothDirections) {
    struct Case {
        ColumnType type;
        jet::Value value;
        std::string ascending;
        std::string descending;
    };
    const std::vector<Case> cases = {
        {ColumnType::Long, std::int32_t{0}, "7f 80 00 00 00", "80 7f ff ff ff"},
        {ColumnType::Long, std::int32_t{-23}, "7f 7f ff ff e9", "80 80 00 00 16"},
        {ColumnType::Integer, std::int16_t{-23}, "7f 7f e9", "80 80 16"},
        {ColumnType::Byte, std::uint8_t{0}, "7f 00", "80 ff"},
        {ColumnType::Currency, jet::Currency{-230000}, "7f 7f ff ff ff ff fc 7d 90",
         "80 80 00 00 00 00 03 82 6f"},
        {ColumnType::Single, -23.0F, "7f 3e 47 ff ff", "80 c1 b8 00 00"},
        {ColumnType::Double, 0.0, "7f 80 00 00 00 00 00 00 00", "80 7f ff ff ff ff ff ff ff"},
        {ColumnType::Double, -23.0, "7f 3f c8 ff ff ff ff ff ff", "80 c0 37 00 00 00 00 00 00"},
        {ColumnType::DateTime, jet::DateTime{-23.0}, "7f 3f c8 ff ff ff ff ff ff",
         "80 c0 37 00 00 00 00 00 00"},
        {ColumnType::Boolean, true, "7f 00", "80 ff"},
        {ColumnType::Boolean, false, "7f ff", "80 00"},
        {ColumnType::Boolean, jet::Null{}, "7f ff", "80 00"},
        {ColumnType::Numeric, numeric(0), "7f ff 00000000 00000000 00000000 00000000",
         "80 ff ffffffff ffffffff ffffffff ffffffff"},
        {ColumnType::Numeric, numeric(-230000000000), "7f 00 ffffffff ffffffff ffffffca 72ee83ff",
         "80 00 00000000 00000000 00000035 8d117c00"},
        {ColumnType::Guid, someGuid, "7f bc96303a53b8474d 09 acc1d2eb8d0b09d5 08",
         "80 4369cfc5ac47b8b2 09 533e2d1472f4f62a f7"},
        {ColumnType::Binary, jet::Bytes{0, 0, 0, 1}, "7f 0000000100000000 04", "80 fffffffeffffffff fb"},
        {ColumnType::Binary, jet::Bytes{}, "7f", "80"},
        {ColumnType::Text, std::string("L"), "7f 5e 01 00", "80 a1 fe ff 00"},
        {ColumnType::Text, std::string("M\xC3\xA9xico"), "7f 60 51 75 59 4d 64 01 02 0e 00",
         "80 9f ae 8a a6 b2 9b fe fd f1 ff 00"},
        {ColumnType::Long, jet::Null{}, "00", "ff"},
        {ColumnType::Text, jet::Null{}, "00", "ff"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(key(c.type, c.value), withoutBlanks(c.ascending));
        EXPECT_EQ(key(c.type, c.value, false), withoutBlanks(c.descending));
    }
}

TEST(SortKey, Jet3TextGoesThroughItsCodePage) {
    EXPECT_EQ(key(ColumnType::Text, std::string("Montr\xC3\xA9"), true, jet::Format::Jet3),
              withoutBlanks("7f 6f 72 70 77 75 66 02 24 00"));
    EXPECT_EQ(key(ColumnType::Text, std::string("01-250"), false, jet::Format::Jet3), "80a9a8e1a7a4a9ff");
    // The euro sign is byte 80; a letter outside the code page is a question mark.
    EXPECT_EQ(key(ColumnType::Text, std::string("\xE2\x82\xAC"), true, jet::Format::Jet3), "7f1000");
    EXPECT_EQ(key(ColumnType::Text, std::string("\xCE\xA9"), true, jet::Format::Jet3),
              key(ColumnType::Text, std::string("?"), true, jet::Format::Jet3));
}

// The key of (Chn, Side, Oft) as an independent writer of such files makes it.
TEST(SortKey, ChainageSideOffset) {
    struct Case {
        std::string chainage, side;
        double offset;
        std::string key;
    };
    const std::vector<Case> cases = {
        {"00-000", "C", 0, "7f363636363601010101800f0682007f4d01007f8000000000000000"},
        {"01-250", "C", 0, "7f36383a403601010101800f0682007f4d01007f8000000000000000"},
        {"01-250", "L", 1.5, "7f36383a403601010101800f0682007f5e01007fbff8000000000000"},
        {"01-250", "L", -1.5, "7f36383a403601010101800f0682007f5e01007f4007ffffffffffff"},
        {"01-250", "r", 2, "7f36383a403601010101800f0682007f6901007fc000000000000000"},
        {"01-250", "R", -0.0, "7f36383a403601010101800f0682007f6901007f7fffffffffffffff"},
        {"01250", "C", 0, "7f36383a403601007f4d01007f8000000000000000"},
        {"0-1250", "C", 0, "7f36383a403601010101800b0682007f4d01007f8000000000000000"},
        {"012-50", "C", 0, "7f36383a40360101010180130682007f4d01007f8000000000000000"},
        {"01--250", "C", 0, "7f36383a403601010101800f0682800f0682007f4d01007f8000000000000000"},
        {"01-250.5", "R", 2, "7f36383a40361c4001010101800f0682007f6901007fc000000000000000"},
        {"102-250", "C", 0, "7f38363a3a40360101010180130682007f4d01007f8000000000000000"},
        {"01 250", "C", 0, "7f3638073a403601007f4d01007f8000000000000000"},
        {"", "R", 2, "7f01007f6901007fc000000000000000"},
        {"CP", "", 2, "7f4d6601007f01007fc000000000000000"},
        {"o'neil", "C", 0, "7f646251595e01010101800b0680007f4d01007f8000000000000000"},
        {"cafe", "C", 0, "7f4d4a535101007f4d01007f8000000000000000"},
        {"caf\xC3\xA9", "C", 0, "7f4d4a5351010202020e007f4d01007f8000000000000000"},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(key(ColumnType::Text, c.chainage) + key(ColumnType::Text, c.side) +
                      key(ColumnType::Double, c.offset),
                  c.key)
            << c.chainage;
    }
}

// Whatever the direction, the bytes order as the values do, Null first when ascending and last when not.
TEST(SortKey, BytesOrderAsValues) {
    const auto sameOrder = [](ColumnType type, const std::vector<jet::Value>& ordered) {
        std::vector<std::string> up, down;
        for (const auto& value : ordered) {
            up.push_back(key(type, value));
            down.push_back(key(type, value, false));
        }
        EXPECT_TRUE(std::ranges::is_sorted(up, std::less_equal<>())) << static_cast<int>(type);
        EXPECT_TRUE(std::ranges::is_sorted(down, std::greater_equal<>())) << static_cast<int>(type);
    };
    constexpr double huge = std::numeric_limits<double>::max();
    sameOrder(ColumnType::Double, {jet::Null{}, -huge, -1.5, -1.0, -1e-300, 0.0, 1e-300, 1.0, 1.5, huge});
    sameOrder(ColumnType::Long, {jet::Null{}, std::int32_t{-2147483647 - 1}, std::int32_t{-1},
                                 std::int32_t{0}, std::int32_t{256}, std::int32_t{2147483647}});
    sameOrder(ColumnType::Text,
              {jet::Null{}, std::string(), std::string("1"), std::string("10"), std::string("2"),
               std::string("a"), std::string("\xC3\xA4x"), std::string("B"), std::string("b1")});
}

} // namespace
