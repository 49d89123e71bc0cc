#pragma once

#include "sheet/grid.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

// The ground as the book has it: cross-sections by chainage and the long section, from the texts of the
// cells.

namespace survey {

/// A point of the ground. Metres; `offset` is measured from the centre line and negative on the left.
struct GroundPoint {
    double chainage;
    double offset;
    double level; ///< the R.Level. cell
    int row;

    friend bool operator==(const GroundPoint&, const GroundPoint&) = default;
};

/// A chainage text in metres: "01-250.5", "1+250.5" and "1250.5" are all 1250.5. Nothing for a text that is
/// none, "CP" and the empty text among them. Letters in front of the figures are passed over.
[[nodiscard]] std::optional<double> chainageMetres(std::string_view text);

/// All ground points of a book in the order of the road: by chainage, then from left to right, then by row.
/// A point needs a chainage, an offset and a level that are numbers; change points and "TBM" rows are none.
///
/// Follows the grid as its listener. A change costs nothing but a note until the points are asked for; then
/// each noted row costs two searches, and the whole book is read anew only after hundreds of notes. Row
/// numbers behind an inserted or removed row are put right in one pass over plain numbers.
class Sections final : public sheet::GridListener {
  public:
    explicit Sections(const sheet::Grid& grid);

    [[nodiscard]] std::span<const GroundPoint> points();
    /// The points of one chainage, from left to right.
    [[nodiscard]] std::span<const GroundPoint> at(double chainage);
    /// The centre points by chainage; of several at one chainage the first in the book.
    [[nodiscard]] std::vector<GroundPoint> longSection();
    /// The point that stands in `row`.
    [[nodiscard]] std::optional<GroundPoint> inRow(int row);
    /// Rows with a chainage, an offset and a reading that lack their level: the book wants reducing.
    [[nodiscard]] int rowsWithoutLevel();
    /// Grows with every change of the points, so that what was made of them can be told to be old.
    [[nodiscard]] std::size_t version();

    void textChanged(int row, int col, const std::string& before) override;
    void rowsInserted(int row, int count, sheet::Marks) override;
    void rowsRemoved(int row, const sheet::RemovedRows& before, sheet::Marks) override;

  private:
    enum class Kind : unsigned char { None, WithoutLevel, Ground };
    struct Place {
        GroundPoint point{};
        Kind kind = Kind::None;
    };

    [[nodiscard]] Place read(int row) const;
    void refresh();
    void readAll();
    void update(int row);
    void renumber(int from, int by);
    void drop(const Place& place);
    [[nodiscard]] std::vector<GroundPoint>::iterator find(const GroundPoint& point);

    const sheet::Grid& m_grid;
    std::vector<GroundPoint> m_points;
    std::vector<Place> m_places; // by row
    std::vector<int> m_touched;
    int m_withoutLevel = 0;
    std::size_t m_version = 0;
    bool m_stale = true;
};

} // namespace survey
