#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

#include <string>

// New, Open, Save, Save As and Exit. The caption is the only place that Save takes the project's name from.
// The commands go on whatever fails. What fails without a message box is said in the status bar, and the file
// on disk is then as it was.

namespace project {

void newProject(sheet::Book& book, desktop::Desktop& desktop);
void openProject(sheet::Book& book, desktop::Desktop& desktop);
void saveProject(sheet::Book& book, desktop::Desktop& desktop);
void saveProjectAs(sheet::Book& book, desktop::Desktop& desktop);

/// One of the recent entries, 1 to 4. Asks nothing; an unsaved grid is set aside for recovery.
void openRecent(sheet::Book& book, desktop::Desktop& desktop, int entry);

/// What Save does for a book with a name, without the recent list. True when the file holds all of the grid.
bool rewriteProject(sheet::Book& book, desktop::Desktop& desktop);

/// Makes a project file of the grid as `path`, which is taken as it stands; a file there is replaced as a
/// whole. True when it holds all of the grid.
bool makeProject(sheet::Book& book, desktop::Desktop& desktop, const std::string& path);

/// Asks about unsaved changes; true when the program is to end. What a failed save would lose is set aside
/// for recovery.
bool exitProgram(sheet::Book& book, desktop::Desktop& desktop);

} // namespace project
