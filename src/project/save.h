#pragma once

#include "book.h"
#include "desktop/desktop.h"

#include <string>

// Save and Save As. The caption is the only place that Save takes the project's name from. What fails without
// a message box is said in the status bar, and the file on disk is then as it was.

namespace project {

/// What became of a save.
struct Saved {
    enum End {
        Whole,     ///< the file holds all of the grid
        Partly,    ///< the file is written, but it does not take some cells' texts
        Not,       ///< `reason` says why; the file is as it was
        Cancelled, ///< no name was given
    };
    End end = Cancelled;
    int leftOut = 0;      ///< cells, of Partly
    std::string reason{}; ///< of Not, without a full stop
    std::string told{};   ///< what the status bar was told

    [[nodiscard]] bool whole() const { return end == Whole; }
    [[nodiscard]] bool written() const { return end == Whole || end == Partly; }
};

Saved saveProject(Book& book, desktop::Desktop& desktop);
Saved saveProjectAs(Book& book, desktop::Desktop& desktop);

/// What Save does for a book with a name, without the recent list.
Saved rewriteProject(Book& book, desktop::Desktop& desktop);

/// Makes a project file of the grid as `path`, which is taken as it stands; a file there is replaced as a
/// whole.
Saved makeProject(Book& book, desktop::Desktop& desktop, const std::string& path);

} // namespace project
