#include "figures.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace shell {

Figures::Figures(const QFont& font) : m_font(font), m_raw(QRawFont::fromFont(font)) {
    const QFontMetricsF metrics(font);
    m_ascent = metrics.ascent();
    m_height = metrics.height();
    QString characters;
    for (char c = first; c <= last; ++c)
        characters.append(QLatin1Char(c));
    const QList<quint32> indexes = m_raw.glyphIndexesForString(characters);
    if (indexes.size() != characters.size()) return;
    double digit = 0;
    for (char c = '0'; c <= '9'; ++c)
        digit = std::max(digit, metrics.horizontalAdvance(QLatin1Char(c)));
    for (char c = first; c <= last; ++c) {
        Glyph& glyph = m_glyphs[std::size_t(c - first)];
        const double advance = metrics.horizontalAdvance(QLatin1Char(c));
        glyph.index = indexes[c - first];
        glyph.advance = c >= '0' && c <= '9' ? digit : advance;
        glyph.shift = (glyph.advance - advance) / 2;
    }
}

bool Figures::knows(std::string_view text) const {
    return std::all_of(text.begin(), text.end(),
                       [this](char c) { return c >= first && c <= last && glyph(c).index != 0; });
}

double Figures::width(std::string_view text) const {
    double width = 0;
    for (const char c : text)
        width += glyph(c).advance;
    return width;
}

void Figures::draw(QPainter& painter, double left, double top, double height, std::string_view text) const {
    QList<quint32> indexes;
    QList<QPointF> places;
    indexes.reserve(qsizetype(text.size()));
    places.reserve(qsizetype(text.size()));
    double x = 0;
    for (const char c : text) {
        const Glyph& part = glyph(c);
        indexes.append(part.index);
        places.append({x + part.shift, 0});
        x += part.advance;
    }
    QGlyphRun run;
    run.setRawFont(m_raw);
    run.setGlyphIndexes(indexes);
    run.setPositions(places);
    const double baseline = top + (height - m_height) / 2 + m_ascent;
    painter.drawGlyphRun({std::round(left), std::round(baseline)}, run);
}

} // namespace shell
