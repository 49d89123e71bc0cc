#pragma once

#include "cal.h"

#include <iosfwd>
#include <string>

// The commands that work on project files.

namespace cli {

/// Reduces the levels of a project and saves it in its place; the version before is kept as ".bak".
ExitStatus calProject(const std::string& path, std::ostream& err);

/// Writes a project as comma-separated text, as the window's export does: to `out`, to standard output for
/// "-", or beside the project under its name when `out` is empty.
ExitStatus exportProject(const std::string& path, const std::string& out, std::ostream& standardOut,
                         std::ostream& err);

/// Makes the project `path` of the book in the CSV file `from` ("-" is standard input); a file there is
/// replaced.
ExitStatus newProject(const std::string& path, const std::string& from, std::istream& in, std::ostream& err);

} // namespace cli
