#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

/// Bytes as lower-case hex digits.
inline std::string hex(std::span<const std::uint8_t> bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (std::uint8_t byte : bytes) {
        text += digits[byte >> 4];
        text += digits[byte & 15];
    }
    return text;
}

/// Hex is written in groups where a key has parts.
inline std::string withoutBlanks(std::string text) {
    std::erase(text, ' ');
    return text;
}
