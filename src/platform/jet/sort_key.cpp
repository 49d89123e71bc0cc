#include "sort_key.h"

#include "text_key.h"

#include <algorithm>
#include <bit>
#include <concepts>
#include <span>

namespace jet {

namespace {

enum Flag : std::uint8_t {
    ascendingNull = 0x00,
    ascendingValue = 0x7F,
    descendingValue = 0x80,
    descendingNull = 0xFF
};

constexpr std::size_t pieceSize = 8;
constexpr std::uint8_t moreFollows = 9;

void invert(Bytes& bytes, std::size_t from) {
    for (std::size_t i = from; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(~bytes[i]);
}

template <std::unsigned_integral Number>
void appendBigEndian(Bytes& out, Number value) {
    for (std::size_t shift = 8 * sizeof value; shift > 0; shift -= 8)
        out.push_back(static_cast<std::uint8_t>(value >> (shift - 8)));
}

template <std::signed_integral Number>
void appendInteger(Bytes& out, Number value) {
    using Unsigned = std::make_unsigned_t<Number>;
    constexpr auto sign = static_cast<Unsigned>(Unsigned{1} << (8 * sizeof value - 1));
    appendBigEndian(out, static_cast<Unsigned>(static_cast<Unsigned>(value) ^ sign));
}

template <std::unsigned_integral Bits>
void appendReal(Bytes& out, Bits bits) {
    constexpr auto sign = static_cast<Bits>(Bits{1} << (8 * sizeof bits - 1));
    appendBigEndian(out, static_cast<Bits>((bits & sign) != 0 ? ~bits : bits ^ sign));
}

/// Pieces of eight bytes, each followed by 9, the last one filled with zeros and followed by its length. The
/// nines are not inverted in descending order.
void appendBinary(Bytes& out, std::span<const std::uint8_t> data, bool ascending) {
    const std::size_t start = out.size();
    while (!data.empty()) {
        const std::size_t length = std::min(pieceSize, data.size());
        out.insert(out.end(), data.begin(), data.begin() + static_cast<std::ptrdiff_t>(length));
        out.insert(out.end(), pieceSize - length, 0);
        data = data.subspan(length);
        const std::uint8_t more = ascending ? moreFollows : static_cast<std::uint8_t>(~moreFollows);
        out.push_back(data.empty() ? static_cast<std::uint8_t>(length) : more);
    }
    if (!ascending) invert(out, start);
}

/// In descending order the sign byte stays as it is and the magnitude takes the place of the other sign's: a
/// flaw of the first engines that has become the format.
void appendNumeric(Bytes& out, const Numeric& value, bool ascending) {
    out.push_back(value.negative ? 0x00 : 0xFF);
    const std::size_t start = out.size();
    out.insert(out.end(), value.magnitude.begin(), value.magnitude.end());
    if (value.negative == ascending) invert(out, start);
}

/// Turns UTF-8 into UTF-16 units, at most as many as a key looks at; what is no UTF-8 counts byte by byte.
class Units {
  public:
    explicit Units(std::string_view text) {
        std::size_t at = 0;
        while (at < text.size() && m_length + 1 < m_units.size())
            at += take(text.substr(at));
    }
    [[nodiscard]] std::u16string_view view() const { return {m_units.data(), m_length}; }

  private:
    std::size_t take(std::string_view text) {
        const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
        const std::size_t length = byte(0) < 0xC2 ? 1 : byte(0) < 0xE0 ? 2 : byte(0) < 0xF0 ? 3 : 4;
        std::uint32_t point = length == 1 ? byte(0) : byte(0) & (0x7FU >> length);
        for (std::size_t i = 1; i < length; ++i) {
            if (i >= text.size() || (byte(i) & 0xC0) != 0x80) {
                put(byte(0));
                return 1;
            }
            point = point << 6 | (byte(i) & 0x3FU);
        }
        if (point >= 0x10000) {
            point -= 0x10000;
            put(0xD800 + (point >> 10 & 0x3FF));
            point = 0xDC00 + (point & 0x3FF);
        }
        put(point);
        return length;
    }
    void put(std::uint32_t unit) { m_units[m_length++] = static_cast<char16_t>(unit); }

    std::array<char16_t, 260> m_units;
    std::size_t m_length = 0;
};

/// The characters of code page 1252 whose bytes are not their numbers.
constexpr std::array<char16_t, 32> upperControls = {
    0x20AC, 0x81,   0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x8D,   0x017D, 0x8F,   0x90,   0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D,   0x017E, 0x0178};

char ansi(char16_t unit) {
    if (unit < 0x80 || (unit >= 0xA0 && unit < 0x100)) return static_cast<char>(unit);
    const auto found = std::ranges::find(upperControls, unit);
    return found == upperControls.end() ? '?' : static_cast<char>(0x80 + (found - upperControls.begin()));
}

void appendText(Bytes& out, std::string_view text, bool ascending, Format format) {
    const Units units(text);
    if (format == Format::Jet4) return appendGeneralTextKey(units.view(), ascending, out);
    std::string bytes(units.view().size(), ' ');
    std::ranges::transform(units.view(), bytes.begin(), ansi);
    appendJet3TextKey(bytes, ascending, out);
}

/// Appends the bytes of one value; types that invert by rules of their own say so by returning true.
struct Encoder {
    Bytes& out;
    bool ascending;
    Format format;

    bool operator()(Null) const { return true; }
    bool operator()(bool value) const {
        out.push_back(value ? 0x00 : 0xFF);
        return false;
    }
    bool operator()(std::uint8_t value) const {
        out.push_back(value);
        return false;
    }
    bool operator()(std::int16_t value) const { return integer(value); }
    bool operator()(std::int32_t value) const { return integer(value); }
    bool operator()(Currency value) const { return integer(value.tenThousandths); }
    bool operator()(float value) const {
        appendReal(out, std::bit_cast<std::uint32_t>(value));
        return false;
    }
    bool operator()(double value) const {
        appendReal(out, std::bit_cast<std::uint64_t>(value));
        return false;
    }
    bool operator()(DateTime value) const { return operator()(value.days); }
    bool operator()(const std::string& value) const {
        appendText(out, value, ascending, format);
        return true;
    }
    bool operator()(const Bytes& value) const {
        appendBinary(out, value, ascending);
        return true;
    }
    bool operator()(const Guid& value) const {
        appendBinary(out, value.bytes, ascending);
        return true;
    }
    bool operator()(const Numeric& value) const {
        appendNumeric(out, value, ascending);
        return true;
    }

  private:
    template <typename Number>
    bool integer(Number value) const {
        appendInteger(out, value);
        return false;
    }
};

} // namespace

void appendKey(Bytes& out, const KeyColumn& column, const Value& value, Format format) {
    if (isNull(value) && column.type != ColumnType::Boolean) {
        out.push_back(column.ascending ? ascendingNull : descendingNull);
        return;
    }
    out.push_back(column.ascending ? ascendingValue : descendingValue);
    const std::size_t start = out.size();
    const Encoder encoder{out, column.ascending, format};
    const bool inverted = isNull(value) ? encoder(false) : std::visit(encoder, value);
    if (!column.ascending && !inverted) invert(out, start);
}

} // namespace jet
