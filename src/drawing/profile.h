#pragma once

#include "display_list.h"
#include "figures.h"

#include <optional>
#include <span>
#include <string>
#include <vector>

// The drawing of one section: ground line, datum line, uprights, rows of figures.

namespace drawing {

/// A point of the ground line: metres along the section (chainage or offset) and its level.
struct GroundPlace {
    double along;
    double level;
};

/// Where metres lie on the paper. The datum line is at `origin.y`.
struct Frame {
    Place origin;             ///< where `along` and `datum` lie
    double along = 0;         ///< metres
    double datum = 0;         ///< metres
    double perMetre = 1;      ///< millimetres of paper for a metre along
    double levelPerMetre = 1; ///< millimetres of paper for a metre of height

    [[nodiscard]] Place place(GroundPlace at) const {
        return {origin.x + (at.along - along) * perMetre, origin.y + (at.level - datum) * levelPerMetre};
    }
    [[nodiscard]] GroundPlace ground(Place at) const {
        return {along + (at.x - origin.x) / perMetre, datum + (at.y - origin.y) / levelPerMetre};
    }
};

enum class Figures { Chainage, Offset };

/// A part of a section as a screen shows it.
struct Window {
    double along; ///< metres, at the left end of the datum line
    double width; ///< of the datum line, millimetres of paper
    double datum; ///< metres
};

struct ProfileStyle {
    Scale scale;
    Figures figures = Figures::Chainage;
    double textHeight = 2.5; ///< millimetres
    double finest = 0;       ///< points closer than this many millimetres of paper become one column, whose
                             ///< highest and lowest points stay; 0 draws every point
    std::optional<Window> window; ///< only this part is drawn, on its datum
    double tallest = 0; ///< millimetres from a datum line up; higher ground steps the datum; 0: no limit
    double row = 8;     ///< height of a row of figures under the datum line, in heights of a letter; 0: none
};

/// A part of the section that stands on one datum.
struct Stretch {
    std::size_t first; ///< points
    std::size_t last;  ///< the same point as the first of the next stretch
    Frame frame;
};

struct ProfileDrawing {
    DisplayList list;
    std::vector<Stretch> stretches; ///< at least one when there are points
};

/// Draws a section whose points come in their order along it. The left end of the datum line lies at (0, 0);
/// of a window also the points just outside it are wanted, and what leaves it is not cut off. Raises nothing;
/// without points the list is empty.
[[nodiscard]] ProfileDrawing drawProfile(std::span<const GroundPlace> ground, const ProfileStyle& style);

/// The points that stand for all of them where several fall into one column of `width` metres: the first, the
/// last, the highest and the lowest of each, so that no peak is lost.
[[nodiscard]] std::vector<GroundPlace> thinned(std::span<const GroundPlace> ground, double width);

/// A datum for levels from `lowest` on: a level at least `clearance` millimetres of paper below it, rounded
/// to steps that are at least twice as large.
[[nodiscard]] double datumBelow(double lowest, double levelPerMetre, double clearance = 5);

/// The height of a row, in heights of a letter, that the figures of these points need.
[[nodiscard]] double fittingRow(std::span<const GroundPlace> ground, Figures figures);

/// What stands on the left of the datum line takes this much room.
[[nodiscard]] double headWidth(double textHeight);
/// Height of the rows of figures under the datum line.
[[nodiscard]] double rowsHeight(double textHeight, double row = 8);

} // namespace drawing
