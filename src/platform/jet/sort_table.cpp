#include "sort_tables.h"

#include <charconv>

namespace jet {

namespace {

/// The cursor over one token; the tables are ours, so nothing in them needs to be doubted.
class TokenReader {
  public:
    explicit TokenReader(std::string_view token) : m_rest(token) {}

    char letter() {
        const char c = m_rest.front();
        m_rest.remove_prefix(1);
        return c;
    }
    std::string_view upTo(std::string_view ends) {
        const std::size_t length = std::min(m_rest.find_first_of(ends), m_rest.size());
        const std::string_view part = m_rest.substr(0, length);
        m_rest.remove_prefix(length);
        return part;
    }
    bool take(char mark) {
        if (m_rest.empty() || m_rest.front() != mark) return false;
        m_rest.remove_prefix(1);
        return true;
    }

  private:
    std::string_view m_rest;
};

template <typename Number>
Number number(std::string_view digits, int base) {
    Number value{};
    std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    return value;
}

template <std::size_t size>
std::uint8_t fill(std::array<std::uint8_t, size>& bytes, std::string_view hex) {
    std::uint8_t count = 0;
    for (; !hex.empty(); hex.remove_prefix(std::min<std::size_t>(2, hex.size())))
        bytes.at(count++) = number<std::uint8_t>(hex.substr(0, 2), 16);
    return count;
}

} // namespace

SortTable::SortTable(std::string_view tokens, std::size_t characters) {
    m_runOf.reserve(characters);
    while (!tokens.empty()) {
        const std::size_t length = std::min(tokens.find(' '), tokens.size());
        TokenReader reader(tokens.substr(0, length));
        tokens.remove_prefix(std::min(length + 1, tokens.size()));

        Run run{m_runOf.size(), {}};
        run.code.kind = reader.letter();
        run.code.codeLength = fill(run.code.code, reader.upTo("/:*"));
        if (reader.take('/')) run.code.slots = number<std::uint8_t>(reader.upTo(":*"), 10);
        if (reader.take(':')) run.code.secondLength = fill(run.code.second, reader.upTo("*"));
        const std::size_t count = reader.take('*') ? number<std::size_t>(reader.upTo(""), 10) : 1;
        m_runOf.insert(m_runOf.end(), count, static_cast<std::uint16_t>(m_runs.size()));
        m_runs.push_back(run);
    }
    m_runOf.resize(characters);
    for (std::size_t i = 0; i < m_low.size(); ++i)
        m_low[i] = codeOf(i);
}

SortCode SortTable::codeOf(std::size_t character) const {
    const Run& run = m_runs[m_runOf[character]];
    SortCode code = run.code;
    if (code.kind == 'r') {
        // The second byte counts up; behind FF the first goes up by one and the second starts again at 02.
        const std::size_t second = code.code[1] + (character - run.first);
        if (second > 0xFF) {
            code.code[0] = static_cast<std::uint8_t>(code.code[0] + 1 + (second - 0x100) / 0xFE);
            code.code[1] = static_cast<std::uint8_t>(2 + (second - 0x100) % 0xFE);
        } else {
            code.code[1] = static_cast<std::uint8_t>(second);
        }
    }
    return code;
}

const SortTable& SortTable::general() {
    static const SortTable table(generalSortCodes, 0x10000);
    return table;
}

const SortTable& SortTable::jet3() {
    static const SortTable table(jet3SortCodes, 0x100);
    return table;
}

} // namespace jet
