#pragma once

#include "level_line_builder.h"

// The formats of digital levels, one reader each. `text` is UTF-8.

namespace exchange {

/// GSI-8 and GSI-16: `line` is the first one of a file.
[[nodiscard]] bool isGsi(std::string_view line);
[[nodiscard]] LevelFile readGsi(std::string_view text);

/// M5 lines of DiNi instruments.
[[nodiscard]] bool isM5(std::string_view line);
[[nodiscard]] LevelFile readM5(std::string_view text);

} // namespace exchange
