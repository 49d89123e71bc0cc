#include "box_strip.h"

#include <QEvent>
#include <QHeaderView>
#include <QLabel>
#include <QScrollBar>
#include <QTableView>

#include <algorithm>
#include <utility>

namespace shell {

BoxStrip::BoxStrip(QTableView& table) : m_table(table), m_inside(new QWidget(this)) {
    table.horizontalHeader()->installEventFilter(this);
    QObject::connect(table.horizontalHeader(), &QHeaderView::sectionResized, this, [this] { arrange(); });
    QObject::connect(table.horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { arrange(); });
}

void BoxStrip::setBoxes(std::vector<QWidget*> boxes) {
    for (QWidget* box : m_boxes)
        box->deleteLater();
    m_boxes = std::move(boxes);
    int high = 0, column = 0;
    for (QWidget* box : m_boxes) {
        box->setParent(m_inside);
        box->installEventFilter(this);
        box->show();
        // Some desktops take a box of choices by the name of its label only.
        auto* label = new QLabel(box->accessibleName(), m_inside);
        label->setBuddy(box);
        label->hide();
        QObject::connect(box, &QObject::destroyed, label, &QObject::deleteLater);
        high = std::max(high, box->sizeHint().height());
        m_table.setColumnWidth(column, std::max(m_table.columnWidth(column), box->sizeHint().width()));
        ++column;
    }
    setFixedHeight(high);
    arrange();
}

void BoxStrip::arrange() {
    const QHeaderView& header = *m_table.horizontalHeader();
    m_inside->setGeometry(header.x(), 0, header.width(), height());
    int column = 0;
    for (QWidget* box : m_boxes) {
        box->setGeometry(header.sectionViewportPosition(column), 0, header.sectionSize(column), height());
        ++column;
    }
}

void BoxStrip::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

bool BoxStrip::eventFilter(QObject* watched, QEvent* event) {
    const bool isHeader = watched == m_table.horizontalHeader();
    if (isHeader && (event->type() == QEvent::Resize || event->type() == QEvent::Move)) arrange();
    if (!isHeader && event->type() == QEvent::FocusIn) {
        const auto column = static_cast<int>(std::ranges::find(m_boxes, watched) - m_boxes.begin());
        const int row = std::max(0, m_table.rowAt(0));
        m_table.scrollTo(m_table.model()->index(row, column));
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace shell
