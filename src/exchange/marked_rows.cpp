#include "marked_rows.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "ground_walk.h"
#include "sheet/sight.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

namespace exchange {

namespace {

using sheet::Grid;

constexpr double longestInMetres = 33000; // what the transfer turns into kilometres and metres
constexpr std::size_t longestChainage = 25;
constexpr const char* beyondRange = "a number beyond all range";

bool isMarked(const Grid& grid, int row) {
    return grid.CellBackColor(row, sheet::Chainage) == sheet::dataError;
}

bool isReading(const Grid& grid, int row) {
    return sheet::isGround(grid, row, sheet::transferRule);
}

/// What the transfer seeks and writes for a reading, to be met again by another one.
struct Key {
    GroundReading reading;
    bool isCentre = false; ///< a point of the long section as well, whatever number is keyed for it
};

/// The first rows that a reading in `row` repeats: `row` itself where it repeats none.
struct Repeated {
    int point;
    int centre;
};

Key keyOf(const Grid& grid, int row, GroundReading reading) {
    return {std::move(reading), !grid.Text(row, sheet::Center).empty()};
}

std::string place(const GroundReading& at) {
    if (at.side == 'C') return "centre of " + at.chainage;
    return (at.side == 'L' ? "left " : "right ") + basic::text(at.offset) + " m of " + at.chainage;
}

/// What `key`, which stands in `row`, repeats of the rows above.
Repeated repeatedBy(const Grid& grid, int row, const Key& key) {
    Repeated first{row, row};
    for (int above = 1; above < row && (first.point == row || (key.isCentre && first.centre == row));
         ++above) {
        // Cleaning takes from the front, so that most rows need no cleaning to be told apart.
        if (!basic::trim(grid.Text(above, sheet::Chainage)).ends_with(key.reading.chainage)) continue;
        if (!isReading(grid, above)) continue;
        try {
            const Key other = keyOf(grid, above, GroundWalk::at(grid, above));
            if (other.reading.chainage != key.reading.chainage) continue;
            if (key.isCentre && other.isCentre) first.centre = std::min(first.centre, above);
            if (key.reading.side == other.reading.side && key.reading.offset == other.reading.offset)
                first.point = std::min(first.point, above);
        } catch (const basic::RuntimeError&) {
            continue; // an offset beyond all numbers repeats none
        }
    }
    return first;
}

/// What the road does not take of a chainage or a level; empty when it takes both. Raises Overflow (6).
std::string valueFault(const Grid& grid, int row, const std::string& chainage) {
    const std::string& level = grid.Text(row, sheet::RLevel);
    if (!basic::isNumber(level)) return "R.Level. " + level + " is no number";
    (void)basic::cSng(basic::val(level));
    const std::string& keyed = grid.Text(row, sheet::Chainage);
    if (keyed.find('-') == std::string::npos && basic::val(keyed) >= longestInMetres)
        return "chainage " + keyed + " is too long for plain metres: key it with its \"-\"";
    if (basic::length(chainage) > longestChainage)
        return "chainage is longer than the " + std::to_string(longestChainage) + " characters of the road's";
    return {};
}

std::string describe(const Grid& grid, int row, const GroundReading& reading, const Repeated& first) {
    const bool noLevel = grid.Text(row, sheet::RLevel).empty();
    if (noLevel && grid.Text(row, sheet::InterSight).empty() && grid.Text(row, sheet::ForeSight).empty())
        return "no reading; delete it if it is a spare row";
    if (noLevel) return "no R.Level.; Cal reduces the book";
    if (!reading.hasOffset) return "no offset in Left, Center or Right";
    if (first.point != row) return place(reading) + " repeats row " + std::to_string(first.point);
    if (first.centre != row)
        return "centre of " + reading.chainage + " repeats row " + std::to_string(first.centre);
    return valueFault(grid, row, reading.chainage);
}

} // namespace

std::string faultOf(const Grid& grid, int row) {
    if (!isReading(grid, row)) return {};
    try {
        const Key key = keyOf(grid, row, GroundWalk::at(grid, row));
        return describe(grid, row, key.reading, repeatedBy(grid, row, key));
    } catch (const basic::RuntimeError&) {
        return beyondRange;
    }
}

std::vector<MarkedRow> markedRows(const Grid& grid) {
    std::vector<MarkedRow> result;
    GroundWalk walk(grid);
    std::map<std::tuple<std::string, char, double>, int> firstRows;
    for (int row = 1; row < grid.Rows(); ++row) {
        std::string fault;
        if (isReading(grid, row)) {
            try {
                const GroundReading& reading = walk.read(row);
                const auto first = [&](char side, double offset) {
                    return firstRows.try_emplace({reading.chainage, side, offset}, row).first->second;
                };
                Repeated met{first(reading.side, reading.offset), row};
                if (!grid.Text(row, sheet::Center).empty()) met.centre = first('S', 0);
                if (isMarked(grid, row)) fault = describe(grid, row, reading, met);
            } catch (const basic::RuntimeError&) {
                fault = beyondRange;
            }
        }
        if (isMarked(grid, row)) result.push_back({row, std::move(fault)});
    }
    return result;
}

void tellMarkedRow(const Grid& grid, desktop::Desktop& desktop) {
    if (!isMarked(grid, grid.Row())) return;
    int count = 0;
    for (int row = 1; row < grid.Rows(); ++row)
        count += isMarked(grid, row);
    std::string message = count == 1 ? "1 row marked" : std::to_string(count) + " rows marked";
    if (const std::string fault = faultOf(grid, grid.Row()); !fault.empty())
        message += "; row " + std::to_string(grid.Row()) + ": " + fault;
    desktop.status(message);
}

} // namespace exchange
