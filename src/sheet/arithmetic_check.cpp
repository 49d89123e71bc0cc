#include "arithmetic_check.h"

#include "basic/numbers.h"
#include "book.h"
#include "cells.h"
#include "sight.h"

#include <cmath>

namespace sheet {

bool ArithmeticCheck::agrees() const {
    constexpr double millimetre = 0.001;
    constexpr double noise = 1e-9;
    return std::abs(difference()) <= millimetre + noise;
}

ArithmeticCheck checkArithmetic(const Grid& grid) {
    ArithmeticCheck check;
    check.firstLevel = cellValue(grid, 1, RLevel);
    double openBackSight = cellValue(grid, 1, BackSight);
    double openInterSight = 0;
    for (int row = 2; row < grid.Rows(); ++row) {
        const RowKind kind = sightAt(grid, row).kind;
        if (kind == RowKind::None || grid.Text(row, RLevel).empty()) continue;
        check.reduced = true;
        check.lastLevel = cellValue(grid, row, RLevel);
        // A back sight counts once something was sighted from its set-up.
        check.backSights += openBackSight;
        openBackSight = 0;
        if (kind == RowKind::Intermediate) {
            openInterSight = cellValue(grid, row, InterSight);
        } else {
            check.foreSights += cellValue(grid, row, ForeSight);
            openBackSight = cellValue(grid, row, BackSight);
            openInterSight = 0;
        }
    }
    check.foreSights += openInterSight;
    return check;
}

std::string describe(const ArithmeticCheck& check) {
    if (!check.reduced) return {};
    std::string line = "Sum B.S. " + levelText(check.backSights) + ", sum F.S. " +
                       levelText(check.foreSights) + ", first level " + levelText(check.firstLevel) +
                       ", last level " + levelText(check.lastLevel);
    if (check.agrees()) return line + ": they agree.";
    return line + ": they differ by " + levelText(check.difference()) + ".";
}

} // namespace sheet
