#include "conversion.h"

#include "errors.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <optional>

namespace dao {

namespace {

[[noreturn]] void noConversion() {
    raise(EngineError::DataTypeConversion);
}

/// A number that was asked for; True is -1, as everywhere in Basic.
double numberOf(const Value& value) {
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? -1 : 0;
    if (const auto* whole = std::get_if<std::int32_t>(&value)) return *whole;
    double number = 0;
    if (const auto* single = std::get_if<float>(&value))
        number = static_cast<double>(*single);
    else if (const auto* real = std::get_if<double>(&value))
        number = *real;
    else if (const auto* text = std::get_if<std::string>(&value); text && basic::isNumber(*text))
        number = basic::val(*text);
    else
        noConversion();
    if (!std::isfinite(number)) noConversion();
    return number == 0 ? 0 : number; // never minus zero
}

template <typename Whole>
Whole wholeOf(const Value& value) {
    const double rounded = std::nearbyint(numberOf(value));
    if (rounded < static_cast<double>(std::numeric_limits<Whole>::min()) ||
        rounded > static_cast<double>(std::numeric_limits<Whole>::max()))
        noConversion();
    return static_cast<Whole>(rounded);
}

bool flagOf(const Value& value) {
    if (isNull(value)) return false;
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (basic::sameText(basic::trim(*text), "true")) return true;
        if (basic::sameText(basic::trim(*text), "false")) return false;
    }
    return numberOf(value) != 0;
}

jet::Value currencyOf(const Value& value) {
    const double scaled = std::nearbyint(numberOf(value) * 10000);
    if (std::abs(scaled) >= 9.2233720368547758e18) noConversion();
    return jet::Currency{static_cast<std::int64_t>(scaled)};
}

jet::Value singleOf(const Value& value) {
    const double number = numberOf(value);
    if (std::abs(number) > static_cast<double>(std::numeric_limits<float>::max())) noConversion();
    const auto single = static_cast<float>(number);
    return single == 0 ? 0.0F : single;
}

/// Days since 1899-12-30 of a day in the Gregorian calendar (H. Hinnant, chrono-compatible date algorithms).
double daysOf(int year, int month, int day) {
    year -= month <= 2;
    const int era = (year >= 0 ? year : year - 399) / 400;
    const int yearOfEra = year - era * 400;
    const int dayOfYear = (153 * (month + (month > 2 ? -3 : 9)) + 2) / 5 + day - 1;
    const int dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
    return era * 146097 + dayOfEra - 719468 + 25569;
}

/// "2015-11-21", "2015-11-21 14:30", "2015-11-21 14:30:15"; the one form that means the same everywhere.
std::optional<double> dateOf(std::string_view text) {
    std::array<int, 6> parts{0, 0, 0, 0, 0, 0};
    constexpr std::array<char, 6> marks{'-', '-', ' ', ':', ':', '\0'};
    const char* at = text.data();
    const char* const end = at + text.size();
    std::size_t count = 0;
    while (count < parts.size()) {
        const auto [behind, failure] = std::from_chars(at, end, parts.at(count));
        if (failure != std::errc{}) return std::nullopt;
        at = behind;
        ++count;
        if (at == end) break;
        if (count == parts.size() || *at++ != marks.at(count - 1)) return std::nullopt;
    }
    const auto [year, month, day, hour, minute, second] = parts;
    if (at != end || count == 1 || count == 2 || count == 4) return std::nullopt;
    if (year < 100 || year > 9999 || month < 1 || month > 12 || day < 1 || day > 31 || hour < 0 ||
        hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 59)
        return std::nullopt;
    return daysOf(year, month, day) + (hour * 3600 + minute * 60 + second) / 86400.0;
}

jet::Value dateTimeOf(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) {
        if (const auto days = dateOf(basic::trim(*text))) return jet::DateTime{*days};
    }
    return jet::DateTime{numberOf(value)};
}

/// Characters as the engine counts them: two for one above U+FFFF.
int units(std::string_view text) {
    return static_cast<int>(
        std::ranges::count_if(text,
                              [](char c) {
                                  const auto byte = static_cast<unsigned char>(c);
                                  return (byte & 0xC0) != 0x80;
                              }) +
        std::ranges::count_if(text, [](char c) { return static_cast<unsigned char>(c) >= 0xF0; }));
}

jet::Value bytesOf(const Value& value) {
    if (const auto* bytes = std::get_if<std::vector<std::uint8_t>>(&value)) return *bytes;
    if (const auto* text = std::get_if<std::string>(&value)) return jet::Bytes(text->begin(), text->end());
    noConversion();
}

constexpr std::string_view hexDigits = "0123456789ABCDEF";

/// "{BC96303A-53B8-474D-ACC1-D2EB8D0B09D5}", with or without the braces.
jet::Value guidOf(const Value& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text == nullptr) noConversion();
    jet::Guid guid;
    std::size_t digits = 0;
    for (char c : basic::upper(*text)) {
        if (c == '{' || c == '}' || c == '-') continue;
        const std::size_t digit = hexDigits.find(c);
        if (digit == std::string_view::npos || digits == 2 * guid.bytes.size()) noConversion();
        auto& byte = guid.bytes.at(digits++ / 2);
        byte = static_cast<std::uint8_t>(byte << 4 | digit);
    }
    if (digits != 2 * guid.bytes.size()) noConversion();
    return guid;
}

std::string textOf(const jet::Guid& guid) {
    std::string text = "{";
    for (std::size_t i = 0; i < guid.bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += hexDigits[guid.bytes.at(i) >> 4];
        text += hexDigits[guid.bytes.at(i) & 15];
    }
    return text + "}";
}

/// The decimal digits of the number, cut off behind the column's scale.
jet::Value numericOf(const Value& value, const jet::Column& column) {
    const auto* text = std::get_if<std::string>(&value);
    const double number = numberOf(value);
    const bool plain = text != nullptr && text->find_first_of("eE") == std::string::npos;
    const std::string digits = plain ? std::string(basic::trim(*text)) : basic::plainText(number);
    jet::Numeric result;
    result.negative = number < 0;
    int decimals = -1; // behind the point when not negative
    int significant = 0;
    const auto push = [&](unsigned digit) {
        if (significant > 0 || digit > 0) ++significant;
        unsigned carry = digit;
        for (auto byte = result.magnitude.rbegin(); byte != result.magnitude.rend(); ++byte) {
            carry += *byte * 10U;
            *byte = static_cast<std::uint8_t>(carry);
            carry >>= 8;
        }
    };
    for (char c : digits) {
        if (c == '.') decimals = 0;
        if (c < '0' || c > '9' || decimals >= column.scale) continue;
        push(static_cast<unsigned>(c - '0'));
        if (decimals >= 0) ++decimals;
    }
    for (decimals = std::max(decimals, 0); decimals < column.scale; ++decimals)
        push(0);
    if (significant > column.precision) noConversion();
    if (significant == 0) result.negative = false;
    return result;
}

double numberOf(const jet::Numeric& value, int scale) {
    double number = 0;
    for (std::uint8_t byte : value.magnitude)
        number = number * 256 + byte;
    number /= std::pow(10.0, scale);
    return value.negative ? -number : number;
}

struct FromColumn {
    const jet::Column& column;

    Value operator()(jet::Null) const { return Null{}; }
    Value operator()(bool value) const { return value; }
    Value operator()(std::uint8_t value) const { return std::int32_t{value}; }
    Value operator()(std::int16_t value) const { return std::int32_t{value}; }
    Value operator()(std::int32_t value) const { return value; }
    Value operator()(jet::Currency value) const { return static_cast<double>(value.tenThousandths) / 10000; }
    Value operator()(float value) const { return value; }
    Value operator()(double value) const { return value; }
    Value operator()(jet::DateTime value) const { return value.days; }
    Value operator()(const std::string& value) const { return value; }
    Value operator()(const jet::Bytes& value) const { return value; }
    Value operator()(const jet::Guid& value) const { return textOf(value); }
    Value operator()(const jet::Numeric& value) const { return numberOf(value, column.scale); }
};

} // namespace

bool isNull(const Value& value) {
    return std::holds_alternative<Null>(value);
}

std::string toText(const Value& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    if (const auto* flag = std::get_if<bool>(&value)) return *flag ? "True" : "False";
    if (const auto* whole = std::get_if<std::int32_t>(&value)) return std::to_string(*whole);
    if (const auto* single = std::get_if<float>(&value)) return basic::plainText(*single);
    if (const auto* real = std::get_if<double>(&value)) return basic::plainText(*real);
    if (const auto* bytes = std::get_if<std::vector<std::uint8_t>>(&value))
        return {bytes->begin(), bytes->end()};
    return {};
}

Value fromColumn(const jet::Value& value, const jet::Column& column) {
    return std::visit(FromColumn{column}, value);
}

jet::Value toColumn(const Value& value, const jet::Column& column, LengthCheck check) {
    if (isNull(value) && column.type != jet::ColumnType::Boolean) return jet::Null{};
    const auto fitting = [&](int length) {
        if (check == LengthCheck::Yes && length > column.size) raise(EngineError::TextTooLong);
    };
    switch (column.type) {
    case jet::ColumnType::Boolean:
        return flagOf(value);
    case jet::ColumnType::Byte:
        if (const auto* flag = std::get_if<bool>(&value)) return static_cast<std::uint8_t>(*flag ? 255 : 0);
        return wholeOf<std::uint8_t>(value);
    case jet::ColumnType::Integer:
        return wholeOf<std::int16_t>(value);
    case jet::ColumnType::Long:
        return wholeOf<std::int32_t>(value);
    case jet::ColumnType::Currency:
        return currencyOf(value);
    case jet::ColumnType::Single:
        return singleOf(value);
    case jet::ColumnType::Double:
        return numberOf(value);
    case jet::ColumnType::DateTime:
        return dateTimeOf(value);
    case jet::ColumnType::Numeric:
        return numericOf(value, column);
    case jet::ColumnType::Guid:
        return guidOf(value);
    case jet::ColumnType::Binary:
    case jet::ColumnType::FixedBinary: {
        jet::Value bytes = bytesOf(value);
        fitting(static_cast<int>(std::get<jet::Bytes>(bytes).size()));
        return bytes;
    }
    case jet::ColumnType::Ole:
        return bytesOf(value);
    case jet::ColumnType::Text:
        fitting(std::holds_alternative<std::string>(value) ? units(std::get<std::string>(value))
                                                           : static_cast<int>(toText(value).size()));
        return toText(value);
    case jet::ColumnType::Memo:
        break;
    }
    return toText(value);
}

} // namespace dao
