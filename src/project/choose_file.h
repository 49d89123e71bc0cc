#pragma once

#include "book.h"
#include "new_file.h"
#include "report.h"

// What New, Open and Save have in common: the name from the common file dialog, and the file made for it.

namespace project {

/// cdl1.FileName while it names no file.
inline constexpr const char* noFile = "*.grl";

/// Asks for a name into cdl1.FileName, which becomes `before` when there is none; false then.
bool chooseFile(Book& book, desktop::Desktop& desktop, desktop::FileDialog kind, const std::string& before);

/// What is said of the file that a new one took the place of.
inline constexpr const char* trashedNote = "The file that stood there is in the trash.";

/// Makes the project file for `path` with `make`; when that cannot be, makes an empty one under the name with
/// "aa" behind it, and the command goes on with `path` all the same. Raises the second error.
template <typename Make>
void makeProjectFile(desktop::Desktop& desktop, Report& report, const std::string& path, Make&& make) {
    try {
        make();
    } catch (const basic::RuntimeError& error) {
        NewFile(desktop, path + "aa").commit(desktop);
        report.add(path + " could not be made (" + error.told(path) + "); an empty project was made as " +
                   path + "aa.");
    }
}

} // namespace project
