#include "finding.h"

#include <array>

namespace survey {

const char* word(FindingKind kind) {
    constexpr std::array words{"error", "warning", "hint"};
    return words[static_cast<std::size_t>(kind)];
}

const char* word(FindingRule rule) {
    constexpr std::array words{
        "not-a-number",         "two-sights", "no-back-sight",  "no-fore-sight",       "below-zero",
        "above-staff",          "same-point", "chainage-back",  "chainage-gap",        "no-centre",
        "offset-order",         "metre",      "decimetre",      "swapped-digits",      "jump-along",
        "jump-across",          "spare-row",  "known-unread",   "known-contradiction", "known-far",
        "bench-mark-is-ground", "old-level",  "does-not-close", "not-closed"};
    return words[static_cast<std::size_t>(rule)];
}

} // namespace survey
