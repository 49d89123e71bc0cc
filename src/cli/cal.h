#pragma once

#include "exit_status.h"

#include <iosfwd>
#include <string>

namespace cli {

struct CalOptions {
    std::string in;  ///< a path; "-" is standard input
    std::string out; ///< a path; empty or "-" is standard output
};

/// Reduces the levels of the book in `options.in` and writes it out in the same form. What goes wrong is said
/// in `err`, and then nothing is written.
ExitStatus cal(const CalOptions& options, std::istream& in, std::ostream& out, std::ostream& err);

} // namespace cli
