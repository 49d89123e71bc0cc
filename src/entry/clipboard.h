#pragma once

#include "sheet/grid.h"

#include <string>
#include <string_view>

namespace entry {

/// The selected cells for the clipboard: a tab after every cell, a carriage return after every row.
[[nodiscard]] std::string selectedText(const sheet::Grid& grid);

/// Empties the texts of the selected cells.
void emptySelection(sheet::Grid& grid);

/// Adds `text` at the cursor, cell by cell: a tab goes one column on, a carriage return (or a line feed
/// without one before it) to the starting column of the next row, which is added where there is none. The
/// first cell keeps what it holds in front; every other one is cleared first. The line feed of a CR LF pair
/// stays at the start of the next cell. The cursor ends on the last cell. Linear in the length of the text.
void pasteText(sheet::Grid& grid, std::string_view text);

/// The careful way: each cell of the text replaces the one that it comes to stand on and no other. A tab or a
/// line end behind the last cell brings no further one, and columns that the grid lacks are left out. The
/// cursor ends on the last cell.
void replaceText(sheet::Grid& grid, std::string_view text);

} // namespace entry
