#pragma once

#include "sheet/grid.h"

#include <string>
#include <string_view>

// A field book as comma-separated text: a header line, then one line a row with the ten columns of the grid.

namespace exchange {

/// Fills `grid` from `csv`. Fields may be quoted, with "" for a quote inside; lines end with LF or CR LF and
/// blank ones are skipped; missing fields are empty. One comma at the end of a line is dropped, and unquoted
/// text behind the ninth comma, commas included, is the remark. A book without rows gets one empty row.
/// Raises RuntimeError InvalidProcedureCall (5) with the line's number in its description when the header or
/// the end of a quoted field is missing.
void readBook(sheet::Grid& grid, std::string_view csv);

/// The whole grid in that form, with CR LF; fields are quoted where they must be.
[[nodiscard]] std::string writeBook(const sheet::Grid& grid);

} // namespace exchange
