#pragma once

#include "drawing/display_list.h"

#include <QColor>
#include <QFont>
#include <QPointF>

#include <array>

class QPainter;

namespace shell {

/// How the layers of a drawing look. Widths are in the painter's units.
struct ListLook {
    std::array<QColor, drawing::layerCount> ink;
    std::array<qreal, drawing::layerCount> width;
    QFont font; ///< whatever its size: each text brings its height
};

/// Paints display lists: `origin` is where (0, 0) of the paper lies and `perMillimetre` how many units of the
/// painter make one millimetre.
class ListPainter {
  public:
    ListPainter(QPainter& painter, const ListLook& look, QPointF origin, qreal perMillimetre);

    enum Part : unsigned {
        Ground = 1,   ///< ground, neighbours, centre line
        Uprights = 2, ///< and what leads from them to their figures
        Rest = 4,
        All = 7
    };
    void lines(const drawing::DisplayList& list, unsigned parts = All);
    void texts(const drawing::DisplayList& list);
    [[nodiscard]] QPointF place(drawing::Place at) const {
        return {m_origin.x() + at.x * m_perMillimetre, m_origin.y() - at.y * m_perMillimetre};
    }

  private:
    bool take(drawing::Layer layer, unsigned parts);

    QPainter& m_painter;
    const ListLook& m_look;
    QPointF m_origin;
    qreal m_perMillimetre;
    int m_layer = -1; // whose pen the painter has
};

} // namespace shell
