#include "strings.h"

#include <algorithm>

namespace basic {
namespace {

bool continues(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}
char upperChar(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
char lowerChar(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// The byte at which the character with this index starts; the end when there are not so many.
std::size_t byteOf(std::string_view text, std::size_t character) {
    std::size_t at = 0;
    while (character > 0 && at < text.size()) {
        do {
            ++at;
        } while (at < text.size() && continues(text[at]));
        --character;
    }
    return at;
}

} // namespace

std::string_view trim(std::string_view text) {
    const auto first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

std::string upper(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), upperChar);
    return result;
}

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), lowerChar);
    return result;
}

bool sameText(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerChar(x) == lowerChar(y); });
}

std::size_t length(std::string_view text) {
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return !continues(c); }));
}

std::string_view left(std::string_view text, std::size_t count) {
    return text.substr(0, byteOf(text, count));
}

std::string_view right(std::string_view text, std::size_t count) {
    const std::size_t all = length(text);
    return all <= count ? text : text.substr(byteOf(text, all - count));
}

void dropLast(std::string& text) {
    while (!text.empty()) {
        const bool inside = continues(text.back());
        text.pop_back();
        if (!inside) return;
    }
}

void append(std::string& text, char32_t character) {
    const auto put = [&text](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
    if (character < 0x80)
        put(character);
    else if (character < 0x800) {
        put(0xC0 | (character >> 6));
        put(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        put(0xE0 | (character >> 12));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    } else {
        put(0xF0 | (character >> 18));
        put(0x80 | ((character >> 12) & 0x3F));
        put(0x80 | ((character >> 6) & 0x3F));
        put(0x80 | (character & 0x3F));
    }
}

} // namespace basic
