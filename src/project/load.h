#pragma once

#include "basic/runtime_error.h"
#include "book.h"
#include "desktop/desktop.h"
#include "report.h"

#include <string>

namespace project {

inline constexpr const char* notAProjectFile = "Your Selected file is not a grl database file";

/// Loads the file that cdl1.FileName names into the grid, and sets the caption and CurrentHI, which begins at
/// 0 like the last reading. Errors are shown. True when the whole file was loaded. The grid is dropped first:
/// what is unsaved must be set aside before. What stays in row 1 of the book before, because the first record
/// does not fill it, is among the notices, and under guarded editing nothing stays there; a table that counts
/// its rows wrong goes to the report.
bool op(Book& book, desktop::Desktop& desktop, Report& report);

/// op for a path that was named and not chosen in a dialog: by a start argument or on the command line. A
/// relative one is taken from the current folder, so that it stays good.
bool openPath(Book& book, desktop::Desktop& desktop, const std::string& path);

/// The message of a failed load: that it is no project file, nothing for 70, else number and description.
void showLoadError(desktop::Desktop& desktop, const basic::RuntimeError& error);

} // namespace project
