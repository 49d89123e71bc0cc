#pragma once

#include "grid.h"

#include <string>

namespace sheet {

/// What every level book ends with: the sums of its columns B.S. and F.S. against the levels that they should
/// give. The columns are summed as they stand and not as the reduction took them, so that a row with both an
/// I.S. and an F.S. shows. Metres.
struct ArithmeticCheck {
    double backSights = 0; ///< but for `openBackSight`
    double foreSights = 0;
    double closingSight = 0;  ///< the I.S. that the book ends on; it closes like an F.S.
    int closingRow = 0;       ///< its row; 0 when the last sight is an F.S.
    double openBackSight = 0; ///< of the last set-up while nothing is sighted from it
    int openRow = 0;          ///< its row; 0 for none
    double firstLevel = 0;    ///< level of the starting row
    double lastLevel = 0;     ///< level of the last sight
    double allowed = 0;       ///< what rounding may come to
    bool reduced = false;     ///< a level stands in a row below the starting row

    /// Sum B.S. - sum F.S. (- closing I.S.)
    [[nodiscard]] double rise() const { return backSights - foreSights - closingSight; }
    /// What the levels differ from it.
    [[nodiscard]] double difference() const { return rise() - (lastLevel - firstLevel); }
    /// Within a millimetre, or what the heights of instrument in single precision may add up to over the
    /// set-ups at this level, whichever is more.
    [[nodiscard]] bool agrees() const;
};

/// Reads a reduced book; it changes nothing.
[[nodiscard]] ArithmeticCheck checkArithmetic(const Grid& grid);

/// One line for a status bar, the verdict first, e.g. "Sums agree: B.S. 9.620 - F.S. 9.985 = -0.365, level
/// 100.000 to 99.635." Empty for a book that is not reduced.
[[nodiscard]] std::string describe(const ArithmeticCheck& check);

} // namespace sheet
