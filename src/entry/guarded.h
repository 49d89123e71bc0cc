#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

// Guarded editing: the careful way of the keys that cost something elsewhere in the book.

namespace entry {

/// True for a sight in a row above the last one, where Enter corrects and does not open the next row.
[[nodiscard]] bool correctsWithEnter(const sheet::Book& book);

/// Enter there: R.Level. and Hgt.Inst of this row come from the set-up above it, and nothing else changes;
/// the cursor goes one row down. CurrentHI changes only with the last set-up. What became old below is said.
void guardedEnter(sheet::Book& book, desktop::Desktop& desktop);

/// True when the place that the letter writes over is filled; the letter is to do nothing then, and that is
/// said. `letter` is one of p, c, *, s and t.
bool guardsAgainst(const sheet::Book& book, desktop::Desktop& desktop, char32_t letter);

} // namespace entry
