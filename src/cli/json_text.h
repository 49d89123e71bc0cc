#pragma once

#include <string>
#include <string_view>

namespace cli {

/// Appends `text` (UTF-8) as a JSON string, quotes included.
void appendJsonText(std::string& json, std::string_view text);

} // namespace cli
