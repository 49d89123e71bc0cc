#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace sheet {

/// A cell background; a default one is the window's own colour.
struct Colour {
    std::uint32_t rgb = 0xFFFFFFFF;

    [[nodiscard]] bool isNone() const { return rgb == 0xFFFFFFFF; }
    friend bool operator==(Colour, Colour) = default;
};

inline constexpr Colour noColour{};
constexpr Colour rgb(unsigned red, unsigned green, unsigned blue) {
    return {(red << 16) | (green << 8) | blue};
}

inline constexpr Colour dataError = rgb(250, 200, 50);          ///< a row that the transfer rejects
inline constexpr Colour suspiciousReading = rgb(250, 210, 230); ///< a reading that fails the entry checks

/// The texts of one row, a text a column. Rows are moved by their handles, never text by text.
using RowTexts = std::shared_ptr<std::string[]>;

/// Whether the colour of a row's first cell goes with the row when rows come and go above it. All other
/// colours keep their position.
enum class Marks { Stay, Move };

/// What went with removed rows.
struct RemovedRows {
    struct Mark {
        int row, col; ///< where it was
        Colour colour;
    };
    std::vector<RowTexts> texts; ///< of each row; they do not change as long as they are in no grid
    std::vector<Mark> colours;   ///< of the removed rows and of the positions that there are no more

    [[nodiscard]] int count() const { return static_cast<int>(texts.size()); }
};

/// Told of every change of a grid, after it, hidden or not. A text or a colour that is set to what it is
/// already is no change.
class GridListener {
  public:
    virtual ~GridListener() = default;
    virtual void textChanged(int /*row*/, int /*col*/, const std::string& /*before*/) {}
    virtual void colourChanged(int /*row*/, int /*col*/, Colour /*before*/) {}
    virtual void rowsInserted(int /*row*/, int /*count*/, Marks) {} ///< also rows added at the end
    virtual void rowsRemoved(int /*row*/, const RemovedRows& /*before*/, Marks) {}
    virtual void cursorMoved() {} ///< or the selection; not when the rows under the cursor are removed
    virtual void visibleChanged() {}
    virtual void lookChanged() {} ///< column widths or the size of the letters
    virtual void bookBegins() {}  ///< what changes from here on is another book
};

} // namespace sheet
