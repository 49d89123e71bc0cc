#pragma once

#include "cell_painter.h"

#include "entry/key_entry.h"
#include "sheet/grid.h"

#include <QBasicTimer>
#include <QTableView>

#include <functional>
#include <optional>
#include <vector>

namespace shell {

class GridModel;

/// The grid control: shows a sheet::Grid and turns keys and mouse into what the grid's owner handles. The
/// grid is the master: cursor, selection, font, column widths and visibility are mirrored from it by flush(),
/// which runs by itself once the event at hand is done.
class FlexGrid final : public QTableView {
  public:
    explicit FlexGrid(sheet::Grid& grid, QWidget* parent = nullptr);
    ~FlexGrid() override;

    // What the owner does; a handler that is not set lets the event pass.
    std::function<void(char32_t)> keyPress;      ///< a typed character
    std::function<void(entry::EditKey)> keyDown; ///< an editing or function key
    /// The user moves the cursor to a cell, or with `extend` the far end of the selection. Not set: so be it.
    std::function<void(int row, int col, bool extend)> move;
    std::function<void()> mouseMove;         ///< the pointer moved over the grid
    std::function<void(QPoint)> contextMenu; ///< asked for, at a place of the screen
    std::function<void()> doubleClick;       ///< a double click on a cell
    std::function<void()> flushed;           ///< after every flush

    /// Shows the numbers of the rows at the left, and with them the chainages while their column is scrolled
    /// out of sight. No column of the grid, and never under the cursor.
    void showRowNumbers();

    void flush();
    [[nodiscard]] GridModel& gridModel() const { return *m_model; }
    /// The width at which no column is cut, Remark at its starting width.
    [[nodiscard]] int fullWidth() const;
    void doItemsLayout() override;

  protected:
    void rowsInserted(const QModelIndex& parent, int start, int end) override;
    bool viewportEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    [[nodiscard]] QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    struct Cell {
        int row, col;
    };

    bool navigate(const QKeyEvent& event);
    [[nodiscard]] Cell cellAt(const QPoint& point) const; // clamped to the data rows
    void goTo(Cell cell, bool extend);
    void dragTo(const QPoint& point);
    void schedule();
    void applyFont();
    void applyNumbers();
    void applyWidths();
    void showCursor();
    void updateCursorCells();

    sheet::Grid& m_grid;
    GridModel* m_model;
    CellPainter m_cells;
    double m_fontSize = 0;
    std::vector<int> m_widths; // twips as last applied
    Cell m_shownCursor{0, 0};
    Cell m_shownEnd{0, 0};
    bool m_scheduled = false;
    std::optional<int> m_firstAdded; ///< while rows that came below the last one are laid out
    bool m_dragging = false;
    bool m_numbered = false;
    int m_numberedRows = 0; ///< for which the row numbers' width was last worked out
    QBasicTimer m_autoScroll;
};

} // namespace shell
