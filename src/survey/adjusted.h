#pragma once

#include "runs.h"

#include <string>
#include <utility>
#include <vector>

namespace survey {

/// The rows below the starting row with their adjusted levels as R.Level. shows them. Empty when no section
/// ends on a known level.
[[nodiscard]] std::vector<std::pair<int, std::string>> adjustedLevels(Runs& runs, Method method);

/// True when R.Level. of every sighted row is its adjusted level, by set-ups or by distance, and not simply
/// the raw one.
[[nodiscard]] bool holdsAdjustedLevels(const sheet::Grid& grid);

/// True when a section of the book ends on a known level.
[[nodiscard]] bool hasClosedSection(Runs& runs);

} // namespace survey
