#pragma once

#include "grid.h"

#include <string>
#include <string_view>

namespace sheet {

/// A cell read as a number: the leading number of its text, 0 when there is none.
[[nodiscard]] double cellValue(const Grid& grid, int row, int col);

/// A level or height of instrument as it is written into a cell: "#0.000".
[[nodiscard]] std::string levelText(double level);

/// A number as entry puts it into a cell: plain decimal, leading zero, no trailing zeros, no exponent.
[[nodiscard]] std::string plainText(float value);

} // namespace sheet
