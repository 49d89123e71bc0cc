#include "overwritten.h"

#include <algorithm>
#include <array>

namespace entry {

using sheet::Grid;
using sheet::Notice;

bool isFilled(const Grid& grid, int row) {
    constexpr std::array keyed{sheet::BackSight, sheet::InterSight, sheet::ForeSight, sheet::RLevel,
                               sheet::Remark};
    return std::ranges::any_of(keyed, [&](int col) { return !grid.Text(row, col).empty(); });
}

Overwritten::Overwritten(sheet::Book& book, bool ownRowToo)
    : m_book(book), m_row(book.MSFG.Row()), m_ownRowToo(ownRowToo), m_rows(book.MSFG.Rows()) {
    m_book.MSFG.addListener(*this);
}

Overwritten::~Overwritten() {
    m_book.MSFG.removeListener(*this);
}

// Keys add rows at the end only, so that the rows of the cells stay what they are. What a key puts into rows
// that it adds costs nothing.
void Overwritten::textChanged(int row, int col, const std::string& before) {
    if (before.empty() || row >= m_rows || (row == m_row && !m_ownRowToo)) return;
    const std::uint64_t cell = std::uint64_t(row) * sheet::columnCount + std::uint64_t(col);
    if (m_known.insert(cell).second) m_cells.push_back({row, col, before});
}

void Overwritten::tell(Notice::Remedy remedy) const {
    const Grid& grid = m_book.MSFG;
    for (const auto& [row, col, before] : m_cells)
        if (grid.Text(row, col) != before) m_book.notices.addChange(grid, row, col, before, remedy);
    if (m_rows <= 2 && grid.Rows() > 2 && grid.Text(2, sheet::Center) == "0" &&
        !(grid.Text(2, sheet::Left) + grid.Text(2, sheet::Right)).empty())
        m_book.notices.add({2, sheet::Center, "an offset stands beside Center 0", remedy, "0"});
}

} // namespace entry
