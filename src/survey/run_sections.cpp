#include "runs.h"

#include "basic/numbers.h"
#include "basic/strings.h"
#include "sheet/book.h"

#include <algorithm>
#include <cmath>

// Marks with known levels, and the sections between them.

namespace survey {
namespace {

using sheet::RowKind;

constexpr double farOff = 1; // metres: a level that far from the found one belongs to another point

bool differ(double a, double b) {
    return std::abs(a - b) > 1e-9;
}

std::string nameIn(const std::string& remark) {
    if (const auto known = sheet::knownLevelIn(remark)) return std::string(known->name);
    return std::string(basic::trim(remark));
}

/// What the readings say of the way from one mark to another one.
template <typename Mark>
RunSection between(const Mark& from, const Mark& to) {
    RunSection section;
    section.from = from.name;
    section.to = to.name;
    section.fromRow = from.row;
    section.toRow = to.row;
    section.setups = to.setup - from.setup;
    section.found = from.known + to.raw - from.raw;
    section.known = to.known;
    section.misclosureMm = (section.found - to.known) * 1000;
    return section;
}

} // namespace

void Runs::addMark(int row, double known) {
    if (row > m_lastSight || !m_rows[static_cast<std::size_t>(row)].readable ||
        m_rows[static_cast<std::size_t>(row)].kind == RowKind::None)
        return;
    std::string name = nameIn(m_grid.Text(row, sheet::Remark));
    if (!m_marks.empty() && m_marks.back().row == row) {
        const Mark& first = m_marks.back();
        if (differ(known, first.known))
            m_contradictions.push_back({row, row, std::move(name), known, first.known});
        return;
    }
    m_marks.push_back({row, setupAt(row), rawAt(row), known, distanceAt(row), isTurn(row), std::move(name)});
}

/// The first level given for a name holds for the name.
void Runs::settleNames() {
    std::vector<std::pair<std::string_view, const Mark*>> firsts;
    for (const Mark& mark : m_marks)
        if (!mark.name.empty()) firsts.emplace_back(mark.name, &mark);
    std::ranges::stable_sort(firsts, {}, &std::pair<std::string_view, const Mark*>::first);
    for (Mark& mark : m_marks) {
        if (mark.name.empty()) continue;
        const Mark& first =
            *std::ranges::lower_bound(firsts, std::string_view(mark.name), {}, [](const auto& each) {
                 return each.first;
             })->second;
        if (!differ(mark.known, first.known)) continue;
        m_contradictions.push_back({mark.row, first.row, mark.name, mark.known, first.known});
        mark.known = first.known;
    }
}

void Runs::collectMarks() {
    m_marks.clear();
    m_contradictions.clear();
    if (m_usable == 0) return;
    // The book's own level of a point stands before one that was added to it.
    std::vector<std::pair<int, double>> added = m_closing.known;
    std::ranges::stable_sort(added, {}, &std::pair<int, double>::first);
    auto next = added.begin();
    const auto addUpTo = [&](int row) {
        for (; next != added.end() && next->first < row; ++next)
            addMark(next->first, next->second);
    };
    for (const int row : m_knownRows) {
        addUpTo(row);
        addMark(row, m_rows[static_cast<std::size_t>(row)].known);
        const auto said = row == 1 ? sheet::knownLevelIn(m_grid.Text(1, sheet::Remark)) : std::nullopt;
        if (said) addMark(row, said->level);
    }
    addUpTo(m_lastSight + 1);
    settleNames();
    if (m_marks.empty() || m_marks.back().closes || m_marks.back().row != m_lastSight || m_stoppedAt != 0)
        return;
    // The last sight of the book closes on an I.S. too, unless it can hardly be that mark.
    Mark& last = m_marks.back();
    const auto from =
        std::find_if(m_marks.rbegin(), m_marks.rend(), [](const Mark& mark) { return mark.closes; });
    last.closes =
        from != m_marks.rend() && std::abs(from->known + last.raw - from->raw - last.known) <= farOff;
}

/// The road between two marks; nothing when a set-up between them sights no row with a chainage.
std::optional<double> Runs::chainageLength(const Mark& from, const Mark& to) const {
    const Turn& first = m_turns[static_cast<std::size_t>(from.setup)];
    const bool turn = isTurn(to.row);
    const Turn& last = m_turns[static_cast<std::size_t>(turn ? to.setup : to.setup - 1)];
    if (first.missing != last.missing) return std::nullopt;
    if (!turn) {
        const auto begin = m_rows.begin() + last.row + 1;
        const auto end = m_rows.begin() + to.row + 1;
        if (std::all_of(begin, end, [](const Reading& row) { return std::isnan(row.chainage); }))
            return std::nullopt;
    }
    return (to.distance - from.distance) / 1000;
}

void Runs::addSection(std::size_t fromIndex, std::size_t toIndex) {
    const Mark& from = m_marks[fromIndex];
    const Mark& to = m_marks[toIndex];
    RunSection section = between(from, to);
    const std::optional<double> measured = chainageLength(from, to);
    const std::size_t number = m_stretches.size();
    const double typed = number < m_closing.lengthsKm.size() ? m_closing.lengthsKm[number] : 0;
    section.lengthKm = typed > 0 ? std::optional(typed) : measured;
    section.lengthSource = typed > 0  ? LengthSource::Typed
                           : measured ? LengthSource::Chainage
                                      : LengthSource::None;
    section.allowed = allowedBy(m_closing.tolerance, section.lengthKm, section.setups);
    if (section.allowed.millimetres)
        section.verdict =
            isWithin(*section.misclosureMm, *section.allowed.millimetres) ? Verdict::Closes : Verdict::Fails;
    const bool hasDistances = measured && *measured > 0;
    section.byDistance = m_closing.method == Method::Distance && hasDistances;
    m_stretches.push_back({fromIndex, toIndex, section.found - to.known, hasDistances});
    m_sections.push_back(std::move(section));
}

void Runs::addCheck(std::size_t fromIndex, const Mark& check) {
    RunSection section = between(m_marks[fromIndex], check);
    section.verdict = Verdict::Check;
    m_sections.push_back(std::move(section));
}

void Runs::addTail(std::size_t fromIndex) {
    const Mark& from = m_marks[fromIndex];
    RunSection section;
    section.from = from.name;
    section.fromRow = from.row;
    section.toRow = m_lastSight;
    section.setups = setupAt(m_lastSight) - from.setup;
    section.found = from.known + rawAt(m_lastSight) - from.raw;
    m_stretches.push_back({fromIndex, fromIndex, 0, false});
    m_sections.push_back(std::move(section));
}

void Runs::makeSections() {
    m_sections.clear();
    m_stretches.clear();
    std::optional<std::size_t> from;
    for (std::size_t mark = 0; mark < m_marks.size(); ++mark) {
        if (!m_marks[mark].closes) {
            if (from) addCheck(*from, m_marks[mark]);
            continue;
        }
        if (from) addSection(*from, mark);
        from = mark;
    }
    if (from && m_marks[*from].row < m_lastSight) addTail(*from);
    std::ranges::stable_sort(m_sections, {}, &RunSection::toRow);
}

std::optional<RowLevel> Runs::levelAt(int row, Method method) {
    refresh();
    if (row < 1 || row > m_lastSight || m_usable == 0) return std::nullopt;
    const Reading& reading = m_rows[static_cast<std::size_t>(row)];
    if (reading.kind == RowKind::None || !reading.readable) return std::nullopt;
    RowLevel level{rawAt(row), 0};
    if (m_stretches.empty()) {
        const auto only = std::ranges::find_if(m_marks, &Mark::closes);
        if (only != m_marks.end()) level.correction = only->known - only->raw;
        return level;
    }
    // The stretch that the row was sighted in; rows above the first mark hang on it.
    auto stretch = std::ranges::lower_bound(m_stretches, row, {},
                                            [this](const Stretch& each) { return m_marks[each.from].row; });
    if (stretch != m_stretches.begin()) --stretch;
    const Mark& from = m_marks[stretch->from];
    const Mark& to = m_marks[stretch->to];
    level.correction = from.known - from.raw;
    if (row <= from.row || stretch->misclosure == 0) return level;
    if (row > to.row) { // behind the last known level
        level.correction = to.known - to.raw;
        return level;
    }
    const double share = method == Method::Distance && stretch->hasDistances
                             ? (distanceAt(row) - from.distance) / (to.distance - from.distance)
                             : double(setupAt(row) - from.setup) / (to.setup - from.setup);
    level.correction -= stretch->misclosure * share;
    return level;
}

} // namespace survey
