#include "box_header.h"

#include <QAbstractItemView>
#include <QEvent>
#include <QScrollBar>

#include <algorithm>

namespace shell {

BoxHeader::BoxHeader(QWidget* parent) : QHeaderView(Qt::Horizontal, parent) {
    QObject::connect(this, &QHeaderView::sectionResized, this, [this] { arrange(); });
}

void BoxHeader::setBoxes(std::vector<QWidget*> boxes) {
    for (QWidget* box : m_boxes)
        box->deleteLater();
    m_boxes = std::move(boxes);
    int column = 0;
    for (QWidget* box : m_boxes) {
        box->setParent(viewport());
        box->installEventFilter(this);
        box->show();
        resizeSection(column, std::max(sectionSizeHint(column), box->sizeHint().width()));
        ++column;
    }
    updateGeometry();
    arrange();
}

int BoxHeader::boxHeight() const {
    int height = 0;
    for (const QWidget* box : m_boxes)
        height = std::max(height, box->sizeHint().height());
    return height;
}

QSize BoxHeader::sectionSizeFromContents(int section) const {
    const QSize caption = QHeaderView::sectionSizeFromContents(section);
    return {caption.width(), caption.height() + boxHeight()};
}

void BoxHeader::paintSection(QPainter* painter, const QRect& rect, int section) const {
    QHeaderView::paintSection(painter, rect.adjusted(0, 0, 0, -boxHeight()), section);
}

void BoxHeader::updateGeometries() {
    QHeaderView::updateGeometries();
    arrange();
}

void BoxHeader::arrange() {
    const int high = boxHeight();
    int column = 0;
    for (QWidget* box : m_boxes) {
        box->setGeometry(sectionViewportPosition(column), height() - high, sectionSize(column), high);
        ++column;
    }
}

bool BoxHeader::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusIn)
        if (auto* view = qobject_cast<QAbstractItemView*>(parentWidget())) {
            const auto column = std::ranges::find(m_boxes, watched) - m_boxes.begin();
            const QModelIndex first = view->indexAt(QPoint(0, 0));
            view->scrollTo(model()->index(std::max(0, first.row()), static_cast<int>(column)));
        }
    return QHeaderView::eventFilter(watched, event);
}

} // namespace shell
