#include "button_column.h"

#include "controls/command_button.h"
#include "controls/metrics.h"

#include <QEvent>

#include <algorithm>

namespace shell {
namespace {

int partWidth(int width, ButtonColumn::Part part) {
    const int narrow = std::max(24, width / 4);
    switch (part) {
    case ButtonColumn::Part::Half:
        return (width - gap) / 2;
    case ButtonColumn::Part::Narrow:
        return narrow;
    case ButtonColumn::Part::Wide:
        return width - gap - narrow;
    case ButtonColumn::Part::Whole:
        break;
    }
    return width;
}

} // namespace

ButtonColumn::ButtonColumn(QWidget* parent) : QWidget(parent) {
    setObjectName(QStringLiteral("buttons"));
    setMouseTracking(true);
}

void ButtonColumn::add(CommandButton* button, int group, Part part) {
    button->setParent(this);
    m_places.push_back({button, group, part});
}

int ButtonColumn::leastWidth() const {
    int width = 0;
    for (const Place& place : m_places) {
        const int wanted = place.button->widthForLines(place.part == Part::Whole ? 2 : 1);
        int whole = wanted;
        while (partWidth(whole, place.part) < wanted)
            ++whole;
        width = std::max(width, whole);
    }
    return width;
}

void ButtonColumn::arrange() {
    int y = 0;
    int x = 0;
    int lineHeight = 0;
    int group = m_places.empty() ? 0 : m_places.front().group;
    const auto endLine = [&](int space) {
        if (lineHeight > 0) y += lineHeight + space;
        x = lineHeight = 0;
    };
    for (const Place& place : m_places) {
        if (place.button->isHidden()) continue;
        const int width = partWidth(this->width(), place.part);
        if (place.group != group)
            endLine(groupGap);
        else if (x + width > this->width())
            endLine(gap);
        group = place.group;
        lineHeight = std::max(lineHeight, place.button->heightForWidth(width));
        place.button->setGeometry(x, y, width, lineHeight);
        x += width + gap;
    }
    endLine(0);
    setMinimumHeight(y);
}

void ButtonColumn::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    arrange();
}

bool ButtonColumn::event(QEvent* event) {
    const bool done = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) arrange(); // a button was shown or hidden
    return done;
}

} // namespace shell
