#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace drawing {

/// Where the figure of a point is written.
struct Label {
    std::size_t point;
    double x; ///< moved aside from the point where figures that must stay would touch
};

/// Chooses the points whose figures are written when each takes `room` millimetres of a row and none may
/// touch another. The first and the last point and every turn of the ground from up to down or back that is
/// seen on the paper keep theirs and move aside where they must; the others are left out where there is no
/// room. `x` and `y` are millimetres; x does not fall.
[[nodiscard]] std::vector<Label> chooseLabels(std::span<const double> x, std::span<const double> y,
                                              double room);

} // namespace drawing
