#include "cell_painter.h"

#include "../text.h"
#include "grid_model.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>

namespace shell {
namespace {

QColor mixed(const QColor& a, const QColor& b, int percentOfA) {
    const auto mix = [percentOfA](int x, int y) { return (x * percentOfA + y * (100 - percentOfA)) / 100; };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

bool within(int value, int a, int b) {
    return value >= std::min(a, b) && value <= std::max(a, b);
}

} // namespace

void CellPainter::begin(const QWidget& widget) {
    const QPalette& palette = widget.palette();
    m_base = palette.color(QPalette::Base);
    m_ink = palette.color(QPalette::Text);
    m_line = mixed(m_ink, m_base, 16);
    // Without the focus the frame stays, but paler: typing would not go there.
    m_frame = widget.hasFocus() ? palette.color(QPalette::Highlight) : mixed(m_ink, m_base, 50);
    if (!m_figures || m_figures->font() != widget.font()) m_figures.emplace(widget.font());
}

void CellPainter::paint(QPainter& painter, const QRect& box, int row, int col) const {
    const bool cursor = row == m_grid.Row() && col == m_grid.Col();
    const bool selected =
        within(row, m_grid.Row(), m_grid.RowSel()) && within(col, m_grid.Col(), m_grid.ColSel());
    const sheet::Colour mark = m_grid.CellBackColor(row, col);

    QColor paper = mark.isNone() ? m_base : QColor(QRgb(mark.rgb));
    const QColor pen = mark.isNone() ? m_ink : QColor(paper.lightness() > 128 ? Qt::black : Qt::white);
    if (cursor)
        paper = mixed(m_frame, paper, mark.isNone() ? 22 : 8);
    else if (selected)
        paper = mixed(m_frame, paper, 32);

    if (paper != m_base) painter.fillRect(box, paper);
    const QColor line = paper == m_base ? m_line : mixed(m_ink, paper, 16);
    painter.fillRect(QRect(box.right(), box.top(), 1, box.height()), line);
    painter.fillRect(QRect(box.left(), box.bottom(), box.width(), 1), line);
    const std::string& cell = m_grid.Text(row, col);
    if (!cell.empty()) {
        painter.setPen(pen);
        drawText(painter, box.adjusted(padding, 0, -padding - 1, -1), cell, col, cursor);
    }
    if (cursor) {
        painter.setPen(QPen(m_frame, 2));
        painter.drawRect(box.adjusted(1, 1, -1, -1));
    }
}

void CellPainter::drawText(QPainter& painter, const QRect& box, const std::string& cell, int col,
                           bool typing) const {
    const Qt::Alignment alignment = columnAlignment(col);
    if (m_figures->knows(cell)) {
        const double left = box.width() - m_figures->width(cell);
        if (left >= 0) {
            m_figures->draw(painter, box.left() + (alignment.testFlag(Qt::AlignRight) ? left : 0), box.top(),
                            box.height(), cell);
            return;
        }
    }
    // While a cell is being typed into, its end is what the surveyor watches.
    const QString shown = painter.fontMetrics().elidedText(
        fromUtf8(cell), typing ? Qt::ElideLeft : Qt::ElideRight, box.width());
    painter.drawText(box, int(alignment) | Qt::TextSingleLine, shown);
}

} // namespace shell
