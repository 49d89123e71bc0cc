#pragma once

#include "book.h"
#include "desktop/desktop.h"

namespace sheet {

/// Columns of the change-point list: those of the book, and the number of the book row that a list row was
/// taken from. The last one has no header and is as good as hidden.
inline constexpr int bookRowColumn = columnCount;
inline constexpr int listColumnCount = columnCount + 1;

/// The list as its window opens it: the header and one empty row.
[[nodiscard]] Grid emptyChangePointList();

/// The starting row and every book row below it that is a change point ("CP") or carries a remark. A listed
/// row shows the chainage of the row above it, where the change point was taken. Nothing flows back into the
/// book.
[[nodiscard]] Grid listChangePoints(Book& book, desktop::Desktop& desktop);

} // namespace sheet
