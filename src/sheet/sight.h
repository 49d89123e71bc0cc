#pragma once

#include "book.h"

#include <array>
#include <optional>
#include <string_view>

// What a row of the book says: the one place that decides on a row's kind, its reading, its side and offset,
// and on whether it is a point of the ground. Nothing here changes a grid. Metres throughout.

namespace sheet {

enum class RowKind {
    Start,        ///< row 1: the level and the back sight that the book begins with
    Intermediate, ///< something stands in I.S., were it no number, and whatever else the row holds
    ChangePoint,  ///< no I.S., and an F.S. that is not 0; the text "CP" plays no part
    None          ///< nothing was read
};

struct Sight {
    RowKind kind = RowKind::None;
    float reading = 0; ///< the I.S. or the F.S.; 0 on the starting row and where nothing was read
};

/// What was read on `row` (1 and on). A text that is no number reads as 0. Raises Overflow (6) for a number
/// beyond single precision.
[[nodiscard]] Sight sightAt(const Grid& grid, int row);

/// The level of a point read with the instrument at `height`: height - reading, not yet narrowed.
[[nodiscard]] constexpr double levelBelow(float height, double reading) {
    return double{height} - reading;
}

/// The height of an instrument that reads `backSight` on a point of the level `level`. At a change point the
/// reduction hands on the level as levelBelow gave it; keying narrows it first, because it shows the level
/// before the back sight is keyed, so that the last digit may differ. Raises Overflow (6).
[[nodiscard]] float heightAbove(double level, double backSight);

/// How a command picks points of the ground out of the rows. The commands differ on purpose.
struct GroundRule {
    std::array<Column, 3> columns; ///< Left, Center and Right; the last one that is filled gives the point
    bool takesTbm;                 ///< a row with the remark "TBM" is a point like any other
    bool needsLevel;               ///< rows without an R.Level. are passed over, else they are faults
    bool blankIsEmpty;             ///< a chainage of blanks counts as none, and blanks around "CP" as nothing
};

/// The transfer writes side by side into one record, so that the rightmost column stays.
inline constexpr GroundRule transferRule{{Left, Center, Right}, false, false, false};
/// Formation levels belong to the centre where a row names it. A missing level must not become level 0.
inline constexpr GroundRule formationRule{{Right, Left, Center}, true, true, false};
/// The update of formation levels writes the centre apart, then one side.
inline constexpr GroundRule formationUpdateRule{{Center, Right, Left}, true, true, true};
/// The project file stores one signed offset a row, and every row whatever it holds.
inline constexpr GroundRule fileRule{{Center, Left, Right}, true, false, false};

struct Point {
    Column column;     ///< Left, Center or Right
    double offset = 0; ///< as keyed, also in Center

    [[nodiscard]] char side() const { return column == Left ? 'L' : column == Center ? 'C' : 'R'; }
};

/// The point that a row names; none when Left, Center and Right are empty.
[[nodiscard]] std::optional<Point> pointAt(const Grid& grid, int row, const GroundRule& rule);

/// True unless the row has no chainage, is a change point ("CP" in any case), a "TBM" or a bench mark without
/// an offset, or lacks what the rule needs.
[[nodiscard]] bool isGround(const Grid& grid, int row, const GroundRule& rule);

/// A remark that states the level of a bench mark: "name = level". The name may be empty, blanks do not
/// count, and the number must be the whole of what follows the last "=".
struct KnownLevel {
    std::string_view name; ///< part of the remark that was read
    double level;
};
[[nodiscard]] std::optional<KnownLevel> knownLevelIn(std::string_view remark);

/// True for a row whose remark is a known level and whose Left, Center and Right are empty: it is not ground.
[[nodiscard]] bool isBenchMark(const Grid& grid, int row);

} // namespace sheet
