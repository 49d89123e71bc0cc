#pragma once

#include "book.h"
#include "desktop/desktop.h"

#include <string>
#include <string_view>

// The parent of the project folders: one line of "set.ini" in the program folder, behind four characters.

namespace project {

/// Sets DefaultFolder from "set.ini", to "C:\Road" without that file. Raises nothing.
void readDefaultFolder(Book& book, desktop::Desktop& desktop);

/// The folder that frmDorvan shows in lblDD when it loads: that of "set.ini", which is made when it is
/// missing. Raises the file's error.
[[nodiscard]] std::string loadFolderForDialog(desktop::Desktop& desktop);

/// Where the dialog's folder tree starts: `folder`, or its nearest parent that exists.
[[nodiscard]] std::string nearestFolder(std::string_view folder);

/// OK in frmDorvan: `folder`, trimmed, becomes DefaultFolder and goes into "set.ini". A file that cannot be
/// written is said in the status bar; the folder holds for this run.
void chooseDefaultFolder(Book& book, desktop::Desktop& desktop, std::string_view folder);

} // namespace project
