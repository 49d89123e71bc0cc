#include "overwritten.h"

#include "basic/strings.h"

#include <algorithm>
#include <array>

namespace entry {

using sheet::Grid;

namespace {

/// A column within a sentence; abbreviations keep their letters.
std::string nameOf(const Grid& grid, int col) {
    const std::string& header = grid.Text(0, col);
    return header.find('.') == std::string::npos ? basic::lower(header) : header;
}

} // namespace

bool isFilled(const Grid& grid, int row) {
    constexpr std::array keyed{sheet::BackSight, sheet::InterSight, sheet::ForeSight, sheet::RLevel,
                               sheet::Remark};
    return std::ranges::any_of(keyed, [&](int col) { return !grid.Text(row, col).empty(); });
}

Overwritten::Overwritten(sheet::Book& book, bool ownRowToo)
    : m_grid(book.MSFG), m_row(book.MSFG.Row()), m_ownRowToo(ownRowToo), m_hadRow2(book.MSFG.Rows() > 2) {
    m_grid.addListener(*this);
}

Overwritten::~Overwritten() {
    m_grid.removeListener(*this);
}

void Overwritten::textChanged(int row, int col, const std::string& before) {
    if (before.empty() || (row == m_row && !m_ownRowToo)) return;
    const bool known =
        std::ranges::any_of(m_cells, [&](const Cell& cell) { return cell.row == row && cell.col == col; });
    if (!known) m_cells.push_back({row, col, before});
}

void Overwritten::rowsInserted(int row, int count, sheet::Marks) {
    for (Cell& cell : m_cells)
        if (cell.row >= row) cell.row += count;
}

void Overwritten::tell(desktop::Desktop& desktop) const {
    const auto changed = [this](const Cell& cell) { return m_grid.Text(cell.row, cell.col) != cell.before; };
    const auto first = std::ranges::find_if(m_cells, changed);
    if (first == m_cells.end()) {
        if (!m_hadRow2 && m_grid.Rows() > 2 && m_grid.Text(2, sheet::Center) == "0" &&
            !(m_grid.Text(2, sheet::Left) + m_grid.Text(2, sheet::Right)).empty())
            desktop.status(std::string("Row 2: an offset stands beside Center 0.") + undoHint);
        return;
    }
    const std::string& after = m_grid.Text(first->row, first->col);
    std::string line = "Row " + std::to_string(first->row) + ": " + nameOf(m_grid, first->col) + " " +
                       first->before + (after.empty() ? " was emptied" : " became " + after);
    if (const auto more = std::ranges::count_if(m_cells, changed) - 1; more > 0)
        line += ", and " + std::to_string(more) + " more";
    desktop.status(line + "." + undoHint);
}

} // namespace entry
