#pragma once

#include "book.h"
#include "desktop/desktop.h"

// The list of recent projects: "GRL.LVX" in the program folder, one path a line, the newest first, four at
// most.

namespace project {

/// Fills book.mnuX from the list file. An entry that the list leaves empty keeps its former path.
void mNu(Book& book, desktop::Desktop& desktop);

/// Puts cdl1.FileName as a whole path at the head of the list file, unless it is listed already or there is
/// no file of that name. Raises the file's error.
void Sv(const Book& book, desktop::Desktop& desktop);

} // namespace project
