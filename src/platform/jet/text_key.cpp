#include "text_key.h"

#include "sort_tables.h"

namespace jet {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t longestText = 255;
constexpr std::uint8_t endOfPart = 0x01;
constexpr std::uint8_t endOfText = 0x00;
constexpr std::uint8_t ordinaryWeight = 0x02;

void append(Bytes& to, std::span<const std::uint8_t> bytes) {
    to.insert(to.end(), bytes.begin(), bytes.end());
}

template <typename View>
View significant(View text) {
    text = text.substr(0, longestText);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    return text;
}

/// Surrogates stand in no table; their code follows from their number.
SortCode surrogateCode(char16_t unit) {
    constexpr std::array<std::pair<int, int>, 5> lowSteps{
        {{8, 9992}, {262, 9990}, {516, 9988}, {770, 9986}, {0x400, 9984}}};
    int value = unit - 10238;
    if (unit >= 0xDC00) {
        for (const auto& [end, distance] : lowSteps) {
            value = unit - distance;
            if (unit - 0xDC00 < end) break;
        }
    }
    SortCode code;
    code.kind = 'i';
    code.codeLength = 2;
    code.code = {static_cast<std::uint8_t>(value >> 8), static_cast<std::uint8_t>(value), 0, 0};
    code.secondLength = 1;
    code.second = {0x3F, 0};
    return code;
}

/// The parts of a key behind the codes, gathered while the characters are walked.
class GeneralParts {
  public:
    void add(const SortCode& code) {
        switch (code.kind) {
        case 'u':
            addUnprinted(code.code[0]);
            return;
        case 'm':
            addMark(code.second[0]);
            return;
        case 'x':
            return;
        case 'k':
        case 'K':
            m_kana.push_back(code.kind == 'K' ? 2 : 3);
            break;
        default:
            break;
        }
        m_slots += code.slots;
        if (code.secondLength > 0) {
            m_weights.resize(m_front + m_slots - code.slots, ordinaryWeight);
            append(m_weights, code.secondBytes());
        }
    }

    void appendTo(Bytes& key) {
        while (!m_weights.empty() && m_weights.back() <= ordinaryWeight)
            m_weights.pop_back();
        append(key, m_weights);
        if (m_kana.empty() && m_unprinted.empty()) return;
        key.insert(key.end(), 2, endOfPart);
        if (!m_kana.empty()) appendKana(key);
        if (!m_unprinted.empty()) {
            key.push_back(endOfPart);
            append(key, m_unprinted);
        }
    }

  private:
    void addUnprinted(std::uint8_t code) {
        const std::size_t place = 0x8000 + 7 + 4 * m_slots;
        const std::array<std::uint8_t, 4> entry{static_cast<std::uint8_t>(place >> 8),
                                                static_cast<std::uint8_t>(place), 0x06, code};
        append(m_unprinted, entry);
    }

    /// A combining mark adds to the weight before it; in front of all of them it is a weight without a place.
    void addMark(std::uint8_t weight) {
        m_weights.resize(m_front + m_slots, ordinaryWeight);
        if (m_weights.empty()) {
            m_weights.push_back(weight);
            m_front = 1;
        } else {
            m_weights.back() = static_cast<std::uint8_t>(m_weights.back() + weight);
        }
    }

    void appendKana(Bytes& key) {
        while (!m_kana.empty() && m_kana.back() == 3)
            m_kana.pop_back();
        for (std::size_t i = 0; i < m_kana.size(); i += 3) {
            const auto flag = [&](std::size_t at) { return at < m_kana.size() ? m_kana[at] : 0; };
            key.push_back(static_cast<std::uint8_t>(0x80 + flag(i) * 16 + flag(i + 1) * 4 + flag(i + 2)));
        }
        append(key, std::array<std::uint8_t, 5>{0xFF, 0x02, 0x80, 0xFF, 0x80});
        if (!m_unprinted.empty()) key.push_back(0xFF);
    }

    std::size_t m_slots = 0;
    std::size_t m_front = 0; ///< 1 with a weight in front that has no place
    Bytes m_weights;
    Bytes m_kana;
    Bytes m_unprinted;
};

void invert(Bytes& key, std::size_t from) {
    for (std::size_t i = from; i < key.size(); ++i)
        key[i] = static_cast<std::uint8_t>(~key[i]);
}

/// Half bytes, the high one first.
class Nibbles {
  public:
    explicit Nibbles(Bytes& to) : m_to(to) {}
    void add(std::uint8_t nibble) {
        if (m_half)
            m_to.back() = static_cast<std::uint8_t>(m_to.back() | nibble);
        else
            m_to.push_back(static_cast<std::uint8_t>(nibble << 4));
        m_half = !m_half;
    }

  private:
    Bytes& m_to;
    bool m_half = false;
};

/// The key of a text of UTF-16 units or of ASCII characters.
template <typename View>
void appendGeneral(View text, bool ascending, Bytes& key) {
    const SortTable& table = SortTable::general();
    const std::size_t start = key.size();
    GeneralParts parts;
    for (const auto each : significant(text)) {
        const auto unit = static_cast<char16_t>(each);
        SortCode code = table[unit];
        if (code.kind == 'n') code = surrogateCode(unit);
        if (code.kind != 'u' && code.kind != 'm') append(key, code.codeBytes());
        parts.add(code);
    }
    key.push_back(endOfPart);
    parts.appendTo(key);
    key.push_back(endOfText);
    if (!ascending) {
        invert(key, start);
        key.push_back(endOfText);
    }
}

} // namespace

void appendGeneralTextKey(std::u16string_view text, bool ascending, Bytes& key) {
    appendGeneral(text, ascending, key);
}

void appendAsciiTextKey(std::string_view text, bool ascending, Bytes& key) {
    appendGeneral(text, ascending, key);
}

void appendJet3TextKey(std::string_view text, bool ascending, Bytes& key) {
    const SortTable& table = SortTable::jet3();
    const std::size_t start = key.size();
    text = significant(text);
    std::size_t marked = 0; // characters up to the last one with an accent
    for (std::size_t i = 0; i < text.size(); ++i) {
        const SortCode code = table[static_cast<unsigned char>(text[i])];
        append(key, code.codeBytes());
        if (code.secondLength > 0) marked = i + 1;
    }
    if (marked == 0) {
        key.push_back(endOfText);
    } else {
        Nibbles nibbles(key);
        nibbles.add(0);
        for (char c : text.substr(0, marked)) {
            const SortCode code = table[static_cast<unsigned char>(c)];
            if (code.secondLength > 0) {
                nibbles.add(code.second[0]);
            } else {
                for (int slot = 0; slot < code.slots; ++slot)
                    nibbles.add(2);
            }
        }
        nibbles.add(0);
    }
    if (!ascending) invert(key, start);
}

} // namespace jet
