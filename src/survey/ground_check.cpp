#include "ground_check.h"

#include "reading.h"

#include "basic/numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <utility>

namespace survey {
namespace {

constexpr std::size_t neighbours = 3;      // sections looked at on either side
constexpr std::size_t leastNeighbours = 5; // no verdict with fewer
constexpr double normal = 1.4826;          // median of absolute deviations to a standard deviation
constexpr double leastRoughness = 0.02;    // metres
constexpr double smooth = 0.012;           // metres: ground on which a decimetre stands out
constexpr double sameOffset = 0.005;       // metres
constexpr double standsOut = 5;            // times the roughness
constexpr double standsOutClearly = 8;     // the same for less than a metre
constexpr double leastJump = 0.3;          // metres
constexpr double steep = 0.2;              // along the centre line
constexpr double manyTimes = 6;            // the gradient around
constexpr double steepAcross = 1.5;

double median(std::vector<double>& values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    if (values.size() % 2 == 1) return *middle;
    return (*middle + *std::max_element(values.begin(), middle)) / 2;
}

/// Readings are in millimetres, so that halves of a centimetre are common: which way they go must not depend
/// on what a sum has left in the last digits.
std::string metres(double value, basic::Pattern form = basic::pattern("0.00")) {
    return basic::format(std::round(std::abs(value) * 1e5) / 1e5, form) + " m";
}

/// How far a reading with two neighbouring digits swapped would be from the one that was keyed.
std::vector<double> swaps(std::string_view text) {
    std::vector<double> differences;
    if (text.size() > 12 || !basic::isNumber(text)) return differences;
    const double keyed = basic::val(text);
    std::string other(text);
    for (std::size_t at = 0; at + 1 < other.size(); ++at) {
        std::size_t next = at + 1;
        if (other[next] == '.') ++next;
        const auto isDigit = [&](std::size_t place) {
            return place < other.size() && other[place] >= '0' && other[place] <= '9';
        };
        if (!isDigit(at) || !isDigit(next) || other[at] == other[next]) continue;
        std::swap(other[at], other[next]);
        differences.push_back(basic::val(other) - keyed);
        std::swap(other[at], other[next]);
    }
    return differences;
}

} // namespace

GroundCheck::GroundCheck(std::vector<ShapeSection> sections, std::vector<ShapePoint> points,
                         std::function<std::string_view(int row)> readingText)
    : m_sections(std::move(sections)),
      m_points(std::move(points)),
      m_readingText(std::move(readingText)),
      m_residuals(m_points.size(), nothing),
      m_misread(m_sections.size()) {}

std::span<const ShapePoint> GroundCheck::pointsOf(std::size_t section) const {
    const ShapeSection& each = m_sections[section];
    return std::span(m_points).subspan(each.begin, each.end - each.begin);
}

/// The sections of one group nearest to a section; at the ends of a group the window is shifted inwards.
GroundCheck::Window GroundCheck::around(std::size_t section) const {
    const int group = m_sections[section].group;
    std::size_t before = 0;
    while (before < 2 * neighbours && before < section && m_sections[section - before - 1].group == group)
        ++before;
    std::size_t behind = 0;
    while (behind < 2 * neighbours && section + behind + 1 < m_sections.size() &&
           m_sections[section + behind + 1].group == group)
        ++behind;
    const std::size_t right = std::min(behind, 2 * neighbours - std::min(before, neighbours));
    const std::size_t left = std::min(before, 2 * neighbours - right);
    return {section - left, section + right + 1};
}

/// The usual difference between an end of the sections around and its inner neighbour.
double GroundCheck::endMedian(std::size_t section, bool left, const Window& window) {
    m_sorted.clear();
    for (std::size_t other = window.from; other < window.to; ++other) {
        const auto points = pointsOf(other);
        if (other == section || points.size() < 2) continue;
        m_sorted.push_back(left ? points[0].level - points[1].level
                                : points.back().level - points[points.size() - 2].level);
    }
    return m_sorted.empty() ? nothing : median(m_sorted);
}

/// The level of a point less the line through the points of its offset in the sections before and after, or
/// at an end of the road in the two next to it.
double GroundCheck::along(std::size_t section, const ShapePoint& point) const {
    const std::size_t count = m_sections.size();
    if (count < 3) return nothing;
    const std::size_t a = section == 0 ? 1 : section + 1 == count ? section - 2 : section - 1;
    const std::size_t b = section == 0 ? 2 : section + 1 == count ? section - 1 : section + 1;
    const auto same = [&](std::size_t other) -> const ShapePoint* {
        if (m_sections[other].group != m_sections[section].group) return nullptr;
        for (const ShapePoint& each : pointsOf(other))
            if (std::abs(each.offset - point.offset) < sameOffset) return &each;
        return nullptr;
    };
    const ShapePoint* first = same(a);
    const ShapePoint* second = same(b);
    const double length = m_sections[b].chainage - m_sections[a].chainage;
    if (first == nullptr || second == nullptr || length == 0) return nothing;
    const double share = (m_sections[section].chainage - m_sections[a].chainage) / length;
    return point.level - (first->level + (second->level - first->level) * share);
}

void GroundCheck::residuals(std::size_t section) {
    const auto points = pointsOf(section);
    double* residual = m_residuals.data() + m_sections[section].begin;
    if (points.size() == 1) {
        residual[0] = along(section, points[0]);
        return;
    }
    const Window window = around(section);
    for (std::size_t k = 0; k < points.size(); ++k) {
        if (k == 0 || k + 1 == points.size()) {
            const ShapePoint& inner = points[k == 0 ? 1 : k - 1];
            residual[k] = points[k].level - inner.level - endMedian(section, k == 0, window);
            continue;
        }
        const ShapePoint& left = points[k - 1];
        const ShapePoint& right = points[k + 1];
        const double width = right.offset - left.offset;
        if (width <= 0) continue;
        const double share = (points[k].offset - left.offset) / width;
        residual[k] = points[k].level - (left.level + (right.level - left.level) * share);
    }
}

/// The spread of the residuals around a point, without its own; NaN when there is too little to say.
double GroundCheck::roughness(std::size_t point, const Window& window) {
    if (window.to - window.from <= leastNeighbours) return nothing;
    m_sorted.clear();
    for (std::size_t other = window.from; other < window.to; ++other)
        for (std::size_t k = m_sections[other].begin; k < m_sections[other].end; ++k)
            if (k != point && !std::isnan(m_residuals[k])) m_sorted.push_back(std::abs(m_residuals[k]));
    return m_sorted.empty() ? nothing : normal * median(m_sorted);
}

/// How much a section's points stand out, across and along the road.
double GroundCheck::unrest(std::size_t section) const {
    double sum = 0;
    for (std::size_t point = m_sections[section].begin; point < m_sections[section].end; ++point)
        for (const double each : {m_residuals[point], along(section, m_points[point])})
            sum += std::isnan(each) ? 0 : std::abs(each);
    return sum;
}

/// The point whose correction by whole metres, or whose absence of one below a metre, calms its section most:
/// a misread point pulls its neighbours' residuals along.
std::optional<std::size_t> GroundCheck::mostLikely(std::size_t section) {
    const ShapeSection& own = m_sections[section];
    std::optional<std::size_t> most;
    double least = std::numeric_limits<double>::infinity();
    const std::vector<double> before(m_residuals.begin() + static_cast<std::ptrdiff_t>(own.begin),
                                     m_residuals.begin() + static_cast<std::ptrdiff_t>(own.end));
    for (std::size_t point = own.begin; point < own.end; ++point) {
        const double r = before[point - own.begin];
        if (std::isnan(r)) continue;
        const double level = m_points[point].level;
        m_points[point].level -= std::abs(r) >= 0.5 ? std::round(r) : r;
        residuals(section);
        const double rest = unrest(section);
        m_points[point].level = level;
        if (rest >= least) continue;
        least = rest;
        most = point;
    }
    std::ranges::copy(before, m_residuals.begin() + static_cast<std::ptrdiff_t>(own.begin));
    return most;
}

/// The one reading of a section that is most likely misread.
bool GroundCheck::misread(std::size_t section, std::vector<Finding>& found) {
    constexpr double leastResidual = 0.09;
    const ShapeSection& own = m_sections[section];
    bool stands = false;
    for (std::size_t point = own.begin; point < own.end; ++point)
        stands = stands || std::abs(m_residuals[point]) >= leastResidual;
    const std::optional<std::size_t> most = stands ? mostLikely(section) : std::nullopt;
    if (!most) return false;
    const double raw = roughness(*most, around(section));
    const double rough = std::max(raw, leastRoughness);
    const double r = m_residuals[*most];
    const double size = std::abs(r);
    if (std::isnan(raw) || size < standsOut * rough) return false;

    const int row = m_points[*most].row;
    const auto say = [&](FindingRule rule, const char* question) {
        found.push_back(
            {row, FindingKind::Hint, rule,
             metres(r) + (r > 0 ? " above" : " below") + " what the sections around let expect: " + question,
             0, 0});
        return true;
    };
    // On rough ground a metre that stands out only just must be one by its figure, across or along the road.
    const double whole = std::round(size);
    const double wide = std::max(0.15, 3 * rough);
    const double close = std::min(wide, 0.25);
    const double line = along(section, m_points[*most]) * (r < 0 ? -1 : 1);
    const bool isWhole =
        size >= standsOutClearly * rough ? std::abs(size - whole) <= wide : std::abs(size - whole) <= close;
    if (whole >= 1 && size >= 0.75 && (isWhole || std::abs(line - whole) <= close))
        return say(FindingRule::Metre, "a whole metre misread?");
    if (raw > smooth || size < standsOutClearly * rough) return false;
    const double near = std::max(0.015, 3 * raw);
    const auto explains = [&](double difference) { return std::abs(difference - r) <= near; };
    if (std::ranges::any_of(swaps(m_readingText(row)), explains))
        return say(FindingRule::SwappedDigits, "digits swapped?");
    if (std::abs(size - std::round(size * 10) / 10) <= near)
        return say(FindingRule::Decimetre, "a decimetre misread?");
    return false;
}

void GroundCheck::jumpAcross(std::size_t section, std::vector<Finding>& found) const {
    const auto points = pointsOf(section);
    std::optional<std::size_t> worst;
    double size = leastJump;
    for (std::size_t k = 1; k < points.size(); ++k) {
        const double width = points[k].offset - points[k - 1].offset;
        const double step = std::abs(points[k].level - points[k - 1].level);
        if (width <= 0 || step <= size || step <= steepAcross * width)
            continue; // one point read twice is told apart
        size = step;
        worst = k;
    }
    if (!worst) return;
    const ShapePoint& a = points[*worst - 1];
    const ShapePoint& b = points[*worst];
    const ShapePoint& outer = std::abs(a.offset) > std::abs(b.offset) ? a : b;
    found.push_back({outer.row, FindingKind::Hint, FindingRule::JumpAcross,
                     "The level jumps by " + metres(b.level - a.level) + " within " +
                         metres(b.offset - a.offset) + " of the section",
                     0, 0});
}

void GroundCheck::jumpAlong(std::size_t section, std::vector<Finding>& found) {
    const auto centre = [&](std::size_t each) -> const ShapePoint* {
        for (const ShapePoint& point : pointsOf(each))
            if (point.offset == 0) return &point;
        return nullptr;
    };
    const auto gradient = [&](std::size_t each) {
        if (m_sections[each].group != m_sections[each - 1].group) return nothing;
        const ShapePoint* a = centre(each - 1);
        const ShapePoint* b = centre(each);
        const double length = std::abs(m_sections[each].chainage - m_sections[each - 1].chainage);
        if (a == nullptr || b == nullptr || length == 0) return nothing;
        return std::abs(b->level - a->level) / length;
    };
    if (section == 0) return;
    const double own = gradient(section);
    if (std::isnan(own) || own <= steep) return;
    const double step = centre(section)->level - centre(section - 1)->level;
    if (std::abs(step) <= leastJump) return;
    m_sorted.clear();
    const std::size_t last = std::min(section + neighbours, m_sections.size() - 1);
    for (std::size_t other = section > neighbours ? section - neighbours : 1; other <= last; ++other)
        if (const double each = gradient(other); other != section && !std::isnan(each))
            m_sorted.push_back(each);
    if (m_sorted.size() < 2 || own <= manyTimes * median(m_sorted)) return;
    found.push_back(
        {centre(section)->row, FindingKind::Hint, FindingRule::JumpAlong,
         "The centre line jumps by " + metres(step) + " within " +
             metres(m_sections[section].chainage - m_sections[section - 1].chainage, basic::pattern("0.##")),
         0, 0});
}

std::vector<Finding> GroundCheck::find(std::size_t from, std::size_t to) {
    std::vector<Finding> found;
    constexpr std::size_t spread = 2 * neighbours + 1; // of one window, shifted, and one section more
    const std::size_t first = from > spread ? from - spread : 0;
    const std::size_t last = std::min(to + spread, m_sections.size());
    for (std::size_t section = first; section < last; ++section)
        residuals(section);
    // A misread centre jumps twice; once found, it is not told again. So one section more is judged.
    std::vector<Finding> beside;
    if (from > 0) m_misread[from - 1] = misread(from - 1, beside);
    for (std::size_t section = from; section < to; ++section) {
        m_misread[section] = misread(section, found);
        if (m_misread[section]) continue;
        const std::size_t before = found.size();
        jumpAcross(section, found);
        if (found.size() == before && section > 0 && !m_misread[section - 1]) jumpAlong(section, found);
    }
    return found;
}

} // namespace survey
