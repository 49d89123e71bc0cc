#include "dxf_writer.h"

#include "basic/strings.h"

#include <array>
#include <charconv>

namespace exchange {
namespace {

using drawing::Place;

void pair(std::string& to, int code, std::string_view value) {
    to.append(std::to_string(code)).append("\r\n").append(value).append("\r\n");
}

void pair(std::string& to, int code, double value) {
    std::array<char, 400> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed, 4);
    pair(to, code, std::string_view(digits.data(), end.ptr));
}

void place(std::string& to, int code, Place at) {
    pair(to, code, at.x);
    pair(to, code + 10, at.y);
    pair(to, code + 20, 0.0);
}

void begin(std::string& to, const char* entity, const char* layer) {
    pair(to, 0, entity);
    pair(to, 8, layer);
}

/// Windows-1252, the letters of 0x80 to 0x9F.
constexpr std::array<char32_t, 32> upper1252{0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                             0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0,      0x017D, 0,
                                             0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                             0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

void appendEscape(std::string& to, char32_t unit) {
    to += "\\U+";
    for (int shift = 12; shift >= 0; shift -= 4)
        to += "0123456789ABCDEF"[unit >> shift & 0xF];
}

void appendLetter(std::string& to, char32_t letter) {
    if (letter < 0x80 || (letter >= 0xA0 && letter <= 0xFF)) {
        to += static_cast<char>(letter);
        return;
    }
    for (std::size_t k = 0; k < upper1252.size(); ++k)
        if (upper1252[k] == letter) {
            to += static_cast<char>(0x80 + k);
            return;
        }
    if (letter > 0xFFFF) { // two halves, as UTF-16 has them
        appendEscape(to, 0xD800 + ((letter - 0x10000) >> 10));
        letter = 0xDC00 + ((letter - 0x10000) & 0x3FF);
    }
    appendEscape(to, letter);
}

/// The code point that `text`, valid UTF-8, begins with.
char32_t firstLetter(std::string_view letter) {
    const auto byte = [letter](std::size_t at) { return static_cast<unsigned char>(letter[at]); };
    if (letter.size() == 1) return byte(0);
    char32_t code = byte(0) & (0x7FU >> letter.size());
    for (std::size_t k = 1; k < letter.size(); ++k)
        code = code << 6 | (byte(k) & 0x3FU);
    return code;
}

void beginSection(std::string& to, const char* name) {
    pair(to, 0, "SECTION");
    pair(to, 2, name);
}

std::string header(const drawing::Box& extent) {
    std::string head;
    beginSection(head, "HEADER");
    pair(head, 9, "$ACADVER");
    pair(head, 1, "AC1009");
    pair(head, 9, "$DWGCODEPAGE");
    pair(head, 3, "ANSI_1252");
    if (!extent.isEmpty()) {
        pair(head, 9, "$EXTMIN");
        place(head, 10, {extent.left, extent.bottom});
        pair(head, 9, "$EXTMAX");
        place(head, 10, {extent.right, extent.top});
    }
    pair(head, 0, "ENDSEC");
    return head;
}

void beginTable(std::string& to, const char* name, int entries) {
    pair(to, 0, "TABLE");
    pair(to, 2, name);
    pair(to, 70, std::to_string(entries));
}

std::string tables() {
    std::string all;
    beginSection(all, "TABLES");
    beginTable(all, "LTYPE", 1);
    pair(all, 0, "LTYPE");
    pair(all, 2, "CONTINUOUS");
    pair(all, 70, "0");
    pair(all, 3, "Solid line");
    pair(all, 72, "65");
    pair(all, 73, "0");
    pair(all, 40, 0.0);
    pair(all, 0, "ENDTAB");

    constexpr std::array<const char*, 5> colours{"3", "8", "7", "7", "1"}; // green, grey, white, white, red
    beginTable(all, "LAYER", static_cast<int>(colours.size()));
    for (std::size_t k = 0; k < colours.size(); ++k) {
        pair(all, 0, "LAYER");
        pair(all, 2, drawing::layerName(static_cast<drawing::Layer>(k)));
        pair(all, 70, "0");
        pair(all, 62, colours[k]);
        pair(all, 6, "CONTINUOUS");
    }
    pair(all, 0, "ENDTAB");

    beginTable(all, "STYLE", 1);
    pair(all, 0, "STYLE");
    pair(all, 2, "STANDARD");
    pair(all, 70, "0");
    pair(all, 40, 0.0);
    pair(all, 41, 1.0);
    pair(all, 50, 0.0);
    pair(all, 71, "0");
    pair(all, 42, 1.0);
    pair(all, 3, "txt");
    pair(all, 4, "");
    pair(all, 0, "ENDTAB");
    pair(all, 0, "ENDSEC");
    return all;
}

} // namespace

std::string dxfText(std::string_view utf8) {
    std::string text;
    while (!utf8.empty()) {
        const std::string_view letter = basic::left(utf8, 1);
        utf8.remove_prefix(letter.size());
        const char32_t code = firstLetter(letter);
        if (code < 32 || code == 127) {
            text += ' ';
            continue;
        }
        if (code == U'%' && text.ends_with('%')) text += ' ';
        appendLetter(text, code);
        if (code == U'^') text += ' ';
    }
    return text;
}

void DxfWriter::line(const char* layer, Place from, Place to) {
    begin(m_entities, "LINE", layer);
    place(m_entities, 10, from);
    place(m_entities, 11, to);
    m_extent.add(from);
    m_extent.add(to);
}

void DxfWriter::polyline(const char* layer, std::span<const Place> places) {
    begin(m_entities, "POLYLINE", layer);
    pair(m_entities, 66, "1");
    place(m_entities, 10, {});
    pair(m_entities, 70, "0");
    for (const Place each : places) {
        begin(m_entities, "VERTEX", layer);
        place(m_entities, 10, each);
        m_extent.add(each);
    }
    begin(m_entities, "SEQEND", layer);
}

void DxfWriter::text(const char* layer, const drawing::Text& text) {
    begin(m_entities, "TEXT", layer);
    place(m_entities, 10, text.at);
    pair(m_entities, 40, text.height);
    pair(m_entities, 1, dxfText(text.text));
    pair(m_entities, 50, text.angle);
    pair(m_entities, 7, "STANDARD");
    m_extent.add(text.at);
    if (text.align == drawing::Align::Left) return;
    pair(m_entities, 72, text.align == drawing::Align::Centre ? "1" : "2");
    place(m_entities, 11, text.at);
}

std::string DxfWriter::finish() const {
    std::string file = header(m_extent) + tables();
    beginSection(file, "ENTITIES");
    file += m_entities;
    pair(file, 0, "ENDSEC");
    pair(file, 0, "EOF");
    return file;
}

} // namespace exchange
