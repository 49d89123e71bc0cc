#pragma once

#include "sheet/grid.h"

#include <string>

namespace exchange {

/// Appends one grid row as a line of a CSV file: every cell as it stands followed by a comma, then CR LF.
/// Nothing is quoted, so a comma in a remark splits it; the files are meant for printing from a spreadsheet.
void appendCsvLine(std::string& text, const sheet::Grid& grid, int row);

} // namespace exchange
