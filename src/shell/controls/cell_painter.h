#pragma once

#include "figures.h"

#include "sheet/grid.h"

#include <QColor>
#include <QRect>

#include <optional>
#include <string>

class QPainter;
class QWidget;

namespace shell {

/// Paints the cells of a FlexGrid straight from the sheet: marking colours with text that stays readable on
/// them, the selected range, and a frame around the cursor cell.
class CellPainter {
  public:
    explicit CellPainter(const sheet::Grid& grid) : m_grid(grid) {}

    /// To be called before the cells of one paint event: takes the colours and the font of `widget`.
    void begin(const QWidget& widget);
    /// One cell; the background of the window's own colour is there already.
    void paint(QPainter& painter, const QRect& box, int row, int col) const;

    static constexpr int padding = 3; ///< between a cell's text and its left and right edge

  private:
    void drawText(QPainter& painter, const QRect& box, const std::string& cell, int col, bool typing) const;

    const sheet::Grid& m_grid;
    std::optional<Figures> m_figures; // of the font last painted with
    QColor m_base;
    QColor m_ink;
    QColor m_line;
    QColor m_frame;
};

} // namespace shell
