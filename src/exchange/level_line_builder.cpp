#include "level_line_builder.h"

#include "basic/numbers.h"

#include <cmath>
#include <utility>

namespace exchange {
namespace {

constexpr double agreement = 0.0001; // metres, at each point by itself
constexpr double feetOfMetre = 1 / 0.3048;
constexpr double lastDigit = 0.000001; // what sums of decimals may be off
constexpr std::size_t shownText = 60;
constexpr std::size_t mostTroubles = 200;

std::string millimetres(double metres) {
    return basic::format(metres * 1000, basic::pattern("#0.00")) + " mm";
}

} // namespace

std::string LevelLine::to() const {
    for (auto point = points.rbegin(); point != points.rend(); ++point)
        if (point->kind != LevelPoint::Kind::Intermediate) return point->name;
    return {};
}

std::optional<double> LevelLineBuilder::Readings::mean() const {
    if (value[0] && value[1]) return (*value[0] + *value[1]) / 2;
    return value[0] ? value[0] : value[1];
}

LevelLine& LevelLineBuilder::line_() {
    if (!m_open) startLine({}, false);
    return m_line;
}

std::string LevelLineBuilder::here() const {
    return "line " + std::to_string(m_at) + " (" + std::string(m_text.substr(0, shownText)) + ")";
}

void LevelLineBuilder::trouble(std::string_view what) {
    auto& troubles = line_().troubles;
    if (troubles.size() < mostTroubles) troubles.push_back(here() + ": " + std::string(what));
}

void LevelLineBuilder::startLine(std::string_view method, bool isDouble) {
    endLine();
    m_line = {};
    m_line.firstLine = m_at;
    m_line.method = method;
    m_isDouble = isDouble;
    m_open = true;
    m_back = m_fore = {};
    m_intermediates.clear();
    m_awaitsLevel = false;
    m_setUpPoint = 0;
}

void LevelLineBuilder::start(std::string_view point, double level) {
    LevelLine& line = line_();
    if (line.points.empty()) line.points.emplace_back();
    LevelPoint& first = line.points.front();
    first.name = point;
    first.level = level;
    first.line = m_at;
    m_startLevel = level;
}

void LevelLineBuilder::sight(Sight kind, double reading, std::string_view point, std::optional<bool> second) {
    if (m_awaitsLevel && kind != Sight::Intermediate) m_awaitsLevel = false;
    if (line_().points.empty()) {
        m_line.points.emplace_back();
        m_line.points.front().line = m_at;
        trouble("no starting level stands before the first sight");
    }
    if (kind == Sight::Intermediate) {
        LevelPoint seen{LevelPoint::Kind::Intermediate, std::string(point), {}, reading, {}, m_at};
        // Before the next back sight it was sighted from the set-up that is finished already.
        if (!m_back.mean() && !m_fore.mean() && m_line.setUps > 0)
            m_line.points.insert(m_line.points.end() - 1, std::move(seen));
        else
            m_intermediates.push_back(std::move(seen));
        m_awaitsLevel = true;
        m_last = kind;
        return;
    }
    Readings& readings = kind == Sight::Back ? m_back : m_fore;
    const bool isSecond = second.value_or(m_isDouble && readings.value[0].has_value());
    if (readings.value[isSecond])
        trouble(kind == Sight::Back ? "the back sight comes again" : "the fore sight comes again");
    readings.value[isSecond] = reading;
    if (readings.point.empty()) readings.point = point;
    if (!point.empty() && readings.point != point)
        trouble("another point than \"" + readings.point + "\" is sighted");
    readings.line = m_at;
    m_last = kind;
    m_lastSecond = isSecond;
}

bool LevelLineBuilder::expectsResult() const {
    return m_awaitsLevel || (m_back.mean() && m_fore.mean());
}

std::optional<double> LevelLineBuilder::height() const {
    const auto back = m_back.mean();
    if (back && m_line.points.back().level) return *m_line.points.back().level + *back;
    if (back) return {};
    const LevelPoint& before = m_line.points[m_setUpPoint];
    if (!before.level || !before.backSight) return {};
    return *before.level + *before.backSight;
}

void LevelLineBuilder::takeIntermediate(double level) {
    m_awaitsLevel = false;
    LevelPoint* seen = nullptr;
    if (!m_intermediates.empty())
        seen = &m_intermediates.back();
    else if (m_line.points.size() > 1)
        seen = &m_line.points[m_line.points.size() - 2];
    if (seen == nullptr || seen->kind != LevelPoint::Kind::Intermediate) return;
    seen->level = level;
    const auto from = height();
    if (!from) return;
    const double difference = *from - *seen->sight - level;
    const double limit = agreement * (m_line.feet ? feetOfMetre : 1) + lastDigit;
    if (std::abs(difference) > limit && m_line.hints.size() < mostTroubles)
        m_line.hints.push_back(here() + ": the level of \"" + seen->name + "\" differs from its reading by " +
                               millimetres(-difference / (m_line.feet ? feetOfMetre : 1)));
}

void LevelLineBuilder::result(double level, std::string_view point) {
    if (line_().points.empty()) return start(point, level);
    if (m_awaitsLevel) return takeIntermediate(level);
    finishSetUp(level, point);
}

void LevelLineBuilder::finishSetUp(std::optional<double> level, std::string_view point) {
    const auto back = m_back.mean();
    const auto fore = m_fore.mean();
    if (!back) trouble("the set-up has no back sight");
    if (!fore) trouble("the set-up has no fore sight");
    if (m_isDouble && back && fore)
        for (const Readings* readings : {&m_back, &m_fore})
            if (!readings->value[0] || !readings->value[1])
                trouble(readings == &m_back ? "the set-up lacks one of its two back sights"
                                            : "the set-up lacks one of its two fore sights");
    const std::size_t before = m_line.points.size() - 1;
    LevelPoint& last = m_line.points[before];
    last.backSight = back;
    if (last.name.empty()) last.name = m_back.point;
    if (back && !m_back.point.empty() && last.name != m_back.point)
        trouble("the back sight goes to \"" + m_back.point + "\", not to \"" + last.name + "\"");
    const auto from = last.level;
    LevelPoint turning{LevelPoint::Kind::Turning,
                       m_fore.point.empty() ? std::string(point) : m_fore.point,
                       {},
                       fore,
                       level,
                       m_at};
    if (back && fore && level && from) {
        const double difference = *level - *from - (*back - *fore);
        const double limit = agreement * (m_line.feet ? feetOfMetre : 1) + lastDigit;
        if (std::abs(difference) > limit)
            trouble("the level of \"" + turning.name + "\" differs from the readings of its set-up by " +
                    millimetres(difference / (m_line.feet ? feetOfMetre : 1)));
    }
    if (back && fore) m_line.byReadings = m_line.byReadings.value_or(0) + *back - *fore;
    ++m_line.setUps;
    m_setUpPoint = before;
    for (LevelPoint& seen : m_intermediates)
        m_line.points.push_back(std::move(seen));
    m_intermediates.clear();
    m_line.points.push_back(std::move(turning));
    m_back = m_fore = {};
}

void LevelLineBuilder::known(std::string_view point, double level) {
    line_().known = level;
    m_line.knownPoint = point;
}

void LevelLineBuilder::dropLastSight() {
    if (!m_open) return;
    m_awaitsLevel = false;
    if (m_last == Sight::Intermediate) {
        if (!m_intermediates.empty()) m_intermediates.pop_back();
        return;
    }
    Readings& readings = m_last == Sight::Back ? m_back : m_fore;
    readings.value[m_lastSecond].reset();
    if (!readings.mean()) readings = {};
}

void LevelLineBuilder::dropSetUp() {
    if (!m_open) return;
    m_awaitsLevel = false;
    const bool begun = m_back.mean() || m_fore.mean() || !m_intermediates.empty();
    m_back = m_fore = {};
    m_intermediates.clear();
    if (begun || m_line.setUps == 0) return;
    LevelPoint& before = m_line.points[m_setUpPoint];
    if (!before.backSight) return trouble("a station is repeated before another one was finished");
    const LevelPoint& last = m_line.points.back();
    if (last.sight && m_line.byReadings) *m_line.byReadings -= *before.backSight - *last.sight;
    before.backSight.reset();
    m_line.points.resize(m_setUpPoint + 1);
    --m_line.setUps;
}

void LevelLineBuilder::endLine() {
    if (!std::exchange(m_open, false)) return;
    if (m_back.mean() || m_fore.mean() || !m_intermediates.empty()) {
        m_open = true;
        if (m_back.mean() && m_fore.mean()) {
            trouble("the last set-up has no level");
            finishSetUp({}, {});
        } else {
            trouble("the last set-up is not finished");
            if (!m_line.points.back().backSight) m_line.points.back().backSight = m_back.mean();
            for (LevelPoint& seen : m_intermediates)
                m_line.points.push_back(std::move(seen));
            m_intermediates.clear();
        }
        m_open = false;
    }
    m_line.lastLine = m_at;
    if (m_line.setUps == 0 && m_line.points.size() < 2) { // nothing was levelled
        for (std::string& trouble : m_line.troubles)
            if (m_strays.size() < mostTroubles) m_strays.push_back(std::move(trouble));
        return;
    }
    for (auto point = m_line.points.rbegin(); point != m_line.points.rend(); ++point) {
        if (point->kind != LevelPoint::Kind::Turning) continue;
        if (point->level && m_line.points.front().level)
            m_line.byLevels = *point->level - *m_line.points.front().level;
        break;
    }
    m_lines.push_back(std::move(m_line));
}

void LevelLineBuilder::finish(LevelFile& file) && {
    endLine();
    file.lines = std::move(m_lines);
    file.strays = std::move(m_strays);
}

} // namespace exchange
