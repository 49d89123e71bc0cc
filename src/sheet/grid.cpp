#include "grid.h"

#include "basic/runtime_error.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace sheet {

Grid::Grid(int cols, int rows)
    : m_cols(cols), m_colours(static_cast<std::size_t>(cols)), m_colWidths(static_cast<std::size_t>(cols)) {
    m_rows = emptyRows(rows);
}

void Grid::refuseIndex() {
    throw basic::RuntimeError(basic::SubscriptOutOfRange);
}

/// Rows that come together share blocks of memory; a block lives as long as one of its rows.
std::vector<RowTexts> Grid::emptyRows(int count) const {
    constexpr int mostInBlock = 16;
    std::vector<RowTexts> rows;
    rows.reserve(static_cast<std::size_t>(std::max(count, 0)));
    for (int left = count; left > 0; left -= mostInBlock) {
        const auto block = std::make_shared<std::string[]>(
            static_cast<std::size_t>(m_cols) * static_cast<std::size_t>(std::min(left, mostInBlock)));
        for (int row = 0; row < std::min(left, mostInBlock); ++row)
            rows.emplace_back(block, block.get() + static_cast<std::ptrdiff_t>(row) * m_cols);
    }
    return rows;
}

template <typename Call>
void Grid::tell(Call&& call) {
    for (GridListener* listener : m_listeners)
        call(*listener);
}

void Grid::setRows(int rows) {
    rows = std::max(rows, 1);
    if (rows > Rows())
        insertRows(Rows(), rows - Rows(), Marks::Move);
    else if (rows < Rows())
        removeRows(rows, Rows() - rows, Marks::Move);
}

void Grid::insertRows(int row, int count, Marks marks) {
    insertRows(row, emptyRows(count), marks);
}

void Grid::insertRows(int row, std::vector<RowTexts> texts, Marks marks) {
    if (row < 1 || row > Rows()) refuseIndex();
    const auto count = std::ssize(texts);
    m_rows.insert(m_rows.begin() + row, std::move_iterator(texts.begin()), std::move_iterator(texts.end()));
    std::vector<Colour>& first = m_colours.front();
    if (marks == Marks::Move && std::ssize(first) > row)
        first.insert(first.begin() + row, static_cast<std::size_t>(count), noColour);
    tell([=](GridListener& listener) { listener.rowsInserted(row, static_cast<int>(count), marks); });
}

void Grid::removeRows(int row, int count, Marks marks) {
    if (row < 1 || count < 1 || count > Rows() - row) refuseIndex();
    RemovedRows removed;
    takeColours(row, count, marks, removed.colours);
    const auto from = m_rows.begin() + row;
    removed.texts.assign(std::move_iterator(from), std::move_iterator(from + count));
    m_rows.erase(from, from + count);
    const int lowest = std::max(Rows() - 1, 1);
    m_row = std::min(m_row, lowest);
    m_rowSel = std::min(m_rowSel, lowest);
    tell([&](GridListener& listener) { listener.rowsRemoved(row, removed, marks); });
}

void Grid::takeColours(int row, int count, Marks marks, std::vector<RemovedRows::Mark>& taken) {
    for (int col = 0; col < m_cols; ++col) {
        std::vector<Colour>& colours = m_colours[static_cast<std::size_t>(col)];
        const int first = col == 0 && marks == Marks::Move ? row : Rows() - count;
        const auto from = colours.begin() + std::min<std::ptrdiff_t>(first, std::ssize(colours));
        const auto to = colours.begin() + std::min<std::ptrdiff_t>(first + count, std::ssize(colours));
        for (auto each = from; each != to; ++each)
            if (!each->isNone()) taken.push_back({static_cast<int>(each - colours.begin()), col, *each});
        colours.erase(from, to);
    }
}

void Grid::beginBook() {
    tell([](GridListener& listener) { listener.bookBegins(); });
    for (int col = 0; col < m_cols; ++col) {
        std::vector<Colour>& colours = m_colours[static_cast<std::size_t>(col)];
        for (int row = 0; row < std::ssize(colours); ++row)
            setCellBackColor(row, col, noColour);
        colours.clear();
    }
}

void Grid::moveTo(int row, int col) {
    if (row < 1) refuseIndex();
    check(row, col);
    m_row = m_rowSel = row;
    m_col = m_colSel = col;
    tell([](GridListener& listener) { listener.cursorMoved(); });
}

void Grid::setSelection(int rowSel, int colSel) {
    if (rowSel < 1) refuseIndex();
    check(rowSel, colSel);
    m_rowSel = rowSel;
    m_colSel = colSel;
    tell([](GridListener& listener) { listener.cursorMoved(); });
}

void Grid::setText(int row, int col, std::string text) {
    check(row, col);
    std::string& cell = m_rows[static_cast<std::size_t>(row)][col];
    if (cell == text) return;
    if (m_listeners.empty()) {
        cell = std::move(text);
        return;
    }
    cell.swap(text);
    tell([&](GridListener& listener) { listener.textChanged(row, col, text); });
}

Colour Grid::CellBackColor(int row, int col) const {
    check(row, col);
    const std::vector<Colour>& colours = m_colours[static_cast<std::size_t>(col)];
    return row < std::ssize(colours) ? colours[static_cast<std::size_t>(row)] : noColour;
}

void Grid::setCellBackColor(int row, int col, Colour colour) {
    const Colour before = CellBackColor(row, col);
    if (before == colour) return;
    std::vector<Colour>& colours = m_colours[static_cast<std::size_t>(col)];
    if (row >= std::ssize(colours)) colours.resize(static_cast<std::size_t>(row) + 1);
    colours[static_cast<std::size_t>(row)] = colour;
    tell([=](GridListener& listener) { listener.colourChanged(row, col, before); });
}

int Grid::ColWidth(int col) const {
    check(0, col);
    return m_colWidths[static_cast<std::size_t>(col)];
}

void Grid::setColWidth(int col, int twips) {
    check(0, col);
    m_colWidths[static_cast<std::size_t>(col)] = twips;
    tell([](GridListener& listener) { listener.lookChanged(); });
}

void Grid::setVisible(bool visible) {
    if (visible == m_visible) return;
    m_visible = visible;
    tell([](GridListener& listener) { listener.visibleChanged(); });
}

void Grid::setFontSize(double points) {
    m_fontSize = points;
    tell([](GridListener& listener) { listener.lookChanged(); });
}

} // namespace sheet
