#pragma once

#include "exit_status.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace cli {

struct HeadingOptions {
    std::string book;               ///< a project
    std::vector<std::string> texts; ///< KEY=VALUE each; an empty value takes the text away
};

/// Sets the texts that are given in the heading of a project, at once or not at all, and prints the heading,
/// a line KEY=VALUE each. WrongUsage for a key that headings do not have.
ExitStatus heading(const HeadingOptions& options, std::ostream& out, std::ostream& err);

} // namespace cli
