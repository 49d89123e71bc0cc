#include "grid.h"

#include "basic/runtime_error.h"

#include <algorithm>
#include <utility>

namespace sheet {

Grid::Grid(int cols, int rows)
    : m_cols(cols),
      m_rows(rows),
      m_cells(static_cast<std::size_t>(cols) * static_cast<std::size_t>(rows)),
      m_colWidths(static_cast<std::size_t>(cols)) {}

std::size_t Grid::index(int row, int col) const {
    if (row < 0 || row >= m_rows || col < 0 || col >= m_cols)
        throw basic::RuntimeError(basic::SubscriptOutOfRange);
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(m_cols) + static_cast<std::size_t>(col);
}

template <typename Call>
void Grid::tell(Call&& call) {
    if (m_listener != nullptr && m_visible && m_holds == 0) std::forward<Call>(call)(*m_listener);
}

void Grid::setRows(int rows) {
    rows = std::max(rows, 1);
    if (rows == m_rows) return;
    const int oldRows = m_rows;
    m_rows = rows;
    m_cells.resize(static_cast<std::size_t>(rows) * static_cast<std::size_t>(m_cols));
    const int lowest = std::max(rows - 1, 1);
    m_row = std::min(m_row, lowest);
    m_rowSel = std::min(m_rowSel, lowest);
    tell([&](GridListener& listener) { listener.rowsChanged(oldRows, rows); });
}

void Grid::setRow(int row) {
    moveTo(row, m_col);
}

void Grid::setCol(int col) {
    moveTo(m_row, col);
}

void Grid::moveTo(int row, int col) {
    if (row < 1) throw basic::RuntimeError(basic::SubscriptOutOfRange);
    static_cast<void>(index(row, col));
    m_row = m_rowSel = row;
    m_col = m_colSel = col;
    tell([](GridListener& listener) { listener.cursorMoved(); });
}

void Grid::setSelection(int rowSel, int colSel) {
    if (rowSel < 1) throw basic::RuntimeError(basic::SubscriptOutOfRange);
    static_cast<void>(index(rowSel, colSel));
    m_rowSel = rowSel;
    m_colSel = colSel;
    tell([](GridListener& listener) { listener.cursorMoved(); });
}

void Grid::setText(int row, int col, std::string text) {
    m_cells[index(row, col)].text = std::move(text);
    tell([=](GridListener& listener) { listener.cellChanged(row, col); });
}

void Grid::setCellBackColor(int row, int col, Colour colour) {
    m_cells[index(row, col)].background = colour;
    tell([=](GridListener& listener) { listener.cellChanged(row, col); });
}

int Grid::ColWidth(int col) const {
    static_cast<void>(index(0, col));
    return m_colWidths[static_cast<std::size_t>(col)];
}

void Grid::setColWidth(int col, int twips) {
    static_cast<void>(index(0, col));
    m_colWidths[static_cast<std::size_t>(col)] = twips;
    tell([](GridListener& listener) { listener.allChanged(); });
}

void Grid::setVisible(bool visible) {
    if (visible == m_visible) return;
    m_visible = visible;
    if (m_listener == nullptr) return;
    m_listener->visibleChanged();
    tell([](GridListener& listener) { listener.allChanged(); });
}

void Grid::setFontSize(double points) {
    m_fontSize = points;
    tell([](GridListener& listener) { listener.allChanged(); });
}

void Grid::hold() {
    ++m_holds;
}

void Grid::release() {
    --m_holds;
    tell([](GridListener& listener) { listener.allChanged(); });
}

} // namespace sheet
