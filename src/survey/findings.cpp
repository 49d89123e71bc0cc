#include "findings.h"

#include "sections.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "sheet/book.h"
#include "sheet/sight.h"

#include <algorithm>
#include <cmath>
#include <utility>

// How the list follows the grid; what is wrong with a row, a section or a run stands in the files beside.

namespace survey {
namespace {

double numberIn(const std::string& text) {
    if (text.empty() || !basic::isNumber(text)) return nothing;
    try {
        return basic::val(text);
    } catch (const basic::RuntimeError&) {
        return nothing;
    }
}

template <typename List, typename RowOf>
void shift(List& list, int at, int by, RowOf rowOf) {
    for (auto& each : list)
        if (rowOf(each) >= at) rowOf(each) += by;
}

template <typename List, typename RowOf>
void drop(List& list, int from, int to, RowOf rowOf) {
    std::erase_if(list, [&](auto& each) { return rowOf(each) >= from && rowOf(each) < to; });
}

constexpr auto itself = [](int& row) -> int& { return row; };
constexpr auto findingRow = [](Finding& each) -> int& { return each.row; };
constexpr auto otherRow = [](auto& each) -> int& { return each.finding.other; };
constexpr auto stationRow = [](auto& each) -> int& { return each.row; };
constexpr auto chainageRow = [](auto& each) -> int& { return each.finding.row; };

} // namespace

Findings::Findings(const sheet::Grid& grid, Runs& runs, Cursor cursor, double staff)
    : m_grid(grid), m_runs(runs), m_cursor(cursor), m_staff(staff) {}

void Findings::setStaff(double metres) {
    m_staff = metres;
    m_stale = true;
}

void Findings::textChanged(int row, int col, const std::string&) {
    if (m_stale || row < 1 || col == sheet::HgtInst) return;
    if (m_touched.empty() || m_touched.back() != row) m_touched.push_back(row);
    if (m_touched.size() > m_places.size() / 8 + 64) m_stale = true;
}

void Findings::rowsInserted(int row, int count, sheet::Marks) {
    if (m_stale) return;
    if (row == 1 || count > 1000) {
        m_stale = true;
        return;
    }
    m_places.insert(m_places.begin() + row, static_cast<std::size_t>(count), Place{});
    m_heights.insert(m_heights.begin() + row, static_cast<std::size_t>(count), nothing);
    shift(m_starts, row, count, itself);
    shift(m_byChainage, row, count, stationRow);
    shift(m_breaks, row, count, itself);
    shift(m_touched, row, count, itself);
    shift(m_dirtyRows, row, count, itself);
    shift(m_rowFindings, row, count, findingRow);
    shift(m_shapeFindings, row, count, findingRow);
    shift(m_chainageFindings, row, count, chainageRow);
    shift(m_chainageFindings, row, count, otherRow);
    m_stepsChanged = m_levelsChanged = true;
    m_runsVersion = 0;
    if (m_lastRead >= row) m_lastRead += count;
    if (m_keyedBefore >= row) m_keyedBefore += count;
    for (int each = row; each < row + count; ++each)
        m_touched.push_back(each);
}

void Findings::rowsRemoved(int row, const sheet::RemovedRows& before, sheet::Marks) {
    if (m_stale) return;
    const int count = before.count();
    if (row == 1 || count > 1000) {
        m_stale = true;
        return;
    }
    const int end = row + count;
    for (int each = row; each < end; ++each)
        if (const Place& place = m_places[static_cast<std::size_t>(each)]; place.isGround())
            m_dirtyChainages.push_back(place.chainage);
    m_places.erase(m_places.begin() + row, m_places.begin() + end);
    m_heights.erase(m_heights.begin() + row, m_heights.begin() + end);
    const auto cut = [&](auto& list, auto rowOf) {
        drop(list, row, end, rowOf);
        shift(list, end, -count, rowOf);
    };
    cut(m_starts, itself);
    cut(m_byChainage, stationRow);
    cut(m_breaks, itself);
    cut(m_touched, itself);
    cut(m_dirtyRows, itself);
    cut(m_rowFindings, findingRow);
    cut(m_shapeFindings, findingRow);
    cut(m_chainageFindings, chainageRow);
    shift(m_chainageFindings, end, -count, otherRow); // one whose row went is judged anew
    m_stepsChanged = m_levelsChanged = true;
    m_runsVersion = 0;
    m_lastRead = m_lastRead >= end ? m_lastRead - count : std::min(m_lastRead, row - 1);
    if (m_keyedBefore >= row) m_keyedBefore = m_keyedBefore >= end ? m_keyedBefore - count : -1;
    // The rows on either side have new neighbours.
    if (row < static_cast<int>(m_places.size())) m_touched.push_back(row);
    m_touched.push_back(row - 1);
    m_dirtyRows.push_back(row - 1);
}

Findings::Place Findings::read(int row) const {
    Place place;
    place.cell = numberIn(m_grid.Text(row, sheet::RLevel));
    const Reading& reading = m_runs.reading(row);
    if (reading.kind != sheet::RowKind::None) {
        place.sight = row == 1 ? 0 : reading.sight;
        // A text that is no number drops its point.
        if (!reading.readable) place.cell = place.sight = nothing;
    }
    if (!sheet::isGround(m_grid, row, sheet::transferRule)) return place;
    if (const auto metres = chainageMetres(m_grid.Text(row, sheet::Chainage))) place.chainage = *metres;
    try {
        if (const auto point = sheet::pointAt(m_grid, row, sheet::transferRule))
            place.offset = point->column == sheet::Center ? 0
                           : point->column == sheet::Left ? -point->offset
                                                          : point->offset;
    } catch (const basic::RuntimeError&) {
        place.chainage = nothing; // no offset that anything could be held against
    }
    if (!place.hasLevel()) place.chainage = nothing;
    return place;
}

void Findings::setPlace(int row) {
    const Place place = m_places[static_cast<std::size_t>(row)] = read(row);
    m_heights[static_cast<std::size_t>(row)] = row > 1 ? place.cell + place.sight : nothing;
}

int Findings::groundAbove(int row) const {
    do
        --row;
    while (row >= 1 && !m_places[static_cast<std::size_t>(row)].isGround());
    return std::max(row, 0);
}

/// The number of rows when there is none.
int Findings::groundBelow(int row) const {
    const int rows = static_cast<int>(m_places.size());
    do
        ++row;
    while (row < rows && !m_places[static_cast<std::size_t>(row)].isGround());
    return row;
}

/// Brings into step whether a section begins in a row.
void Findings::setStart(int row) {
    if (row < 1 || row >= static_cast<int>(m_places.size())) return;
    const Place& place = m_places[static_cast<std::size_t>(row)];
    const int above = groundAbove(row);
    const bool starts = place.isGround() &&
                        (above == 0 || m_places[static_cast<std::size_t>(above)].chainage != place.chainage);
    const auto at = std::ranges::lower_bound(m_starts, row);
    const bool started = at != m_starts.end() && *at == row;
    if (starts && !started) m_starts.insert(at, row);
    if (!starts && started) m_starts.erase(at);
    // Its chainage may be another one although it begins a section as before.
    if (started) std::erase_if(m_byChainage, [row](const Station& each) { return each.row == row; });
    if (starts) {
        const Station station{place.chainage, row};
        m_byChainage.insert(std::ranges::lower_bound(m_byChainage, station), station);
    }
    m_stepsChanged = m_stepsChanged || starts || started;
}

void Findings::judgeTouched() {
    const int keyed = keyedRow();
    std::vector<int> rows;
    std::vector<int> later;
    std::swap(rows, m_touched);
    std::ranges::sort(rows);
    rows.erase(std::ranges::unique(rows).begin(), rows.end());
    for (const int row : rows) {
        if (row == keyed) {
            later.push_back(row);
            continue;
        }
        const Place& place = m_places[static_cast<std::size_t>(row)];
        const Place before = place;
        setPlace(row);
        judgeRow(row);
        m_levelsChanged = true;
        if (before.isGround()) m_dirtyChainages.push_back(before.chainage);
        if (place.isGround()) m_dirtyChainages.push_back(place.chainage);
        setStart(row);
        setStart(groundBelow(row));
        m_dirtyRows.push_back(row);
    }
    m_touched = std::move(later);
}

void Findings::judgeAll() {
    const int rows = m_grid.Rows();
    m_places.assign(static_cast<std::size_t>(rows), Place{});
    m_heights.assign(static_cast<std::size_t>(rows), nothing);
    for (auto* list : {&m_rowFindings, &m_shapeFindings})
        list->clear();
    m_chainageFindings.clear();
    m_starts.clear();
    m_byChainage.clear();
    m_breaks.clear();
    m_touched.clear();
    m_dirtyRows.clear();
    m_dirtyChainages.clear();
    m_lastRead = m_runs.lastRead();
    int above = 0;
    for (int row = 1; row < rows; ++row) {
        setPlace(row);
        const Place& place = m_places[static_cast<std::size_t>(row)];
        judgeRow(row);
        if (!place.isGround()) continue;
        if (above == 0 || m_places[static_cast<std::size_t>(above)].chainage != place.chainage) {
            m_starts.push_back(row);
            m_byChainage.push_back({place.chainage, row});
        }
        above = row;
    }
    std::ranges::sort(m_byChainage);
    judgeShape(0, m_starts.size());
    m_keyedChainage = keyedChainage();
    double last = nothing;
    for (std::size_t k = 0; k < m_byChainage.size(); ++k)
        if (m_byChainage[k].chainage != last) judgeChainage(last = m_byChainage[k].chainage);
    m_stale = false;
    m_stepsChanged = m_levelsChanged = true;
    m_runsVersion = 0;
}

void Findings::refresh() {
    if (m_stale || m_places.size() != static_cast<std::size_t>(m_grid.Rows())) judgeAll();
    const bool onlyKeyed = std::ranges::all_of(m_touched, [&](int row) { return row == keyedRow(); });
    bool changed = false;
    if (!onlyKeyed || !m_dirtyRows.empty() || !m_dirtyChainages.empty()) {
        judgeTouched();
        changed = true;
    }
    const std::size_t runs = m_runs.version();
    if (runs != m_runsVersion) judgeEnds();
    if (m_keyedBefore != keyedRow()) {
        judgeCursor();
        changed = true;
    }
    // A section that is keyed may still get its centre. Which one that is, rows above the cursor decide too.
    if (const double keyed = changed ? keyedChainage() : m_keyedChainage; keyed != m_keyedChainage) {
        for (const double chainage : {keyed, std::exchange(m_keyedChainage, keyed)})
            if (chainage != nowhere) m_dirtyChainages.push_back(chainage);
    }
    if (!m_dirtyRows.empty()) {
        // Sections near each changed row; rows that were changed together lie together.
        std::ranges::sort(m_dirtyRows);
        const auto section = [this](int row) {
            return std::ranges::upper_bound(m_starts, row) - m_starts.begin();
        };
        constexpr std::ptrdiff_t around = 14;
        const auto count = std::ssize(m_starts);
        std::ptrdiff_t from = -1;
        std::ptrdiff_t to = -1;
        for (const int row : m_dirtyRows) {
            const std::ptrdiff_t first = std::max<std::ptrdiff_t>(section(row) - around, 0);
            if (from >= 0 && first > to) judgeShape(std::size_t(from), std::size_t(to));
            if (from < 0 || first > to) from = first;
            to = std::min(section(row) + around, count);
        }
        judgeShape(std::size_t(from), std::size_t(to));
        m_dirtyRows.clear();
    }
    if (!m_dirtyChainages.empty()) {
        std::ranges::sort(m_dirtyChainages);
        const auto rest = std::ranges::unique(m_dirtyChainages);
        m_dirtyChainages.erase(rest.begin(), rest.end());
        for (const double chainage : m_dirtyChainages)
            judgeChainage(chainage);
        m_dirtyChainages.clear();
    }
    if (m_stepsChanged) {
        judgeSteps();
        changed = true;
    }
    if (runs != m_runsVersion) {
        judgeRun();
        m_levelsChanged = changed = true;
        m_runsVersion = runs;
    }
    if (m_levelsChanged) judgeLevels();
    m_levelsChanged = false;
    if (!changed && m_version > 0) return;
    ++m_version;
    collect();
}

void Findings::judgeAgain(int row) {
    if (row < 1 || row >= static_cast<int>(m_places.size())) return;
    const std::size_t breaks = m_breaks.size();
    judgeRow(row);
    if (m_breaks.size() != breaks) m_dirtyRows.push_back(row);
}

/// The end of the run moved: rows before it need both sights.
void Findings::judgeEnds() {
    const int before = std::exchange(m_lastRead, m_runs.lastRead());
    if (before == m_lastRead) return;
    for (int row = std::min(before, m_lastRead); row <= std::max(before, m_lastRead); ++row)
        if (row != keyedRow()) judgeAgain(row);
}

/// The cursor moved: a row that is keyed is no spare row, and the one that was left may be one.
void Findings::judgeCursor() {
    const int keyed = keyedRow();
    for (const int row : {keyed, std::exchange(m_keyedBefore, keyed)}) {
        if (row < 1 || row >= static_cast<int>(m_places.size())) continue;
        if (std::ranges::find(m_touched, row) == m_touched.end()) judgeAgain(row);
    }
    m_levelsChanged = true;
}

void Findings::collect() {
    m_all.clear();
    for (const auto* list :
         {&m_rowFindings, &m_shapeFindings, &m_stepFindings, &m_levelFindings, &m_runFindings})
        m_all.insert(m_all.end(), list->begin(), list->end());
    for (const AtChainage& each : m_chainageFindings)
        m_all.push_back(each.finding);
    for (Finding& each : m_all)
        if (each.other > 0) each.text += std::to_string(each.other);
    std::ranges::stable_sort(m_all, [](const Finding& a, const Finding& b) {
        const bool aLast = a.rule == FindingRule::NotClosed;
        const bool bLast = b.rule == FindingRule::NotClosed;
        if (aLast != bLast) return bLast;
        if (a.row != b.row) return a.row < b.row;
        return a.rule != b.rule ? a.rule < b.rule : a.text < b.text;
    });
}

const std::vector<Finding>& Findings::all() {
    refresh();
    return m_all;
}

std::size_t Findings::version() {
    refresh();
    return m_version;
}

} // namespace survey
