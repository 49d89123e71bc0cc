#include "run_section.h"

#include "basic/numbers.h"

#include <array>
#include <cmath>

namespace survey {
namespace {

/// Two amounts in millimetres, with a decimal where they would look equal without, and with two where they
/// were told apart by the second.
std::pair<std::string, std::string> toldApart(double a, double b, bool areApart) {
    const auto texts = [a, b](basic::Pattern form) {
        return std::pair(basic::format(a, form), basic::format(b, form));
    };
    auto told = texts(basic::pattern("0"));
    if (told.first == told.second) told = texts(basic::pattern("0.0"));
    if (told.first == told.second && areApart) told = texts(basic::pattern("0.00"));
    return told;
}

} // namespace

const char* word(Verdict verdict) {
    constexpr std::array words{"closes", "fails", "open", "check"};
    return words[static_cast<std::size_t>(verdict)];
}

const char* word(LengthSource source) {
    constexpr std::array words{"chainage", "typed", "none"};
    return words[static_cast<std::size_t>(source)];
}

std::optional<double> RunSection::misclosurePerSetup() const {
    if (!misclosureMm || setups == 0) return std::nullopt;
    return *misclosureMm / setups;
}

std::string describe(const RunSection& section) {
    if (!section.misclosureMm) return "Not closed: no known level at the end";
    const double size = std::abs(*section.misclosureMm);
    if (section.verdict == Verdict::Check)
        return "Check: " + basic::format(*section.misclosureMm, basic::pattern("0.0")) +
               " mm off the known level";
    if (!section.allowed.millimetres)
        return "Misses by " + basic::format(size, basic::pattern("0.0")) + " mm, no tolerance set";
    const auto [missed, allowed] =
        toldApart(size, *section.allowed.millimetres, section.verdict == Verdict::Fails);
    if (section.verdict == Verdict::Fails)
        return "Does not close: " + missed + " mm, allowed " + allowed + " mm";
    const std::string rule = section.allowed.rule.empty() ? "" : " (" + section.allowed.rule + ")";
    return "Closes: " + missed + " mm, allowed " + allowed + " mm" + rule;
}

} // namespace survey
