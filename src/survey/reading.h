#pragma once

#include "sheet/grid.h"
#include "sheet/sight.h"

#include <limits>

namespace survey {

inline constexpr double nothing = std::numeric_limits<double>::quiet_NaN();

/// One row of the book as numbers. Metres; NaN where the row says nothing.
struct Reading {
    double backSight = 0; ///< of the starting row or a change point; 0 for an empty cell
    double sight = 0;     ///< the I.S. or the F.S.; of the starting row its R.Level., 0 for an empty cell
    double chainage = nothing; ///< of the row's own cell
    double known = nothing;    ///< known level of the point
    sheet::RowKind kind = sheet::RowKind::None;
    bool readable = true; ///< false: a text among the sights is no number, so that nothing follows from it
};

/// Reads one row, 1 and on. A text with anything but one number in it is not readable, were its start a
/// number.
[[nodiscard]] Reading readRow(const sheet::Grid& grid, int row);

} // namespace survey
