#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

// The four row buttons. Each hides the grid while it moves rows and shows it again, also after an error,
// which is shown in a message box.

namespace entry {

void insertRow(sheet::Book& book, desktop::Desktop& desktop);
void insertRows(sheet::Book& book, desktop::Desktop& desktop);
void deleteRow(sheet::Book& book, desktop::Desktop& desktop);
void deleteRows(sheet::Book& book, desktop::Desktop& desktop);

} // namespace entry
