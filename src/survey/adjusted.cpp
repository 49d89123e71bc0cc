#include "adjusted.h"

#include "basic/numbers.h"
#include "sheet/book.h"
#include "sheet/cells.h"

#include <algorithm>

namespace survey {

bool hasClosedSection(Runs& runs) {
    return std::ranges::any_of(runs.sections(), [](const RunSection& section) {
        return section.misclosureMm && section.verdict != Verdict::Check;
    });
}

std::vector<std::pair<int, std::string>> adjustedLevels(Runs& runs, Method method) {
    std::vector<std::pair<int, std::string>> levels;
    if (!hasClosedSection(runs)) return levels;
    const int last = runs.lastSight();
    for (int row = 2; row <= last; ++row)
        if (const auto level = runs.levelAt(row, method))
            levels.emplace_back(row, sheet::levelText(level->adjusted()));
    return levels;
}

bool holdsAdjustedLevels(const sheet::Grid& grid) {
    Runs runs(grid);
    for (const Method method : {Method::Setups, Method::Distance}) {
        const auto levels = adjustedLevels(runs, method);
        const bool all = std::ranges::all_of(
            levels, [&](const auto& each) { return grid.Text(each.first, sheet::RLevel) == each.second; });
        const bool corrected = std::ranges::any_of(levels, [&](const auto& each) {
            return each.second != sheet::levelText(runs.rawLevel(each.first));
        });
        if (all && corrected) return true;
    }
    return false;
}

} // namespace survey
