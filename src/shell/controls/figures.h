#pragma once

#include <QFont>
#include <QGlyphRun>
#include <QRawFont>

#include <array>
#include <string_view>

class QPainter;

namespace shell {

/// Draws short plain texts of one font without laying them out anew each time: a screenful of figures is
/// painted on every key that scrolls the grid. Digits all have the width of the widest, so that figures below
/// each other line up.
class Figures {
  public:
    explicit Figures(const QFont& font);

    [[nodiscard]] const QFont& font() const { return m_font; }
    /// True when every character of `text` is one that this draws.
    [[nodiscard]] bool knows(std::string_view text) const;
    [[nodiscard]] double width(std::string_view text) const;
    /// `text`, which it must know, from `left` on; `top` and `height` are those of its line.
    void draw(QPainter& painter, double left, double top, double height, std::string_view text) const;

  private:
    struct Glyph {
        quint32 index = 0;
        double advance = 0;
        double shift = 0; // of a narrow digit, to the middle of its place
    };
    static constexpr char first = ' ';
    static constexpr char last = '~';

    [[nodiscard]] const Glyph& glyph(char character) const {
        return m_glyphs[std::size_t(character - first)];
    }

    QFont m_font;
    QRawFont m_raw;
    double m_ascent;
    double m_height;
    std::array<Glyph, last - first + 1> m_glyphs;
};

} // namespace shell
