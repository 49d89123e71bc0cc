#include "rise_and_fall.h"

#include "basic/numbers.h"
#include "sheet/book.h"
#include "sheet/cells.h"

#include <cmath>

namespace survey {
namespace {

using sheet::RowKind;

// Levels stand in the book with three decimals, so a millimetre is no mistake.
constexpr double millimetre = 0.001 + 1e-6;

bool isSight(const Reading& reading) {
    return reading.kind != RowKind::None && reading.readable;
}

} // namespace

std::optional<double> riseAt(Runs& runs, int row) {
    if (row < 2 || row > runs.lastSight() || !isSight(runs.reading(row))) return std::nullopt;
    int before = row - 1;
    while (before > 1 && !isSight(runs.reading(before)))
        --before;
    // Two sights from one instrument are compared as they were read, without the level of it.
    const Reading& first = runs.reading(before);
    return (first.kind == RowKind::Intermediate ? first.sight : first.backSight) - runs.reading(row).sight;
}

RiseAndFall checkRiseAndFall(const sheet::Grid& grid, Runs& runs) {
    RiseAndFall check;
    const int last = runs.lastSight();
    if (last < 2) return check;
    double height = 0; // reading against which the next sight rises or falls
    double open = 0;   // back sight that nothing was sighted from so far
    double level = 0;
    for (int row = 1; row <= last; ++row) {
        const Reading& reading = runs.reading(row);
        if (!isSight(reading)) continue;
        const std::string& cell = grid.Text(row, sheet::RLevel);
        if (row == 1) {
            check.firstLevel = level = reading.sight;
        } else {
            const double rise = height - reading.sight;
            (rise > 0 ? check.rises : check.falls) += std::abs(rise);
            level += rise;
            ++check.sights;
            check.backSights += open;
            open = 0;
            const double adjusted = runs.levelAt(row).value_or(RowLevel{level, 0}).adjusted();
            const double shown = cell.empty() ? level : basic::val(cell);
            check.lastLevel = shown;
            const bool isAdjusted = std::abs(shown - adjusted) <= millimetre;
            if (std::abs(shown - level) > millimetre && !isAdjusted && check.wrongLevels++ == 0)
                check.firstWrong = row;
            if (isAdjusted) check.lastLevel = level;
        }
        if (reading.kind == RowKind::Intermediate) {
            height = reading.sight;
        } else {
            height = open = reading.backSight;
            if (row > 1) check.foreSights += reading.sight;
        }
    }
    if (runs.reading(last).kind == RowKind::Intermediate) {
        check.closingInterSight = last;
        check.foreSights += runs.reading(last).sight;
    }
    return check;
}

bool RiseAndFall::agrees() const {
    const double bySights = backSights - foreSights;
    return wrongLevels == 0 && std::abs(bySights - (rises - falls)) <= millimetre &&
           std::abs(bySights - (lastLevel - firstLevel)) <= millimetre;
}

std::string describe(const RiseAndFall& check) {
    if (check.sights == 0) return "Nothing was sighted";
    const auto text = [](double metres) { return sheet::levelText(metres); };
    std::string line = check.agrees() ? "They agree" : "They differ";
    line += ": B.S. - F.S. " + text(check.backSights - check.foreSights) + ", rises - falls " +
            text(check.rises - check.falls) + ", last - first " + text(check.lastLevel - check.firstLevel);
    if (check.closingInterSight > 0)
        line += "; the I.S. of row " + std::to_string(check.closingInterSight) + " closes";
    if (check.wrongLevels > 0)
        line += "; " + std::to_string(check.wrongLevels) +
                (check.wrongLevels == 1 ? " level does" : " levels do") +
                " not follow from the readings, row " + std::to_string(check.firstWrong) +
                (check.wrongLevels == 1 ? "" : " first");
    return line;
}

} // namespace survey
