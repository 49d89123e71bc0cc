#pragma once

#include <cstdint>
#include <string>

namespace survey {

enum class FindingKind : std::uint8_t { Error, Warning, Hint };

/// What was found, in the order in which findings of one row are listed.
enum class FindingRule : std::uint8_t {
    NotANumber,
    TwoSights,
    NoBackSight,
    NoForeSight,
    BelowZero,
    AboveStaff,
    SamePoint,
    ChainageBack,
    ChainageGap,
    NoCentre,
    OffsetOrder,
    Metre,
    Decimetre,
    SwappedDigits,
    JumpAlong,
    JumpAcross,
    SpareRow,
    KnownUnread,
    KnownContradiction,
    KnownFar,
    BenchMarkIsGround,
    OldLevel,
    DoesNotClose,
    NotClosed
};

struct Finding {
    int row = 0;
    FindingKind kind = FindingKind::Error;
    FindingRule rule = FindingRule::NotANumber;
    std::string text;       ///< one sentence without a point at the end
    int other = 0;          ///< a second row that it is about, which the text names at its end; 0 for none
    std::uint64_t mark = 0; ///< of the cells that it rests on, wherever their rows stand

    friend bool operator==(const Finding&, const Finding&) = default;
};

[[nodiscard]] const char* word(FindingKind kind); ///< "error", "warning", "hint"
[[nodiscard]] const char* word(FindingRule rule); ///< "same-point", ...

} // namespace survey
