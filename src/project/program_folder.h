#pragma once

#include <string>
#include <string_view>

// The folder of templates, settings, login store and help that the program owns for one user.

namespace project {

/// "zavrogrl" in the user's data folder: $XDG_DATA_HOME, or ~/.local/share where that is not set.
[[nodiscard]] std::string programFolder();

/// The files that ship with the program that is running: share/zavrogrl/templates beside the folder of
/// its binary, in the build tree as in an installation.
[[nodiscard]] std::string shippedFolder();

/// Makes `folder` for its owner alone and lays in the files of `shipped` that it lacks; a file that is there,
/// whatever its case, is left alone. Safe to run by two instances at once. Returns what went wrong first, in
/// the run-time library's words; empty when all is in place.
[[nodiscard]] std::string prepareProgramFolder(std::string_view folder, std::string_view shipped);

} // namespace project
