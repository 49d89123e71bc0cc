#include "book_pages.h"

#include "basic/runtime_error.h"
#include "sheet/book.h"
#include "sheet/cells.h"

#include <algorithm>
#include <cmath>

namespace survey {
namespace {

double valueOf(const sheet::Grid& grid, int row, int col) {
    try {
        return sheet::cellValue(grid, row, col);
    } catch (const basic::RuntimeError&) {
        return 0; // beyond all numbers
    }
}

std::string inBrackets(const std::string& text) {
    return text.empty() ? text : '(' + text + ')';
}

} // namespace

bool PageFoot::agrees() const {
    return std::abs(backSights - foreSights - (lastLevel - firstLevel)) < 0.0005;
}

BookPages::BookPages(const sheet::Grid& grid, Runs& runs, int linesPerPage,
                     const std::function<int(int row)>& linesOf)
    : m_grid(grid), m_runs(runs) {
    int carried = 0;
    for (int row = 1; row < grid.Rows();) {
        Rows rows{row, row, carried, 0};
        int lines = carried > 0 ? 1 : 0;
        for (; row < grid.Rows(); ++row) {
            lines += linesOf ? linesOf(row) : 1;
            if (lines > linesPerPage && row > rows.first) break;
            rows.last = row;
            if (isSight(row)) rows.lastSight = carried = row;
        }
        m_pages.push_back(rows);
    }
    m_lastSight = carried;
}

bool BookPages::isSight(int row) const {
    return row > 1 && (isInterSight(row) || valueOf(m_grid, row, sheet::ForeSight) != 0);
}

bool BookPages::isInterSight(int row) const {
    return row > 1 && !m_grid.Text(row, sheet::InterSight).empty();
}

std::pair<double, bool> BookPages::levelOf(int row) const {
    const auto level = m_runs.levelAt(row);
    return level ? std::pair(level->raw, true) : std::pair(0.0, false);
}

void BookPages::addRow(const Rows& rows, int row, BookPage& page) const {
    const bool closes = row == rows.lastSight;
    std::string back = m_grid.Text(row, sheet::BackSight);
    std::string fore = m_grid.Text(row, sheet::ForeSight);
    if (closes && !isInterSight(row)) {
        // A change point: its back sight opens the next page. Behind the last sight of all it opens nothing.
        back = row == m_lastSight && !back.empty() ? '[' + back + ']' : std::string();
    } else {
        page.foot.backSights += valueOf(m_grid, row, sheet::BackSight);
    }
    page.foot.foreSights += valueOf(m_grid, row, sheet::ForeSight);
    if (closes && isInterSight(row) && fore.empty()) {
        fore = inBrackets(m_grid.Text(row, sheet::InterSight));
        page.foot.foreSights += valueOf(m_grid, row, sheet::InterSight);
    }
    page.foot.sights += isSight(row);
    page.lines.push_back({row, false, std::move(back), std::move(fore)});
}

BookPage BookPages::page(int index) const {
    const Rows& rows = m_pages.at(static_cast<std::size_t>(index));
    BookPage page;
    const bool forward = rows.lastSight > 0 && rows.carried > 0;
    if (forward && isInterSight(rows.carried)) {
        const std::string& reading = m_grid.Text(rows.carried, sheet::InterSight);
        page.lines.push_back({rows.carried, true, inBrackets(reading), {}});
        page.foot.backSights = valueOf(m_grid, rows.carried, sheet::InterSight);
    } else if (forward) {
        page.lines.push_back({rows.carried, true, m_grid.Text(rows.carried, sheet::BackSight), {}});
        page.foot.backSights = valueOf(m_grid, rows.carried, sheet::BackSight);
    }
    for (int row = rows.first; row <= rows.last; ++row)
        addRow(rows, row, page);
    if (page.foot.sights == 0) return page;
    const auto [first, hasFirst] = levelOf(forward ? rows.carried : 1);
    const auto [last, hasLast] = levelOf(rows.lastSight);
    page.foot.firstLevel = first;
    page.foot.lastLevel = last;
    page.foot.hasLevels = hasFirst && hasLast;
    return page;
}

BookSums BookPages::sums() const {
    BookSums sums;
    for (int row = 1; row < m_grid.Rows(); ++row) {
        sums.book.backSights += valueOf(m_grid, row, sheet::BackSight);
        sums.book.foreSights += valueOf(m_grid, row, sheet::ForeSight);
        sums.book.sights += isSight(row);
    }
    if (m_lastSight == 0) return sums;
    if (isInterSight(m_lastSight)) {
        sums.closingInterSight = m_lastSight;
        if (m_grid.Text(m_lastSight, sheet::ForeSight).empty())
            sums.book.foreSights += valueOf(m_grid, m_lastSight, sheet::InterSight);
    } else if (const double unused = valueOf(m_grid, m_lastSight, sheet::BackSight); unused != 0) {
        sums.unusedBackSight = m_lastSight;
        sums.book.backSights -= unused;
    }
    double pages = 0;
    for (int index = 0; index < count(); ++index)
        pages += page(index).foot.backSights;
    sums.repeated = pages - sums.book.backSights;
    const auto [first, hasFirst] = levelOf(1);
    const auto [last, hasLast] = levelOf(m_lastSight);
    sums.book.firstLevel = first;
    sums.book.lastLevel = last;
    sums.book.hasLevels = hasFirst && hasLast;
    return sums;
}

} // namespace survey
