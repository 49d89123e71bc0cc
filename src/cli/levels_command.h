#pragma once

#include "exit_status.h"

#include "survey/runs.h"

#include <iosfwd>
#include <optional>
#include <string>

namespace cli {

struct LevelsOptions {
    std::string book;               ///< a project, a book in CSV form, or "-"
    survey::Closing closing{};      ///< without lengths
    std::optional<double> length{}; ///< km, for a book of one section
    bool riseAndFall = false;
    bool json = false;
    std::string csv{}; ///< where the levels of the rows go; empty: nowhere
};

/// "ROW=LEVEL", as a known level is given for a row. Nothing for any other text.
[[nodiscard]] std::optional<std::pair<int, double>> knownRowFrom(std::string_view text);

/// Prints what the level runs of a book miss and whether they close. Failed when a section does not close or
/// the run ends at a text that is no number; WrongUsage for a length or a known level that belongs nowhere.
ExitStatus levels(const LevelsOptions& options, std::istream& in, std::ostream& out, std::ostream& err);

} // namespace cli
