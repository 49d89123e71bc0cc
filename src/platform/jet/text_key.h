#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

// The key of a text in an index, without the flag byte in front. Letters that differ in case alone, and texts
// that differ in blanks at the end, have equal keys. Only the first 255 characters count.

namespace jet {

/// Jet 4, sort order 0409h version 0.
void appendGeneralTextKey(std::u16string_view text, bool ascending, std::vector<std::uint8_t>& key);
/// The same for a text of ASCII characters alone.
void appendAsciiTextKey(std::string_view text, bool ascending, std::vector<std::uint8_t>& key);

/// Jet 3, sort order 0409h; `text` in code page 1252.
void appendJet3TextKey(std::string_view text, bool ascending, std::vector<std::uint8_t>& key);

} // namespace jet
