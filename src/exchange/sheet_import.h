#pragma once

#include "desktop/desktop.h"
#include "project/book.h"
#include "project/project_commands.h"
#include "spreadsheet/spreadsheet.h"

#include <functional>
#include <vector>

namespace exchange {

/// Replaces the book by the sheet that is open in the running spreadsheet program: columns A to J from sheet
/// row 2 on, up to the first row that is wholly empty (that row comes too, and one more is added). Readings
/// and offsets get up to three decimals, heights and levels exactly three; a text that is no number is taken
/// as it stands.
///
/// Everything is read, by one call of `readSheet`, before the grid is touched: when that raises
/// spreadsheet::Error the book stays as it was and the user is told why. An unsaved book is set aside first,
/// and kept where it is when that cannot be.
/// The levels are left as read.
project::Outcome importSheet(project::Book& book, desktop::Desktop& desktop,
                             const std::function<std::vector<spreadsheet::Row>()>& readSheet);

} // namespace exchange
