#pragma once

#include "sheet/book.h"

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

namespace entry {

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

    /// Puts what was lost among the notices.
    void tell(sheet::Notice::Remedy remedy) const;

    void textChanged(int row, int col, const std::string& before) override;

  private:
    struct Cell {
        int row, col;
        std::string before;
    };

    sheet::Book& m_book;
    int m_row;
    bool m_ownRowToo;
    int m_rows; ///< before the key
    std::vector<Cell> m_cells;
    std::unordered_set<std::uint64_t> m_known;
};

} // namespace entry
