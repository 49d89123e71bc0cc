#include "list_painter.h"

#include "../text.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace shell {

using drawing::Layer;

ListPainter::ListPainter(QPainter& painter, const ListLook& look, QPointF origin, qreal perMillimetre)
    : m_painter(painter), m_look(look), m_origin(origin), m_perMillimetre(perMillimetre) {}

bool ListPainter::take(Layer layer, unsigned parts) {
    const bool isRest = layer == Layer::Frame || layer == Layer::Text;
    const Part part = isRest ? Rest : layer == Layer::Grid ? Uprights : Ground;
    if ((parts & part) == 0) return false;
    const int number = static_cast<int>(layer);
    if (std::exchange(m_layer, number) == number) return true;
    const auto index = static_cast<std::size_t>(number);
    QPen pen(m_look.ink[index], m_look.width[index]);
    pen.setJoinStyle(Qt::RoundJoin);
    if (layer == Layer::Neighbour) pen.setStyle(Qt::DashLine);
    if (layer == Layer::Centre) pen.setStyle(Qt::DashDotLine);
    m_painter.setPen(pen);
    return true;
}

void ListPainter::lines(const drawing::DisplayList& list, unsigned parts) {
    for (const drawing::Line& line : list.lines)
        if (take(line.layer, parts)) m_painter.drawLine(place(line.from), place(line.to));
    QPolygonF places;
    for (const drawing::Polyline& line : list.polylines) {
        if (!take(line.layer, parts)) continue;
        places.clear();
        for (const drawing::Place at : line.places)
            places.append(place(at));
        m_painter.drawPolyline(places);
    }
}

void ListPainter::texts(const drawing::DisplayList& list) {
    // What one unit of the letters' size gives as height of a capital.
    QFont font = m_look.font;
    font.setPixelSize(1000);
    const qreal capital = QFontMetricsF(font, m_painter.device()).capHeight() / 1000;
    qreal height = 0;
    bool wasPlain = false;
    for (const drawing::Text& each : list.texts) {
        // Without shaping there are no ligatures, which a reader of a PDF file would find in place of
        // letters.
        const bool plain =
            std::ranges::all_of(each.text, [](char c) { return static_cast<signed char>(c) >= 0; });
        if (height != each.height || plain != wasPlain) {
            height = each.height;
            wasPlain = plain;
            font.setPixelSize(std::max(1, qRound(height * m_perMillimetre / capital)));
            font.setStyleStrategy(plain ? QFont::PreferNoShaping : QFont::PreferDefault);
            m_painter.setFont(font);
        }
        m_painter.setPen(m_look.ink[static_cast<std::size_t>(each.layer)]);
        m_layer = -1;
        const QString words = fromUtf8(each.text);
        const QPointF at = place(each.at);
        qreal left = 0;
        if (each.align != drawing::Align::Left) {
            const qreal width = m_painter.fontMetrics().horizontalAdvance(words);
            left = each.align == drawing::Align::Right ? -width : -width / 2;
        }
        if (each.angle == 0) {
            m_painter.drawText(QPointF(at.x() + left, at.y()), words);
            continue;
        }
        m_painter.save();
        m_painter.translate(at);
        m_painter.rotate(-each.angle);
        m_painter.drawText(QPointF(left, 0), words);
        m_painter.restore();
    }
}

} // namespace shell
