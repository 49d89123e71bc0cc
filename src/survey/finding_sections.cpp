#include "findings.h"

#include "ground_check.h"

#include "basic/numbers.h"
#include "sheet/book.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

// What is wrong with the sections: their chainages, their points, their shape.

namespace survey {
namespace {

using enum FindingKind;
using Rule = FindingRule;

constexpr double manySteps = 2.5; // a gap, in usual steps

std::string metres(double value) {
    return basic::format(value, basic::pattern("0.##")) + " m";
}

std::string sideText(double offset) {
    return offset == 0  ? std::string("the centre")
           : offset < 0 ? metres(-offset) + " left"
                        : metres(offset) + " right";
}

} // namespace

/// The rows of the section that begins in `start`, in the order of the book.
std::vector<int> Findings::pointsFrom(int start) const {
    std::vector<int> rows;
    const double chainage = m_places[static_cast<std::size_t>(start)].chainage;
    const int end = static_cast<int>(m_places.size());
    for (int row = start; row < end; row = groundBelow(row)) {
        if (m_places[static_cast<std::size_t>(row)].chainage != chainage) break;
        rows.push_back(row);
    }
    return rows;
}

/// A row that names no offset has that of the row before in its section.
double Findings::offsetOf(int row, int start) const {
    for (int each = row; each >= start; --each) {
        const Place& place = m_places[static_cast<std::size_t>(each)];
        if (place.isGround() && !std::isnan(place.offset)) return place.offset;
    }
    return nothing;
}

void Findings::judgeShape(std::size_t from, std::size_t to) {
    to = std::min(to, m_starts.size());
    const int firstRow = from == 0 ? 0 : m_starts[from];
    const int endRow = to < m_starts.size() ? m_starts[to] : static_cast<int>(m_places.size());
    std::erase_if(m_shapeFindings,
                  [&](const Finding& each) { return each.row >= firstRow && each.row < endRow; });
    if (from >= to) return;
    const std::size_t first = from > GroundCheck::reach ? from - GroundCheck::reach : 0;
    const std::size_t last = std::min(to + GroundCheck::reach, m_starts.size());
    std::vector<ShapeSection> sections;
    std::vector<ShapePoint> points;
    sections.reserve(last - first);
    for (std::size_t k = first; k < last; ++k) {
        const int start = m_starts[k];
        const Place& place = m_places[static_cast<std::size_t>(start)];
        // Levels over a broken set-up, and levels without readings, hang on nothing in common.
        const auto breaks = std::ranges::lower_bound(m_breaks, start) - m_breaks.begin();
        const bool sighted = !std::isnan(place.sight);
        ShapeSection section{place.chainage, sighted ? static_cast<int>(breaks) : -1, points.size(), 0};
        for (const int row : pointsFrom(start)) {
            const Place& each = m_places[static_cast<std::size_t>(row)];
            const double offset = offsetOf(row, start);
            if (std::isnan(offset) || std::isnan(each.sight) == sighted) continue;
            points.push_back({row, offset, sighted ? m_runs.rawLevel(row) : each.cell});
        }
        section.end = points.size();
        std::stable_sort(points.begin() + static_cast<std::ptrdiff_t>(section.begin), points.end(),
                         [](const ShapePoint& a, const ShapePoint& b) { return a.offset < b.offset; });
        sections.push_back(section);
    }
    GroundCheck check(std::move(sections), std::move(points), [this](int row) -> std::string_view {
        const std::string& inter = m_grid.Text(row, sheet::InterSight);
        return inter.empty() ? m_grid.Text(row, sheet::ForeSight) : inter;
    });
    for (const Finding& each : check.find(from - first, to - first))
        m_shapeFindings.push_back(finding(each.row, each.kind, each.rule, each.text));

    // Offsets that do not grow outwards, but for sections that were keyed from left to right.
    for (std::size_t k = from; k < to; ++k) {
        int turned = 0;
        bool leftToRight = true;
        bool anyCentre = false;
        double left = 0;
        double right = 0;
        double before = -std::numeric_limits<double>::infinity();
        for (const int row : pointsFrom(m_starts[k])) {
            const double offset = m_places[static_cast<std::size_t>(row)].offset;
            if (std::isnan(offset)) continue;
            leftToRight = leftToRight && offset > before;
            anyCentre = anyCentre || offset == 0;
            before = offset;
            double& outmost = offset < 0 ? left : right;
            if (offset != 0 && std::abs(offset) < outmost && turned == 0) turned = row;
            outmost = std::max(outmost, std::abs(offset));
        }
        if (turned > 0 && !(leftToRight && anyCentre))
            m_shapeFindings.push_back(
                finding(turned, Warning, Rule::OffsetOrder, "The offsets do not grow outwards"));
    }
}

/// Of the section that the cursor stands in or directly below; `nowhere` when there is none.
double Findings::keyedChainage() const {
    const int row = keyedRow();
    if (row < 1 || row >= static_cast<int>(m_places.size())) return nowhere;
    const int ground = m_places[static_cast<std::size_t>(row)].isGround() ? row : groundAbove(row);
    return ground > 0 ? m_places[static_cast<std::size_t>(ground)].chainage : nowhere;
}

/// All sections of one chainage, wherever they stand in the book.
void Findings::judgeChainage(double chainage) {
    std::erase_if(m_chainageFindings, [&](const AtChainage& each) { return each.chainage == chainage; });
    const auto stations = std::ranges::equal_range(m_byChainage, chainage, {}, &Station::chainage);
    if (stations.empty()) return;
    std::vector<std::pair<double, int>> points;
    bool anyCentre = false;
    for (const Station& station : stations)
        for (const int row : pointsFrom(station.row)) {
            const double offset = offsetOf(row, station.row);
            anyCentre = anyCentre || offset == 0;
            if (!std::isnan(offset)) points.emplace_back(offset, row);
        }
    // Without any offset it is a point on a run and no cross-section.
    if (!anyCentre && !points.empty() && chainage != m_keyedChainage)
        m_chainageFindings.push_back(
            {chainage, finding(stations.front().row, Warning, Rule::NoCentre, "A section without a centre")});
    std::ranges::sort(points);
    for (std::size_t k = 1, first = 0; k < points.size(); ++k) {
        if (points[k].first != points[first].first) {
            first = k;
            continue;
        }
        m_chainageFindings.push_back(
            {chainage, about(points[k].second, points[first].second, Rule::SamePoint,
                             "The same point (" + sideText(points[k].first) + ") was read in row ")});
    }
}

void Findings::judgeSteps() {
    m_stepsChanged = false;
    m_stepFindings.clear();
    std::vector<double> steps;
    const auto chainage = [this](std::size_t k) {
        return m_places[static_cast<std::size_t>(m_starts[k])].chainage;
    };
    steps.reserve(m_starts.size());
    for (std::size_t k = 1; k < m_starts.size(); ++k)
        if (const double step = chainage(k) - chainage(k - 1); step > 0) steps.push_back(step);
    if (steps.empty() && m_starts.size() < 2) return;
    double usual = std::numeric_limits<double>::infinity();
    if (!steps.empty()) {
        const auto middle = steps.begin() + static_cast<std::ptrdiff_t>(steps.size() / 2);
        std::nth_element(steps.begin(), middle, steps.end());
        usual = *middle;
    }
    for (std::size_t k = 1; k < m_starts.size(); ++k) {
        const double step = chainage(k) - chainage(k - 1);
        if (step < 0)
            m_stepFindings.push_back(finding(m_starts[k], Warning, Rule::ChainageBack,
                                             "The chainage goes back by " + metres(-step), m_starts[k - 1]));
        else if (step > manySteps * usual + 1e-9)
            m_stepFindings.push_back(finding(m_starts[k], Warning, Rule::ChainageGap,
                                             "A gap of " + metres(step) + " in the chainages",
                                             m_starts[k - 1]));
    }
}

} // namespace survey
