#include "column_words.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace jet {

namespace {

struct Word {
    std::string_view word;
    ColumnType type;
};

/// The first word of a type is the one that it is described by.
constexpr std::array typeWords = {
    Word{"yesno", ColumnType::Boolean},     Word{"boolean", ColumnType::Boolean},
    Word{"logical", ColumnType::Boolean},   Word{"bit", ColumnType::Boolean},
    Word{"byte", ColumnType::Byte},         Word{"short", ColumnType::Integer},
    Word{"smallint", ColumnType::Integer},  Word{"long", ColumnType::Long},
    Word{"integer", ColumnType::Long},      Word{"int", ColumnType::Long},
    Word{"currency", ColumnType::Currency}, Word{"money", ColumnType::Currency},
    Word{"single", ColumnType::Single},     Word{"real", ColumnType::Single},
    Word{"double", ColumnType::Double},     Word{"float", ColumnType::Double},
    Word{"number", ColumnType::Double},     Word{"datetime", ColumnType::DateTime},
    Word{"date", ColumnType::DateTime},     Word{"time", ColumnType::DateTime},
    Word{"binary", ColumnType::Binary},     Word{"varbinary", ColumnType::Binary},
    Word{"text", ColumnType::Text},         Word{"char", ColumnType::Text},
    Word{"varchar", ColumnType::Text},      Word{"string", ColumnType::Text},
    Word{"longbinary", ColumnType::Ole},    Word{"oleobject", ColumnType::Ole},
    Word{"memo", ColumnType::Memo},         Word{"longtext", ColumnType::Memo},
    Word{"guid", ColumnType::Guid},         Word{"numeric", ColumnType::Numeric},
    Word{"decimal", ColumnType::Numeric},
};

constexpr int longestText = 255;
constexpr int longestBinary = 510;
constexpr int mostDigits = 28;

std::string lower(std::string_view text) {
    std::string result(text);
    std::ranges::transform(result, result.begin(),
                           [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return result;
}

std::string_view trim(std::string_view text) {
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

std::optional<int> number(std::string_view text, int least, int most) {
    text = trim(text);
    int value = 0;
    const auto [end, failure] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (failure != std::errc{} || end != text.data() + text.size() || value < least || value > most)
        return std::nullopt;
    return value;
}

bool setSize(ColumnDesign& column, std::string_view arguments) {
    if (column.type == ColumnType::Text || column.type == ColumnType::Binary) {
        const auto size = number(arguments, 1, column.type == ColumnType::Text ? longestText : longestBinary);
        column.size = size.value_or(0);
        return size.has_value();
    }
    if (column.type != ColumnType::Numeric) return false;
    const std::size_t comma = arguments.find(',');
    const auto precision = number(arguments.substr(0, comma), 1, mostDigits);
    if (!precision) return false;
    const auto scale = comma == std::string_view::npos ? std::optional(0)
                                                       : number(arguments.substr(comma + 1), 0, *precision);
    column.precision = static_cast<std::uint8_t>(*precision);
    column.scale = static_cast<std::uint8_t>(scale.value_or(0));
    return scale.has_value();
}

} // namespace

std::optional<ColumnDesign> columnTypeOf(std::string_view words) {
    words = trim(words);
    const std::size_t bracket = words.find('(');
    const std::string word = lower(trim(words.substr(0, bracket)));
    ColumnDesign column;
    if (word == "counter" || word == "autoincrement") {
        column.type = ColumnType::Long;
        column.autonumber = true;
    } else {
        const auto* found = std::ranges::find(typeWords, word, &Word::word);
        if (found == typeWords.end()) return std::nullopt;
        column.type = found->type;
    }
    if (bracket == std::string_view::npos) return column;
    if (words.back() != ')') return std::nullopt;
    if (!setSize(column, words.substr(bracket + 1, words.size() - bracket - 2))) return std::nullopt;
    return column;
}

std::string wordsFor(const ColumnDesign& column) {
    if (column.autonumber) return "Counter";
    const ColumnType type = column.type == ColumnType::FixedBinary ? ColumnType::Binary : column.type;
    std::string words(std::ranges::find(typeWords, type, &Word::type)->word);
    words.front() = static_cast<char>(words.front() - 32);
    if ((type == ColumnType::Text || type == ColumnType::Binary) && column.size > 0)
        words += "(" + std::to_string(column.size) + ")";
    if (type == ColumnType::Numeric)
        words += "(" + std::to_string(column.precision) + "," + std::to_string(column.scale) + ")";
    return words;
}

} // namespace jet
