#include "number_format.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <utility>

namespace tables {
namespace {

constexpr std::size_t longestCode = 255;

const char* const builtInCodes[] = {
    "General", "0",      "0.00",       "#,##0",         "#,##0.00", "General",   "General",      "General",
    "General", "0%",     "0.00%",      "0.00E+00",      "# ?/?",    "# ?\?/?\?", "m/d/yyyy",     "d-mmm-yy",
    "d-mmm",   "mmm-yy", "h:mm AM/PM", "h:mm:ss AM/PM", "h:mm",     "h:mm:ss",   "m/d/yyyy h:mm"};

/// The sections of a format, split at the semicolons outside quotes.
std::vector<std::string_view> sectionsOf(std::string_view code) {
    std::vector<std::string_view> sections;
    std::size_t start = 0;
    bool quoted = false;
    for (std::size_t at = 0; at < code.size(); ++at) {
        if (code[at] == '"') quoted = !quoted;
        if (!quoted && code[at] == '\\')
            ++at;
        else if (!quoted && code[at] == ';') {
            sections.push_back(code.substr(start, at - start));
            start = at + 1;
        }
    }
    sections.push_back(code.substr(std::min(start, code.size())));
    return sections;
}

bool startsWith(std::string_view text, std::string_view beginning) {
    return basic::sameText(text.substr(0, beginning.size()), beginning);
}

} // namespace

NumberFormat::NumberFormat(std::string_view code) {
    for (const std::string_view section : sectionsOf(code.substr(0, longestCode)))
        m_sections.push_back(parseSection(section));
}

NumberFormat NumberFormat::builtIn(int id) {
    if (id >= 0 && id < static_cast<int>(std::size(builtInCodes))) return NumberFormat(builtInCodes[id]);
    if ((id >= 27 && id <= 36) || (id >= 50 && id <= 58)) return NumberFormat("yyyy-mm-dd");
    switch (id) {
    case 37:
    case 38:
        return NumberFormat("#,##0;(#,##0)");
    case 39:
    case 40:
        return NumberFormat("#,##0.00;(#,##0.00)");
    case 45:
        return NumberFormat("mm:ss");
    case 46:
        return NumberFormat("[h]:mm:ss");
    case 47:
        return NumberFormat("mm:ss.0");
    case 48:
        return NumberFormat("##0.0E+0");
    case 49:
        return NumberFormat("@");
    default:
        return {};
    }
}

void NumberFormat::parseBracket(Section& section, std::string_view inside) {
    if (inside.empty()) return;
    const std::string lower = basic::lower(inside);
    if (lower.find_first_not_of(lower.front()) == std::string::npos &&
        std::string_view("hms").find(lower.front()) != std::string_view::npos) {
        section.tokens.push_back({Kind::Elapsed, lower});
        section.isDate = true;
    } else if (std::string_view("<>=").find(inside.front()) != std::string_view::npos) {
        section.comparison = inside.front();
        inside.remove_prefix(1);
        if (section.comparison == '<' && inside.starts_with('>')) section.comparison = '!';
        section.orEqual = inside.starts_with('=');
        if (section.orEqual || section.comparison == '!') inside.remove_prefix(1);
        std::from_chars(inside.data(), inside.data() + inside.size(), section.limit);
    } else if (inside.starts_with('$')) { // a currency and a language: [$EUR-407]
        inside = inside.substr(1, inside.find('-') == std::string_view::npos ? inside.size()
                                                                             : inside.find('-') - 1);
        section.tokens.push_back({Kind::Literal, std::string(inside)});
    }
}

NumberFormat::Section NumberFormat::parseSection(std::string_view code) {
    Section section;
    const auto add = [&](Kind kind, std::string_view text) {
        section.tokens.push_back({kind, std::string(text)});
    };
    while (!code.empty()) {
        const char c = code.front();
        std::size_t length = 1;
        if (c == '"') {
            length = std::min(code.find('"', 1), code.size());
            add(Kind::Literal, code.substr(1, length - 1));
            length = std::min(length + 1, code.size());
        } else if (c == '\\') {
            add(Kind::Literal, code.substr(1, 1));
            length = 2;
        } else if (c == '_' || c == '*') {
            length = 2;
        } else if (c == '[') {
            const std::size_t end = std::min(code.find(']'), code.size());
            parseBracket(section, code.substr(1, end - 1));
            length = end + 1;
        } else if (startsWith(code, "General")) {
            add(Kind::General, {});
            length = 7;
        } else if (startsWith(code, "AM/PM") || startsWith(code, "A/P")) {
            length = startsWith(code, "AM/PM") ? 5 : 3;
            add(Kind::HalfDay, code.substr(0, length));
            section.isDate = true;
        } else if (c == '0' || c == '#' || c == '?') {
            section.tokens.push_back({Kind::Digit, {}, c});
            section.groups = section.groups || section.thousands > 0;
            section.thousands = 0;
        } else if (c == ',') {
            // Between digits it groups; behind the last one it divides.
            const bool afterDigit =
                std::ranges::any_of(section.tokens, [](const Token& t) { return t.kind == Kind::Digit; });
            section.thousands += afterDigit;
        } else if (c == '.') {
            add(Kind::Point, {});
        } else if (c == '%') {
            ++section.percents;
            add(Kind::Literal, "%");
        } else if ((c == 'E' || c == 'e') && code.size() > 1 && (code[1] == '+' || code[1] == '-')) {
            add(Kind::Exponent, code.substr(1, 1));
            length = 2;
        } else if (c == '@') {
            add(Kind::Text, {});
        } else if (std::string_view("ymdhsYMDHS").find(c) != std::string_view::npos) {
            while (length < code.size() && basic::sameText(code.substr(length, 1), code.substr(0, 1)))
                ++length;
            section.tokens.push_back({Kind::Date, basic::lower(code.substr(0, length))});
            section.isDate = true;
        } else {
            section.isFraction = section.isFraction || c == '/';
            add(Kind::Literal, code.substr(0, 1));
        }
        code.remove_prefix(std::min(length, code.size()));
    }
    if (section.isDate) settleMinutes(section);
    return section;
}

// An m behind an hour or before a second is a minute; it is marked by the letter n.
void NumberFormat::settleMinutes(Section& section) {
    Token* last = nullptr;
    for (Token& token : section.tokens) {
        if (token.kind != Kind::Date && token.kind != Kind::Elapsed) continue;
        if (last != nullptr) {
            if (token.text.front() == 'm' && last->text.front() == 'h') token.text.front() = 'n';
            if (token.text.front() == 's' && last->text.front() == 'm') last->text.front() = 'n';
        }
        last = &token;
    }
}

const NumberFormat::Section& NumberFormat::sectionFor(double value, bool& takesSign) const {
    takesSign = false;
    for (const Section& section : m_sections) {
        if (section.comparison == 0) continue;
        const bool equal = value == section.limit;
        const bool holds = section.comparison == '<'   ? value < section.limit
                           : section.comparison == '>' ? value > section.limit
                           : section.comparison == '!' ? !equal
                                                       : equal;
        if (holds || (section.orEqual && equal)) return section;
    }
    const bool conditional = m_sections.front().comparison != 0;
    if (conditional)
        return m_sections[std::min<std::size_t>(m_sections.size() - 1, m_sections.size() > 2 ? 2 : 1)];
    if (m_sections.size() > 1 && value < 0) {
        takesSign = true;
        return m_sections[1];
    }
    return m_sections.size() > 2 && value == 0 ? m_sections[2] : m_sections.front();
}

std::string NumberFormat::show(double value, bool epoch1904) const {
    bool takesSign = false;
    const Section& section = sectionFor(value, takesSign);
    if (section.isDate) return showDate(section, value, epoch1904);
    if (takesSign) value = -value;
    const bool general = section.isFraction || std::ranges::any_of(section.tokens, [](const Token& token) {
                             return token.kind == Kind::General || token.kind == Kind::Text;
                         });
    if (!general) return showNumber(section, value);
    std::string shown;
    bool done = false;
    for (const Token& token : section.tokens) {
        if (token.kind == Kind::Literal && !section.isFraction) shown += token.text;
        if (token.kind == Kind::Literal || std::exchange(done, true)) continue;
        shown += basic::text(value);
    }
    return shown;
}

std::string NumberFormat::showNumber(const Section& section, double value) {
    const auto& tokens = section.tokens;
    const auto isDigit = [](const Token& token) { return token.kind == Kind::Digit; };
    const auto pointAt = std::ranges::find(tokens, Kind::Point, &Token::kind);
    const auto exponentAt = std::ranges::find(tokens, Kind::Exponent, &Token::kind);
    const auto integerEnd = std::min(pointAt, exponentAt);
    auto integers = std::count_if(tokens.begin(), integerEnd, isDigit);
    const auto decimals =
        static_cast<std::size_t>(pointAt < exponentAt ? std::count_if(pointAt, exponentAt, isDigit) : 0);
    const bool any = integers > 0 || decimals > 0;
    const bool negative = value < 0 && any;
    value = std::abs(value) * std::pow(100.0, section.percents) / std::pow(1000.0, section.thousands);
    int exponent = 0;
    if (exponentAt != tokens.end() && value != 0) {
        exponent = static_cast<int>(std::floor(std::log10(value)));
        value /= std::pow(10.0, exponent);
    }
    const auto places = static_cast<std::uint8_t>(std::min<std::size_t>(decimals, 30));
    std::string digits =
        value < 1e15 ? basic::format(value, {1, places, places, places > 0}) : basic::text(value);
    std::string fraction;
    if (const std::size_t point = digits.find('.'); point != std::string::npos) {
        fraction = digits.substr(point + 1);
        digits.erase(point);
    }
    if (digits == "0") digits.clear();
    const bool isZero = digits.empty() && fraction.find_first_not_of('0') == std::string::npos;

    // Integer placeholders take digits from the right; the first one takes all that are left.
    std::string before;
    std::size_t left = digits.size();
    int written = 0;
    const auto put = [&](char digit) {
        if (section.groups && written > 0 && written % 3 == 0) before += ',';
        before += digit;
        ++written;
    };
    for (auto token = std::make_reverse_iterator(integerEnd); token != tokens.rend(); ++token) {
        if (token->kind == Kind::Literal) before.append(token->text.rbegin(), token->text.rend());
        if (token->kind != Kind::Digit) continue;
        --integers;
        if (left == 0 && token->placeholder == '0') put('0');
        if (left == 0 && token->placeholder == '?') before += ' ';
        while (left > 0) {
            put(digits[--left]);
            if (integers > 0) break;
        }
    }
    while (left > 0)
        put(digits[--left]);
    std::ranges::reverse(before);
    std::string shown = (negative && !isZero ? "-" : "") + before;
    std::size_t at = 0;
    bool exponentDone = false;
    for (auto token = integerEnd; token != tokens.end(); ++token) {
        if (token->kind == Kind::Literal) shown += token->text;
        if (token->kind == Kind::Point && !exponentDone) shown += '.';
        if (token->kind == Kind::Exponent) {
            exponentDone = true;
            shown += exponent < 0 ? "E-" : token->text == "+" ? "E+" : "E";
            const std::string power = std::to_string(std::abs(exponent));
            const auto wanted = static_cast<std::size_t>(std::count_if(token, tokens.end(), isDigit));
            shown.append(wanted > power.size() ? wanted - power.size() : 0, '0') += power;
        }
        if (token->kind != Kind::Digit || exponentDone || at >= fraction.size()) continue;
        const bool allZero = fraction.find_first_not_of('0', at) == std::string::npos;
        if (token->placeholder == '0' || !allZero)
            shown += fraction[at];
        else if (token->placeholder == '?')
            shown += ' ';
        ++at;
    }
    return shown;
}

std::string NumberFormat::showDate(const Section& section, double value, bool epoch1904) {
    static constexpr std::array<const char*, 12> months{"January",   "February", "March",    "April",
                                                        "May",       "June",     "July",     "August",
                                                        "September", "October",  "November", "December"};
    static constexpr std::array<const char*, 7> weekdays{"Sunday",   "Monday", "Tuesday", "Wednesday",
                                                         "Thursday", "Friday", "Saturday"};
    constexpr double lastDay = 2'958'466; // 31 December 9999
    if (!(value >= 0 && value < lastDay)) return "########";
    auto seconds = static_cast<long long>(std::llround(value * 86400));
    const bool halfDays =
        std::ranges::any_of(section.tokens, [](const Token& t) { return t.kind == Kind::HalfDay; });
    long long days = seconds / 86400 + (epoch1904 ? 1462 : 0);
    seconds %= 86400;
    const long long weekday = (days + 6) % 7;
    if (days < 60) ++days; // day 60 is a 29 February 1900 that never was
    // Civil date from days (H. Hinnant, chrono-compatible low-level date algorithms), day 0 = 1 March 0000.
    const long long z = days + 693'899;
    const long long era = z / 146'097;
    const long long doe = z - era * 146'097;
    const long long yoe = (doe - doe / 1460 + doe / 36'524 - doe / 146'096) / 365;
    const long long doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
    const long long mp = (5 * doy + 2) / 153;
    const long long day = doy - (153 * mp + 2) / 5 + 1;
    const long long month = mp < 10 ? mp + 3 : mp - 9;
    const long long year = yoe + era * 400 + (month <= 2);
    const long long hour = seconds / 3600;

    std::string shown;
    const auto put = [&shown](long long number, std::size_t width) {
        const std::string text = std::to_string(number);
        shown.append(width > text.size() ? width - text.size() : 0, '0') += text;
    };
    const auto putDate = [&](const std::string& part) {
        const std::size_t width = part.size();
        switch (part.front()) {
        case 'y':
            width > 2 ? put(year, 4) : put(year % 100, 2);
            break;
        case 'm':
            if (width == 3 || width == 5)
                shown += std::string_view(months[static_cast<std::size_t>(month - 1)])
                             .substr(0, width == 3 ? 3 : 1);
            else if (width == 4)
                shown += months[static_cast<std::size_t>(month - 1)];
            else
                put(month, width);
            break;
        case 'd':
            if (width > 2)
                shown += std::string_view(weekdays[static_cast<std::size_t>(weekday)])
                             .substr(0, width == 3 ? 3 : 9);
            else
                put(day, width);
            break;
        case 'h':
            put(halfDays ? (hour + 11) % 12 + 1 : hour, width);
            break;
        case 'n':
            put(seconds / 60 % 60, width);
            break;
        default:
            put(seconds % 60, width);
        }
    };
    for (const Token& token : section.tokens) {
        if (token.kind == Kind::Literal) shown += token.text;
        if (token.kind == Kind::Point) shown += '.';
        if (token.kind == Kind::Digit) shown += '0';
        if (token.kind == Kind::HalfDay)
            shown += token.text.size() > 3 ? (hour < 12 ? "AM" : "PM") : (hour < 12 ? "A" : "P");
        if (token.kind == Kind::Date) putDate(token.text);
        if (token.kind == Kind::Elapsed) {
            const long long all = std::llround(value * 86400);
            put(all / (token.text.front() == 'h'   ? 3600
                       : token.text.front() == 's' ? 1
                                                   : 60),
                token.text.size());
        }
    }
    return shown;
}

} // namespace tables
