#include "parser.h"

#include "basic/files.h"

#include <algorithm>

namespace rtf {

namespace {

// Bounds that no real document reaches; beyond them a damaged one costs neither memory nor stack.
constexpr std::size_t kMostGroups = 400;
constexpr std::size_t kMostCells = 63;
constexpr std::size_t kMostTabs = 64;
constexpr int kLongestLength = 31680; // 22 inches, the format's own largest measure

int length(std::optional<int> number) {
    return std::clamp(number.value_or(0), -kLongestLength, kLongestLength);
}
bool isOn(std::optional<int> number) {
    return number.value_or(1) != 0;
}

// The target in HYPERLINK "target" or, for a place in the same document, HYPERLINK \l "place".
std::string linkOf(std::string_view instruction) {
    constexpr std::string_view key = "HYPERLINK";
    const std::size_t at = instruction.find(key);
    if (at == std::string_view::npos) return {};
    instruction.remove_prefix(at + key.size());
    const std::size_t open = instruction.find('"');
    if (open == std::string_view::npos) return {};
    const std::size_t close = instruction.find('"', open + 1);
    if (close == std::string_view::npos) return {};
    const bool inside = instruction.substr(0, open).find("\\l") != std::string_view::npos;
    return (inside ? "#" : "") + std::string(instruction.substr(open + 1, close - open - 1));
}

Document plainDocument(std::string_view bytes) {
    const std::string text = basic::toUtf8(bytes);
    Document document;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string line(rest.substr(0, end));
        std::erase_if(line, [](char c) { return static_cast<unsigned char>(c) < 0x20 && c != '\t'; });
        Paragraph paragraph;
        if (!line.empty()) paragraph.runs.push_back({std::move(line), {}});
        document.blocks.emplace_back(std::move(paragraph));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return document;
}

} // namespace

Document read(std::string_view bytes) {
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    std::string_view source = bytes;
    if (source.starts_with(byteOrderMark)) source.remove_prefix(byteOrderMark.size());
    source.remove_prefix(std::min(source.find_first_not_of(" \t\r\n"), source.size()));
    if (!source.starts_with("{\\rtf")) return plainDocument(bytes);
    return Parser(source).run();
}

Parser::Parser(std::string_view source) : m_tokens(source) {
    m_groups.emplace_back();
}

Document Parser::run() {
    bool more = true;
    while (more) {
        const Token token = m_tokens.next();
        if (token.kind != Token::Kind::Text && token.kind != Token::Kind::Byte) flush();
        switch (token.kind) {
        case Token::Kind::End:
            more = false;
            break;
        case Token::Kind::Open:
            open();
            break;
        case Token::Kind::Close:
            more = close();
            break;
        case Token::Kind::Word:
            word(token);
            break;
        case Token::Kind::Symbol:
            symbol(token.text.front());
            break;
        case Token::Kind::Byte:
            bytes(std::string_view(&token.byte, 1));
            break;
        case Token::Kind::Text:
            bytes(token.text);
            break;
        }
    }
    flush();
    if (!m_runs.empty()) endParagraph();
    endTable();
    return std::move(m_document);
}

void Parser::open() {
    m_skip = 0;
    if (m_tooDeep > 0 || m_groups.size() > kMostGroups) {
        ++m_tooDeep;
        return;
    }
    m_groups.push_back(m_groups.back());
    group().optional = false;
}

bool Parser::close() {
    m_skip = 0;
    if (m_tooDeep > 0) {
        --m_tooDeep;
        return true;
    }
    const bool more = m_groups.size() > 2; // the document ends with its own group
    if (!more && !m_runs.empty()) endParagraph();
    if (m_groups.size() > 1) m_groups.pop_back();
    return more;
}

void Parser::word(const Token& token) {
    const Word* known = findWord(token.text);
    const bool optional = std::exchange(group().optional, false);
    if (known == nullptr) {
        if (optional && m_tooDeep == 0) group().destination = Destination::Skip;
        return;
    }
    if (known->action == Action::Binary) {
        m_tokens.skip(static_cast<std::size_t>(std::max(0, token.number.value_or(0))));
        return;
    }
    if (m_tooDeep > 0) return;
    if (known->action == Action::Insert && m_skip > 0) {
        --m_skip;
        return;
    }
    if (known->action != Action::Unicode) m_skip = 0;
    if (groupWord(*known) || group().destination == Destination::Skip) return;

    const std::optional<int> number = token.number;
    switch (known->action) {
    case Action::Page:
        m_page = known->value != 0 ? known->value : number.value_or(0);
        if (m_page == 0) m_page = 1252;
        break;
    case Action::StandardFont:
        m_standardFont = number.value_or(0);
        group().character.font = fontIndex(m_standardFont);
        break;
    case Action::SkipAfterUnicode:
        group().unicodeSkip = std::clamp(number.value_or(1), 0, 255);
        break;
    case Action::Unicode:
        unicode(number.value_or(0));
        break;
    case Action::Insert:
        character(static_cast<char32_t>(known->value));
        break;
    default:
        characterWord(*known, number);
        paragraphWord(*known, number);
        tableWord(*known, number);
    }
}

bool Parser::groupWord(const Word& word) {
    Destination& destination = group().destination;
    switch (word.action) {
    case Action::SkipGroup:
        destination = Destination::Skip;
        return true;
    case Action::ShownGroup:
        destination = Destination::Body;
        return true;
    case Action::FontTable:
        destination = Destination::Fonts;
        return true;
    case Action::ColourTable:
        destination = Destination::Colours;
        return true;
    case Action::Field:
        m_instruction.clear();
        return true;
    case Action::FieldInstruction:
        destination = Destination::FieldInstruction;
        return true;
    case Action::FieldResult:
        group().character.link = linkOf(m_instruction);
        return true;
    default:
        return false;
    }
}

void Parser::characterWord(const Word& word, std::optional<int> number) {
    CharacterFormat& format = group().character;
    switch (word.action) {
    case Action::Plain: {
        std::string link = std::move(format.link);
        format = {};
        format.link = std::move(link);
        format.font = fontIndex(m_standardFont);
        group().hidden = false;
        break;
    }
    case Action::FontNumber:
        if (group().destination != Destination::Fonts) {
            format.font = fontIndex(number.value_or(0));
        } else if (m_fontIndex.try_emplace(number.value_or(0), static_cast<int>(m_document.fonts.size()))
                       .second) {
            m_document.fonts.emplace_back();
            m_fontPages.push_back(m_page);
        }
        break;
    case Action::FontSize:
        format.halfPoints = std::clamp(number.value_or(24), 2, 800);
        break;
    case Action::Bold:
        format.bold = isOn(number);
        break;
    case Action::Italic:
        format.italic = isOn(number);
        break;
    case Action::Underline:
        format.underline = isOn(number);
        break;
    case Action::NoUnderline:
        format.underline = false;
        break;
    case Action::Strike:
        format.strike = isOn(number);
        break;
    case Action::ScriptKind:
        format.script = isOn(number) ? static_cast<Script>(word.value) : Script::Normal;
        break;
    case Action::Hidden:
        group().hidden = isOn(number);
        break;
    case Action::TextColour:
        format.text = colour(number);
        break;
    case Action::BackColour:
        format.background = colour(number);
        break;
    default:
        break;
    }
}

void Parser::paragraphWord(const Word& word, std::optional<int> number) {
    ParagraphFormat& format = group().paragraph;
    switch (word.action) {
    case Action::ParagraphDefaults:
        format = {};
        group().inTable = false;
        break;
    case Action::Align:
        format.alignment = static_cast<Alignment>(word.value);
        break;
    case Action::LeftIndent:
        format.left = length(number);
        break;
    case Action::RightIndent:
        format.right = length(number);
        break;
    case Action::FirstIndent:
        format.first = length(number);
        break;
    case Action::SpaceBefore:
        format.before = length(number);
        break;
    case Action::SpaceAfter:
        format.after = length(number);
        break;
    case Action::Outline:
        format.outline = std::clamp(number.value_or(0), -1, 8);
        break;
    case Action::TabStop:
        if (format.tabs.size() < kMostTabs) format.tabs.push_back(length(number));
        break;
    case Action::ParagraphEnd:
        endParagraph();
        break;
    case Action::SectionEnd:
        if (!m_runs.empty()) endParagraph();
        break;
    default:
        break;
    }
}

void Parser::tableWord(const Word& word, std::optional<int> number) {
    const auto part = static_cast<std::uint8_t>(std::clamp(number.value_or(0), 0, 255));
    const auto mixed = [this]() -> Colour& { return m_nextColour ? *m_nextColour : m_nextColour.emplace(); };
    switch (word.action) {
    case Action::InTable:
        group().inTable = true;
        break;
    case Action::RowDefaults:
        m_edges.clear();
        break;
    case Action::CellEdge:
        if (m_edges.size() < kMostCells) m_edges.push_back(length(number));
        break;
    case Action::CellEnd:
        endCell();
        break;
    case Action::RowEnd:
        endRow();
        break;
    case Action::NestedCellEnd:
        text("\t");
        break;
    case Action::Charset:
        if (!m_fontPages.empty()) m_fontPages.back() = pageOfCharset(number.value_or(1), m_page);
        break;
    case Action::FontPage:
        if (!m_fontPages.empty() && number.value_or(0) > 0) m_fontPages.back() = *number;
        break;
    case Action::FontFamily:
        if (!m_document.fonts.empty()) m_document.fonts.back().family = static_cast<Family>(word.value);
        break;
    case Action::Red:
        mixed().red = part;
        break;
    case Action::Green:
        mixed().green = part;
        break;
    case Action::Blue:
        mixed().blue = part;
        break;
    default:
        break;
    }
}

void Parser::endParagraph() {
    Paragraph paragraph{group().paragraph, group().character, std::move(m_runs)};
    m_runs.clear();
    if (group().inTable) {
        m_cell.push_back(std::move(paragraph));
        return;
    }
    endTable();
    m_document.blocks.emplace_back(std::move(paragraph));
}

void Parser::endCell() {
    if (!m_runs.empty() || m_cell.empty()) {
        m_cell.push_back({group().paragraph, group().character, std::move(m_runs)});
        m_runs.clear();
    }
    if (m_row.cells.size() < kMostCells) {
        m_row.cells.push_back(std::move(m_cell));
    } else {
        auto& last = m_row.cells.back();
        std::move(m_cell.begin(), m_cell.end(), std::back_inserter(last));
    }
    m_cell.clear();
}

void Parser::endRow() {
    if (m_row.cells.empty()) return;
    m_row.edges = m_edges;
    m_table.rows.push_back(std::move(m_row));
    m_row = {};
}

void Parser::endTable() {
    if (!m_cell.empty()) endCell();
    endRow();
    if (m_table.rows.empty()) return;
    m_document.blocks.emplace_back(std::move(m_table));
    m_table = {};
}

int Parser::fontIndex(int number) const {
    const auto found = m_fontIndex.find(number);
    return found != m_fontIndex.end() ? found->second : -1;
}

int Parser::currentPage() const {
    const Group& current = m_groups.back();
    if (current.destination == Destination::Fonts) return m_fontPages.empty() ? m_page : m_fontPages.back();
    return current.character.font >= 0 ? m_fontPages[static_cast<std::size_t>(current.character.font)]
                                       : m_page;
}

std::optional<Colour> Parser::colour(std::optional<int> number) const {
    const auto index = static_cast<std::size_t>(std::max(0, number.value_or(0)));
    return index < m_colours.size() ? m_colours[index] : std::nullopt;
}

} // namespace rtf
