#pragma once

#include <array>

namespace basic {

/// Windows-1252 from 0x80 to 0x9F; the five unused bytes keep their own value, as Windows maps them. All
/// other bytes are the code points of their value.
inline constexpr std::array<char16_t, 32> windows1252{
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

/// The code point of a byte.
[[nodiscard]] constexpr char32_t fromWindows1252(unsigned char byte) {
    return byte >= 0x80 && byte < 0xA0 ? windows1252[byte - 0x80U] : char32_t{byte};
}

} // namespace basic
