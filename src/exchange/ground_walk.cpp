#include "ground_walk.h"

#include "sheet/sight.h"
#include "tools/chainage.h"

namespace exchange {

const GroundReading& GroundWalk::read(int row) {
    const auto point = sheet::pointAt(m_grid, row, sheet::transferRule);
    m_reading.chainage = mdlTools::cleanChainage(m_grid.Text(row, sheet::Chainage));
    m_reading.hasOffset = point.has_value();
    if (point) {
        m_reading.side = point->side();
        m_reading.offset = point->offset;
    }
    return m_reading;
}

GroundReading GroundWalk::at(const sheet::Grid& grid, int row) {
    int from = row;
    const auto givesPoint = [&](int each) {
        return sheet::isGround(grid, each, sheet::transferRule) &&
               sheet::pointAt(grid, each, sheet::transferRule).has_value();
    };
    while (from > 1 && !givesPoint(from))
        --from;
    GroundWalk walk(grid);
    if (from < row && givesPoint(from)) walk.read(from);
    return walk.read(row);
}

} // namespace exchange
