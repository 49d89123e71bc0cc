#pragma once

#include "book.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace project {

/// A number that differs when the texts of two grids differ; 0 for a grid without any text. Good within one
/// process.
[[nodiscard]] std::uint64_t gridMark(const sheet::Grid& grid);

/// The same for all of a book that its file holds, the heading included.
[[nodiscard]] std::uint64_t bookMark(const Book& book);

/// A text that changes when another program writes the file; empty when there is no such file, or
/// none that can be looked at.
[[nodiscard]] std::string fileMark(std::string_view path);

} // namespace project
