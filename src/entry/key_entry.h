#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

namespace entry {

/// Keys that are decided by the key and not by the character they type.
enum class EditKey { Delete, F2, F3, F9, F12 };

/// One typed character (8 Backspace, 13 Enter, 1/3/22 Ctrl+A/C/V, else its code point) on the grid's cursor
/// cell: the entry state machine. Errors are shown in a message box, but for 70, and end the key.
void keyPress(sheet::Book& book, desktop::Desktop& desktop, char32_t character);

/// One editing or function key.
void keyDown(sheet::Book& book, desktop::Desktop& desktop, EditKey key);

} // namespace entry
