#include "flex_grid.h"

#include "characters.h"
#include "grid_model.h"

#include "sheet/book.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>

#include <algorithm>

// What the user does with the keys and the mouse.

namespace shell {
namespace {

std::optional<entry::EditKey> editKey(int key) {
    switch (key) {
    case Qt::Key_Delete:
        return entry::EditKey::Delete;
    case Qt::Key_F2:
        return entry::EditKey::F2;
    case Qt::Key_F3:
        return entry::EditKey::F3;
    case Qt::Key_F9:
        return entry::EditKey::F9;
    case Qt::Key_F12:
        return entry::EditKey::F12;
    default:
        return std::nullopt;
    }
}

} // namespace

void FlexGrid::keyPressEvent(QKeyEvent* event) {
    if (navigate(*event)) {
        event->accept();
        return;
    }
    const bool plain = !(event->modifiers() & (Qt::AltModifier | Qt::MetaModifier));
    const char32_t character = characterOf(*event);
    if (const auto key = editKey(event->key()); key && plain && keyDown) {
        keyDown(*key);
    } else if (event->key() == Qt::Key_Slash && event->modifiers().testFlag(Qt::KeypadModifier) && keyDown &&
               (m_grid.Col() == sheet::Left || m_grid.Col() == sheet::Right)) {
        // The keypad's divide is a key without an effect there, not a character.
    } else if (character != 0 && character != 9 && keyPress) {
        keyPress(character);
    } else {
        event->ignore();
        return;
    }
    event->accept();
    flush();
}

void FlexGrid::inputMethodEvent(QInputMethodEvent* event) {
    for (const uint code : event->commitString().toUcs4()) {
        if (keyPress) keyPress(char32_t(code));
    }
    event->accept();
    flush();
}

QVariant FlexGrid::inputMethodQuery(Qt::InputMethodQuery query) const {
    if (query == Qt::ImEnabled) return bool(keyPress);
    if (query == Qt::ImCursorRectangle) return visualRect(m_model->index(m_grid.Row() - 1, m_grid.Col()));
    return QTableView::inputMethodQuery(query);
}

bool FlexGrid::navigate(const QKeyEvent& event) {
    const bool extend = event.modifiers().testFlag(Qt::ShiftModifier);
    const bool control = event.modifiers().testFlag(Qt::ControlModifier);
    if (event.modifiers() & (Qt::AltModifier | Qt::MetaModifier)) return false;
    Cell to = extend ? Cell{m_grid.RowSel(), m_grid.ColSel()} : Cell{m_grid.Row(), m_grid.Col()};
    const int page =
        std::max(1, viewport()->height() / std::max(1, verticalHeader()->defaultSectionSize()) - 1);
    const int lastRow = m_grid.Rows() - 1;
    const int lastCol = m_grid.Cols() - 1;
    switch (event.key()) {
    case Qt::Key_Up:
        to.row -= 1;
        break;
    case Qt::Key_Down:
        to.row += 1;
        break;
    case Qt::Key_Left:
        to.col -= 1;
        break;
    case Qt::Key_Right:
        to.col += 1;
        break;
    case Qt::Key_PageUp:
        to.row -= page;
        break;
    case Qt::Key_PageDown:
        to.row += page;
        break;
    case Qt::Key_Home:
        to = {control ? 1 : to.row, 0};
        break;
    case Qt::Key_End:
        to = {control ? lastRow : to.row, lastCol};
        break;
    default:
        return false;
    }
    goTo(Cell{std::clamp(to.row, 1, lastRow), std::clamp(to.col, 0, lastCol)}, extend);
    return true;
}

void FlexGrid::goTo(Cell cell, bool extend) {
    if (move)
        move(cell.row, cell.col, extend);
    else if (extend)
        m_grid.setSelection(cell.row, cell.col);
    else
        m_grid.moveTo(cell.row, cell.col);
    flush();
}

FlexGrid::Cell FlexGrid::cellAt(const QPoint& point) const {
    const int row = verticalHeader()->logicalIndexAt(std::clamp(point.y(), 0, viewport()->height() - 1));
    const int col = horizontalHeader()->logicalIndexAt(std::clamp(point.x(), 0, viewport()->width() - 1));
    return {row < 0 ? m_grid.Rows() - 1 : row + 1, col < 0 ? m_grid.Cols() - 1 : col};
}

void FlexGrid::mousePressEvent(QMouseEvent* event) {
    event->accept();
    if (event->button() != Qt::LeftButton || !indexAt(event->position().toPoint()).isValid()) return;
    goTo(cellAt(event->position().toPoint()), event->modifiers().testFlag(Qt::ShiftModifier));
    // The check of the cell that was left may have shown a message, and the button was let go there.
    m_dragging = QApplication::mouseButtons().testFlag(Qt::LeftButton) || !event->spontaneous();
}

void FlexGrid::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
    if (mouseMove) mouseMove();
    if (!m_dragging || !event->buttons().testFlag(Qt::LeftButton)) return;
    const QPoint point = event->position().toPoint();
    dragTo(point);
    if (viewport()->rect().contains(point))
        m_autoScroll.stop();
    else if (!m_autoScroll.isActive())
        m_autoScroll.start(50, this);
}

void FlexGrid::dragTo(const QPoint& point) {
    Cell cell = cellAt(point);
    if (point.y() < 0)
        cell.row = std::max(1, m_grid.RowSel() - 1);
    else if (point.y() >= viewport()->height())
        cell.row = std::min(m_grid.Rows() - 1, m_grid.RowSel() + 1);
    if (cell.row == m_grid.RowSel() && cell.col == m_grid.ColSel()) return;
    goTo(cell, true);
}

void FlexGrid::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_autoScroll.timerId())
        QTableView::timerEvent(event);
    else if (m_dragging)
        dragTo(viewport()->mapFromGlobal(QCursor::pos()));
    else
        m_autoScroll.stop();
}

void FlexGrid::mouseReleaseEvent(QMouseEvent* event) {
    event->accept();
    m_dragging = false;
    m_autoScroll.stop();
}

void FlexGrid::mouseDoubleClickEvent(QMouseEvent* event) {
    mousePressEvent(event);
    if (doubleClick && event->button() == Qt::LeftButton) doubleClick();
}

void FlexGrid::contextMenuEvent(QContextMenuEvent* event) {
    event->accept();
    if (!contextMenu) return;
    if (event->reason() != QContextMenuEvent::Mouse) { // the menu key: at the cursor
        const QRect cell = visualRect(m_model->index(m_grid.Row() - 1, m_grid.Col()));
        return contextMenu(viewport()->mapToGlobal(cell.center()));
    }
    const Cell cell = cellAt(event->pos());
    const auto [top, bottom] = std::minmax({m_grid.Row(), m_grid.RowSel()});
    const auto [left, right] = std::minmax({m_grid.Col(), m_grid.ColSel()});
    const bool inside = cell.row >= top && cell.row <= bottom && cell.col >= left && cell.col <= right;
    if (!inside && indexAt(event->pos()).isValid()) goTo(cell, false);
    contextMenu(event->globalPos());
}

} // namespace shell
