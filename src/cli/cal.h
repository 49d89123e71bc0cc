#pragma once

#include <iosfwd>
#include <string>

namespace cli {

/// Exit status of every command.
enum ExitStatus : int { Done = 0, Failed = 1, WrongUsage = 2 };

struct CalOptions {
    std::string in;  ///< a path; "-" is standard input
    std::string out; ///< a path; empty or "-" is standard output
};

/// Reduces the levels of the book in `options.in` and writes it out in the same form. What goes wrong is said
/// in `err`, and then nothing is written.
ExitStatus cal(const CalOptions& options, std::istream& in, std::ostream& out, std::ostream& err);

} // namespace cli
