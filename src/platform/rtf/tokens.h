#pragma once

#include <cstddef>
#include <optional>
#include <string_view>

namespace rtf {

struct Token {
    enum class Kind { End, Open, Close, Word, Symbol, Byte, Text };
    Kind kind = Kind::End;
    std::string_view text;     ///< a word's letters, a symbol's character, or a stretch of plain bytes
    std::optional<int> number; ///< a word's parameter
    char byte = 0;             ///< the value of \'hh
};

/// Cuts rich text into groups, control words, control symbols and text. Line ends of the source are no text.
/// The tokens point into the source, which must outlive them.
class Tokens {
  public:
    explicit Tokens(std::string_view source) : m_source(source) {}
    [[nodiscard]] Token next();
    /// Passes over binary data that follows the token just read.
    void skip(std::size_t bytes);

  private:
    Token control();
    Token word();

    std::string_view m_source;
    std::size_t m_at = 0;
};

} // namespace rtf
