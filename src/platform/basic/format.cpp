#include "numbers.h"

#include "runtime_error.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string_view>
#include <utility>

namespace basic {
namespace {

// A value as its leading decimal digits: 0.d1d2d3... times ten to the power `point`. No digits for 0.
class Decimal {
  public:
    Decimal(double value, int digits) {
        if (!std::isfinite(value)) throw RuntimeError(Overflow);
        m_negative = std::signbit(value);
        if (value == 0) return;
        std::array<char, 32> form{};
        const auto end = std::to_chars(form.data(), form.data() + form.size(), std::fabs(value),
                                       std::chars_format::scientific, digits - 1);
        const char* const mark = std::find(form.data(), end.ptr, 'e');
        m_digits[0] = form[0];
        std::copy(std::as_const(form).data() + 2, mark, m_digits.data() + 1);
        m_count = digits;
        int power = 0;
        std::from_chars(mark + (mark[1] == '+' ? 2 : 1), end.ptr, power);
        m_point = power + 1;
        dropZeros();
    }

    // Halves go away from zero.
    void round(int decimals) {
        const int keep = m_point + decimals;
        if (keep >= m_count) return;
        const bool up = keep >= 0 && m_digits[static_cast<std::size_t>(keep)] >= '5';
        m_count = std::max(keep, 0);
        if (up) increment();
        dropZeros();
    }

    [[nodiscard]] bool negative() const { return m_negative && m_count > 0; }
    [[nodiscard]] int point() const { return m_count > 0 ? m_point : 0; }
    [[nodiscard]] int decimals() const { return std::max(m_count - point(), 0); }
    /// The digit that stands for ten to the power `power`.
    [[nodiscard]] char at(int power) const {
        const int index = m_point - 1 - power;
        return index >= 0 && index < m_count ? m_digits[static_cast<std::size_t>(index)] : '0';
    }
    [[nodiscard]] std::string_view digits() const {
        return {m_digits.data(), static_cast<std::size_t>(m_count)};
    }

    [[nodiscard]] std::string plain(int leastInteger, int decimals) const {
        std::string result;
        if (negative()) result += '-';
        for (int power = std::max(point(), leastInteger) - 1; power >= 0; --power)
            result += at(power);
        if (decimals > 0) result += '.';
        for (int power = -1; power >= -decimals; --power)
            result += at(power);
        return result;
    }

  private:
    void increment() {
        int last = m_count - 1;
        while (last >= 0 && m_digits[static_cast<std::size_t>(last)] == '9')
            --last;
        if (last < 0) {
            m_digits[0] = '1';
            m_count = 1;
            ++m_point;
            return;
        }
        ++m_digits[static_cast<std::size_t>(last)];
        m_count = last + 1;
    }
    void dropZeros() {
        while (m_count > 0 && m_digits[static_cast<std::size_t>(m_count - 1)] == '0')
            --m_count;
    }

    std::array<char, 24> m_digits{};
    int m_count = 0;
    int m_point = 0;
    bool m_negative = false;
};

std::string longShortest(double value, int digits) {
    const Decimal decimal(value, digits);
    if (decimal.point() <= digits && decimal.decimals() <= digits)
        return decimal.plain(1, decimal.decimals());
    std::string result = decimal.negative() ? "-" : "";
    result += decimal.digits()[0];
    if (decimal.digits().size() > 1) result.append(".").append(decimal.digits().substr(1));
    const int power = decimal.point() - 1;
    result += power < 0 ? "E-" : "E+";
    const std::string exponent = std::to_string(std::abs(power));
    return result.append(exponent.size() < 2 ? "0" : "").append(exponent);
}

constexpr std::array<double, 4> scales{1, 10, 100, 1000};
constexpr double largestScaled = 1e14;
constexpr int formatDigits = 15;

// Away from a tie by more than 15 digits can tell, the scaled value rounds as its decimal form would; the
// digits then come from one whole number. Only texts that fit the string's own buffer are made here.
bool formatWhole(double value, Pattern pattern, std::string& result) {
    if (pattern.mostDecimals >= scales.size()) return false;
    const double scaled = std::fabs(value) * scales[pattern.mostDecimals];
    if (!(scaled < largestScaled)) return false;
    auto whole = static_cast<std::uint64_t>(scaled);
    const double above = scaled - static_cast<double>(whole);
    if (std::fabs(above - 0.5) <= scaled * 1e-14) return false;
    whole += above > 0.5 ? 1U : 0U;

    std::array<char, 24> form{};
    const bool negative = std::signbit(value) && whole != 0;
    char* const end = form.data() + form.size();
    char* at = end;
    char* last = end;
    for (int decimal = pattern.mostDecimals; decimal > 0; --decimal, whole /= 10) {
        const auto digit = static_cast<char>('0' + whole % 10);
        if (at == last && digit == '0' && decimal > pattern.leastDecimals)
            --last, --at;
        else
            *--at = digit;
    }
    if (at != last) *--at = '.';
    for (int digits = 0; whole != 0 || digits < pattern.integerDigits; ++digits, whole /= 10)
        *--at = static_cast<char>('0' + whole % 10);
    if (negative) *--at = '-';
    result.assign(at, last);
    return true;
}

// A double that is a whole number of thousandths has no other decimal form of 15 digits.
bool thousandths(double value, std::string& result) {
    constexpr double largest = 1e9;
    if (!(std::fabs(value) < largest)) return false;
    const auto whole = static_cast<std::int64_t>(value * 1000 + (value < 0 ? -0.5 : 0.5));
    if (static_cast<double>(whole) / 1000 != value) return false;
    return formatWhole(value, pattern("0.###"), result);
}

std::string shortest(double value, int digits) {
    std::string result;
    return digits == formatDigits && thousandths(value, result) ? result : longShortest(value, digits);
}

std::string plain(double value, int digits) {
    std::string result;
    if (digits == formatDigits && thousandths(value, result)) return result;
    const Decimal decimal(value, digits);
    return decimal.plain(1, decimal.decimals());
}

} // namespace

std::string text(float value) {
    return shortest(value, 7);
}
std::string text(double value) {
    return shortest(value, 15);
}
std::string plainText(float value) {
    return plain(value, 7);
}
std::string plainText(double value) {
    return plain(value, 15);
}

std::string format(double value, Pattern pattern) {
    std::string result;
    if (formatWhole(value, pattern, result)) return result;
    Decimal decimal(value, formatDigits);
    decimal.round(pattern.mostDecimals);
    return decimal.plain(pattern.integerDigits, std::max<int>(pattern.leastDecimals, decimal.decimals()));
}

} // namespace basic
