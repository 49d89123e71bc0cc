#include "json_text.h"

namespace cli {

void appendJsonText(std::string& json, std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    json += '"';
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '"' || c == '\\') {
            json += '\\';
            json += c;
        } else if (byte < 0x20) {
            json += "\\u00";
            json += digits[byte >> 4U];
            json += digits[byte & 15U];
        } else {
            json += c;
        }
    }
    json += '"';
}

} // namespace cli
