#pragma once

#include "tolerance.h"

#include <optional>
#include <string>

namespace survey {

enum class Verdict { Closes, Fails, Open, Check };
enum class LengthSource { Chainage, Typed, None };

[[nodiscard]] const char* word(Verdict verdict);     ///< "closes", "fails", "open", "check"
[[nodiscard]] const char* word(LengthSource source); ///< "chainage", "typed", "none"

/// The stretch from one known level to the next; a check on an intermediate sight; or the tail behind the
/// last known level, which has none.
struct RunSection {
    std::string from, to; ///< names of the marks; may be empty
    int fromRow = 0;
    int toRow = 0;
    int setups = 0;
    std::optional<double> lengthKm;
    LengthSource lengthSource = LengthSource::None;
    double found = 0; ///< level of the last point carried from the first known level
    std::optional<double> known;
    std::optional<double> misclosureMm; ///< found less known
    Allowed allowed;
    Verdict verdict = Verdict::Open;
    bool byDistance = false; ///< how the misclosure was distributed, which may differ from what was asked for

    [[nodiscard]] std::optional<double> misclosurePerSetup() const; ///< mm
};

/// The verdict in words: "Closes: 3 mm, allowed 8 mm (12 mm √0.44 km)", "Does not close: 43 mm, allowed 12
/// mm", "Not closed: no known level at the end".
[[nodiscard]] std::string describe(const RunSection& section);

} // namespace survey
