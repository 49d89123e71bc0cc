#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

// The sort codes of the two text orders. They are kept as text, one token for each run of characters that are
// coded alike, from U+0000 (byte 00) on:
//
//     CLASS CODE [/SLOTS] [:SECOND] [*COUNT]      "i4A:0F" "r0803*5" "s6B6B/2"
//
// CODE is hex, what the character adds to the first part of a key; SLOTS how many places it takes in the
// second part (1 unless said); SECOND what stands in these places (the accent nibble in the older order).
// CLASS is s ordinary, r ordinary with the code counting up over the run, i accented, k kana, K small kana, u
// not printing (CODE goes to the last part), m combining mark, x without weight, n computed (surrogates).

namespace jet {

extern const std::string_view generalSortCodes; ///< by UTF-16 unit
extern const std::string_view jet3SortCodes;    ///< by byte of code page 1252

struct SortCode {
    char kind = 'n';
    std::uint8_t slots = 1;
    std::uint8_t codeLength = 0;
    std::uint8_t secondLength = 0;
    std::array<std::uint8_t, 4> code{};
    std::array<std::uint8_t, 2> second{};

    [[nodiscard]] std::span<const std::uint8_t> codeBytes() const {
        return std::span(code).first(codeLength);
    }
    [[nodiscard]] std::span<const std::uint8_t> secondBytes() const {
        return std::span(second).first(secondLength);
    }
};

/// One of the tables, read from its text.
class SortTable {
  public:
    SortTable(std::string_view tokens, std::size_t characters);

    /// The codes of a character; those of a counting run are made for it.
    [[nodiscard]] SortCode operator[](std::size_t character) const {
        return character < m_low.size() ? m_low[character] : codeOf(character);
    }

    [[nodiscard]] static const SortTable& general();
    [[nodiscard]] static const SortTable& jet3();

  private:
    [[nodiscard]] SortCode codeOf(std::size_t character) const;

    struct Run {
        std::size_t first;
        SortCode code;
    };
    std::array<SortCode, 0x100> m_low{}; ///< ready, as most texts have no others
    std::vector<Run> m_runs;
    std::vector<std::uint16_t> m_runOf;
};

} // namespace jet
