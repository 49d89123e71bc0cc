#include "numbers.h"

#include "runtime_error.h"
#include "strings.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace basic {
namespace {

// A power of ten up to 1e22 and a whole number below 2^53 are exact in a double, so one division of them is
// rounded once and needs no longer arithmetic.
constexpr std::array<double, 23> exactPowers{1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                             1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                             1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int exactDigits = 15;

struct Number {
    const char* first = nullptr; // behind the sign
    const char* last = nullptr;
    bool negative = false;
    bool any = false; // has a digit
    bool exponent = false;
    int significant = 0; // digits from the first that is not 0
    int decimals = 0;
    std::uint64_t digits = 0; // right while significant <= exactDigits
};

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}
bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

Number scan(std::string_view text) {
    Number number;
    const char* at = text.data();
    const char* const end = at + text.size();
    while (at != end && isBlank(*at))
        ++at;
    if (at != end && (*at == '-' || *at == '+')) number.negative = *at++ == '-';
    number.first = at;
    bool point = false;
    for (; at != end; ++at) {
        if (isDigit(*at)) {
            number.any = true;
            if (number.digits != 0 || *at != '0') ++number.significant;
            if (number.significant <= exactDigits)
                number.digits = number.digits * 10 + static_cast<unsigned>(*at - '0');
            if (point) ++number.decimals;
        } else if (*at == '.' && !point) {
            point = true;
        } else {
            break;
        }
    }
    number.last = at;
    if (number.any && at != end && (*at == 'e' || *at == 'E')) {
        ++at;
        if (at != end && (*at == '-' || *at == '+')) ++at;
        if (at != end && isDigit(*at)) {
            while (at != end && isDigit(*at))
                ++at;
            number.last = at;
            number.exponent = true;
        }
    }
    return number;
}

// Decides which end of the range was left; `from_chars` does not say.
bool isTooSmall(const Number& number) {
    int power = 0;
    if (number.exponent) {
        const char* mark = number.last - 1; // a digit; behind it may stand one more "e"
        while (*mark != 'e' && *mark != 'E')
            --mark;
        const bool down = mark[1] == '-';
        for (const char* at = mark + 1; at != number.last; ++at) {
            if (isDigit(*at) && power < 100'000'000) power = power * 10 + (*at - '0');
        }
        if (down) power = -power;
    }
    return number.significant - number.decimals + power < 0;
}

double valueOf(const Number& number) {
    if (!number.any) return 0;
    double value = 0;
    if (!number.exponent && number.significant <= exactDigits &&
        number.decimals < static_cast<int>(exactPowers.size())) {
        value = static_cast<double>(number.digits) / exactPowers[static_cast<std::size_t>(number.decimals)];
    } else if (std::from_chars(number.first, number.last, value).ec == std::errc::result_out_of_range) {
        if (!isTooSmall(number)) throw RuntimeError(Overflow);
        value = 0;
    }
    return number.negative ? -value : value;
}

template <typename Whole>
Whole toWhole(double value) {
    const double rounded = std::nearbyint(value);
    if (!(rounded >= std::numeric_limits<Whole>::min() && rounded <= std::numeric_limits<Whole>::max()))
        throw RuntimeError(Overflow);
    return static_cast<Whole>(rounded);
}

} // namespace

double val(std::string_view text) {
    return valueOf(scan(text));
}

bool isNumber(std::string_view text) {
    text = trim(text);
    const Number number = scan(text);
    return number.any && number.last == text.data() + text.size();
}

double cDbl(std::string_view text) {
    if (!isNumber(text)) throw RuntimeError(TypeMismatch);
    return val(text);
}

float cSng(double value) {
    // Beyond the largest single, the last half step still rounds down to it.
    constexpr double limit = 0x1.ffffffp+127;
    if (!(std::fabs(value) < limit)) throw RuntimeError(Overflow);
    return static_cast<float>(value);
}

std::int16_t cInt(double value) {
    return toWhole<std::int16_t>(value);
}
std::int32_t cLng(double value) {
    return toWhole<std::int32_t>(value);
}

} // namespace basic
