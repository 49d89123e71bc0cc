#pragma once

#include "grid_listener.h"

#include <span>
#include <string>
#include <vector>

namespace sheet {

/// The grid control as the program knows it: texts, colours, widths, a cursor and a selection. Row 0 is the
/// header. The cursor (Row, Col) is the anchor of the selection and the cell that typing goes to; RowSel and
/// ColSel are its far end, and setting Row or Col collapses the selection onto the cursor.
///
/// It is the one gate for changes of the book: whoever must know of them listens to it. An index outside the
/// grid raises SubscriptOutOfRange (9). The cursor never stands on the header.
class Grid {
  public:
    explicit Grid(int cols, int rows = 2);
    Grid(Grid&&) = default;
    Grid& operator=(Grid&&) = default;

    [[nodiscard]] int Rows() const { return static_cast<int>(m_rows.size()); }
    [[nodiscard]] int Cols() const { return m_cols; }
    /// Drops rows from the bottom or adds empty ones, in amortised constant time a row; never below 1 row
    /// (the header). The cursor is kept inside.
    void setRows(int rows);
    /// Puts rows in front of `row`, or behind the last one: empty ones, or those of which texts are given,
    /// which must be in no grid. The cursor keeps its place. Costs the move of one handle for each row below.
    void insertRows(int row, int count, Marks marks);
    void insertRows(int row, std::vector<RowTexts> texts, Marks marks);
    /// Takes rows out from `row` (1 or more) on. The cursor is kept inside.
    void removeRows(int row, int count, Marks marks);
    /// Another book begins with what is put into the grid next: colours go, texts stay until they are set.
    void beginBook();

    [[nodiscard]] int Row() const { return m_row; }
    [[nodiscard]] int Col() const { return m_col; }
    [[nodiscard]] int RowSel() const { return m_rowSel; }
    [[nodiscard]] int ColSel() const { return m_colSel; }
    void setRow(int row) { moveTo(row, m_col); }
    void setCol(int col) { moveTo(m_row, col); }
    void moveTo(int row, int col);
    void setSelection(int rowSel, int colSel); ///< the far end; the cursor stays

    [[nodiscard]] const std::string& Text(int row, int col) const {
        check(row, col);
        return m_rows[static_cast<std::size_t>(row)][col];
    }
    /// The texts of a whole row, a text a column; good until the number of rows changes.
    [[nodiscard]] std::span<const std::string> Texts(int row) const {
        check(row, 0);
        return {m_rows[static_cast<std::size_t>(row)].get(), static_cast<std::size_t>(m_cols)};
    }
    void setText(int row, int col, std::string text);
    [[nodiscard]] const std::string& Text() const { return Text(m_row, m_col); }
    void setText(std::string text) { setText(m_row, m_col, std::move(text)); }

    [[nodiscard]] Colour CellBackColor(int row, int col) const;
    void setCellBackColor(int row, int col, Colour colour);
    void setCellBackColor(Colour colour) { setCellBackColor(m_row, m_col, colour); }

    [[nodiscard]] int ColWidth(int col) const; ///< twips
    void setColWidth(int col, int twips);

    [[nodiscard]] bool Visible() const { return m_visible; }
    void setVisible(bool visible);
    [[nodiscard]] double FontSize() const { return m_fontSize; } ///< points
    void setFontSize(double points);

    void addListener(GridListener& listener) { m_listeners.push_back(&listener); }
    void removeListener(GridListener& listener) { std::erase(m_listeners, &listener); }

  private:
    void check(int row, int col) const {
        if (row < 0 || row >= Rows() || col < 0 || col >= m_cols) refuseIndex();
    }
    [[noreturn]] static void refuseIndex();
    [[nodiscard]] std::vector<RowTexts> emptyRows(int count) const;
    void takeColours(int row, int count, Marks marks, std::vector<RemovedRows::Mark>& taken);
    template <typename Call>
    void tell(Call&& call);

    int m_cols;
    int m_row = 1;
    int m_col = 0;
    int m_rowSel = 1;
    int m_colSel = 0;
    bool m_visible = true;
    double m_fontSize = 8.25;
    std::vector<RowTexts> m_rows;
    std::vector<std::vector<Colour>> m_colours; // by column; below the last coloured cell there is nothing
    std::vector<int> m_colWidths;
    std::vector<GridListener*> m_listeners;
};

} // namespace sheet
