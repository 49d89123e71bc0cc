#include "text.h"

#include "basic/strings.h"
#include "basic/windows1252.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace jet {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char16_t compressionMark = 0xFEFF; ///< in front of compressed text
constexpr std::uint8_t toggleMode = 0;       ///< between bytes and words in it

/// Takes one character off the front of `text`.
char32_t nextCharacter(std::string_view& text) {
    const auto byteAt = [&text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t first = byteAt(0);
    const std::size_t length = first < 0x80   ? 1
                               : first < 0xC2 ? 0
                               : first < 0xE0 ? 2
                               : first < 0xF0 ? 3
                               : first < 0xF5 ? 4
                                              : 0;
    static constexpr std::array<std::uint8_t, 5> firstBits{0, 0x7F, 0x1F, 0x0F, 0x07};
    static constexpr std::array<char32_t, 5> least{0, 0, 0x80, 0x800, 0x10000};
    char32_t c = first & firstBits[length];
    std::size_t used = 1;
    while (used < length && used < text.size() && (byteAt(used) & 0xC0) == 0x80)
        c = c << 6 | (byteAt(used++) & 0x3F);
    text.remove_prefix(used);
    if (length == 0 || used < length || c < least[length] || c > 0x10FFFF) return replacement;
    return c;
}

/// Feeds the UTF-16 units of a stored Jet 4 text to `take`.
template <typename Take>
void eachUnit(const View& stored, Take take) {
    const ByteView bytes = stored.bytes();
    if (bytes.size() < 2 || bytes[0] != 0xFF || bytes[1] != 0xFE) {
        if (bytes.size() % 2 != 0) stored.fail(0, "a text has half a character");
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
            take(static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8));
        return;
    }
    bool single = true;
    for (std::size_t i = 2; i < bytes.size();) {
        if (single || bytes[i] == 0) {
            if (bytes[i] == 0)
                single = !single;
            else
                take(static_cast<char16_t>(bytes[i]));
            ++i;
        } else {
            if (i + 1 >= bytes.size()) stored.fail(i, "a text has half a character");
            take(static_cast<char16_t>(bytes[i] | bytes[i + 1] << 8));
            i += 2;
        }
    }
}

/// Joins UTF-16 units to characters.
class Utf8Builder {
  public:
    explicit Utf8Builder(std::string& out) : m_out(out) {}
    ~Utf8Builder() { flush(); }
    Utf8Builder(const Utf8Builder&) = delete;
    Utf8Builder& operator=(const Utf8Builder&) = delete;
    void operator()(char16_t unit) {
        if (m_high != 0 && unit >= 0xDC00 && unit < 0xE000) {
            basic::append(m_out, 0x10000 + ((char32_t{m_high} - 0xD800) << 10) + (unit - 0xDC00));
            m_high = 0;
            return;
        }
        flush();
        if (unit >= 0xD800 && unit < 0xDC00)
            m_high = unit;
        else
            basic::append(m_out, unit);
    }

  private:
    void flush() {
        if (m_high != 0) basic::append(m_out, m_high);
        m_high = 0;
    }
    std::string& m_out;
    char16_t m_high = 0;
};

bool allNarrow(std::u16string_view units) {
    return std::ranges::all_of(units, [](char16_t unit) { return unit > 0 && unit < 0x100; });
}

void putUnits(Bytes& out, std::u16string_view units, bool narrow) {
    for (char16_t unit : units) {
        if (narrow)
            put8(out, unit);
        else
            put16(out, unit);
    }
}

/// A text that begins with U+FEFF, of which `rest` follows: compressed, with that character as a word. False
/// when the compressed form cannot hold the rest.
bool encodeMarked(std::u16string_view rest, Bytes& out) {
    const bool narrow = allNarrow(rest);
    if (!narrow && std::ranges::any_of(rest, [](char16_t unit) { return (unit & 0xFF) == 0; })) return false;
    put16(out, compressionMark);
    put8(out, toggleMode);
    put16(out, compressionMark);
    if (narrow) put8(out, toggleMode);
    putUnits(out, rest, narrow);
    return true;
}

constexpr std::size_t wordBytes = 8;
constexpr std::uint64_t lowBits = 0x0101010101010101;
constexpr std::uint64_t highBits = 0x8080808080808080;

/// Up to eight bytes as one number; what is missing counts as `x`, so that it is never found.
std::uint64_t wordAt(const char* bytes, std::size_t length) {
    std::uint64_t word = lowBits * 'x';
    if (length >= wordBytes) {
        std::memcpy(&word, bytes, wordBytes);
    } else {
        for (std::size_t i = 0; i < length; ++i)
            word = word << 8 | static_cast<std::uint8_t>(bytes[i]);
    }
    return word;
}

/// Most texts hold nothing but ASCII, which needs no characters to be put together. False, with nothing done,
/// for any other.
bool decodeAscii(ByteView stored, std::string& out) {
    const std::string_view bytes(reinterpret_cast<const char*>(stored.data()), stored.size());
    if (bytes.starts_with("\xFF\xFE")) {
        if (!isAscii(bytes.substr(2), true)) return false; // a zero switches between bytes and words
        out.assign(bytes.substr(2));
        return true;
    }
    if (bytes.size() % 2 != 0) return false;
    unsigned high = 0;
    for (std::size_t i = 0; i < stored.size(); i += 2)
        high |= (stored[i] & 0x80U) | stored[i + 1];
    if (high != 0) return false;
    out.resize(bytes.size() / 2);
    for (std::size_t i = 0; i < out.size(); ++i)
        out[i] = bytes[i * 2];
    return true;
}

} // namespace

bool isAscii(std::string_view text, bool noZero) {
    std::uint64_t found = 0;
    for (std::size_t at = 0; at < text.size(); at += wordBytes) {
        const std::uint64_t word = wordAt(text.data() + at, text.size() - at);
        found |= word | (noZero ? word - lowBits : 0);
    }
    return (found & highBits) == 0;
}

std::u16string utf16FromUtf8(std::string_view text) {
    std::u16string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const char32_t c = nextCharacter(text);
        if (c < 0x10000) {
            result.push_back(static_cast<char16_t>(c));
        } else {
            result.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            result.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        }
    }
    return result;
}

std::string utf8FromUtf16(std::u16string_view text) {
    std::string result;
    {
        Utf8Builder builder(result);
        for (char16_t unit : text)
            builder(unit);
    }
    return result;
}

std::string utf8FromAnsi(ByteView text) {
    std::string result;
    result.reserve(text.size());
    for (std::uint8_t byte : text)
        basic::append(result, basic::fromWindows1252(byte));
    return result;
}

std::string ansiFromUtf8(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    while (!text.empty()) {
        const char32_t c = nextCharacter(text);
        const auto upper = std::ranges::find(basic::windows1252, c);
        if (upper != basic::windows1252.end())
            result.push_back(static_cast<char>(0x80 + (upper - basic::windows1252.begin())));
        else
            result.push_back(c < 0x100 ? static_cast<char>(c) : '?');
    }
    return result;
}

View withoutPadding(const View& stored, Format format) {
    const std::size_t unit = format == Format::Jet4 ? 2 : 1;
    const ByteView bytes = stored.bytes();
    // Behind compressed text the padding switches modes, which shows nothing.
    if (unit == 2 && bytes.size() >= 2 && bytes[0] == 0xFF && bytes[1] == 0xFE) return stored;
    std::size_t length = bytes.size() - bytes.size() % unit;
    while (length >= unit && bytes[length - 1] == 0 && bytes[length - unit] == 0)
        length -= unit;
    return stored.part(0, length);
}

void decodeText(const View& stored, Format format, std::string& out) {
    if (format == Format::Jet3) {
        out = utf8FromAnsi(stored.bytes());
        return;
    }
    out.clear();
    if (!decodeAscii(stored.bytes(), out)) eachUnit(stored, Utf8Builder(out));
}

void encodeText(std::string_view text, Format format, bool compress, Bytes& out) {
    if (format == Format::Jet3) {
        for (char c : ansiFromUtf8(text))
            out.push_back(static_cast<std::uint8_t>(c));
        return;
    }
    constexpr std::size_t shortestCompressed = 3; // the mark takes two bytes
    constexpr std::size_t longestCompressed = 1024;
    if (isAscii(text)) {
        const bool narrow = compress && text.size() >= shortestCompressed &&
                            text.size() <= longestCompressed && isAscii(text, true);
        const std::size_t start = out.size();
        out.resize(start + (narrow ? text.size() + 2 : 2 * text.size()));
        std::uint8_t* to = out.data() + start;
        if (narrow) {
            storeLittle({to, 2}, compressionMark);
            std::memcpy(to + 2, text.data(), text.size());
        } else {
            for (char c : text) {
                *to = static_cast<std::uint8_t>(c); // the high byte stays 0
                to += 2;
            }
        }
        return;
    }
    std::u16string units = utf16FromUtf8(text);
    if (units.front() == compressionMark) {
        if (encodeMarked(std::u16string_view(units).substr(1), out)) return;
        units.erase(0, 1);
    }
    const bool narrow = compress && units.size() >= shortestCompressed && units.size() <= longestCompressed &&
                        allNarrow(units);
    if (narrow) put16(out, compressionMark);
    putUnits(out, units, narrow);
}

std::size_t storedLength(std::string_view text, Format format) {
    if (isAscii(text)) return text.size();
    return format == Format::Jet3 ? ansiFromUtf8(text).size() : utf16FromUtf8(text).size();
}

bool sameName(std::string_view a, std::string_view b) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    return std::ranges::equal(a, b, {}, lower, lower);
}

} // namespace jet
