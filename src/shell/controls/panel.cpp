#include "panel.h"

#include "../text.h"
#include "command_button.h"
#include "makers.h"
#include "metrics.h"

#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace shell {

Panel::Panel(const QString& name, const QString& title, QWidget* parent)
    : QFrame(parent), m_scroll(new QScrollArea), m_columns(nullptr), m_buttons(new QHBoxLayout) {
    setObjectName(name);
    setAccessibleName(title);
    setFrameStyle(int(QFrame::Box) | int(QFrame::Plain));
    setForegroundRole(QPalette::Mid); // of the outline
    setAutoFillBackground(true);

    auto* heading = new QLabel(title);
    heading->setObjectName(name + QStringLiteral("Title"));
    QFont face = heading->font();
    face.setBold(true);
    face.setPointSizeF(face.pointSizeF() * 1.25);
    heading->setFont(face);

    auto* rule = new QFrame;
    rule->setFrameStyle(int(QFrame::HLine) | int(QFrame::Plain));
    rule->setForegroundRole(QPalette::Mid);

    auto* inside = new QWidget;
    m_columns = new QHBoxLayout(inside);
    m_columns->setContentsMargins(0, 0, 0, 0);
    m_columns->setSpacing(2 * panelMargin);
    nextColumn();
    m_scroll->setWidget(inside);
    m_scroll->widget()->installEventFilter(this);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    m_buttons->addStretch(1);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(panelMargin, panelTop, panelMargin, panelMargin);
    column->setSpacing(fieldGap);
    column->addWidget(heading);
    column->addWidget(rule);
    column->addWidget(m_scroll, 1);
    column->addLayout(m_buttons);
    hide();
}

void Panel::nextColumn() {
    auto* column = new QVBoxLayout;
    m_body = new QGridLayout;
    m_body->setHorizontalSpacing(fieldGap);
    m_body->setVerticalSpacing(lineGap);
    m_body->setColumnStretch(1, 1);
    column->addLayout(m_body);
    column->addStretch();
    m_columns->addLayout(column);
}

void Panel::placeWithin(const QRect& area, const QRect& most) {
    m_area = area;
    m_most = most;
    place();
}

void Panel::place() {
    if (m_area.isEmpty()) return;
    QWidget* inside = m_scroll->widget();
    inside->layout()->activate();
    const QSize least = inside->minimumSizeHint();
    const QSize content = m_fills ? least : inside->sizeHint().expandedTo(least);
    const QMargins around = layout()->contentsMargins();
    int width = content.width();
    int height =
        content.height() + around.top() + around.bottom() + layout()->spacing() * (layout()->count() - 1);
    for (int i = 0; i < layout()->count(); ++i) {
        QLayoutItem* item = layout()->itemAt(i);
        if (item->widget() == m_scroll) continue;
        width = std::max(width, item->sizeHint().width());
        height += item->sizeHint().height();
    }
    QSize wanted(width + around.left() + around.right() + 2 * frameWidth(), height + 2 * frameWidth());
    const bool fits = wanted.width() <= m_area.width() && wanted.height() <= m_area.height();
    const QRect& area = fits ? m_area : m_most;
    if (m_fills) wanted = wanted.expandedTo(area.size());
    if (wanted.height() > area.height()) wanted.rwidth() += m_scroll->verticalScrollBar()->sizeHint().width();
    const QSize size = wanted.boundedTo(area.size());
    const QPoint corner((area.width() - size.width()) / 2, (area.height() - size.height()) / 3);
    setGeometry(QRect(area.topLeft() + corner, size));
}

bool Panel::eventFilter(QObject* watched, QEvent* event) {
    // The scroll area keeps from the panel that the body wants another size.
    if (watched == m_scroll->widget() && event->type() == QEvent::LayoutRequest) place();
    return QFrame::eventFilter(watched, event);
}

bool Panel::event(QEvent* event) {
    const bool done = QFrame::event(event);
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Show) place();
    return done;
}

QLabel* Panel::addLine(const QString& label, QWidget* field, const QString& unit) {
    const int row = m_body->rowCount();
    auto* caption = new QLabel(label);
    caption->setBuddy(field);
    if (field->accessibleName().isEmpty()) {
        QString name = plainCaption(label).trimmed();
        while (name.endsWith(u':') || name.endsWith(u' '))
            name.chop(1);
        field->setAccessibleName(unit.isEmpty() ? name : name + QStringLiteral(", ") + unit);
    }
    m_body->addWidget(caption, row, 0, Qt::AlignLeft | Qt::AlignVCenter);
    m_body->addWidget(field, row, 1);
    QLabel* measure = nullptr;
    if (!unit.isEmpty()) {
        measure = new QLabel(unit);
        m_body->addWidget(measure, row, 2, Qt::AlignLeft | Qt::AlignVCenter);
    }
    m_lines[field] = {caption, measure};
    return caption;
}

void Panel::setLineVisible(QWidget* field, bool visible) {
    const Line& line = m_lines.at(field);
    for (QWidget* part : std::initializer_list<QWidget*>{field, line.caption, line.unit}) {
        if (part == nullptr) continue;
        keepRoomWhenHidden(*part);
        part->setVisible(visible);
    }
}

void Panel::addWide(QWidget* widget) {
    m_body->addWidget(widget, m_body->rowCount(), 0, 1, 3);
}

void Panel::fillWith(QWidget* content) {
    delete m_columns->takeAt(0);
    m_body = nullptr;
    m_columns->addWidget(content);
    m_fills = true;
}

} // namespace shell
