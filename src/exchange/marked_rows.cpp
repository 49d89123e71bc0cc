#include "marked_rows.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "basic/strings.h"
#include "sheet/book.h"
#include "tools/chainage.h"

#include <algorithm>
#include <map>
#include <tuple>

namespace exchange {

namespace {

using sheet::Grid;

constexpr double longestInMetres = 33000; // what the transfer turns into kilometres and metres
constexpr std::size_t longestChainage = 25;

bool isMarked(const Grid& grid, int row) {
    return grid.CellBackColor(row, sheet::Chainage) == sheet::dataError;
}

bool isReading(const Grid& grid, int row) {
    const std::string chainage = basic::upper(grid.Text(row, sheet::Chainage));
    return !chainage.empty() && chainage != "CP" && grid.Text(row, sheet::Remark) != "TBM";
}

/// Walks the readings downwards, remembering where each point stood first.
class Points {
  public:
    explicit Points(const Grid& grid) : m_grid(grid) {}

    /// What is wrong with the reading in `row`; rows are to be given in ascending order, every one of them.
    std::string faultOf(int row) {
        try {
            return faultIn(row);
        } catch (const basic::RuntimeError&) {
            return "a number beyond all range";
        }
    }

  private:
    std::string faultIn(int row) {
        const bool hasOffset = takeSideAndOffset(row);
        const std::string& keyed = m_grid.Text(row, sheet::Chainage);
        const std::string chainage = mdlTools::cleanChainage(keyed);
        const int first = remember(chainage, m_side, m_offset, row);
        // A centre reading is a point of the long section as well, whatever number is keyed for it.
        const bool isCentre = !m_grid.Text(row, sheet::Center).empty();
        const int firstCentre = isCentre ? remember(chainage, 'S', 0, row) : row;
        const bool noLevel = m_grid.Text(row, sheet::RLevel).empty();
        if (noLevel && m_grid.Text(row, sheet::InterSight).empty() &&
            m_grid.Text(row, sheet::ForeSight).empty())
            return "no reading; delete it if it is a spare row";
        if (noLevel) return "no R.Level.; Cal reduces the book";
        if (!hasOffset) return "no offset in Left, Center or Right";
        if (first != row) return place(chainage) + " repeats row " + std::to_string(first);
        if (firstCentre != row)
            return "centre of " + chainage + " repeats row " + std::to_string(firstCentre);
        const std::string& level = m_grid.Text(row, sheet::RLevel);
        if (!basic::isNumber(level)) return "R.Level. " + level + " is no number";
        (void)basic::cSng(basic::val(level));
        if (keyed.find('-') == std::string::npos && basic::val(keyed) >= longestInMetres)
            return "chainage " + keyed + " is too long for plain metres: key it with its \"-\"";
        if (basic::length(chainage) > longestChainage)
            return "chainage is longer than the " + std::to_string(longestChainage) +
                   " characters of the road's";
        return {};
    }

    bool takeSideAndOffset(int row) {
        bool filled = false;
        for (int col : {sheet::Left, sheet::Center, sheet::Right}) {
            const std::string& text = m_grid.Text(row, col);
            if (text.empty()) continue;
            filled = true;
            m_side = "LCR"[col - sheet::Left];
            m_offset = basic::val(text);
        }
        return filled;
    }

    int remember(const std::string& chainage, char side, double offset, int row) {
        return m_firstRows.try_emplace({chainage, side, offset}, row).first->second;
    }

    std::string place(const std::string& chainage) const {
        if (m_side == 'C') return "centre of " + chainage;
        return (m_side == 'L' ? "left " : "right ") + basic::text(m_offset) + " m of " + chainage;
    }

    const Grid& m_grid;
    char m_side = ' ';
    double m_offset = 0;
    std::map<std::tuple<std::string, char, double>, int> m_firstRows;
};

} // namespace

std::vector<MarkedRow> markedRows(const Grid& grid) {
    std::vector<MarkedRow> result;
    Points points(grid);
    for (int row = 1; row < grid.Rows(); ++row) {
        std::string fault = isReading(grid, row) ? points.faultOf(row) : std::string();
        if (isMarked(grid, row)) result.push_back({row, std::move(fault)});
    }
    return result;
}

void tellMarkedRow(const Grid& grid, desktop::Desktop& desktop) {
    if (!isMarked(grid, grid.Row())) return;
    const std::vector<MarkedRow> marked = markedRows(grid);
    std::string message =
        marked.size() == 1 ? "1 row marked" : std::to_string(marked.size()) + " rows marked";
    const auto here = std::ranges::find(marked, grid.Row(), &MarkedRow::row);
    if (here != marked.end() && !here->fault.empty())
        message += "; row " + std::to_string(here->row) + ": " + here->fault;
    desktop.status(message);
}

} // namespace exchange
