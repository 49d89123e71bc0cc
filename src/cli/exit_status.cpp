#include "exit_status.h"

#include "basic/runtime_error.h"

#include <ostream>

namespace cli {

ExitStatus fail(std::ostream& err, std::string_view path, std::string_view why) {
    err << "zavrogrl-cli: " << path << ": " << why << '\n';
    return Failed;
}

ExitStatus fail(std::ostream& err, std::string_view path, const basic::RuntimeError& error) {
    return fail(err, error.path().empty() ? path : error.path(), error.description());
}

ExitStatus flushed(std::ostream& out, std::ostream& err, ExitStatus status) {
    if (out.flush()) return status;
    return fail(err, "standard output", basic::descriptionOf(basic::DeviceIoError));
}

} // namespace cli
