#include "row_numbers.h"

#include "cell_painter.h"

#include <QItemSelectionModel>
#include <QPainter>

namespace shell {

void RowNumbers::paintSection(QPainter* painter, const QRect& box, int row) const {
    if (!m_plain || m_plain->font() != font()) {
        m_plain.emplace(font());
        QFont bold = font();
        bold.setBold(true);
        m_bold.emplace(bold);
    }
    const QPalette colours = palette();
    painter->fillRect(box, colours.color(QPalette::Button));
    const QColor line = colours.color(QPalette::Mid);
    painter->fillRect(QRect(box.right(), box.top(), 1, box.height()), line);
    painter->fillRect(QRect(box.left(), box.bottom(), box.width(), 1), line);

    const Figures& figures = selectionModel()->rowIntersectsSelection(row, {}) ? *m_bold : *m_plain;
    const QString text = model()->headerData(row, Qt::Vertical, Qt::DisplayRole).toString();
    const std::string plain = text.toStdString();
    const QRect inner = box.adjusted(CellPainter::padding, 0, -CellPainter::padding - 1, -1);
    painter->setPen(colours.color(QPalette::ButtonText));
    if (figures.knows(plain)) {
        const double left = inner.left() + inner.width() - figures.width(plain);
        figures.draw(*painter, left, inner.top(), inner.height(), plain);
    } else {
        painter->setFont(figures.font());
        painter->drawText(inner, Qt::AlignRight | Qt::AlignVCenter | Qt::TextSingleLine, text);
    }
}

} // namespace shell
