#include "profile.h"

#include "labels.h"

#include <algorithm>
#include <cmath>

namespace drawing {
namespace {

constexpr double crowded = 3; // uprights stand apart by so many of the finest columns

// All in heights of a letter.
constexpr double head = 14;        // width of the words in front of the rows
constexpr double elbow = 2;        // height of the band in which figures that moved aside are led to
constexpr double letterRoom = 1.4; // a figure takes this much of a row

class Drafter {
  public:
    Drafter(std::span<const GroundPlace> ground, const ProfileStyle& style) : m_style(style) {
        if (style.finest > 0)
            m_ground = thinned(ground, style.finest / style.scale.perMetre());
        else
            m_ground.assign(ground.begin(), ground.end());
    }

    ProfileDrawing draw() {
        if (m_ground.empty()) return {};
        m_along = m_style.window ? m_style.window->along : m_ground.front().along;
        if (m_style.window)
            m_drawing.stretches.push_back({0, m_ground.size() - 1, frame(m_style.window->datum)});
        else
            cutIntoStretches();
        for (const Stretch& stretch : m_drawing.stretches)
            drawStretch(stretch);
        for (const GroundPlace& each : m_ground)
            m_x.push_back(x(each));
        const double right =
            m_style.window ? m_style.window->width : std::max(m_x.back(), m_style.textHeight);
        list().line(Layer::Frame, {0, 0}, {right, 0});
        if (m_style.row > 0) drawRows(right);
        return std::move(m_drawing);
    }

  private:
    [[nodiscard]] double x(const GroundPlace& at) const {
        return (at.along - m_along) * m_style.scale.perMetre();
    }
    [[nodiscard]] Frame frame(double datum) const {
        return {{0, 0}, m_along, datum, m_style.scale.perMetre(), m_style.scale.levelPerMetre()};
    }
    [[nodiscard]] DisplayList& list() { return m_drawing.list; }

    void cutIntoStretches() {
        const double perMetre = m_style.scale.levelPerMetre();
        std::size_t first = 0;
        double lowest = m_ground[0].level;
        double highest = lowest;
        const auto close = [&](std::size_t last) {
            m_drawing.stretches.push_back({first, last, frame(datumBelow(lowest, perMetre))});
        };
        for (std::size_t k = 1; k < m_ground.size(); ++k) {
            const double low = std::min(lowest, m_ground[k].level);
            const double high = std::max(highest, m_ground[k].level);
            const bool tooTall =
                m_style.tallest > 0 && (high - datumBelow(low, perMetre)) * perMetre > m_style.tallest;
            // A single step of the ground that is taller than the paper is drawn all the same.
            if (tooTall && k - 1 > first) {
                close(k - 1);
                first = k - 1;
                lowest = std::min(m_ground[k - 1].level, m_ground[k].level);
                highest = std::max(m_ground[k - 1].level, m_ground[k].level);
            } else {
                lowest = low;
                highest = high;
            }
        }
        close(m_ground.size() - 1);
    }

    void drawStretch(const Stretch& stretch) {
        Polyline line{Layer::Ground, {}};
        double lastUpright = -1e300;
        for (std::size_t k = stretch.first; k <= stretch.last; ++k) {
            const Place at = stretch.frame.place(m_ground[k]);
            line.places.push_back(at);
            if (at.x - lastUpright < crowded * m_style.finest) continue;
            list().line(Layer::Grid, {at.x, 0}, at);
            lastUpright = at.x;
        }
        const double h = m_style.textHeight;
        if (line.places.size() == 1) { // a point alone is a short stroke, so that it is seen
            const Place only = line.places.front();
            line.places = {{only.x - h / 4, only.y}, {only.x + h / 4, only.y}};
        }
        const std::string datum = datumText(stretch.frame.datum);
        if (stretch.first == 0) {
            list().text(Layer::Text, {-1.2 * h, 0.5 * h}, h, datum, Align::Right);
        } else {
            const double at = line.places.front().x;
            list().line(Layer::Frame, {at, -h}, {at, line.places.front().y + h});
            const bool fits = at + h + estimatedWidth(datum, h) < x(m_ground.back());
            list().text(Layer::Text, {at + (fits ? 0.5 : -0.5) * h, 0.5 * h}, h, datum,
                        fits ? Align::Left : Align::Right);
        }
        list().polylines.push_back(std::move(line));
    }

    void drawRows(double right) {
        const double h = m_style.textHeight;
        // Of a window the points within it.
        const auto first = static_cast<std::size_t>(std::ranges::lower_bound(m_x, 0.0) - m_x.begin());
        const auto end = static_cast<std::size_t>(std::ranges::upper_bound(m_x, right) - m_x.begin());
        std::vector<double> y;
        for (std::size_t k = first; k < end; ++k)
            y.push_back(m_ground[k].level * m_style.scale.levelPerMetre());
        const bool isChainage = m_style.figures == Figures::Chainage;
        const auto figure = [&](int number, const GroundPlace& at) {
            if (number == 1) return levelText(at.level);
            return isChainage ? chainageText(at.along) : offsetText(at.along);
        };
        const char* heads[] = {isChainage ? "Chainage" : "Offset", "Ground level"};
        for (int number = 0; number < 2; ++number) {
            const double top = -(elbow + number * m_style.row) * h;
            list().line(Layer::Frame, {-headWidth(h), top}, {right, top});
            list().text(Layer::Text, {-1.2 * h, top - (m_style.row + 1) / 2 * h}, h, heads[number],
                        Align::Right);
        }
        list().line(Layer::Frame, {-headWidth(h), -rowsHeight(h, m_style.row)},
                    {right, -rowsHeight(h, m_style.row)});
        const std::span x(m_x.data() + first, y.size());
        for (const Label& label : chooseLabels(x, y, letterRoom * h)) {
            const double at = x[label.point];
            list().line(Layer::Grid, {at, 0}, {label.x, -elbow * h});
            for (int number = 0; number < 2; ++number)
                list().text(Layer::Text, {label.x + h / 2, -(elbow + (number + 1) * m_style.row - 0.5) * h},
                            h, figure(number, m_ground[first + label.point]), Align::Left, 90);
        }
    }

    const ProfileStyle& m_style;
    std::vector<GroundPlace> m_ground;
    double m_along = 0; // where x is 0
    std::vector<double> m_x;
    ProfileDrawing m_drawing;
};

} // namespace

double datumBelow(double lowest, double levelPerMetre, double clearance) {
    const double step = roundStep(2 * clearance / levelPerMetre);
    return std::floor((lowest - clearance / levelPerMetre) / step) * step;
}

double fittingRow(std::span<const GroundPlace> ground, Figures figures) {
    double row = 4;
    if (ground.empty()) return row;
    for (const GroundPlace& at : {ground.front(), ground.back()}) {
        const std::string along =
            figures == Figures::Chainage ? chainageText(at.along) : offsetText(at.along);
        for (const std::string& figure : {along, levelText(at.level)})
            row = std::max(row, estimatedWidth(figure, 1) + 0.7);
    }
    return row;
}

double headWidth(double textHeight) {
    return head * textHeight;
}

double rowsHeight(double textHeight, double row) {
    return row <= 0 ? 0 : (elbow + 2 * row) * textHeight;
}

std::vector<GroundPlace> thinned(std::span<const GroundPlace> ground, double width) {
    std::vector<GroundPlace> kept;
    for (std::size_t first = 0; first < ground.size();) {
        const double end = ground[first].along + width;
        std::size_t last = first;
        std::size_t low = first;
        std::size_t high = first;
        for (std::size_t k = first + 1; k < ground.size() && ground[k].along < end; ++k) {
            last = k;
            if (ground[k].level < ground[low].level) low = k;
            if (ground[k].level > ground[high].level) high = k;
        }
        std::size_t order[] = {first, std::min(low, high), std::max(low, high), last};
        for (std::size_t k = 0; k < 4; ++k)
            if (k == 0 || order[k] != order[k - 1]) kept.push_back(ground[order[k]]);
        first = last + 1;
    }
    return kept;
}

ProfileDrawing drawProfile(std::span<const GroundPlace> ground, const ProfileStyle& style) {
    return Drafter(ground, style).draw();
}

} // namespace drawing
