#include "guarded.h"

#include "overwritten.h"

#include "basic/numbers.h"
#include "sheet/cells.h"
#include "sheet/sight.h"

#include <optional>

namespace entry {

using sheet::Grid;
using sheet::RowKind;

namespace {

bool isSetUp(const Grid& grid, int row) {
    const RowKind kind = sheet::sightAt(grid, row).kind;
    return kind == RowKind::Start || kind == RowKind::ChangePoint;
}

/// The height of the set-up that `row` is sighted from, as its row shows it.
std::optional<float> heightOver(const Grid& grid, int row) {
    while (--row >= 1)
        if (isSetUp(grid, row)) {
            if (grid.Text(row, sheet::HgtInst).empty()) return std::nullopt;
            return basic::cSng(sheet::cellValue(grid, row, sheet::HgtInst));
        }
    return std::nullopt;
}

bool opensLastSetUp(const Grid& grid, int row) {
    if (!isSetUp(grid, row)) return false;
    while (++row < grid.Rows())
        if (isSetUp(grid, row)) return false;
    return true;
}

/// The first row below that shows a level; 0 for none.
int levelBelowRow(const Grid& grid, int row) {
    while (++row < grid.Rows())
        if (!grid.Text(row, sheet::RLevel).empty()) return row;
    return 0;
}

/// Level and height of the row; nothing when no set-up above gives a height.
std::optional<float> reduceRow(Grid& grid, int row, const sheet::Sight& sight) {
    double level = 0;
    if (sight.kind == RowKind::Start) {
        level = sheet::cellValue(grid, row, sheet::RLevel);
    } else {
        const std::optional<float> above = heightOver(grid, row);
        if (!above) return std::nullopt;
        level = sheet::levelBelow(*above, double{sight.reading});
        grid.setText(row, sheet::RLevel, sheet::levelText(basic::cSng(level)));
        if (sight.kind == RowKind::Intermediate) return above;
    }
    const float height = sheet::heightAbove(level, sheet::cellValue(grid, row, sheet::BackSight));
    grid.setText(row, sheet::HgtInst, sheet::levelText(height));
    return height;
}

} // namespace

bool correctsWithEnter(const sheet::Book& book) {
    const Grid& grid = book.MSFG;
    const bool sight = grid.Col() == sheet::BackSight || grid.Col() == sheet::InterSight;
    return book.Guarded && sight && grid.Row() < grid.Rows() - 1;
}

void guardedEnter(sheet::Book& book, desktop::Desktop& desktop) {
    Grid& grid = book.MSFG;
    const int row = grid.Row();
    const std::string before = grid.Text(row, sheet::HgtInst);
    if (const sheet::Sight sight = sheet::sightAt(grid, row); sight.kind != RowKind::None) {
        book.LastReading = basic::cSng(basic::val(grid.Text()));
        const std::optional<float> height = reduceRow(grid, row, sight);
        if (!height)
            desktop.status("Row " + std::to_string(row) +
                           ": no height of instrument stands above it; Cal reduces the levels.");
        else if (opensLastSetUp(grid, row))
            book.CurrentHI = *height;
    }
    const int old = levelBelowRow(grid, row);
    if (grid.Text(row, sheet::HgtInst) != before && old > 0)
        desktop.status("The levels from row " + std::to_string(old) + " on are old; Cal reduces them.");
    grid.setRow(row + 1);
}

bool guardsAgainst(const sheet::Book& book, desktop::Desktop& desktop, char32_t letter) {
    const Grid& grid = book.MSFG;
    const int row = grid.Row();
    bool filled = false;
    if (letter == U's')
        filled = !grid.Text().empty();
    else if (letter == U't')
        filled = !grid.Text(row, sheet::Remark).empty() && grid.Text(row, sheet::Remark) != "TBM";
    else
        filled = isFilled(grid, row);
    if (!book.Guarded || !filled) return false;
    desktop.status("Row " + std::to_string(row) + " is filled there; guarded editing leaves it as it is.");
    return true;
}

} // namespace entry
