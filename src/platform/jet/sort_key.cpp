#include "sort_key.h"

#include "text.h"
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

void appendText(Bytes& out, std::string_view text, bool ascending, Format format) {
    if (format == Format::Jet4 && isAscii(text))
        appendAsciiTextKey(text, ascending, out);
    else if (format == Format::Jet4)
        appendGeneralTextKey(utf16FromUtf8(text), ascending, out);
    else
        appendJet3TextKey(ansiFromUtf8(text), ascending, out);
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

bool isNullFlag(std::uint8_t flag) {
    return flag == ascendingNull || flag == descendingNull;
}

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
