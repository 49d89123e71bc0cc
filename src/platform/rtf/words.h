#pragma once

#include <cstdint>
#include <string_view>

namespace rtf {

/// What a control word asks for; the words that are not listed ask for nothing.
enum class Action : std::uint8_t {
    // groups with contents of their own
    SkipGroup,
    FontTable,
    ColourTable,
    FieldInstruction,
    FieldResult,
    Field,
    ShownGroup,
    // the document
    Page,
    StandardFont,
    SkipAfterUnicode,
    Unicode,
    Binary,
    Insert,
    // ends
    ParagraphEnd,
    SectionEnd,
    CellEnd,
    RowEnd,
    NestedCellEnd,
    // characters
    Plain,
    FontNumber,
    FontSize,
    Bold,
    Italic,
    Underline,
    NoUnderline,
    Strike,
    ScriptKind,
    Hidden,
    TextColour,
    BackColour,
    // paragraphs
    ParagraphDefaults,
    Align,
    LeftIndent,
    RightIndent,
    FirstIndent,
    SpaceBefore,
    SpaceAfter,
    Outline,
    TabStop,
    InTable,
    RowDefaults,
    CellEdge,
    // font and colour tables
    Charset,
    FontPage,
    FontFamily,
    Red,
    Green,
    Blue,
};

struct Word {
    std::string_view name;
    Action action;
    int value = 0; ///< what tells apart the words of one action
};

/// The entry of a control word; null for a word that the reader does not know.
[[nodiscard]] const Word* findWord(std::string_view name);

} // namespace rtf
