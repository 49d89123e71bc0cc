#pragma once

#include "book.h"
#include "desktop/desktop.h"

// New, Open, a recent entry and Exit. A grid that is in no file and that nobody was asked about is set aside
// before it is dropped; where that cannot be, the command stops, says why, and asks the next time. What fails
// without a message box is said in the status bar.

namespace project {

/// What became of a command.
enum class Outcome {
    Done,
    Cancelled, ///< by the user; nothing is changed
    Refused,   ///< the book would have been lost; it is as it was
    Failed,    ///< an error, which was shown
};

Outcome newProject(Book& book, desktop::Desktop& desktop);
Outcome openProject(Book& book, desktop::Desktop& desktop);

/// One of the recent entries, 1 to 4. Asks nothing, and unlike openPath leaves CurrentFile as it was.
Outcome openRecent(Book& book, desktop::Desktop& desktop, int entry);

/// Asks about unsaved changes; true when the program is to end. After a save that did not take the whole book
/// it is not, and the grid is set aside too.
bool exitProgram(Book& book, desktop::Desktop& desktop);

/// Sets the book aside before its grid is dropped unasked. False when that cannot be: the reason is said and
/// BookChanged becomes True, so that the next command asks.
[[nodiscard]] bool mayDrop(Book& book, desktop::Desktop& desktop);

} // namespace project
