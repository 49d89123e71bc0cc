#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

// A rich-text document as far as a reader of help texts needs it. Lengths are twips, sizes half points, texts
// UTF-8. Within a run a tab is U+0009 and a line break U+2028. The format is Rich Text Format (RTF),
// version 1.9.1, as Microsoft published it in 2008.

namespace rtf {

enum class Alignment : std::uint8_t { Left, Right, Center, Justify };
enum class Script : std::uint8_t { Normal, Super, Sub };
enum class Family : std::uint8_t { Any, Serif, Sans, Mono };

struct Colour {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;
    friend bool operator==(const Colour&, const Colour&) = default;
};

struct Font {
    std::string name;
    Family family = Family::Any;
};

struct CharacterFormat {
    int font = -1; ///< index into Document::fonts, -1 for the reader's own font
    int halfPoints = 24;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    bool strike = false;
    Script script = Script::Normal;
    std::optional<Colour> text;       ///< none: the reader's own text colour
    std::optional<Colour> background; ///< none: the paper
    std::string link;                 ///< target of a hyperlink, empty outside one
    friend bool operator==(const CharacterFormat&, const CharacterFormat&) = default;
};

struct ParagraphFormat {
    Alignment alignment = Alignment::Left;
    int left = 0;
    int right = 0;
    int first = 0; ///< added to `left` on the first line; negative hangs
    int before = 0;
    int after = 0;
    int outline = -1; ///< heading level from 0, -1 for body text
    std::vector<int> tabs;
    friend bool operator==(const ParagraphFormat&, const ParagraphFormat&) = default;
};

struct Run {
    std::string text;
    CharacterFormat format;
};

struct Paragraph {
    ParagraphFormat format;
    CharacterFormat mark; ///< of the paragraph's end: the size of an empty line
    std::vector<Run> runs;
};

struct Row {
    std::vector<std::vector<Paragraph>> cells;
    std::vector<int> edges; ///< right edges of the cells; may be shorter than cells
};

struct Table {
    std::vector<Row> rows;
};

using Block = std::variant<Paragraph, Table>;

struct Document {
    std::vector<Font> fonts;
    std::vector<Block> blocks;
};

/// Reads any bytes; never fails. What is no rich text at all becomes one paragraph a line. Pictures, headers,
/// footers, notes and unknown groups are left out; nested tables come as text.
[[nodiscard]] Document read(std::string_view bytes);

/// The texts alone, a line for each paragraph, cells separated by tabs.
[[nodiscard]] std::string plainText(const Document& document);

} // namespace rtf
