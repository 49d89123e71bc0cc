#include "runs.h"

#include "sheet/book.h"

#include <algorithm>
#include <cmath>

namespace survey {
namespace {

using sheet::RowKind;

bool isEnd(const Reading& reading) {
    return reading.kind == RowKind::Start || reading.kind == RowKind::ChangePoint;
}

bool isKnown(const Reading& reading) {
    return !std::isnan(reading.known);
}

/// Puts a row into an ascending list, or takes it out.
void setListed(std::vector<int>& rows, int row, bool listed) {
    const auto place = std::ranges::lower_bound(rows, row);
    const bool found = place != rows.end() && *place == row;
    if (listed && !found) rows.insert(place, row);
    if (!listed && found) rows.erase(place);
}

} // namespace

Runs::Runs(const sheet::Grid& grid, Closing closing) : m_grid(grid), m_closing(std::move(closing)) {}

void Runs::setClosing(Closing closing) {
    m_closing = std::move(closing);
    m_unsettled = true;
}

void Runs::textChanged(int row, int col, const std::string&) {
    // Offsets, heights and levels follow from the rest or do not matter, but for the level that all begins
    // with.
    const bool counts = col == sheet::Chainage || col == sheet::BackSight || col == sheet::InterSight ||
                        col == sheet::ForeSight || col == sheet::Remark;
    if (counts || (col == sheet::RLevel && row == 1)) touch(row);
}

void Runs::touch(int row) {
    if (m_stale || row < 1) return;
    if (m_touched.empty() || m_touched.back() != row) m_touched.push_back(row);
    if (m_touched.size() > m_rows.size() / 4 + 16) m_stale = true;
}

void Runs::rowsInserted(int at, int count, sheet::Marks) {
    if (m_stale) return;
    m_rows.insert(m_rows.begin() + at, static_cast<std::size_t>(count), Reading{});
    for (Turn& turn : m_turns)
        if (turn.row >= at) turn.row += count;
    for (int& row : m_knownRows)
        if (row >= at) row += count;
    for (int& row : m_touched)
        if (row >= at) row += count;
    if (at == 1) m_stale = true; // another row begins the book
    for (int row = at; row < at + count && !m_stale; ++row)
        touch(row);
    m_unsettled = true;
}

void Runs::rowsRemoved(int at, const sheet::RemovedRows& before, sheet::Marks) {
    if (m_stale) return;
    if (at == 1) {
        m_stale = true;
        return;
    }
    const int count = before.count();
    const int end = at + count;
    const auto drop = [&](auto& list, auto rowOf) {
        std::erase_if(list, [&](auto& each) { return rowOf(each) >= at && rowOf(each) < end; });
        for (auto& each : list)
            if (rowOf(each) >= end) rowOf(each) -= count;
    };
    const auto self = [](int& row) -> int& { return row; };
    const std::size_t next = turnBefore(at);
    drop(m_turns, [](Turn& turn) -> int& { return turn.row; });
    drop(m_knownRows, self);
    drop(m_touched, self);
    m_rows.erase(m_rows.begin() + at, m_rows.begin() + end);
    if (next + 1 < m_turns.size()) rescan(next + 1);
    m_unsettled = true;
}

void Runs::readAll() {
    const int rows = m_grid.Rows();
    m_rows.assign(static_cast<std::size_t>(rows), Reading{});
    m_turns.clear();
    m_knownRows.clear();
    Turn turn{};
    for (int row = 1; row < rows; ++row) {
        const Reading& reading = m_rows[static_cast<std::size_t>(row)] = readRow(m_grid, row);
        if (isKnown(reading)) m_knownRows.push_back(row);
        if (!std::isnan(reading.chainage)) {
            if (std::isnan(turn.firstChainage)) turn.firstChainage = reading.chainage;
            turn.lastChainage = reading.chainage;
        }
        if (!isEnd(reading)) continue;
        turn.row = row;
        m_turns.push_back(turn);
        turn = {};
    }
    m_touched.clear();
    m_stale = false;
    m_unsettled = true;
}

/// The chainages that the set-up ending at a turn sights.
void Runs::rescan(std::size_t index) {
    Turn& turn = m_turns[index];
    turn.firstChainage = turn.lastChainage = nothing;
    const int first = index == 0 ? 1 : m_turns[index - 1].row + 1;
    for (int row = first; row <= turn.row; ++row) {
        const double chainage = m_rows[static_cast<std::size_t>(row)].chainage;
        if (std::isnan(chainage)) continue;
        if (std::isnan(turn.firstChainage)) turn.firstChainage = chainage;
        turn.lastChainage = chainage;
    }
}

void Runs::reread(int row) {
    Reading& reading = m_rows[static_cast<std::size_t>(row)];
    const bool wasEnd = isEnd(reading);
    reading = readRow(m_grid, row);
    setListed(m_knownRows, row, isKnown(reading));
    const auto place = std::ranges::lower_bound(m_turns, row, {}, &Turn::row);
    const auto index = static_cast<std::size_t>(place - m_turns.begin());
    if (isEnd(reading) && !wasEnd) m_turns.insert(place, Turn{.row = row});
    if (!isEnd(reading) && wasEnd) m_turns.erase(place);
    for (std::size_t near = index; near < std::min(index + 2, m_turns.size()); ++near)
        rescan(near);
}

void Runs::refresh() {
    if (!m_stale && m_rows.size() != static_cast<std::size_t>(m_grid.Rows())) m_stale = true;
    if (m_stale) readAll();
    if (!m_touched.empty()) {
        for (const int row : m_touched)
            reread(row);
        m_touched.clear();
        m_unsettled = true;
    }
    if (!m_unsettled) return;
    m_unsettled = false;
    ++m_version;
    sumTurns();
    findLastSight();
    collectMarks();
    makeSections();
}

/// Levels, heights and distances from the first set-up to the last, up to the first row that cannot be read.
void Runs::sumTurns() {
    m_usable = 0;
    m_stoppedAt = 0;
    for (std::size_t k = 0; k < m_turns.size(); ++k) {
        Turn& turn = m_turns[k];
        const Reading& reading = m_rows[static_cast<std::size_t>(turn.row)];
        if (!reading.readable && m_stoppedAt == 0) m_stoppedAt = turn.row;
        if (k == 0) {
            turn.level = reading.sight;
            turn.chainage = turn.lastChainage;
            for (std::size_t next = 1; std::isnan(turn.chainage) && next < m_turns.size(); ++next)
                turn.chainage = m_turns[next].firstChainage;
            if (std::isnan(turn.chainage))
                turn.chainage = 0; // nothing has a chainage, so nothing is measured
            turn.distance = turn.missing = 0;
        } else {
            const Turn& before = m_turns[k - 1];
            const bool none = std::isnan(turn.firstChainage);
            turn.level = before.height - reading.sight;
            turn.chainage = none ? before.chainage : turn.lastChainage;
            turn.distance = before.distance + std::abs(turn.chainage - before.chainage);
            turn.missing = before.missing + (none ? 1 : 0);
        }
        turn.height = turn.level + reading.backSight;
        if (m_stoppedAt == 0) ++m_usable;
    }
}

void Runs::findLastSight() {
    m_lastRead = static_cast<int>(m_rows.size()) - 1;
    while (m_lastRead > 0 && m_rows[static_cast<std::size_t>(m_lastRead)].kind == RowKind::None)
        --m_lastRead;
    int row = m_stoppedAt > 0 ? m_stoppedAt - 1 : m_lastRead;
    while (row > 1) {
        const Reading& reading = m_rows[static_cast<std::size_t>(row)];
        if (reading.kind != RowKind::None && reading.readable) break;
        --row;
    }
    m_lastSight = std::max(row, 1);
}

const std::vector<RunSection>& Runs::sections() {
    refresh();
    return m_sections;
}

const std::vector<Contradiction>& Runs::contradictions() {
    refresh();
    return m_contradictions;
}

int Runs::stoppedAt() {
    refresh();
    return m_stoppedAt;
}

int Runs::lastSight() {
    refresh();
    return m_lastSight;
}

int Runs::lastRead() {
    refresh();
    return m_lastRead;
}

std::size_t Runs::version() {
    refresh();
    return m_version;
}

double Runs::rawLevel(int row) {
    refresh();
    return rawAt(row);
}

std::size_t Runs::setups() {
    refresh();
    return m_usable;
}

Runs::Setup Runs::setup(std::size_t number) {
    refresh();
    const Turn& turn = m_turns.at(number);
    const bool ends = number + 1 < m_usable;
    return {turn.row + 1, ends ? m_turns[number + 1].row : m_lastSight, turn.height};
}

int Runs::setupOf(int row) {
    refresh();
    return setupAt(row);
}

const Reading& Runs::reading(int row) {
    refresh();
    return m_rows.at(static_cast<std::size_t>(row));
}

/// The turn whose instrument `row` was sighted from; of the starting row itself the first.
std::size_t Runs::turnBefore(int row) const {
    const auto place = std::ranges::lower_bound(m_turns, row, {}, &Turn::row);
    return place == m_turns.begin() ? 0 : static_cast<std::size_t>(place - m_turns.begin()) - 1;
}

bool Runs::isTurn(int row) const {
    return isEnd(m_rows[static_cast<std::size_t>(row)]);
}

int Runs::setupAt(int row) const {
    return row <= 1 ? 0 : static_cast<int>(turnBefore(row)) + 1;
}

double Runs::rawAt(int row) const {
    if (row == 1) return m_turns.front().level;
    return m_turns[turnBefore(row)].height - m_rows[static_cast<std::size_t>(row)].sight;
}

/// An intermediate sight lies as far on its way as its chainage says, but not beyond its set-up.
double Runs::distanceAt(int row) const {
    if (row == 1) return 0;
    const std::size_t before = turnBefore(row);
    const Turn& turn = m_turns[before];
    const bool ends = before + 1 < m_usable;
    if (ends && m_turns[before + 1].row == row) return m_turns[before + 1].distance;
    const double chainage = m_rows[static_cast<std::size_t>(row)].chainage;
    if (std::isnan(chainage)) return ends ? m_turns[before + 1].distance : turn.distance;
    const double there = turn.distance + std::abs(chainage - turn.chainage);
    return ends ? std::min(there, m_turns[before + 1].distance) : there;
}

} // namespace survey
