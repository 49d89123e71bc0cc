#pragma once

#include "grid.h"

#include <string>

namespace sheet {

/// What every level book ends with: the sums of its sights against the levels that they should give. Metres.
struct ArithmeticCheck {
    double backSights = 0; ///< sum over the starting row and the change points that were sighted from
    double foreSights =
        0; ///< sum over the change points; a book that ends on an I.S. counts it as the closing sight
    double firstLevel = 0; ///< level of the starting row
    double lastLevel = 0;  ///< level of the last reduced row
    bool reduced = false;  ///< a level stands in a row below the starting row

    /// Sum B.S. - sum F.S. - (last - first level).
    [[nodiscard]] double difference() const { return backSights - foreSights - (lastLevel - firstLevel); }
    /// Levels stand in the book with three decimals in single precision, so a millimetre is no mistake.
    [[nodiscard]] bool agrees() const;
};

/// Reads a reduced book; it changes nothing.
[[nodiscard]] ArithmeticCheck checkArithmetic(const Grid& grid);

/// One line for a status bar, e.g. "Sum B.S. 9.620, sum F.S. 9.985, first level 100.000, last level 99.635:
/// they agree." Empty for a book that is not reduced.
[[nodiscard]] std::string describe(const ArithmeticCheck& check);

} // namespace sheet
