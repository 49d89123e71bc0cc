#pragma once

#include <string>

namespace shell {

/// XDG data home + "zavrogrl".
[[nodiscard]] std::string userProgramFolder();

/// Where the installation (or the build tree) keeps the files that ship beside the program; empty when not
/// found.
[[nodiscard]] std::string installedTemplates();

/// Makes `folder`, readable by its owner only, and copies the files of `templates` into it that it does not
/// have under any case of their name. Returns what went wrong, empty when nothing did.
std::string prepareProgramFolder(const std::string& folder, const std::string& templates);

} // namespace shell
