#pragma once

#include "table.h"

#include "spreadsheet/spreadsheet.h"

#include <chrono>
#include <optional>
#include <string>

namespace tables {

struct ReadOptions {
    std::optional<std::string> sheet;       ///< by name; the one that the file opens with when nothing
    std::string readerProgram;              ///< the installed one when empty
    std::chrono::milliseconds limit{20000}; ///< how long a reader that brings nothing is waited for
};

/// The program that reads table files as it is installed: beside the running program.
[[nodiscard]] std::string installedTableReader();

/// Reads a sheet of the file `path` (.xlsx, .ods, delimited text; told by content, not by name) in a process
/// of its own, with limits of memory and time. `goOn` is asked meanwhile, may be empty. Raises Unreadable
/// with what is wrong; a cancelled reading raises spreadsheet::Error.
[[nodiscard]] Table readTableFile(const std::string& path, const ReadOptions& options = {},
                                  const spreadsheet::GoOn& goOn = {});

} // namespace tables
