#pragma once

#include "sheet/grid.h"

#include <optional>
#include <string_view>

namespace survey {

/// The row that "Go to chainage" means by `answer`: the first one from the top with that chainage, else the
/// one with the next greater. "-", "+" and a point part kilometres from metres, and a plain number is metres:
/// "1-250", "1+250", "1.250" and "1250" are one place. Nothing when the answer is no chainage or none is as
/// great. Linear in rows.
[[nodiscard]] std::optional<int> rowOfChainage(const sheet::Grid& grid, std::string_view answer);

} // namespace survey
