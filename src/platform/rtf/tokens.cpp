#include "tokens.h"

#include <algorithm>

namespace rtf {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

int hexValue(char c) {
    if (isDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Longer digit strings are damage; the value is kept within what any parameter can mean.
constexpr int kLargestNumber = 1'000'000'000;

} // namespace

Token Tokens::next() {
    while (m_at < m_source.size()) {
        const char c = m_source[m_at];
        if (c == '\r' || c == '\n' || c == '\0') {
            ++m_at;
            continue;
        }
        if (c == '\\') return control();
        if (c == '{' || c == '}') {
            ++m_at;
            return {c == '{' ? Token::Kind::Open : Token::Kind::Close, {}, {}, 0};
        }
        constexpr std::string_view ends("\\{}\r\n\0", 6);
        const std::size_t end = std::min(m_source.find_first_of(ends, m_at), m_source.size());
        Token token{Token::Kind::Text, m_source.substr(m_at, end - m_at), {}, 0};
        m_at = end;
        return token;
    }
    return {};
}

Token Tokens::control() {
    ++m_at;
    if (m_at == m_source.size()) return {};
    const char c = m_source[m_at];
    if (isLetter(c)) return word();
    if (c == '\'' && m_source.size() - m_at > 2) {
        const int high = hexValue(m_source[m_at + 1]);
        const int low = hexValue(m_source[m_at + 2]);
        if (high >= 0 && low >= 0) {
            m_at += 3;
            return {Token::Kind::Byte, {}, {}, static_cast<char>(high * 16 + low)};
        }
    }
    Token token{Token::Kind::Symbol, m_source.substr(m_at, 1), {}, 0};
    ++m_at;
    return token;
}

Token Tokens::word() {
    const std::size_t start = m_at;
    while (m_at < m_source.size() && isLetter(m_source[m_at]))
        ++m_at;
    Token token{Token::Kind::Word, m_source.substr(start, m_at - start), {}, 0};

    std::size_t digits = m_at;
    const bool negative = digits < m_source.size() && m_source[digits] == '-';
    if (negative) ++digits;
    if (digits < m_source.size() && isDigit(m_source[digits])) {
        int value = 0;
        for (m_at = digits; m_at < m_source.size() && isDigit(m_source[m_at]); ++m_at)
            value = value < kLargestNumber / 10 ? value * 10 + (m_source[m_at] - '0') : kLargestNumber;
        token.number = negative ? -value : value;
    }
    if (m_at < m_source.size() && m_source[m_at] == ' ') ++m_at;
    return token;
}

void Tokens::skip(std::size_t bytes) {
    m_at += std::min(bytes, m_source.size() - m_at);
}

} // namespace rtf
