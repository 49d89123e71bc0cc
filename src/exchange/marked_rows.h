#pragma once

#include "desktop/desktop.h"
#include "sheet/grid.h"

#include <string>
#include <vector>

namespace exchange {

struct MarkedRow {
    int row;
    std::string fault; ///< plain words without a point at the end; empty when nothing is wrong any more
};

/// The rows whose chainage cell has the colour of a data error, from the top down, and what the transfer does
/// not accept about each, read from the grid as it stands. One pass over the grid.
[[nodiscard]] std::vector<MarkedRow> markedRows(const sheet::Grid& grid);

/// What the transfer does not accept about a row, or would not if it were marked: what markedRows says of it,
/// at the cost of a look at the chainages above it.
[[nodiscard]] std::string faultOf(const sheet::Grid& grid, int row);

/// Says in the status bar how many rows are marked and what is wrong with the one under the cursor. Does
/// nothing when the cursor's row is not marked.
void tellMarkedRow(const sheet::Grid& grid, desktop::Desktop& desktop);

} // namespace exchange
