#include "section_drawings.h"
#include "sheets.h"
#include "title_strip.h"

#include <algorithm>
#include <array>

namespace drawing {
namespace {

constexpr double textHeight = 2;
constexpr double between = 6; // millimetres between sections
constexpr std::array smaller{1.0, 2.0, 5.0, 10.0, 20.0, 50.0, 100.0};

} // namespace

CrossSheets::CrossSheets(std::vector<CrossSection> sections, Scale scale, Paper paper, StripTexts texts)
    : m_sections(std::move(sections)), m_scale(scale), m_paper(paper), m_texts(std::move(texts)) {
    std::erase_if(m_sections, [](const CrossSection& section) { return section.ground.empty(); });
    layOut();
}

DisplayList CrossSheets::draw(const CrossSection& section, double times) const {
    ProfileStyle style;
    style.scale = {m_scale.horizontal * times, m_scale.vertical * times};
    style.textHeight = textHeight;
    return drawCrossSection(section.chainage, section.ground, style,
                            times > 1 ? "  " + scaleText(style.scale) : std::string())
        .list;
}

void CrossSheets::layOut() {
    const Box room = roomOn(m_paper);
    int sheet = 0;
    double left = room.left + between; // of the column
    double bottom = room.bottom + between;
    double columnWidth = 0;
    for (const CrossSection& section : m_sections) {
        Box box;
        double times = 1;
        for (const double each : smaller) {
            box = draw(section, times = each).bounds();
            if (box.width() + 2 * between <= room.width() && box.height() + 2 * between <= room.height())
                break;
        }
        m_shrunk += times > 1;
        if (bottom + box.height() > room.top - between) { // the column is full
            bottom = room.bottom + between;
            left += columnWidth + between;
            columnWidth = 0;
        }
        if (left + box.width() > room.right - between && left > room.left + between) { // so is the sheet
            ++sheet;
            left = room.left + between;
            bottom = room.bottom + between;
            columnWidth = 0;
        }
        m_blocks.push_back({sheet, {left - box.left, bottom - box.bottom}, times});
        bottom += box.height() + between;
        columnWidth = std::max(columnWidth, box.width());
    }
}

int CrossSheets::count() const {
    return m_blocks.empty() ? 0 : m_blocks.back().sheet + 1;
}

DisplayList CrossSheets::sheet(int index) const {
    const auto [from, to] = std::ranges::equal_range(m_blocks, index, {}, &Block::sheet);
    DisplayList list;
    for (auto block = from; block != to; ++block)
        list.add(draw(m_sections[static_cast<std::size_t>(block - m_blocks.begin())], block->times),
                 block->at);
    const auto section = [this](auto block) {
        return chainageText(m_sections[static_cast<std::size_t>(block - m_blocks.begin())].chainage);
    };
    if (from != to)
        drawStrip(list, m_paper, m_texts, "Cross-sections " + section(from) + " to " + section(to - 1),
                  scaleText(m_scale), index + 1, count());
    return list;
}

} // namespace drawing
