#include "column_words.h"

#include "text.h"

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
    Word{"YesNo", ColumnType::Boolean},     Word{"Boolean", ColumnType::Boolean},
    Word{"Logical", ColumnType::Boolean},   Word{"Bit", ColumnType::Boolean},
    Word{"Byte", ColumnType::Byte},         Word{"Short", ColumnType::Integer},
    Word{"SmallInt", ColumnType::Integer},  Word{"Long", ColumnType::Long},
    Word{"Integer", ColumnType::Long},      Word{"Int", ColumnType::Long},
    Word{"Currency", ColumnType::Currency}, Word{"Money", ColumnType::Currency},
    Word{"Single", ColumnType::Single},     Word{"Real", ColumnType::Single},
    Word{"Double", ColumnType::Double},     Word{"Float", ColumnType::Double},
    Word{"Number", ColumnType::Double},     Word{"DateTime", ColumnType::DateTime},
    Word{"Date", ColumnType::DateTime},     Word{"Time", ColumnType::DateTime},
    Word{"Binary", ColumnType::Binary},     Word{"VarBinary", ColumnType::Binary},
    Word{"Text", ColumnType::Text},         Word{"Char", ColumnType::Text},
    Word{"VarChar", ColumnType::Text},      Word{"String", ColumnType::Text},
    Word{"LongBinary", ColumnType::Ole},    Word{"OleObject", ColumnType::Ole},
    Word{"Memo", ColumnType::Memo},         Word{"LongText", ColumnType::Memo},
    Word{"Guid", ColumnType::Guid},         Word{"Numeric", ColumnType::Numeric},
    Word{"Decimal", ColumnType::Numeric},
};

constexpr int longestText = 255;
constexpr int longestBinary = 510;
constexpr int mostDigits = 28;

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
    const std::string_view word = trim(words.substr(0, bracket));
    ColumnDesign column;
    if (sameName(word, "Counter") || sameName(word, "AutoIncrement")) {
        column.type = ColumnType::Long;
        column.autonumber = true;
    } else {
        const auto* found =
            std::ranges::find_if(typeWords, [&](const Word& known) { return sameName(known.word, word); });
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
    // Types without a word, those that are not known included, hold bytes.
    const auto* found = std::ranges::find(typeWords, column.type, &Word::type);
    const ColumnType type = found == typeWords.end() ? ColumnType::Binary : found->type;
    std::string words(found == typeWords.end() ? "Binary" : found->word);
    if ((type == ColumnType::Text || type == ColumnType::Binary) && column.size > 0)
        words += "(" + std::to_string(column.size) + ")";
    if (type == ColumnType::Numeric)
        words += "(" + std::to_string(column.precision) + "," + std::to_string(column.scale) + ")";
    return words;
}

} // namespace jet
