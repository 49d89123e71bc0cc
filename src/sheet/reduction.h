#pragma once

#include "book.h"
#include "desktop/desktop.h"

namespace sheet {

/// Reduces the whole book by the height-of-instrument method: fills "Hgt.Inst" and "R.Level." and makes
/// chainages six characters long. Every height and level is rounded to single precision before it is written.
/// Needs at least one row below the starting row, else does nothing. An error is shown in a message box and
/// ends the run with the grid still hidden and the progress bar still shown; what is written stays.
void reduceLevels(Book& book, desktop::Desktop& desktop);

} // namespace sheet
