#pragma once

#include "patience.h"

#include <string>
#include <vector>

namespace spreadsheet {

/// Exit statuses of the reader program.
enum ReaderExit : int {
    ReadWell = 0,
    BadUsage = 2,
    NoSheet = 4,
    ConnectionLost = 6,
    OtherError = 7,
    LibrariesMissing = 127, ///< the dynamic linker's own
};

struct ReaderResult {
    int exitStatus = OtherError; ///< -1 when a signal ended it
    std::vector<Row> rows;
};

/// Runs `program` with `arguments` and takes the rows that it writes: ten NUL-ended fields a row. `libraries`
/// goes in front of its library path. The program is killed when the patience ends. Raises NoReader when it
/// cannot be started, and what `patience` raises.
[[nodiscard]] ReaderResult runReader(const std::string& program, const std::vector<std::string>& arguments,
                                     const std::string& libraries, Patience& patience);

} // namespace spreadsheet
