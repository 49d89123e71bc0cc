#include "words.h"

#include "document.h"

#include <algorithm>
#include <array>

namespace rtf {

namespace {

constexpr int of(Alignment alignment) {
    return static_cast<int>(alignment);
}
constexpr int of(Family family) {
    return static_cast<int>(family);
}
constexpr int of(Script script) {
    return static_cast<int>(script);
}

constexpr auto kWords = [] {
    std::array words{
        Word{"footnote", Action::SkipGroup},
        Word{"annotation", Action::SkipGroup},
        Word{"header", Action::SkipGroup},
        Word{"headerl", Action::SkipGroup},
        Word{"headerr", Action::SkipGroup},
        Word{"headerf", Action::SkipGroup},
        Word{"footer", Action::SkipGroup},
        Word{"footerl", Action::SkipGroup},
        Word{"footerr", Action::SkipGroup},
        Word{"footerf", Action::SkipGroup},
        Word{"stylesheet", Action::SkipGroup},
        Word{"info", Action::SkipGroup},
        Word{"pict", Action::SkipGroup},
        Word{"objdata", Action::SkipGroup},
        Word{"objclass", Action::SkipGroup},
        Word{"objname", Action::SkipGroup},
        Word{"nonshppict", Action::SkipGroup},
        Word{"nonesttables", Action::SkipGroup},
        Word{"falt", Action::SkipGroup},
        Word{"filetbl", Action::SkipGroup},
        Word{"listtable", Action::SkipGroup},
        Word{"listoverridetable", Action::SkipGroup},
        Word{"revtbl", Action::SkipGroup},
        Word{"template", Action::SkipGroup},
        Word{"private", Action::SkipGroup},
        Word{"xe", Action::SkipGroup},
        Word{"tc", Action::SkipGroup},
        Word{"tcn", Action::SkipGroup},
        Word{"rxe", Action::SkipGroup},
        Word{"txe", Action::SkipGroup},
        Word{"ftnsep", Action::SkipGroup},
        Word{"ftnsepc", Action::SkipGroup},
        Word{"aftnsep", Action::SkipGroup},
        Word{"sn", Action::SkipGroup},
        Word{"sv", Action::SkipGroup},
        Word{"fonttbl", Action::FontTable},
        Word{"colortbl", Action::ColourTable},
        Word{"field", Action::Field},
        Word{"fldinst", Action::FieldInstruction},
        Word{"fldrslt", Action::FieldResult},
        Word{"shptxt", Action::ShownGroup},
        Word{"result", Action::ShownGroup},

        Word{"ansi", Action::Page, 1252},
        Word{"mac", Action::Page, 10000},
        Word{"pc", Action::Page, 437},
        Word{"pca", Action::Page, 850},
        Word{"ansicpg", Action::Page, 0},
        Word{"deff", Action::StandardFont},
        Word{"uc", Action::SkipAfterUnicode},
        Word{"u", Action::Unicode},
        Word{"bin", Action::Binary},
        Word{"tab", Action::Insert, 0x09},
        Word{"line", Action::Insert, 0x2028},
        Word{"lbr", Action::Insert, 0x2028},
        Word{"bullet", Action::Insert, 0x2022},
        Word{"emdash", Action::Insert, 0x2014},
        Word{"endash", Action::Insert, 0x2013},
        Word{"lquote", Action::Insert, 0x2018},
        Word{"rquote", Action::Insert, 0x2019},
        Word{"ldblquote", Action::Insert, 0x201C},
        Word{"rdblquote", Action::Insert, 0x201D},
        Word{"emspace", Action::Insert, 0x2003},
        Word{"enspace", Action::Insert, 0x2002},
        Word{"qmspace", Action::Insert, 0x2005},

        Word{"par", Action::ParagraphEnd},
        Word{"page", Action::SectionEnd},
        Word{"sect", Action::SectionEnd},
        Word{"column", Action::SectionEnd},
        Word{"cell", Action::CellEnd},
        Word{"row", Action::RowEnd},
        Word{"nestcell", Action::NestedCellEnd},
        Word{"nestrow", Action::ParagraphEnd},

        Word{"plain", Action::Plain},
        Word{"f", Action::FontNumber},
        Word{"fs", Action::FontSize},
        Word{"b", Action::Bold},
        Word{"i", Action::Italic},
        Word{"ul", Action::Underline},
        Word{"uld", Action::Underline},
        Word{"uldash", Action::Underline},
        Word{"uldashd", Action::Underline},
        Word{"uldashdd", Action::Underline},
        Word{"uldb", Action::Underline},
        Word{"ulth", Action::Underline},
        Word{"ulw", Action::Underline},
        Word{"ulwave", Action::Underline},
        Word{"ulnone", Action::NoUnderline},
        Word{"strike", Action::Strike},
        Word{"striked", Action::Strike},
        Word{"super", Action::ScriptKind, of(Script::Super)},
        Word{"sub", Action::ScriptKind, of(Script::Sub)},
        Word{"nosupersub", Action::ScriptKind, of(Script::Normal)},
        Word{"v", Action::Hidden},
        Word{"deleted", Action::Hidden},
        Word{"cf", Action::TextColour},
        Word{"cb", Action::BackColour},
        Word{"chcbpat", Action::BackColour},
        Word{"highlight", Action::BackColour},

        Word{"pard", Action::ParagraphDefaults},
        Word{"ql", Action::Align, of(Alignment::Left)},
        Word{"qr", Action::Align, of(Alignment::Right)},
        Word{"qc", Action::Align, of(Alignment::Center)},
        Word{"qj", Action::Align, of(Alignment::Justify)},
        Word{"li", Action::LeftIndent},
        Word{"lin", Action::LeftIndent},
        Word{"ri", Action::RightIndent},
        Word{"rin", Action::RightIndent},
        Word{"fi", Action::FirstIndent},
        Word{"sb", Action::SpaceBefore},
        Word{"sa", Action::SpaceAfter},
        Word{"outlinelevel", Action::Outline},
        Word{"tx", Action::TabStop},
        Word{"intbl", Action::InTable},
        Word{"trowd", Action::RowDefaults},
        Word{"cellx", Action::CellEdge},

        Word{"fcharset", Action::Charset},
        Word{"cpg", Action::FontPage},
        Word{"froman", Action::FontFamily, of(Family::Serif)},
        Word{"fswiss", Action::FontFamily, of(Family::Sans)},
        Word{"fmodern", Action::FontFamily, of(Family::Mono)},
        Word{"red", Action::Red},
        Word{"green", Action::Green},
        Word{"blue", Action::Blue},
    };
    std::sort(words.begin(), words.end(), [](const Word& a, const Word& b) { return a.name < b.name; });
    return words;
}();

} // namespace

const Word* findWord(std::string_view name) {
    const auto found =
        std::lower_bound(kWords.begin(), kWords.end(), name,
                         [](const Word& word, std::string_view key) { return word.name < key; });
    return found != kWords.end() && found->name == name ? &*found : nullptr;
}

} // namespace rtf
