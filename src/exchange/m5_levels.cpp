#include "level_formats.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <algorithm>
#include <array>
#include <span>

// M5 lines, as the instrument maker's guides describe them: "For M5|Adr number|TTT information|tt value
// unit|...x3|". Published samples do not keep the columns: lines are cut at the bars, then by tokens.

namespace exchange {
namespace {

using Sight = LevelLineBuilder::Sight;
constexpr std::size_t mostParts = 6;
constexpr std::size_t widestValue = 14;

std::size_t cutAtBars(std::string_view line, std::array<std::string_view, mostParts>& parts) {
    std::size_t count = 0;
    while (count < mostParts && !line.empty()) {
        const std::size_t bar = std::min(line.find('|'), line.size());
        parts[count++] = basic::trim(line.substr(0, bar));
        line.remove_prefix(std::min(bar + 1, line.size()));
    }
    return count;
}

/// Takes the first token off `text`.
std::string_view takeToken(std::string_view& text) {
    text = basic::trim(text);
    const std::size_t end = std::min(text.find(' '), text.size());
    const std::string_view token = text.substr(0, end);
    text.remove_prefix(end);
    return token;
}

struct Value {
    std::string_view type;
    double number = 0;
    bool feet = false;
};

class M5Reader {
  public:
    LevelFile read(std::string_view text) {
        LevelFile file;
        file.format = "M5";
        file.notes.emplace_back("read from the maker's description; no file of an instrument was at hand");
        int number = 0;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find('\n'), text.size());
            std::string_view line = text.substr(0, end);
            text.remove_prefix(std::min(end + 1, text.size()));
            while (!line.empty() && (line.back() == '\r' || line.back() == '\x1A'))
                line.remove_suffix(1);
            m_builder.at(++number, line);
            readLine(line);
        }
        std::move(m_builder).finish(file);
        return file;
    }

  private:
    void readLine(std::string_view line) {
        if (basic::trim(line).empty()) return;
        std::array<std::string_view, mostParts> parts{};
        const std::size_t count = cutAtBars(line, parts);
        if (!isM5(line) || count < 3) return m_builder.trouble("this is no line of the form M5");
        std::string_view information = parts[2];
        const std::string_view kind = takeToken(information);
        if (kind == "TO") return readText(basic::trim(information));
        if (!kind.starts_with("KD")) return;
        const std::string_view point = takeToken(information);
        std::array<Value, 3> values{};
        std::size_t found = 0;
        for (std::size_t k = 3; k < count; ++k)
            if (readValue(parts[k], values[found])) ++found;
        for (std::size_t k = 0; k < found; ++k)
            takeSight(values[k], point);
        takeLevels({values.data(), found}, point);
    }

    bool readValue(std::string_view part, Value& value) {
        value.type = takeToken(part);
        const std::string_view number = takeToken(part);
        if (value.type.empty() || number.empty()) return false;
        value.feet = takeToken(part) == "ft";
        const bool isPlain = number.size() <= widestValue && number.find_first_of("eE") == number.npos;
        if (isPlain && basic::isNumber(number)) {
            value.number = basic::val(number);
            return true;
        }
        m_builder.trouble("\"" + std::string(number) + "\" is no number");
        return false;
    }

    void readText(std::string_view text) {
        if (text.starts_with("Start-Line")) {
            text.remove_prefix(10);
            startLine(basic::trim(text));
        } else if (text.starts_with("Cont-Line")) {
            // Goes on with the line that was ended.
            if (!m_builder.isOpen()) m_builder.startLine(m_method, m_isDouble);
        } else if (text.starts_with("End-Line")) {
            m_builder.endLine();
        } else if (text.starts_with("Measurement repeated")) {
            m_builder.dropLastSight();
        } else if (text.starts_with("Station repeated")) {
            m_builder.dropSetUp();
        }
    }

    void startLine(std::string_view rest) {
        m_method = takeToken(rest);
        m_isDouble = m_method.size() > 3;
        m_builder.startLine(m_method, m_isDouble);
        if (const std::string_view number = basic::trim(rest); !number.empty())
            m_builder.named(number.substr(0, 64));
    }

    void takeSight(const Value& value, std::string_view point) {
        const std::string_view type = value.type;
        const bool isBack = type == "Rb" || type == "Lr";
        const bool isFore = type == "Rf" || type == "Lv";
        const bool isIntermediate = type == "Rz" || type == "Lz";
        if (!isBack && !isFore && !isIntermediate) return;
        if (value.feet) m_builder.inFeet();
        m_builder.sight(isBack   ? Sight::Back
                        : isFore ? Sight::Fore
                                 : Sight::Intermediate,
                        value.number, point);
    }

    void takeLevels(std::span<const Value> values, std::string_view point);

    LevelLineBuilder m_builder;
    std::string m_method;
    bool m_isDouble = false;
};

// A level beside a sum of differences closes the line; with a misclosure it was known before.
void M5Reader::takeLevels(std::span<const Value> values, std::string_view point) {
    const auto find = [values](std::string_view type) {
        return std::ranges::find(values, type, &Value::type);
    };
    const auto level = find("Z");
    if (level == values.end()) return;
    if (level->feet) m_builder.inFeet();
    if (find("Sh") != values.end()) {
        if (find("dz") != values.end()) m_builder.known(point, level->number);
    } else if (!m_builder.hasStart()) {
        m_builder.start(point, level->number);
    } else if (m_builder.expectsResult()) {
        m_builder.result(level->number, point);
    }
}

} // namespace

bool isM5(std::string_view line) {
    return line.starts_with("For M5");
}

LevelFile readM5(std::string_view text) {
    return M5Reader().read(text);
}

} // namespace exchange
