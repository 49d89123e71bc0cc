#include "sheets.h"
#include "title_strip.h"

#include <cmath>
#include <span>

namespace drawing {
namespace {

constexpr double aboveGround = 6; // millimetres of a sheet that stay free above the ground

} // namespace

LongSheets::LongSheets(std::vector<GroundPlace> ground, Scale scale, Paper paper, StripTexts texts)
    : m_ground(std::move(ground)), m_paper(paper), m_texts(std::move(texts)) {
    m_style.scale = scale;
    const Box room = roomOn(paper);
    const double h = m_style.textHeight;
    m_style.tallest = room.height() - rowsHeight(h) - 2 * h - aboveGround;
    // Between two points the datum cannot step.
    for (std::size_t k = 1; k < m_ground.size(); ++k)
        while (tooTall(std::abs(m_ground[k].level - m_ground[k - 1].level)))
            m_style.scale.vertical *= 2;
    const double reach = (room.width() - headWidth(h) - 4 * h) / scale.perMetre();
    for (std::size_t first = 0; first < m_ground.size();) {
        std::size_t last = first;
        while (last + 1 < m_ground.size() && m_ground[last + 1].along - m_ground[first].along <= reach)
            ++last;
        m_parts.push_back({first, last});
        if (last + 1 >= m_ground.size()) break;
        // The last station is repeated, unless it stands alone because the next one is too far off.
        first = last > first && m_ground[last + 1].along - m_ground[last].along <= reach ? last : last + 1;
    }
}

/// A round datum may lie a step and its clearance below the ground.
bool LongSheets::tooTall(double rise) const {
    const double perMetre = m_style.scale.levelPerMetre();
    return rise * perMetre + 5 + roundStep(10 / perMetre) * perMetre > m_style.tallest;
}

DisplayList LongSheets::sheet(int index) const {
    const Part part = m_parts.at(static_cast<std::size_t>(index));
    const std::span<const GroundPlace> ground(m_ground.data() + part.first, part.last - part.first + 1);
    const Box room = roomOn(m_paper);
    const double h = m_style.textHeight;
    DisplayList list;
    list.add(drawProfile(ground, m_style).list,
             {room.left + headWidth(h) + 1.5 * h, room.bottom + rowsHeight(h) + h});
    drawStrip(
        list, m_paper, m_texts,
        "Long section " + chainageText(ground.front().along) + " to " + chainageText(ground.back().along),
        scaleText(m_style.scale) + ", " + exaggerationText(m_style.scale.horizontal / m_style.scale.vertical),
        index + 1, count());
    return list;
}

} // namespace drawing
