#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace sheet {

/// A cell background; a default one is the window's own colour.
struct Colour {
    std::uint32_t rgb = 0xFFFFFFFF;

    [[nodiscard]] bool isNone() const { return rgb == 0xFFFFFFFF; }
    friend bool operator==(Colour, Colour) = default;
};

inline constexpr Colour noColour{};
constexpr Colour rgb(unsigned red, unsigned green, unsigned blue) {
    return {(red << 16) | (green << 8) | blue};
}

inline constexpr Colour dataError = rgb(250, 200, 50);          ///< a row that the transfer rejects
inline constexpr Colour suspiciousReading = rgb(250, 210, 230); ///< a reading that fails the entry checks

/// Told of every change of a visible grid. While the grid is hidden it hears nothing but visibleChanged;
/// showing the grid sends one allChanged.
class GridListener {
  public:
    virtual ~GridListener() = default;
    virtual void cellChanged(int row, int col) = 0;
    virtual void rowsChanged(int oldRows, int newRows) = 0;
    virtual void cursorMoved() = 0;
    virtual void visibleChanged() = 0;
    virtual void allChanged() = 0;
};

/// The grid control as the program knows it: texts, colours, widths, a cursor and a selection. Row 0 is the
/// header. The cursor (Row, Col) is the anchor of the selection and the cell that typing goes to; RowSel and
/// ColSel are its far end, and setting Row or Col collapses the selection onto the cursor.
///
/// An index outside the grid raises SubscriptOutOfRange (9). The cursor never stands on the header.
class Grid {
  public:
    explicit Grid(int cols, int rows = 2);

    [[nodiscard]] int Rows() const { return m_rows; }
    [[nodiscard]] int Cols() const { return m_cols; }
    /// Drops rows from the bottom or adds empty ones, in amortised constant time a row; never below 1 row
    /// (the header). The cursor is kept inside.
    void setRows(int rows);

    [[nodiscard]] int Row() const { return m_row; }
    [[nodiscard]] int Col() const { return m_col; }
    [[nodiscard]] int RowSel() const { return m_rowSel; }
    [[nodiscard]] int ColSel() const { return m_colSel; }
    void setRow(int row);
    void setCol(int col);
    void moveTo(int row, int col);
    void setSelection(int rowSel, int colSel); ///< the far end; the cursor stays

    [[nodiscard]] const std::string& Text(int row, int col) const { return cell(row, col).text; }
    void setText(int row, int col, std::string text);
    [[nodiscard]] const std::string& Text() const { return Text(m_row, m_col); }
    void setText(std::string text) { setText(m_row, m_col, std::move(text)); }

    [[nodiscard]] Colour CellBackColor(int row, int col) const { return cell(row, col).background; }
    void setCellBackColor(int row, int col, Colour colour);
    void setCellBackColor(Colour colour) { setCellBackColor(m_row, m_col, colour); }

    [[nodiscard]] int ColWidth(int col) const; ///< twips
    void setColWidth(int col, int twips);

    [[nodiscard]] bool Visible() const { return m_visible; }
    void setVisible(bool visible);
    [[nodiscard]] double FontSize() const { return m_fontSize; } ///< points
    void setFontSize(double points);

    void setListener(GridListener* listener) { m_listener = listener; }

    /// Keeps the listener from hearing single changes of a visible grid while many are made; the end sends
    /// one allChanged.
    class Hold {
      public:
        explicit Hold(Grid& grid) : m_grid(grid) { m_grid.hold(); }
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        ~Hold() { m_grid.release(); }

      private:
        Grid& m_grid;
    };

  private:
    struct Cell {
        std::string text;
        Colour background;
    };

    void hold();
    void release();
    [[nodiscard]] std::size_t index(int row, int col) const;
    [[nodiscard]] const Cell& cell(int row, int col) const { return m_cells[index(row, col)]; }
    template <typename Call>
    void tell(Call&& call);

    int m_cols;
    int m_rows;
    int m_row = 1;
    int m_col = 0;
    int m_rowSel = 1;
    int m_colSel = 0;
    bool m_visible = true;
    double m_fontSize = 8.25;
    std::vector<Cell> m_cells; // row by row
    std::vector<int> m_colWidths;
    GridListener* m_listener = nullptr;
    int m_holds = 0;
};

} // namespace sheet
