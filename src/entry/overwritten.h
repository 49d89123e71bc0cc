#pragma once

#include "desktop/desktop.h"
#include "sheet/book.h"

#include <string>
#include <vector>

namespace entry {

/// The end of a line that tells what a key did, as long as Undo takes that key back.
inline constexpr const char* undoHint = " Ctrl+Z takes it back; Guarded editing keeps it from happening.";

/// True when a letter that makes another row of this one would cost what was keyed: a sight, a level or a
/// remark. Chainage and offset that Enter laid there do not count.
[[nodiscard]] bool isFilled(const sheet::Grid& grid, int row);

/// Watches one key from here to its end for texts that it replaces or empties: in other rows than the
/// cursor's, which nobody looks at, and in the cursor's row when a letter writes over what was keyed.
class Overwritten final : public sheet::GridListener {
  public:
    Overwritten(sheet::Book& book, bool ownRowToo);
    Overwritten(const Overwritten&) = delete;
    Overwritten& operator=(const Overwritten&) = delete;
    ~Overwritten() override;

    /// "Row 9: chainage 00-020 became 00-000." and the hint; nothing when all went where one looks.
    void tell(desktop::Desktop& desktop) const;

    void textChanged(int row, int col, const std::string& before) override;
    void rowsInserted(int row, int count, sheet::Marks) override;

  private:
    struct Cell {
        int row, col;
        std::string before;
    };

    sheet::Grid& m_grid;
    int m_row;
    bool m_ownRowToo;
    bool m_hadRow2; ///< before the key
    std::vector<Cell> m_cells;
};

} // namespace entry
