#pragma once

#include "exit_status.h"

#include <iosfwd>
#include <optional>
#include <string>

namespace cli {

struct ImportOptions {
    std::string file{}, out{}; ///< `out` ends with .csv or .grl, or is "-"; not used with `list`
    bool list = false;         ///< only say what the file holds
    std::optional<std::string> sheet{};
    std::optional<int> heading{}; ///< row of the sheet; 0: none
    std::string columns{};        ///< "A=chainage,C=is"; as guessed when empty
    std::string points{};         ///< form of point names: KKMMM
    std::optional<int> line{};    ///< of a level file, as `list` counts
    bool take = false;            ///< a line that differs from the levels in the file too
    std::string readerProgram{};  ///< of table files; the installed one when empty
};

/// Reads a book from a file of tables or of a digital level and writes it as CSV or as a project. Failed when
/// something was left out, which `err` names.
ExitStatus importFile(const ImportOptions& options, std::ostream& out, std::ostream& err);

} // namespace cli
