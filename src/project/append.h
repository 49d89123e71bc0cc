#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

namespace project {

/// Adds the rows of a second project file below the last row of the book. Renumbers and reduces nothing.
void appendProject(sheet::Book& book, desktop::Desktop& desktop);

} // namespace project
