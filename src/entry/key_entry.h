#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

namespace entry {

/// Keys that are decided by the key and not by the character they type.
enum class EditKey { Delete, F2, F3, F9, F12 };

/// What a key is called in the history of the book.
struct KeyStep {
    const char* name;
    bool typesText = false; ///< goes on the text of the cell: one step with the keys before it
};
[[nodiscard]] KeyStep stepOf(const sheet::Book& book, char32_t character);
[[nodiscard]] KeyStep stepOf(EditKey key);

/// One typed character (8 Backspace, 13 Enter, 1/3/22 Ctrl+A/C/V, else its code point) on the grid's cursor
/// cell: the entry state machine. Errors are shown in a message box, but for 70, and end the key.
void keyPress(sheet::Book& book, desktop::Desktop& desktop, char32_t character);

/// One editing or function key.
void keyDown(sheet::Book& book, desktop::Desktop& desktop, EditKey key);

} // namespace entry
