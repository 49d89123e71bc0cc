#pragma once

#include "../spreadsheet.h"
#include "front_sheet.h"

#include <map>
#include <optional>
#include <vector>

namespace reader {

/// The values of columns A to J as texts, block by block from row 2 on. Cells are fetched by the block: one
/// at a time each would cost a round trip of most of a millisecond.
class CellTexts {
  public:
    explicit CellTexts(const FrontSheet& sheet);

    /// The next rows; nothing when the last block held the first empty row or the sheet ended.
    std::optional<std::vector<spreadsheet::Row>> nextBlock();

  private:
    /// Puts what is shown in place of the dates, times and truth values among the numbers of rows first ..
    /// last, all in one column. Whole stretches of one number format are asked about at once.
    void showSpecialNumbers(int column, const std::vector<bool>& isNumber,
                            std::vector<spreadsheet::Row>& rows, std::size_t first, std::size_t last);
    [[nodiscard]] std::string shown(int column, int row) const;
    [[nodiscard]] int formatType(int key);

    FrontSheet m_sheet;
    std::map<int, int> m_formatTypes;
    int m_row = 1; ///< first row of the block, counted from 0: row 0 is the heading
    int m_lastRow = 0;
    bool m_ended = false;
};

} // namespace reader
