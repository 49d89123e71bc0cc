#pragma once

#include <string>
#include <string_view>

// Text helpers on UTF-8; only ASCII letters change case.

namespace basic {

[[nodiscard]] std::string_view trim(std::string_view text); ///< blanks (U+0020) at both ends
[[nodiscard]] std::string upper(std::string_view text);
[[nodiscard]] std::string lower(std::string_view text);
[[nodiscard]] bool sameText(std::string_view a, std::string_view b); ///< equal but for the case of letters
[[nodiscard]] std::size_t length(std::string_view text);             ///< characters (code points)
[[nodiscard]] std::string_view left(std::string_view text,
                                    std::size_t count); ///< the first `count` characters
[[nodiscard]] std::string_view right(std::string_view text,
                                     std::size_t count); ///< the last `count` characters
void dropLast(std::string& text);                        ///< the last character, all its bytes
void append(std::string& text, char32_t character);      ///< one code point

} // namespace basic
