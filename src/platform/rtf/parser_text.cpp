#include "parser.h"

#include <algorithm>

// How text reaches the document: bytes wait until their code page is certain, then go where the group says.

namespace rtf {

void Parser::symbol(char c) {
    if (m_tooDeep > 0) return;
    if (c == '*') {
        group().optional = true;
        return;
    }
    if (m_skip > 0) {
        --m_skip;
        return;
    }
    switch (c) {
    case '\\':
    case '{':
    case '}':
        bytes(std::string_view(&c, 1));
        break;
    case '~':
        character(0x00A0);
        break;
    case '-':
        character(0x00AD);
        break;
    case '_':
        character(0x2011);
        break;
    case '\t':
        character('\t');
        break;
    case '\r':
    case '\n':
        if (group().destination == Destination::Body) endParagraph();
        break;
    default:
        break;
    }
}

void Parser::bytes(std::string_view text) {
    if (m_tooDeep > 0 || group().destination == Destination::Skip) return;
    const auto left = std::min(text.size(), static_cast<std::size_t>(m_skip));
    text.remove_prefix(left);
    m_skip -= static_cast<int>(left);
    m_pending += text;
}

void Parser::flush() {
    if (m_pending.empty()) return;
    std::string decoded;
    int page = currentPage();
    if (page == kSymbolPage && group().destination == Destination::Fonts) page = m_page;
    m_codePage.append(decoded, m_pending, page);
    m_pending.clear();
    text(decoded);
}

void Parser::unicode(int value) {
    m_skip = group().unicodeSkip;
    const int unit = value & 0xFFFF;
    if (unit >= 0xD800 && unit < 0xDC00) {
        m_highSurrogate = unit;
        return;
    }
    const int high = std::exchange(m_highSurrogate, 0);
    if (high != 0 && unit >= 0xDC00 && unit < 0xE000) {
        character(static_cast<char32_t>(0x10000 + ((high - 0xD800) << 10) + (unit - 0xDC00)));
    } else if (unit >= 0xF000 && unit < 0xF100) {
        // Symbol fonts are often written as characters of the private area.
        std::string decoded;
        const char byte = static_cast<char>(unit & 0xFF);
        m_codePage.append(decoded, std::string_view(&byte, 1), kSymbolPage);
        text(decoded);
    } else if (unit != 0) {
        character(static_cast<char32_t>(unit));
    }
}

void Parser::character(char32_t c) {
    std::string utf8;
    appendUtf8(utf8, c);
    text(utf8);
}

void Parser::text(std::string_view utf8) {
    switch (group().destination) {
    case Destination::Skip:
        return;
    case Destination::FieldInstruction:
        m_instruction += utf8;
        return;
    case Destination::Fonts:
        if (!m_document.fonts.empty()) m_document.fonts.back().name += utf8.substr(0, utf8.find(';'));
        return;
    case Destination::Colours:
        for (const char c : utf8)
            if (c == ';') m_colours.push_back(std::exchange(m_nextColour, std::nullopt));
        return;
    case Destination::Body:
        break;
    }
    if (group().hidden || utf8.empty()) return;
    if (m_runs.empty() || m_runs.back().format != group().character)
        m_runs.push_back({std::string(utf8), group().character});
    else
        m_runs.back().text += utf8;
}

std::string plainText(const Document& document) {
    std::string all;
    const auto add = [&all](const Paragraph& paragraph) {
        for (const Run& run : paragraph.runs)
            all += run.text;
    };
    for (const Block& block : document.blocks) {
        if (const auto* paragraph = std::get_if<Paragraph>(&block)) {
            add(*paragraph);
            all += '\n';
            continue;
        }
        for (const Row& row : std::get<Table>(block).rows) {
            for (std::size_t cell = 0; cell < row.cells.size(); ++cell) {
                if (cell > 0) all += '\t';
                for (std::size_t k = 0; k < row.cells[cell].size(); ++k) {
                    if (k > 0) all += ' ';
                    add(row.cells[cell][k]);
                }
            }
            all += '\n';
        }
    }
    return all;
}

} // namespace rtf
