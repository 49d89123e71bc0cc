#pragma once

#include <iosfwd>
#include <string_view>

namespace basic {
class RuntimeError;
}

namespace cli {

/// Exit status of every command.
enum ExitStatus : int { Done = 0, Failed = 1, WrongUsage = 2 };

/// Says why a command failed, and about which file. Failed.
ExitStatus fail(std::ostream& err, std::string_view path, std::string_view why);

/// The same; the file that the error names, else `path`.
ExitStatus fail(std::ostream& err, std::string_view path, const basic::RuntimeError& error);

/// `status` once all has been written to the standard output; Failed, and said, when that does not take it.
ExitStatus flushed(std::ostream& out, std::ostream& err, ExitStatus status = Done);

} // namespace cli
