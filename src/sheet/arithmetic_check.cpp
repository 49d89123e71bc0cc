#include "arithmetic_check.h"

#include "book.h"
#include "cells.h"
#include "sight.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace sheet {
namespace {

constexpr double millimetre = 0.001;
constexpr double noise = 1e-9;

/// Half the distance of two singles at `height`: what one height of instrument may be off.
double singleError(double height) {
    const auto single = static_cast<float>(std::abs(height));
    return (double{std::nextafter(single, std::numeric_limits<float>::infinity())} - double{single}) / 2;
}

} // namespace

bool ArithmeticCheck::agrees() const {
    return std::abs(difference()) <= allowed + noise;
}

ArithmeticCheck checkArithmetic(const Grid& grid) {
    ArithmeticCheck check;
    check.firstLevel = check.lastLevel = cellValue(grid, 1, RLevel);
    double highest = std::abs(check.firstLevel);
    int setUps = 1;
    for (int row = 1; row < grid.Rows(); ++row) {
        const double backSight = cellValue(grid, row, BackSight);
        check.backSights += backSight;
        check.foreSights += cellValue(grid, row, ForeSight);
        const RowKind kind = sightAt(grid, row).kind;
        if (kind == RowKind::Start) {
            check.openBackSight = backSight;
            check.openRow = row;
        }
        const bool isSight = kind == RowKind::Intermediate || kind == RowKind::ChangePoint;
        if (!isSight || grid.Text(row, RLevel).empty()) continue;
        check.reduced = true;
        check.lastLevel = cellValue(grid, row, RLevel);
        highest = std::max(highest, std::abs(check.lastLevel));
        const bool changes = kind == RowKind::ChangePoint;
        check.closingRow = changes ? 0 : row;
        check.closingSight = changes ? 0 : cellValue(grid, row, InterSight);
        check.openRow = changes && backSight != 0 ? row : 0;
        check.openBackSight = changes ? backSight : 0;
        setUps += changes ? 1 : 0;
    }
    check.backSights -= check.openBackSight;
    // The last level is rounded to the millimetre where it stands.
    check.allowed = std::max(millimetre, setUps * singleError(highest) + millimetre / 2);
    return check;
}

std::string describe(const ArithmeticCheck& check) {
    if (!check.reduced) return {};
    std::string line =
        check.agrees() ? "Sums agree: " : "SUMS DIFFER by " + levelText(std::abs(check.difference())) + ": ";
    line += "B.S. " + levelText(check.backSights) + " - F.S. " + levelText(check.foreSights);
    if (check.closingRow != 0)
        line += " - closing I.S. " + levelText(check.closingSight) + " of row " +
                std::to_string(check.closingRow);
    line += " = " + levelText(check.rise()) + ", level " + levelText(check.firstLevel) + " to " +
            levelText(check.lastLevel) + '.';
    if (check.openRow != 0)
        line += " B.S. " + levelText(check.openBackSight) + " of row " + std::to_string(check.openRow) +
                " is left out: nothing is sighted from it.";
    return line;
}

} // namespace sheet
