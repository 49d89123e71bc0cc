#include "sections.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "sheet/book.h"
#include "sheet/sight.h"

#include <algorithm>
#include <tuple>

namespace survey {
namespace {

using sheet::Grid;

// So many single rows are brought up to date one by one; more, and the book is read as a whole.
constexpr std::size_t fewRows = 256;

struct InRoadOrder {
    bool operator()(const GroundPoint& a, const GroundPoint& b) const {
        return std::tie(a.chainage, a.offset, a.row) < std::tie(b.chainage, b.offset, b.row);
    }
};

std::optional<double> number(std::string_view text) {
    if (basic::trim(text).empty() || !basic::isNumber(text)) return std::nullopt;
    try {
        return basic::val(text);
    } catch (const basic::RuntimeError&) {
        return std::nullopt; // beyond all numbers
    }
}

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

/// The column that the transfer takes the point from.
std::optional<sheet::Column> columnOf(const Grid& grid, int row) {
    try {
        const auto point = sheet::pointAt(grid, row, sheet::transferRule);
        return point ? std::optional(point->column) : std::nullopt;
    } catch (const basic::RuntimeError&) {
        return std::nullopt; // an offset beyond all numbers
    }
}

/// Its offset, but nothing for a text that is no number. Whatever stands in Center is offset 0.
std::optional<double> offsetOf(const Grid& grid, int row) {
    const auto column = columnOf(grid, row);
    if (!column) return std::nullopt;
    if (*column == sheet::Center) return 0.0;
    const auto offset = number(grid.Text(row, *column));
    return offset && *column == sheet::Left ? std::optional(0 - *offset) : offset;
}

} // namespace

std::optional<double> chainageMetres(std::string_view text) {
    text = basic::trim(text);
    const auto figures = std::ranges::find_if(text, isDigit);
    text.remove_prefix(static_cast<std::size_t>(figures - text.begin()));
    const std::size_t divider = text.find_first_of("-+");
    if (divider == std::string_view::npos) return number(text);
    const std::string_view metres = text.substr(divider + 1);
    if (metres.empty() || !(isDigit(metres.front()) || metres.front() == '.')) return std::nullopt;
    const auto kilometres = number(text.substr(0, divider));
    const auto rest = number(metres);
    if (!kilometres || !rest) return std::nullopt;
    return *kilometres * 1000 + *rest;
}

Sections::Sections(const Grid& grid) : m_grid(grid) {}

Sections::Place Sections::read(int row) const {
    if (!sheet::isGround(m_grid, row, sheet::transferRule)) return {};
    const auto chainage = chainageMetres(m_grid.Text(row, sheet::Chainage));
    const auto offset = offsetOf(m_grid, row);
    if (!chainage || !offset) return {};
    const std::string& levelText = m_grid.Text(row, sheet::RLevel);
    const auto level = number(levelText);
    if (level) return {{*chainage, *offset, *level, row}, Kind::Ground};
    const bool sighted =
        !m_grid.Text(row, sheet::InterSight).empty() || !m_grid.Text(row, sheet::ForeSight).empty();
    return {{}, levelText.empty() && sighted ? Kind::WithoutLevel : Kind::None};
}

void Sections::readAll() {
    m_points.clear();
    m_places.assign(static_cast<std::size_t>(m_grid.Rows()), {});
    m_withoutLevel = 0;
    for (int row = 1; row < m_grid.Rows(); ++row) {
        const Place& place = m_places[static_cast<std::size_t>(row)] = read(row);
        m_withoutLevel += place.kind == Kind::WithoutLevel;
        if (place.kind == Kind::Ground) m_points.push_back(place.point);
    }
    if (!std::ranges::is_sorted(m_points, InRoadOrder{})) std::ranges::sort(m_points, InRoadOrder{});
    ++m_version;
}

void Sections::update(int row) {
    Place& place = m_places[static_cast<std::size_t>(row)];
    const Place now = read(row);
    if (now.kind == place.kind && now.point == place.point) return;
    const bool inPlace = now.kind == Kind::Ground && place.kind == Kind::Ground &&
                         now.point.chainage == place.point.chainage && now.point.offset == place.point.offset;
    if (inPlace)
        find(place.point)->level = now.point.level;
    else {
        drop(place);
        if (now.kind == Kind::Ground) m_points.insert(find(now.point), now.point);
        m_withoutLevel += now.kind == Kind::WithoutLevel;
    }
    place = now;
    ++m_version;
}

std::vector<GroundPoint>::iterator Sections::find(const GroundPoint& point) {
    return std::ranges::lower_bound(m_points, point, InRoadOrder{});
}

void Sections::drop(const Place& place) {
    if (place.kind == Kind::Ground) m_points.erase(find(place.point));
    m_withoutLevel -= place.kind == Kind::WithoutLevel;
}

void Sections::refresh() {
    if (m_stale || m_touched.size() > fewRows)
        readAll();
    else
        for (const int row : m_touched)
            update(row);
    m_touched.clear();
    m_stale = false;
}

void Sections::textChanged(int row, int col, const std::string&) {
    if (m_stale || row < 1 || col == sheet::HgtInst || col == sheet::BackSight) return;
    if (m_touched.empty() || m_touched.back() != row) m_touched.push_back(row);
    if (m_touched.size() > fewRows) m_stale = true;
}

void Sections::rowsInserted(int row, int count, sheet::Marks) {
    if (m_stale) return;
    if (static_cast<std::size_t>(count) > fewRows) {
        m_stale = true;
        return;
    }
    renumber(row, count);
    m_places.insert(m_places.begin() + row, static_cast<std::size_t>(count), Place{});
    for (int k = 0; k < count; ++k)
        m_touched.push_back(row + k);
}

void Sections::rowsRemoved(int row, const sheet::RemovedRows& before, sheet::Marks) {
    if (m_stale) return;
    const int count = before.count();
    const auto first = m_places.begin() + row;
    for (auto place = first; place != first + count; ++place)
        drop(*place);
    m_places.erase(first, first + count);
    std::erase_if(m_touched, [=](int touched) { return touched >= row && touched < row + count; });
    renumber(row + count, -count);
    ++m_version;
}

// Rows keep their order, and so do the points.
void Sections::renumber(int from, int by) {
    for (int& touched : m_touched)
        if (touched >= from) touched += by;
    for (GroundPoint& point : m_points)
        if (point.row >= from) point.row += by;
    for (auto place = m_places.begin() + std::min(from, from + by); place < m_places.end(); ++place)
        if (place->point.row >= from) place->point.row += by;
}

std::span<const GroundPoint> Sections::points() {
    refresh();
    return m_points;
}

std::span<const GroundPoint> Sections::at(double chainage) {
    refresh();
    const auto [from, to] = std::ranges::equal_range(m_points, chainage, {}, &GroundPoint::chainage);
    return {from, to};
}

std::vector<GroundPoint> Sections::longSection() {
    refresh();
    std::vector<GroundPoint> centre;
    for (const GroundPoint& point : m_points)
        if (point.offset == 0 && (centre.empty() || centre.back().chainage != point.chainage))
            centre.push_back(point);
    return centre;
}

std::optional<GroundPoint> Sections::inRow(int row) {
    refresh();
    if (row < 1 || row >= static_cast<int>(m_places.size())) return std::nullopt;
    const Place& place = m_places[static_cast<std::size_t>(row)];
    return place.kind == Kind::Ground ? std::optional(place.point) : std::nullopt;
}

int Sections::rowsWithoutLevel() {
    refresh();
    return m_withoutLevel;
}

std::size_t Sections::version() {
    refresh();
    return m_version;
}

} // namespace survey
