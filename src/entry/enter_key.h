#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

namespace entry {

/// What Enter does on the cursor cell.
void enterKey(sheet::Book& book, desktop::Desktop& desktop);

/// True when a new chainage line would be opened on the cursor's row: not on row 1, and some row above has a
/// chainage that is not "CP".
[[nodiscard]] bool opensChainageLine(const sheet::Book& book);

/// Opens a new chainage line on the cursor's row, one increment on from the last chainage above it. On row 1,
/// and when all rows above read "CP", the cursor goes to the back sight of row 1 instead.
void newChainageLine(sheet::Book& book);

} // namespace entry
