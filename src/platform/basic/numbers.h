#pragma once

#include <cstdint>
#include <string>
#include <string_view>

// Numbers as texts and back, as the Basic run-time library does it. Never looks at the locale: the decimal
// sign is a point. Results of up to 15 characters do not allocate.

namespace basic {

/// The number at the start of `text`: leading blanks, tabs and line ends, a sign, digits with at most one
/// point, an optional exponent (e or E). 0 when there is none. "1.235m" gives 1.235; a comma ends the number.
/// Raises Overflow (6) when the number is outside the range of a double.
[[nodiscard]] double val(std::string_view text);

/// True when the whole of `text` (blanks at both ends aside) is one number of the form that `val` reads.
[[nodiscard]] bool isNumber(std::string_view text);

/// Strict conversions of a text; raise TypeMismatch (13) when `text` is not a number.
[[nodiscard]] double cDbl(std::string_view text);

/// Narrowing to single precision; raises Overflow (6) beyond its range.
[[nodiscard]] float cSng(double value);

/// Rounding half to even to a 16- or 32-bit whole number; raise Overflow (6) out of range and for NaN.
[[nodiscard]] std::int16_t cInt(double value);
[[nodiscard]] std::int32_t cLng(double value);

/// The shortest decimal text of a value: at most 7 (single) or 15 (double) significant digits, no trailing
/// zeros, "0.75" with its zero, never "-0", exponent form only from 1e7 (single) or 1e15 (double) on and for
/// values that would need more digits behind the point.
[[nodiscard]] std::string text(float value);
[[nodiscard]] std::string text(double value);

/// The same digits, but never in exponent form: "10000000", "0.00000001".
[[nodiscard]] std::string plainText(float value);
[[nodiscard]] std::string plainText(double value);

/// A number format of the form "#00.0##": before the point '#' and '0', behind it '0' then '#'.
/// At least as many integer digits as zeros; behind the point at least the zeros, at most zeros and '#'.
struct Pattern {
    std::uint8_t integerDigits;
    std::uint8_t leastDecimals;
    std::uint8_t mostDecimals;
    bool hasPoint;
};

consteval Pattern pattern(std::string_view form) {
    Pattern result{0, 0, 0, false};
    for (char c : form) {
        if (c == '.')
            result.hasPoint = true;
        else if (!result.hasPoint)
            result.integerDigits = static_cast<std::uint8_t>(result.integerDigits + (c == '0'));
        else {
            result.leastDecimals = static_cast<std::uint8_t>(result.leastDecimals + (c == '0'));
            result.mostDecimals = static_cast<std::uint8_t>(result.mostDecimals + 1);
        }
    }
    return result;
}

/// `value` in the form of `pattern`, rounding halves away from zero on the value taken at 15 significant
/// digits. No "-0". With optional decimals only and none of them used, no point is left behind ("3", not
/// "3.").
[[nodiscard]] std::string format(double value, Pattern pattern);

} // namespace basic
