#include "profile_view.h"

#include "list_painter.h"
#include "metrics.h"

#include "../text.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>

namespace shell {
namespace {

using drawing::GroundPlace;
using drawing::Layer;

constexpr double clickReach = 24;    // pixels to a point that a click still chooses
constexpr double uprightShare = 0.2; // above and below a point, its upright and figures count nearly as it
constexpr double markRoom = 9;       // pixels between points from which each has its mark
constexpr int leastLines = 4;        // a plot lower than so many lines of text has no figures below it
constexpr double clearance = 2;      // millimetres between the lowest ground and the datum line
constexpr double mostAcross = 10;    // a cross-section is not drawn taller, or its shape is lost
constexpr double denseRoom = 4;      // pixels between corners of a line from which on it is drawn smooth
constexpr double wheelStep = 1.25;   // zoom for a notch of the wheel

QColor mixed(const QColor& a, const QColor& b, qreal share) {
    return QColor::fromRgbF(float(a.redF() * share + b.redF() * (1 - share)),
                            float(a.greenF() * share + b.greenF() * (1 - share)),
                            float(a.blueF() * share + b.blueF() * (1 - share)));
}

/// The greatest of 1, 2 and 5 times a power of ten that is at most `most`.
double roundBelow(double most) {
    const double power = std::pow(10, std::floor(std::log10(most)));
    return power * (most >= 5 * power ? 5 : most >= 2 * power ? 2 : 1);
}

ListLook lookOf(const QWidget& widget) {
    const QPalette& palette = widget.palette();
    const QColor ink = palette.color(QPalette::Text);
    const QColor base = palette.color(QPalette::Base);
    ListLook look{{}, {}, widget.font()};
    const auto set = [&look](Layer layer, const QColor& colour, qreal width) {
        look.ink[static_cast<std::size_t>(layer)] = colour;
        look.width[static_cast<std::size_t>(layer)] = width;
    };
    set(Layer::Ground, ink, 1.6);
    set(Layer::Grid, mixed(ink, base, 0.3), 1);
    set(Layer::Text, ink, 1);
    set(Layer::Frame, mixed(ink, base, 0.6), 1);
    set(Layer::Centre, mixed(palette.color(QPalette::Highlight), ink, 0.7), 1);
    set(Layer::Neighbour, mixed(ink, base, 0.35), 1);
    return look;
}

} // namespace

ProfileView::ProfileView(QWidget* parent) : QWidget(parent) {
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

QSize ProfileView::sizeHint() const {
    return {60 * fontMetrics().averageCharWidth(), 18 * fontMetrics().height()};
}

QSize ProfileView::minimumSizeHint() const {
    return {24 * fontMetrics().averageCharWidth(), 8 * fontMetrics().height()};
}

double ProfileView::letterHeight() const {
    return QFontMetricsF(font()).capHeight() * 0.9;
}

double ProfileView::perMillimetre() const {
    return logicalDpiX() / 25.4;
}

// In a low pane the plot has the room of the figures.
double ProfileView::figureRow() const {
    const double plot = height() - plotTop() - drawing::rowsHeight(letterHeight(), m_figureRow);
    return plot < leastLines * fontMetrics().height() ? 0 : m_figureRow;
}

double ProfileView::plotTop() const {
    return fontMetrics().height() + 2 * margin;
}

QRectF ProfileView::plotArea() const {
    const double h = letterHeight();
    const double left = drawing::headWidth(h) + margin;
    return {left, plotTop(), std::max(1.0, width() - left - margin),
            std::max(1.0, height() - plotTop() - drawing::rowsHeight(h, figureRow()) - margin)};
}

void ProfileView::show(ProfileContent content) {
    m_content = std::move(content);
    m_figureRow = drawing::fittingRow(m_content.ground, m_content.figures);
    if (m_fitted) fit();
    redraw();
    mark(m_row);
}

void ProfileView::mark(int row) {
    m_row = row;
    const auto found = std::ranges::find(m_content.rows, row);
    const int marked = found == m_content.rows.end() ? -1 : static_cast<int>(found - m_content.rows.begin());
    m_marked = marked;
    update();
}

void ProfileView::redraw() {
    m_plot = {};
    update();
}

double ProfileView::exaggeration() const {
    return m_content.ground.empty() ? 0 : m_sight.levelPerMetre / m_sight.perMetre;
}

void ProfileView::fit() {
    m_fitted = true;
    redraw();
    if (m_content.ground.empty()) return;
    const QRectF area = plotArea();
    double from = m_content.ground.front().along;
    double to = m_content.ground.back().along;
    double low = 1e300;
    double high = -1e300;
    const auto take = [&](const std::vector<GroundPlace>& ground) {
        const auto [lowest, highest] = std::ranges::minmax(ground, {}, &GroundPlace::level);
        low = std::min(low, lowest.level);
        high = std::max(high, highest.level);
    };
    take(m_content.ground);
    std::ranges::for_each(m_content.neighbours, take);
    if (!(to - from > 0)) {
        from -= 0.5;
        to += 0.5;
    }
    const double inner = std::max(1.0, area.width() - 2 * letterHeight());
    m_sight.perMetre = inner / (to - from);
    m_sight.along = from - letterHeight() / m_sight.perMetre;
    const double rise = std::max(high - low, 0.05);
    const double mostTimes = m_content.figures == drawing::Figures::Offset ? mostAcross : 1e6;
    // Heights are drawn 1, 2, 5, 10 ... times as tall, as far as there is room above a round datum.
    double times = roundBelow(std::min(area.height() / rise / m_sight.perMetre, mostTimes));
    for (int attempt = 0; attempt < 4; ++attempt, times = roundBelow(times * 0.9)) {
        m_sight.levelPerMetre = m_sight.perMetre * times;
        m_sight.datum = drawing::datumBelow(low, m_sight.levelPerMetre / perMillimetre(), clearance);
        if ((high - m_sight.datum) * m_sight.levelPerMetre <= area.height() - clearance) break;
    }
}

QPointF ProfileView::pointAt(std::size_t index) const {
    const GroundPlace& at = m_content.ground.at(index);
    const QRectF area = plotArea();
    return {area.left() + (at.along - m_sight.along) * m_sight.perMetre,
            area.bottom() - (at.level - m_sight.datum) * m_sight.levelPerMetre};
}

std::pair<std::size_t, std::size_t> ProfileView::inSight() const {
    const auto& ground = m_content.ground;
    const double end = m_sight.along + plotArea().width() / m_sight.perMetre;
    auto first = std::ranges::lower_bound(ground, m_sight.along, {}, &GroundPlace::along);
    auto last = std::ranges::upper_bound(ground, end, {}, &GroundPlace::along);
    if (first != ground.begin()) --first;
    if (last != ground.end()) ++last;
    return {static_cast<std::size_t>(first - ground.begin()),
            static_cast<std::size_t>(last - ground.begin())};
}

void ProfileView::paintPlot() {
    m_plot = QPixmap(size() * devicePixelRatioF());
    m_plot.setDevicePixelRatio(devicePixelRatioF());
    m_plot.fill(palette().color(QPalette::Base));
    QPainter painter(&m_plot);
    painter.setPen(palette().color(QPalette::Text));
    painter.setFont(font());
    if (m_content.ground.empty()) {
        painter.drawText(rect().adjusted(margin, margin, -margin, -margin),
                         Qt::AlignCenter | Qt::TextWordWrap, m_content.nothing);
        return;
    }
    const QRectF area = plotArea();
    const QString said = fromUtf8(drawing::exaggerationText(exaggeration()));
    const QRectF head(margin, margin, width() - 2 * margin, fontMetrics().height());
    painter.drawText(head, Qt::AlignRight | Qt::AlignVCenter, said);
    const double room = head.width() - fontMetrics().horizontalAdvance(said) - groupGap;
    painter.drawText(head, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(m_content.title, Qt::ElideRight, int(room)));

    const double millimetre = perMillimetre();
    drawing::ProfileStyle style;
    style.scale = {1000 * millimetre / m_sight.perMetre, 1000 * millimetre / m_sight.levelPerMetre};
    style.figures = m_content.figures;
    style.textHeight = letterHeight() / millimetre;
    style.row = figureRow();
    style.finest = 1 / millimetre / devicePixelRatioF();
    style.window = drawing::Window{m_sight.along, area.width() / millimetre, m_sight.datum};
    const auto [first, last] = inSight();
    drawing::ProfileDrawing plot =
        drawing::drawProfile(std::span(m_content.ground).subspan(first, last - first), style);
    for (const auto& neighbour : m_content.neighbours) {
        drawing::Polyline line{Layer::Neighbour, {}};
        for (const GroundPlace& at : neighbour)
            line.places.push_back({(at.along - m_sight.along) * style.scale.perMetre(),
                                   (at.level - m_sight.datum) * style.scale.levelPerMetre()});
        plot.list.polylines.insert(plot.list.polylines.begin(), std::move(line));
    }
    if (m_content.figures == drawing::Figures::Offset) {
        const double centre = -m_sight.along * style.scale.perMetre();
        plot.list.line(Layer::Centre, {centre, 0}, {centre, area.height() / millimetre});
    }

    ListLook look = lookOf(*this);
    // A smooth line costs a hundred times a plain one, which is as good where every column has its own
    // corner.
    const bool isDense = std::ranges::any_of(plot.list.polylines, [&area](const drawing::Polyline& line) {
        return static_cast<double>(line.places.size()) > area.width() / denseRoom;
    });
    if (isDense) look.width.fill(0);
    ListPainter paint(painter, look, area.bottomLeft(), millimetre);
    painter.setClipRect(QRectF(0, area.bottom() - 1, width(), height() - area.bottom() + 1));
    paint.lines(plot.list, ListPainter::Uprights | ListPainter::Rest);
    painter.setClipRect(QRectF(0, area.top(), width(), height() - area.top()));
    paint.texts(plot.list);
    painter.setClipRect(area);
    paint.lines(plot.list, ListPainter::Uprights);
    painter.setRenderHint(QPainter::Antialiasing, !isDense);
    paint.lines(plot.list, ListPainter::Ground);
    if (static_cast<double>(last - first) * markRoom > area.width()) return;
    painter.setPen(Qt::NoPen);
    painter.setBrush(look.ink[0]);
    for (std::size_t k = first; k < last; ++k) {
        const QPointF at = pointAt(k);
        painter.drawRect(QRectF(at.x() - 2.5, at.y() - 2.5, 5, 5));
    }
}

/// A ring with a cross on the point and a line down to its figures, so that it differs in shape as well.
void ProfileView::paintMark(QPainter& painter) const {
    if (m_marked < 0) return;
    const QRectF area = plotArea();
    const QPointF at = pointAt(static_cast<std::size_t>(m_marked));
    painter.setClipRect(area.adjusted(-8, -8, 8, 0));
    painter.setRenderHint(QPainter::Antialiasing);
    const QColor colour = palette().color(QPalette::Highlight);
    painter.setPen(QPen(colour, 1.5, Qt::DashLine));
    painter.drawLine(QPointF(at.x(), area.bottom()), QPointF(at.x(), at.y() + 7));
    painter.setPen(QPen(colour, 2.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(at, 7, 7);
    painter.drawLine(QPointF(at.x() - 11, at.y()), QPointF(at.x() - 7, at.y()));
    painter.drawLine(QPointF(at.x() + 7, at.y()), QPointF(at.x() + 11, at.y()));
}

void ProfileView::paintEvent(QPaintEvent*) {
    if (m_plot.isNull()) paintPlot();
    QPainter painter(this);
    painter.drawPixmap(0, 0, m_plot);
    paintMark(painter);
    if (!hasFocus()) return;
    painter.setClipping(false);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void ProfileView::resizeEvent(QResizeEvent*) {
    if (m_fitted) fit();
    redraw();
}

void ProfileView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange && event->type() != QEvent::PaletteChange) return;
    if (m_fitted) fit();
    redraw();
}

void ProfileView::zoom(double times, QPointF at) {
    if (m_content.ground.empty()) return;
    const double span = m_content.ground.back().along - m_content.ground.front().along;
    const double least = plotArea().width() / std::max(span, 1.0) / 4;
    times = std::clamp(m_sight.perMetre * times, least, 1e5) / m_sight.perMetre;
    const QRectF area = plotArea();
    m_sight.along += (at.x() - area.left()) / m_sight.perMetre * (1 - 1 / times);
    m_sight.datum += (area.bottom() - at.y()) / m_sight.levelPerMetre * (1 - 1 / times);
    m_sight.perMetre *= times;
    m_sight.levelPerMetre *= times;
    m_fitted = false;
    redraw();
}

void ProfileView::move(QPointF by) {
    m_sight.along -= by.x() / m_sight.perMetre;
    m_sight.datum += by.y() / m_sight.levelPerMetre;
    m_fitted = false;
    redraw();
}

void ProfileView::wheelEvent(QWheelEvent* event) {
    zoom(std::pow(wheelStep, event->angleDelta().y() / 120.0), event->position());
    event->accept();
}

void ProfileView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    m_pressed = m_dragged = event->position();
    m_dragging = false;
}

void ProfileView::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) == 0) return;
    const QPointF at = event->position();
    m_dragging |= (at - m_pressed).manhattanLength() >= QApplication::startDragDistance();
    if (m_dragging) move(at - std::exchange(m_dragged, at));
}

void ProfileView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && !std::exchange(m_dragging, false))
        choose(nearest(event->position()));
}

void ProfileView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) return;
    m_dragging = true; // so that letting the button go chooses nothing
    fit();
}

void ProfileView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Plus:
        return zoom(wheelStep, plotArea().center());
    case Qt::Key_Minus:
        return zoom(1 / wheelStep, plotArea().center());
    case Qt::Key_0:
        return fit();
    case Qt::Key_Left:
        return choose(m_marked - 1);
    case Qt::Key_Right:
        return choose(m_marked + 1);
    default:
        QWidget::keyPressEvent(event);
    }
}

void ProfileView::choose(int index) {
    if (index < 0 || index >= static_cast<int>(m_content.rows.size())) return;
    const int row = m_content.rows[static_cast<std::size_t>(index)];
    mark(row);
    if (chosen) chosen(row);
}

int ProfileView::nearest(QPointF at) const {
    const auto [first, last] = inSight();
    int found = -1;
    double least = clickReach;
    for (std::size_t k = first; k < last; ++k) {
        const QPointF to = pointAt(k) - at;
        const double distance = std::hypot(to.x(), to.y() * uprightShare);
        if (distance >= least) continue;
        least = distance;
        found = static_cast<int>(k);
    }
    return found;
}

} // namespace shell
