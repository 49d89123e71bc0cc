#pragma once

#include "exit_status.h"

#include <iosfwd>
#include <string>

namespace cli {

struct CheckOptions {
    std::string book; ///< a project, a book in CSV form, or "-"
    bool json = false;
    double staff = 5; ///< length of the staff, metres
};

/// Prints what looks wrong in a book, a line or an object each. Failed when there are errors among it.
ExitStatus check(const CheckOptions& options, std::istream& in, std::ostream& out, std::ostream& err);

} // namespace cli
