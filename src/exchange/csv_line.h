#pragma once

#include "sheet/grid.h"

#include <string>
#include <string_view>

namespace exchange {

/// Appends one grid row as a line of a CSV file: every cell as it stands followed by a comma, then CR LF.
/// Nothing is quoted, so a comma in a remark splits it; the files are meant for printing from a spreadsheet.
void appendCsvLine(std::string& text, const sheet::Grid& grid, int row);

/// Appends a field of a file that is read again: in quotes, with "" for a quote inside, where it must be.
void appendCsvField(std::string& csv, std::string_view text);

} // namespace exchange
