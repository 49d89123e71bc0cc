#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace tables {

/// A number format of a workbook (ECMA-376 part 1, 18.8.31: "0.000", "00\-000", "[Red]-0.00;0", "d-mmm-yy")
/// and what a value looks like in it. Month names are English; colours, alignment blanks and fills are left
/// out; a fraction ("# ?/?") is shown as General.
class NumberFormat {
  public:
    NumberFormat() : NumberFormat("General") {}
    explicit NumberFormat(std::string_view code);

    /// A format of the numbers that no file needs to define (18.8.30); General for the others.
    static NumberFormat builtIn(int id);

    [[nodiscard]] bool isDate() const { return !m_sections.empty() && m_sections.front().isDate; }
    /// `epoch1904`: day 0 of a date is 1 January 1904.
    [[nodiscard]] std::string show(double value, bool epoch1904 = false) const;

  private:
    enum class Kind { Literal, Digit, Point, Exponent, General, Text, Date, Elapsed, HalfDay };
    struct Token {
        Kind kind;
        std::string text; ///< the literal, or the letters of a date part
        char placeholder = '0';
    };
    struct Section {
        std::vector<Token> tokens;
        bool isDate = false;
        bool isFraction = false;
        bool groups = false; ///< a comma every three digits
        int thousands = 0;   ///< divided by 1000 so often
        int percents = 0;
        char comparison = 0; ///< of a condition such as [>=100]; 0: none
        bool orEqual = false;
        double limit = 0;
    };

    static Section parseSection(std::string_view code);
    static void parseBracket(Section& section, std::string_view inside);
    static void settleMinutes(Section& section);
    [[nodiscard]] static std::string showNumber(const Section& section, double value);
    [[nodiscard]] static std::string showDate(const Section& section, double value, bool epoch1904);
    [[nodiscard]] const Section& sectionFor(double value, bool& takesSign) const;

    std::vector<Section> m_sections;
};

} // namespace tables
