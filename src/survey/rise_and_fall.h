#pragma once

#include "runs.h"

#include <optional>
#include <string>

namespace survey {

/// The rise (positive) or fall of a sight against the one before; nothing for rows without a readable sight
/// and for the starting row. Costs the rows up to the sight before.
[[nodiscard]] std::optional<double> riseAt(Runs& runs, int row);

/// The check that proves the intermediate sights too. Metres.
struct RiseAndFall {
    double backSights = 0;
    double foreSights = 0;     ///< with the I.S. that closes a book
    int closingInterSight = 0; ///< row of that I.S.; 0 for none
    double rises = 0;
    double falls = 0;
    double firstLevel = 0; ///< from here on as they stand in R.Level., by the readings where it is empty
    double lastLevel = 0;
    int sights = 0;
    int wrongLevels =
        0; ///< rows whose R.Level. is neither the level of the rises and falls nor the adjusted one
    int firstWrong = 0;

    /// All three differences agree within a millimetre and no level in between is wrong.
    [[nodiscard]] bool agrees() const;
};

[[nodiscard]] RiseAndFall checkRiseAndFall(const sheet::Grid& grid, Runs& runs);

/// One line, the verdict first.
[[nodiscard]] std::string describe(const RiseAndFall& check);

} // namespace survey
