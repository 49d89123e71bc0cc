#pragma once

#include "sheet/grid.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace project {

/// A number that differs when the texts of two grids differ; 0 for a grid without any text. Good within one
/// process.
[[nodiscard]] std::uint64_t gridMark(const sheet::Grid& grid);

/// A text that changes when another program writes the file; empty when there is no such file.
[[nodiscard]] std::string fileMark(std::string_view path);

} // namespace project
