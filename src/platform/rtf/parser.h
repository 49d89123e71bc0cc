#pragma once

#include "code_page.h"
#include "document.h"
#include "tokens.h"
#include "words.h"

#include <unordered_map>
#include <utility>

namespace rtf {

/// Walks the tokens of one rich-text source and builds its document.
class Parser {
  public:
    explicit Parser(std::string_view source);
    Document run();

  private:
    enum class Destination : std::uint8_t { Body, Skip, Fonts, Colours, FieldInstruction };

    /// What a group inherits from the one around it and gives back at its end.
    struct Group {
        Destination destination = Destination::Body;
        CharacterFormat character;
        ParagraphFormat paragraph;
        bool hidden = false;
        bool inTable = false;
        bool optional = false; ///< opened by \*: left out as a whole unless its first word is known
        int unicodeSkip = 1;
    };

    [[nodiscard]] Group& group() { return m_groups.back(); }
    void open();
    bool close();
    void word(const Token& token);
    void characterWord(const Word& word, std::optional<int> number);
    void paragraphWord(const Word& word, std::optional<int> number);
    void tableWord(const Word& word, std::optional<int> number);
    bool groupWord(const Word& word);
    void symbol(char c);
    void bytes(std::string_view text);
    void unicode(int value);
    void text(std::string_view utf8);
    void character(char32_t c);
    void flush();

    void endParagraph();
    void endCell();
    void endRow();
    void endTable();
    [[nodiscard]] int currentPage() const;
    [[nodiscard]] std::optional<Colour> colour(std::optional<int> number) const;
    [[nodiscard]] int fontIndex(int number) const;

    Tokens m_tokens;
    Document m_document;
    CodePage m_codePage;
    std::vector<Group> m_groups;
    std::size_t m_tooDeep = 0; ///< open groups beyond the depth that is followed

    int m_page = 1252;
    int m_standardFont = 0;
    std::unordered_map<int, int> m_fontIndex; ///< font number in the source to index in the document
    std::vector<int> m_fontPages;
    std::vector<std::optional<Colour>> m_colours;
    std::optional<Colour> m_nextColour;

    std::string m_pending; ///< bytes of text that wait for their code page
    int m_skip = 0;        ///< characters still to leave out behind \u
    int m_highSurrogate = 0;
    std::string m_instruction;

    std::vector<Run> m_runs;
    std::vector<Paragraph> m_cell;
    Row m_row;
    std::vector<int> m_edges;
    Table m_table;
};

} // namespace rtf
