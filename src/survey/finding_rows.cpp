#include "findings.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "sheet/book.h"
#include "sheet/sight.h"

#include <algorithm>
#include <cmath>
#include <limits>

// What is wrong with a single row, and with the run as a whole.

namespace survey {
namespace {

using enum FindingKind;
using Rule = FindingRule;
using sheet::RowKind;

/// A millimetre, or what levels in single precision may have lost over that many set-ups.
double nearEnough(double height, std::size_t setups) {
    constexpr double millimetre = 0.001 + 1e-6;
    const auto single = static_cast<float>(std::abs(height));
    const double grain = double{std::nextafter(single, std::numeric_limits<float>::infinity()) - single};
    return std::max(millimetre, grain / 2 * static_cast<double>(setups + 1) + 0.0005);
}

std::string quoted(const std::string& text) {
    return '"' + std::string(basic::left(text, 30)) + '"';
}

bool hasDigit(std::string_view text) {
    return text.find_first_of("0123456789") != std::string_view::npos;
}

void add(std::uint64_t& mark, std::string_view text) {
    constexpr std::uint64_t prime = 0x100000001b3; // as in FNV-1a
    for (const char c : text)
        mark = (mark ^ static_cast<unsigned char>(c)) * prime;
    mark = (mark ^ 0x1f) * prime;
}

/// Whether a finding about a row rests on the text of one of its cells.
bool restsOn(Rule rule, int row, int col) {
    const bool offset = col == sheet::Left || col == sheet::Center || col == sheet::Right;
    switch (rule) {
    case Rule::ChainageBack:
    case Rule::ChainageGap:
        return col == sheet::Chainage;
    case Rule::KnownContradiction:
    case Rule::KnownFar:
    case Rule::DoesNotClose:
    case Rule::NotClosed:
        return !offset && col != sheet::HgtInst && (col != sheet::RLevel || row == 1);
    default:
        return col != sheet::HgtInst && (col != sheet::RLevel || row == 1 || rule == Rule::OldLevel);
    }
}

} // namespace

Finding Findings::finding(int row, FindingKind kind, FindingRule rule, std::string text, int other) const {
    Finding found{row, kind, rule, std::move(text), 0, 0xcbf29ce484222325};
    add(found.mark, word(rule));
    for (const int each : {row, other}) {
        if (each < 1) continue;
        for (int col = 0; col < m_grid.Cols(); ++col)
            if (restsOn(rule, each, col)) add(found.mark, m_grid.Text(each, col));
    }
    return found;
}

/// An error about two rows; `text` ends where the number of the other row is to stand.
Finding Findings::about(int row, int other, FindingRule rule, std::string text) const {
    Finding found = finding(row, Error, rule, std::move(text), other);
    found.other = other;
    return found;
}

void Findings::setBreak(int row, bool broken) {
    const auto at = std::ranges::lower_bound(m_breaks, row);
    const bool was = at != m_breaks.end() && *at == row;
    if (broken && !was) m_breaks.insert(at, row);
    if (!broken && was) m_breaks.erase(at);
}

void Findings::judgeRow(int row) {
    const auto place = std::ranges::equal_range(m_rowFindings, row, {}, &Finding::row);
    const auto at = m_rowFindings.erase(place.begin(), place.end()) - m_rowFindings.begin();
    std::vector<Finding> found;
    const auto say = [&](FindingKind kind, Rule rule, std::string text) {
        found.push_back(finding(row, kind, rule, std::move(text)));
    };
    const Reading& reading = m_runs.reading(row);
    const auto text = [&](int col) -> const std::string& { return m_grid.Text(row, col); };
    bool broken = false;

    for (const int col : {int(sheet::BackSight), int(sheet::InterSight), int(sheet::ForeSight)}) {
        if (text(col).empty()) continue;
        const std::string& name = m_grid.Text(0, col);
        if (!basic::isNumber(text(col))) {
            say(Error, Rule::NotANumber, name + ' ' + quoted(text(col)) + " is no number");
            broken = broken || col != sheet::InterSight;
            continue;
        }
        double metres = 0;
        try {
            metres = double{basic::cSng(basic::val(text(col)))};
        } catch (const basic::RuntimeError&) {
            say(Error, Rule::NotANumber, name + ' ' + quoted(text(col)) + " is beyond all numbers");
            broken = true;
            continue;
        }
        if (metres < 0)
            say(Hint, Rule::BelowZero, name + ' ' + text(col) + " is below 0: an inverted staff?");
        if (metres > m_staff)
            say(Hint, Rule::AboveStaff,
                name + ' ' + text(col) + " is above the staff of " + basic::plainText(m_staff) + " m");
    }
    const bool inter = !text(sheet::InterSight).empty();
    const bool fore = !text(sheet::ForeSight).empty();
    const bool back = !text(sheet::BackSight).empty();
    if (inter && fore) say(Error, Rule::TwoSights, "Both I.S. and F.S. in one row");
    const bool before = row < m_lastRead; // something is read behind this row
    if (row == 1) {
        if (!back && before) say(Error, Rule::NoBackSight, "The book begins without a back sight");
    } else if (reading.kind == RowKind::ChangePoint && !back && before) {
        say(Error, Rule::NoBackSight, "A change point without a back sight");
        broken = true;
    } else if (inter && back) {
        say(Error, Rule::NoForeSight, "A back sight beside an I.S.: its change point has no fore sight");
        broken = true;
    } else if (!inter && reading.kind != RowKind::ChangePoint &&
               (back || (before && basic::sameText(text(sheet::Chainage), "CP")))) {
        say(Error, Rule::NoForeSight, "A change point without a fore sight");
        broken = true;
    }
    setBreak(row, broken);

    const std::string& remark = text(sheet::Remark);
    if (const auto known = sheet::knownLevelIn(remark)) {
        if (sheet::isGround(m_grid, row, sheet::transferRule))
            say(Hint, Rule::BenchMarkIsGround,
                "A known level in a row with an offset: the point is taken as ground too");
    } else if (const std::size_t sign = remark.rfind('=');
               sign != std::string::npos && hasDigit(std::string_view(remark).substr(sign))) {
        say(Hint, Rule::KnownUnread,
            "The remark is not read as a known level: only a number behind the \"=\"");
    }
    // A row without a reading that the transfer would refuse.
    if (row != keyedRow() && reading.kind == RowKind::None && text(sheet::RLevel).empty() && !back &&
        sheet::isGround(m_grid, row, sheet::transferRule))
        say(Hint, Rule::SpareRow,
            before ? "Nothing was read in this row" : "A spare row: the transfer wants it deleted");
    m_rowFindings.insert(m_rowFindings.begin() + at, std::make_move_iterator(found.begin()),
                         std::make_move_iterator(found.end()));
}

/// What the known levels say.
void Findings::judgeRun() {
    m_runFindings.clear();
    const auto metres = [](double level) { return basic::format(level, basic::pattern("0.000##")); };
    for (const Contradiction& each : m_runs.contradictions())
        m_runFindings.push_back(about(each.row, each.firstRow, Rule::KnownContradiction,
                                      (each.name.empty() ? "The known level" : each.name) + " = " +
                                          metres(each.level) + " contradicts " + metres(each.firstLevel) +
                                          ", which holds, in row "));
    bool closed = true;
    for (const RunSection& section : m_runs.sections()) {
        if (!section.misclosureMm) {
            closed = false;
            continue;
        }
        if (std::abs(*section.misclosureMm) > 1000)
            m_runFindings.push_back(
                finding(section.toRow, Hint, Rule::KnownFar,
                        "The known level is " +
                            basic::format(std::abs(*section.misclosureMm) / 1000, basic::pattern("0.000")) +
                            " m from the level found",
                        section.fromRow));
        if (section.verdict == Verdict::Fails)
            m_runFindings.push_back(
                finding(section.toRow, Warning, Rule::DoesNotClose, describe(section), section.fromRow));
    }
    const int last = m_runs.lastRead();
    if (last > 1 && m_runs.stoppedAt() == 0 && (!closed || m_runs.sections().empty()))
        m_runFindings.push_back(
            finding(last, Hint, Rule::NotClosed, "Not closed: no known level at the end"));
}

/// The first R.Level. that is neither the level of its reading nor the adjusted one.
void Findings::judgeLevels() {
    m_levelFindings.clear();
    const std::size_t setups = m_runs.setups();
    for (std::size_t k = 0; k < setups; ++k) {
        const Runs::Setup setup = m_runs.setup(k);
        const double near = nearEnough(setup.height, k);
        for (int row = setup.firstRow; row <= setup.lastRow; ++row) {
            const double height = m_heights[static_cast<std::size_t>(row)];
            if (!(std::abs(height - setup.height) > near)) continue; // nor where there is none
            const auto isAdjusted = [&](Method method) {
                const auto level = m_runs.levelAt(row, method);
                return level && std::abs(height - setup.height - level->correction) <= near;
            };
            if (row == keyedRow() || isAdjusted(Method::Setups) || isAdjusted(Method::Distance)) continue;
            m_levelFindings.push_back(finding(row, Warning, Rule::OldLevel,
                                              "From here on R.Level. is not what the readings give: Cal"));
            return;
        }
    }
}

} // namespace survey
