#include "table_dump.h"

#include "json_text.h"

#include "exchange/csv_line.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <cmath>
#include <ostream>

namespace cli {
namespace {

constexpr std::string_view lowerDigits = "0123456789abcdef";
constexpr std::string_view upperDigits = "0123456789ABCDEF";
constexpr std::size_t flushAt = 1 << 16;

template <typename Number>
void appendNumber(std::string& line, Number value) {
    std::array<char, 32> digits;
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
    line.append(digits.data(), result.ptr);
}

void appendTwo(std::string& line, int value) {
    if (value < 10) line += '0';
    appendNumber(line, value);
}

void appendHex(std::string& line, std::span<const std::uint8_t> bytes, std::string_view digits) {
    for (std::uint8_t byte : bytes) {
        line += digits[byte >> 4];
        line += digits[byte & 15];
    }
}

void appendGuid(std::string& line, const jet::Guid& guid) {
    line += '{';
    const std::span<const std::uint8_t> bytes(guid.bytes);
    appendHex(line, bytes.first(4), upperDigits);
    for (std::size_t i = 4; i < 10; i += 2) {
        line += '-';
        appendHex(line, bytes.subspan(i, 2), upperDigits);
    }
    line += '-';
    appendHex(line, bytes.subspan(10), upperDigits);
    line += '}';
}

/// Puts the decimal point into whole digits.
void appendScaled(std::string& line, bool negative, std::string digits, std::size_t scale) {
    if (digits.size() <= scale) digits.insert(0, scale + 1 - digits.size(), '0');
    if (negative) line += '-';
    line.append(digits, 0, digits.size() - scale);
    if (scale > 0) line.append(".").append(digits, digits.size() - scale, scale);
}

std::string decimalDigits(std::array<std::uint8_t, 16> magnitude) {
    std::string digits;
    while (std::ranges::any_of(magnitude, [](std::uint8_t byte) { return byte != 0; })) {
        unsigned rest = 0;
        for (std::uint8_t& byte : magnitude) {
            rest = rest << 8 | byte;
            byte = static_cast<std::uint8_t>(rest / 10);
            rest %= 10;
        }
        digits += static_cast<char>('0' + rest);
    }
    std::ranges::reverse(digits);
    return digits.empty() ? "0" : digits;
}

/// The time of day is added forward for dates before 1899-12-30 too.
void appendDate(std::string& line, jet::DateTime date) {
    if (!(std::abs(date.days) < 3e6)) return appendNumber(line, date.days);
    double day = std::trunc(date.days);
    auto seconds = static_cast<int>(std::lround(std::abs(date.days - day) * 86400));
    if (seconds == 86400) {
        seconds = 0;
        day += 1;
    }
    // Day 0 is the 30th of December 1899.
    const std::chrono::year_month_day calendar{
        std::chrono::sys_days{std::chrono::days{static_cast<int>(day) - 25569}}};
    const int year = static_cast<int>(calendar.year());
    if (year >= 0 && year < 1000) line.append(year < 10 ? 3U : year < 100 ? 2U : 1U, '0');
    appendNumber(line, year);
    line += '-';
    appendTwo(line, static_cast<int>(static_cast<unsigned>(calendar.month())));
    line += '-';
    appendTwo(line, static_cast<int>(static_cast<unsigned>(calendar.day())));
    line += ' ';
    appendTwo(line, seconds / 3600);
    line += ':';
    appendTwo(line, seconds / 60 % 60);
    line += ':';
    appendTwo(line, seconds % 60);
}

/// An empty text is no missing value.
void appendCsvText(std::string& line, std::string_view text) {
    if (text.empty())
        line += "\"\"";
    else
        exchange::appendCsvField(line, text);
}

/// Appends one value; what is a text in JSON is quoted there.
struct Appender {
    std::string& line;
    DumpForm form;
    int scale = 0;

    void operator()(jet::Null) const {
        if (form == DumpForm::Json) line += "null";
    }
    void operator()(bool value) const {
        if (form == DumpForm::Json)
            line += value ? "true" : "false";
        else
            line += value ? '1' : '0';
    }
    void operator()(std::uint8_t value) const { appendNumber(line, int{value}); }
    void operator()(std::int16_t value) const { appendNumber(line, value); }
    void operator()(std::int32_t value) const { appendNumber(line, value); }
    void operator()(float value) const { real(value); }
    void operator()(double value) const { real(value); }
    void operator()(jet::Currency value) const {
        const bool negative = value.tenThousandths < 0;
        const auto bits = static_cast<std::uint64_t>(value.tenThousandths);
        appendScaled(line, negative, std::to_string(negative ? 0 - bits : bits), 4);
    }
    void operator()(const jet::Numeric& value) const {
        appendScaled(line, value.negative, decimalDigits(value.magnitude), static_cast<std::size_t>(scale));
    }
    void operator()(jet::DateTime value) const {
        quoted([&] { appendDate(line, value); });
    }
    void operator()(const jet::Bytes& value) const {
        quoted([&] { appendHex(line, value, lowerDigits); });
    }
    void operator()(const jet::Guid& value) const {
        quoted([&] { appendGuid(line, value); });
    }
    void operator()(const std::string& value) const {
        if (form == DumpForm::Json)
            appendJsonText(line, value);
        else
            appendCsvText(line, value);
    }

  private:
    template <typename Number>
    void real(Number value) const {
        if (form == DumpForm::Json && !std::isfinite(value))
            line += "null";
        else
            appendNumber(line, value);
    }
    template <typename Append>
    void quoted(Append append) const {
        if (form == DumpForm::Json) line += '"';
        append();
        if (form == DumpForm::Json) line += '"';
    }
};

} // namespace

void dumpTable(const jet::Table& table, DumpForm form, std::ostream& out) {
    const std::vector<jet::Column>& columns = table.columns();
    std::string lines;
    std::vector<std::string> before; // what stands in front of a column's value
    for (const jet::Column& column : columns) {
        std::string& lead = before.emplace_back();
        if (form == DumpForm::Json) {
            lead = before.size() == 1 ? "{" : ",";
            appendJsonText(lead, column.name);
            lead += ':';
        } else {
            lead = before.size() == 1 ? "" : ",";
            lines += lead;
            appendCsvText(lines, column.name);
        }
    }
    if (form == DumpForm::Csv) lines += '\n';
    for (jet::Cursor rows = table.scan(); rows.next();) {
        const jet::Row& row = rows.row();
        for (std::size_t i = 0; i < columns.size(); ++i) {
            lines += before[i];
            std::visit(Appender{lines, form, columns[i].scale}, row[i]);
        }
        lines += form == DumpForm::Json ? "}\n" : "\n";
        if (lines.size() >= flushAt) {
            out << lines;
            lines.clear();
        }
    }
    out << lines;
}

} // namespace cli
