#include "grid_delegate.h"

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

/// Digits of one width: figures below each other line up also in a font whose digits differ.
void drawFigures(QPainter& painter, const QRect& box, const QString& figures, Qt::Alignment alignment) {
    const QFontMetrics metrics = painter.fontMetrics();
    const int digit = metrics.horizontalAdvance(u'0');
    const bool even = metrics.horizontalAdvance(u'1') == digit;
    const int width = metrics.horizontalAdvance(figures);
    if (even || !alignment.testFlag(Qt::AlignRight) || width > box.width()) {
        painter.drawText(box, int(alignment) | Qt::TextSingleLine, figures);
        return;
    }
    int right = box.right() + 1;
    for (auto i = figures.size(); i-- > 0;) {
        const QChar c = figures[i];
        const int advance = c.isDigit() ? digit : metrics.horizontalAdvance(c);
        right -= advance;
        painter.drawText(QRect(right, box.top(), advance, box.height()), Qt::AlignCenter, QString(c));
    }
}

} // namespace

GridDelegate::GridDelegate(const GridModel& model, QObject* parent)
    : QStyledItemDelegate(parent), m_model(model) {}

void GridDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                         const QModelIndex& index) const {
    const sheet::Grid& grid = m_model.grid();
    const int row = index.row() + 1;
    const int col = index.column();
    if (row >= grid.Rows()) return;

    const QPalette& palette = option.palette;
    const auto state = option.state.testFlag(QStyle::State_Enabled) ? QPalette::Active : QPalette::Disabled;
    const QColor base = palette.color(state, QPalette::Base);
    const QColor ink = palette.color(state, QPalette::Text);
    const bool focused = option.widget != nullptr && option.widget->hasFocus();
    // Without the focus the frame stays, but paler: typing would not go there.
    const QColor frame =
        focused ? palette.color(QPalette::Active, QPalette::Highlight) : mixed(ink, base, 50);

    const bool cursor = row == grid.Row() && col == grid.Col();
    const bool selected = within(row, grid.Row(), grid.RowSel()) && within(col, grid.Col(), grid.ColSel());
    const sheet::Colour mark = grid.CellBackColor(row, col);

    QColor paper = mark.isNone() ? base : QColor(QRgb(mark.rgb));
    QColor pen = mark.isNone() ? ink : (paper.lightness() > 128 ? QColor(Qt::black) : QColor(Qt::white));
    if (cursor)
        paper = mixed(frame, paper, mark.isNone() ? 22 : 8);
    else if (selected)
        paper = mixed(frame, paper, 32);

    const QRect& box = option.rect;
    painter->fillRect(box, paper);
    const QColor line = mixed(ink, base, 16);
    painter->fillRect(QRect(box.right(), box.top(), 1, box.height()), line);
    painter->fillRect(QRect(box.left(), box.bottom(), box.width(), 1), line);

    const std::string& cell = grid.Text(row, col);
    if (!cell.empty()) {
        painter->setPen(pen);
        painter->setFont(option.font);
        const QRect inside = box.adjusted(padding, 0, -padding - 1, -1);
        const QString whole = fromUtf8(cell);
        const Qt::Alignment alignment = columnAlignment(col);
        if (painter->fontMetrics().horizontalAdvance(whole) <= inside.width()) {
            drawFigures(*painter, inside, whole, alignment);
        } else {
            // While a cell is being typed into, its end is what the surveyor watches.
            const Qt::TextElideMode elide = cursor ? Qt::ElideLeft : Qt::ElideRight;
            painter->drawText(inside, int(alignment) | Qt::TextSingleLine,
                              painter->fontMetrics().elidedText(whole, elide, inside.width()));
        }
    }
    if (cursor) {
        painter->setPen(QPen(frame, 2));
        painter->drawRect(box.adjusted(1, 1, -1, -1));
    }
}

} // namespace shell
