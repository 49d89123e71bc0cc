#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace survey {

/// What a section may miss its known level by: `constant` + `factor` x the root of the length in km or of the
/// number of set-ups. Millimetres.
struct Tolerance {
    enum class Per { None, Fixed, RootKm, RootSetups };
    Per per = Per::RootKm;
    double constant = 0;
    double factor = 12;

    friend bool operator==(const Tolerance&, const Tolerance&) = default;
};

struct ToleranceClass {
    const char* name;
    Tolerance tolerance;
};

/// The classes to choose from, e.g. "Accurate 12 mm √K"; no class is universal.
[[nodiscard]] std::span<const ToleranceClass> toleranceClasses();
inline constexpr std::size_t classAtFirst = 1; ///< Accurate

/// "12rK", "2+5rK", "5rN", "8" or "none", as they are typed; letters in either case, "√" as good as "r".
/// Nothing for any other text and for negative figures.
[[nodiscard]] std::optional<Tolerance> toleranceFrom(std::string_view text);
/// The text that reads back to `tolerance`.
[[nodiscard]] std::string toleranceText(const Tolerance& tolerance);

/// A tolerance applied to one section.
struct Allowed {
    std::optional<double> millimetres; ///< none: nothing is judged
    std::string rule;                  ///< e.g. "12 mm √0.44 km"; empty when there is no more to it
};

/// A rule by length without a length falls back on 5 mm times the root of the set-ups, and says so.
[[nodiscard]] Allowed allowedBy(const Tolerance& tolerance, std::optional<double> lengthKm, int setups);

/// True when |misclosure| stays within `allowed`, both rounded to 0.01 mm. Millimetres.
[[nodiscard]] bool isWithin(double misclosure, double allowed);

} // namespace survey
