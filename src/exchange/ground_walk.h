#pragma once

#include "sheet/grid.h"

#include <string>

namespace exchange {

/// A reading as the transfer seeks it in the road database.
struct GroundReading {
    std::string chainage; ///< cleaned
    char side = ' '; ///< 'L', 'C' or 'R'; a row without an offset keeps side and offset of the reading above
    double offset = 0;      ///< metres, as keyed
    bool hasOffset = false; ///< its own
};

/// The readings of a book from the top down: what the transfer sends and what explains a marked row.
class GroundWalk {
  public:
    explicit GroundWalk(const sheet::Grid& grid) : m_grid(grid) {}

    /// The reading in `row`, which must be ground by the transfer's rule; rows in ascending order, each one.
    /// Raises Overflow (6) for an offset beyond all numbers.
    const GroundReading& read(int row);

    /// The same for one row alone, without a walk.
    [[nodiscard]] static GroundReading at(const sheet::Grid& grid, int row);

  private:
    const sheet::Grid& m_grid;
    GroundReading m_reading;
};

} // namespace exchange
