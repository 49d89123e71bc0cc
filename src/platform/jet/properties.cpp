#include "properties.h"

#include "bytes.h"
#include "text.h"

#include <algorithm>
#include <array>

namespace jet {

namespace {

constexpr std::array<std::uint8_t, 4> markJet3{'K', 'K', 'D', 0};
constexpr std::array<std::uint8_t, 4> markJet4{'M', 'R', '2', 0};
constexpr std::ptrdiff_t markBytes = 4;
constexpr std::size_t chunkHeader = 6; ///< length and kind
constexpr std::uint16_t namesChunk = 0x80;
constexpr std::uint16_t columnChunk = 1;
constexpr std::string_view requiredName = "Required";
constexpr std::string_view zeroLengthName = "AllowZeroLength";

std::string readName(const View& bytes, std::size_t& at, Format format) {
    std::string name;
    const std::size_t length = bytes.u16(at);
    decodeText(bytes.part(at + 2, length), format, name);
    at += 2 + length;
    return name;
}

void readColumn(const View& chunk, Format format, const std::vector<std::string>& names,
                std::vector<Column>& columns) {
    std::size_t at = chunkHeader + 4;
    const std::string columnName = readName(chunk, at, format);
    const auto column =
        std::ranges::find_if(columns, [&](const Column& c) { return sameName(c.name, columnName); });
    if (column == columns.end()) return;
    at = chunkHeader + chunk.u32(chunkHeader);
    while (at < chunk.size()) {
        const std::size_t length = chunk.u16(at);
        const std::size_t name = chunk.u16(at + 4);
        const bool truth = chunk.u16(at + 6) != 0 && chunk.u8(at + 8) != 0;
        if (name < names.size() && names[name] == requiredName) column->required = truth;
        if (name < names.size() && names[name] == zeroLengthName) column->allowZeroLength = truth;
        if (length == 0) return;
        at += length;
    }
}

void putName(Bytes& out, std::string_view name, Format format) {
    Bytes text;
    encodeText(name, format, false, text);
    put16(out, text.size());
    putBytes(out, text);
}

void putChunk(Bytes& out, std::uint16_t kind, const Bytes& data) {
    put32(out, static_cast<std::uint32_t>(chunkHeader + data.size()));
    put16(out, kind);
    putBytes(out, data);
}

void putTruth(Bytes& out, std::size_t name) {
    constexpr std::size_t length = 9;
    constexpr std::size_t setByDefinition = 1;
    put16(out, length);
    put8(out, setByDefinition);
    put8(out, static_cast<std::size_t>(ColumnType::Boolean));
    put16(out, name);
    put16(out, 1);
    put8(out, 0xFF);
}

bool hasProperties(const ColumnDesign& column) {
    return column.required || column.allowZeroLength;
}

/// The chunk of a column; the numbers are those of the names.
void putColumn(Bytes& out, const ColumnDesign& column, std::size_t required, std::size_t zeroLength,
               Format format) {
    Bytes name;
    putName(name, column.name, format);
    Bytes data;
    put32(data, static_cast<std::uint32_t>(4 + name.size()));
    putBytes(data, name);
    if (column.required) putTruth(data, required);
    if (column.allowZeroLength) putTruth(data, zeroLength);
    putChunk(out, columnChunk, data);
}

} // namespace

void readProperties(const Bytes& stored, Format format, std::vector<Column>& columns) try {
    const View all(0, stored);
    std::vector<std::string> names;
    for (std::size_t at = markBytes; at < all.size();) {
        const View chunk = all.part(at, std::max<std::size_t>(all.u32(at), chunkHeader));
        const std::uint16_t kind = chunk.u16(4);
        if (kind == namesChunk) {
            for (std::size_t name = chunkHeader; name < chunk.size();)
                names.push_back(readName(chunk, name, format));
        } else if (kind == columnChunk) {
            readColumn(chunk, format, names, columns);
        }
        at += chunk.size();
    }
} catch (const Error&) {
    // Properties are additions of Access; a table is whole without them.
}

Bytes makeProperties(const std::vector<ColumnDesign>& columns, Format format) {
    if (std::ranges::none_of(columns, hasProperties)) return {};
    Bytes out;
    putBytes(out, format == Format::Jet4 ? markJet4 : markJet3);
    Bytes names;
    putName(names, requiredName, format);
    putName(names, zeroLengthName, format);
    putChunk(out, namesChunk, names);
    for (const ColumnDesign& column : columns)
        if (hasProperties(column)) putColumn(out, column, 0, 1, format);
    return out;
}

Bytes withColumn(const Bytes& stored, const ColumnDesign& column, Format format) try {
    if (!hasProperties(column)) return stored;
    if (stored.empty()) return makeProperties({column}, format);
    const View all(0, stored);
    const View first = all.part(markBytes, all.u32(markBytes));
    if (first.u16(4) != namesChunk) return stored;
    std::vector<std::string> names;
    for (std::size_t at = chunkHeader; at < first.size();)
        names.push_back(readName(first, at, format));
    const ByteView kept = first.bytes();
    Bytes known(kept.begin() + chunkHeader, kept.end());
    const auto numberOf = [&](std::string_view name) {
        const auto found = std::ranges::find(names, name);
        const auto number = static_cast<std::size_t>(found - names.begin());
        if (found == names.end()) {
            putName(known, name, format);
            names.emplace_back(name);
        }
        return number;
    };
    const std::size_t required = numberOf(requiredName);
    const std::size_t zeroLength = numberOf(zeroLengthName);
    Bytes out(stored.begin(), stored.begin() + markBytes);
    putChunk(out, namesChunk, known);
    putBytes(out, all.bytes(markBytes + first.size(), all.size() - markBytes - first.size()));
    putColumn(out, column, required, zeroLength, format);
    return out;
} catch (const Error&) {
    return stored;
}

} // namespace jet
