#include "level_formats.h"

#include "basic/strings.h"

#include <array>
#include <charconv>
#include <cmath>

namespace exchange {
namespace {

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// One word of a block: its index, the code of unit and last place, its data with sign.
struct Word {
    int index = 0;
    char unit = '.';
    char sign = '+';
    std::string_view data;
};

/// Words are found by their form and not by columns, since texts and numbers may be longer than a word and
/// hold blanks: two digits, four digits or points, a sign, at the beginning or behind a blank.
bool beginsWord(std::string_view text) {
    if (text.size() < 7 || !isDigit(text[0]) || !isDigit(text[1]) || (text[6] != '+' && text[6] != '-'))
        return false;
    for (std::size_t k = 2; k < 6; ++k)
        if (!isDigit(text[k]) && text[k] != '.') return false;
    return true;
}

Word wordOf(std::string_view text) {
    Word word;
    word.index = (text[0] - '0') * 10 + (text[1] - '0');
    // Behind 11 and 41 to 49 stands the number of the block, not a third digit.
    const bool numbered = word.index == 11 || (word.index >= 41 && word.index <= 49);
    if (!numbered && isDigit(text[2])) word.index = word.index * 10 + (text[2] - '0');
    word.unit = text[5];
    word.sign = text[6];
    word.data = basic::trim(text.substr(7));
    return word;
}

/// The words of a block into `words`, at most as many as fit; their number.
constexpr std::size_t mostWords = 24;
std::size_t wordsOf(std::string_view block, std::array<Word, mostWords>& words) {
    if (block.starts_with('*')) block.remove_prefix(1);
    std::size_t count = 0;
    while (count < mostWords && beginsWord(block)) {
        std::size_t end = 7;
        while (end < block.size() && !(block[end] == ' ' && beginsWord(block.substr(end + 1))))
            ++end;
        words[count++] = wordOf(block.substr(0, end));
        block.remove_prefix(std::min(end + 1, block.size()));
    }
    return count;
}

std::string_view nameOf(std::string_view data) {
    const std::size_t first = data.find_first_not_of('0');
    return first == std::string_view::npos ? data.substr(0, data.empty() ? 0 : 1) : data.substr(first);
}

/// A length in metres, or in the file's feet.
std::optional<double> lengthOf(const Word& word) {
    double perUnit = 0;
    switch (word.unit) {
    case '0':
    case '1':
        perUnit = 1000;
        break;
    case '6':
    case '7':
        perUnit = 10'000;
        break;
    case '8':
        perUnit = 100'000;
        break;
    default:
        return {};
    }
    long long value = 0;
    const auto end = word.data.data() + word.data.size();
    const auto read = std::from_chars(word.data.data(), end, value);
    if (word.data.empty() || !isDigit(word.data[0]) || read.ec != std::errc() || read.ptr != end) return {};
    return static_cast<double>(word.sign == '-' ? -value : value) / perUnit;
}

class GsiReader {
  public:
    LevelFile read(std::string_view text) {
        LevelFile file;
        file.format = "GSI-8";
        int line = 0;
        while (!text.empty()) {
            const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
            std::string_view block = text.substr(0, end);
            text.remove_prefix(end);
            if (!text.empty()) text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
            ++line;
            m_builder.at(line, block);
            if (block.starts_with('*')) file.format = "GSI-16";
            readBlock(block);
        }
        std::move(m_builder).finish(file);
        return file;
    }

  private:
    void readBlock(std::string_view block) {
        const std::size_t count = wordsOf(block, m_words);
        if (count == 0) {
            if (block.find_first_not_of(" \t\x1A") != std::string_view::npos)
                m_builder.trouble("this is no block");
            return;
        }
        const Word& first = m_words[0];
        if (first.index == 41) return readMethod(first);
        const std::string_view point = first.index == 11 ? nameOf(first.data) : std::string_view{};
        for (std::size_t k = 0; k < count; ++k)
            readWord(m_words[k], point);
        // 513 equal to 514 to the last digit is a quick close: nobody knew the level.
        if (!m_known || !m_found) return;
        if (std::abs(*m_known - *m_found) > 1e-9) m_builder.known(m_knownPoint, *m_known);
        m_known.reset();
        m_found.reset();
        m_knownPoint.clear();
    }

    void readMethod(const Word& word) {
        if (word.data.find('?') == std::string_view::npos) return; // a code of the user's
        const std::size_t digits = word.data.find_last_not_of("0123456789");
        const std::string_view number = word.data.substr(digits + 1);
        static constexpr std::array<const char*, 5> methods{"", "BF", "BFFB", "aBF", "aBFFB"};
        const std::size_t method = number.size() == 1 ? static_cast<std::size_t>(number[0] - '0') : 0;
        if (method >= methods.size() || method == 0) {
            m_builder.startLine(number == "10" ? "two-peg check" : "method " + std::string(number), false);
            m_builder.trouble(number == "10" ? "a check of the instrument, no line"
                                             : "an unknown method of levelling");
        } else {
            m_builder.startLine(methods[method], method % 2 == 0);
        }
    }

    void readWord(const Word& word, std::string_view point) {
        using Sight = LevelLineBuilder::Sight;
        switch (word.index) {
        case 83:
            return takeLevel(word, point);
        case 331:
        case 335:
            return takeSight(Sight::Back, word, point, word.index == 335);
        case 332:
        case 336:
            return takeSight(Sight::Fore, word, point, word.index == 336);
        case 333:
            return takeSight(Sight::Intermediate, word, point, false);
        case 271:
            return m_builder.named(word.data.substr(0, 64));
        case 512:
            m_knownPoint = nameOf(word.data);
            return;
        case 513:
            m_found = lengthOf(word);
            return;
        case 514:
            m_known = lengthOf(word);
            return;
        default:
            return;
        }
    }

    std::optional<double> length(const Word& word) {
        const auto value = lengthOf(word);
        if (!value)
            m_builder.trouble("word " + std::to_string(word.index) + " is no length");
        else if (word.unit == '1' || word.unit == '7')
            m_builder.inFeet();
        return value;
    }

    void takeSight(LevelLineBuilder::Sight kind, const Word& word, std::string_view point, bool second) {
        if (const auto value = length(word)) m_builder.sight(kind, *value, point, second);
    }

    void takeLevel(const Word& word, std::string_view point) {
        const auto value = length(word);
        if (!value) return;
        if (m_builder.hasStart())
            m_builder.result(*value, point);
        else
            m_builder.start(point, *value);
    }

    LevelLineBuilder m_builder;
    std::array<Word, mostWords> m_words;
    std::optional<double> m_found, m_known;
    std::string m_knownPoint;
};

} // namespace

bool isGsi(std::string_view line) {
    if (line.starts_with('*')) line.remove_prefix(1);
    return beginsWord(line);
}

LevelFile readGsi(std::string_view text) {
    return GsiReader().read(text);
}

} // namespace exchange
