#pragma once

#include "grid.h"

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace sheet {

/// What a command did by its rules that the user may neither have meant nor seen.
struct Notice {
    /// What spares the user the effect.
    enum Remedy { None, Undo, UndoOrGuard };

    int row = 0;      ///< 0: about the whole book
    int col = -1;     ///< the cell that was changed; -1: none
    std::string text; ///< without the row and the full stop: "chainage 00-020 became 00-000"
    Remedy remedy = None;
    std::string after{}; ///< what the cell was changed to

    friend bool operator==(const Notice&, const Notice&) = default;
};

/// Collects the notices: those of an action become one line, and all of a book stay in a list. As a listener
/// of the grid it keeps their rows, drops those of removed ones, and begins anew with a new book.
class Notices final : public GridListener {
  public:
    static constexpr std::size_t mostKept = 500; ///< in the list; all are counted in the line

    void add(Notice notice);
    /// The same, unless the book has such a notice already.
    void addOnce(Notice notice);
    /// "chainage 00-020 became 00-000"; `before` is what stood in the cell.
    void addChange(const Grid& grid, int row, int col, const std::string& before, Notice::Remedy remedy);

    struct Line {
        std::string text; ///< "Row 9: chainage 00-020 became 00-000, and 2 more."; empty: nothing to tell
        Notice::Remedy remedy = Notice::None; ///< of the one that it names
    };
    /// The line about all that came since the last call.
    [[nodiscard]] Line takeLine();
    /// The same is not to be told: it was taken back.
    void dropUntold();

    /// What still holds, the oldest first: a notice about a cell goes while the cell has another text.
    [[nodiscard]] std::vector<Notice> list(const Grid& grid) const;

    void rowsInserted(int row, int count, Marks) override;
    void rowsRemoved(int row, const RemovedRows& before, Marks) override;
    void bookBegins() override;

  private:
    std::deque<Notice> m_told;
    std::vector<Notice> m_untold;
    std::size_t m_count = 0; ///< of the untold ones with those that were not kept
};

} // namespace sheet
