#pragma once

#include "patience.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace spreadsheet {

/// Runs `program` with `arguments`, gives what it writes to `take`, piece by piece, and returns its exit
/// status: -1 when a signal ended it. `libraries` goes in front of its library path when it is not empty. The
/// program is killed when the patience ends or `take` throws. `take` returns the rows had so far, a sign of
/// life. Raises NoReader with `missing` when the program cannot be started, and what `patience` raises.
[[nodiscard]] int runProgram(const std::string& program, const std::vector<std::string>& arguments,
                             const std::string& libraries, const char* missing, Patience& patience,
                             const std::function<std::size_t(std::string_view)>& take);

} // namespace spreadsheet
