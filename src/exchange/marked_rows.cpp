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

bool isMarked(const Grid& grid, int row) {
    return grid.CellBackColor(row, sheet::Chainage) == sheet::dataError;
}

bool isReading(const Grid& grid, int row) {
    return sheet::isGround(grid, row, sheet::transferRule);
}

/// What the transfer seeks and writes for a reading, to be met again by another one.
struct Key {
    GroundReading reading;
    bool isCentre = false; ///< stored at offset 0 of the centre, whatever number is keyed for it

    [[nodiscard]] bool meets(const Key& other) const {
        if (reading.chainage != other.reading.chainage) return false;
        return (isCentre && other.isCentre) ||
               (reading.side == other.reading.side && reading.offset == other.reading.offset);
    }
};

Key keyOf(const Grid& grid, int row, GroundReading reading) {
    return {std::move(reading), !grid.Text(row, sheet::Center).empty()};
}

std::string place(const GroundReading& at) {
    if (at.side == 'C') return "centre of " + at.chainage;
    return (at.side == 'L' ? "left " : "right ") + basic::text(at.offset) + " m of " + at.chainage;
}

/// The first reading that `key`, which stands in `row`, meets; `row` itself when there is none.
int firstThatMeets(const Grid& grid, int row, const Key& key) {
    for (int above = 1; above < row; ++above) {
        // Cleaning takes from the front, so that most rows need no cleaning to be told apart.
        if (!basic::trim(grid.Text(above, sheet::Chainage)).ends_with(key.reading.chainage)) continue;
        if (!isReading(grid, above)) continue;
        try {
            if (key.meets(keyOf(grid, above, GroundWalk::at(grid, above)))) return above;
        } catch (const basic::RuntimeError&) {
            continue; // an offset beyond all numbers meets none
        }
    }
    return row;
}

std::string describe(const Grid& grid, int row, const GroundReading& reading, int first) {
    const bool noLevel = grid.Text(row, sheet::RLevel).empty();
    if (noLevel && grid.Text(row, sheet::InterSight).empty() && grid.Text(row, sheet::ForeSight).empty())
        return "no reading; delete it if it is a spare row";
    if (noLevel) return "no R.Level.; Cal reduces the book";
    if (!reading.hasOffset) return "no offset in Left, Center or Right";
    if (first == row) return {};
    return place(reading) + " repeats row " + std::to_string(first);
}

} // namespace

std::string faultOf(const Grid& grid, int row) {
    if (!isReading(grid, row)) return {};
    try {
        const Key key = keyOf(grid, row, GroundWalk::at(grid, row));
        return describe(grid, row, key.reading, firstThatMeets(grid, row, key));
    } catch (const basic::RuntimeError& error) {
        return error.description();
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
                int met = first(reading.side, reading.offset);
                if (!grid.Text(row, sheet::Center).empty()) met = std::min(met, first('S', 0)); // at offset 0
                if (isMarked(grid, row)) fault = describe(grid, row, reading, met);
            } catch (const basic::RuntimeError& error) {
                fault = error.description();
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
