#pragma once

#include "grid.h"

#include <optional>
#include <string>

namespace sheet {

/// What is looked for in a book.
struct Wanted {
    std::string text;       ///< the case of ASCII letters does not count
    int col = -1;           ///< the only column that is searched; -1: all
    bool whole = false;     ///< the cell is this text, or the same number in another form
    bool backwards = false; ///< up and to the left
};

struct Hit {
    int row, col;
    bool wrapped; ///< beyond the end of the book, from the other end on
};

/// The next cell behind `row`, `col` that holds what is wanted, the one at `row`, `col` last; row by row from
/// left to right. Nothing for an empty text. Linear in the cells.
[[nodiscard]] std::optional<Hit> find(const Grid& grid, const Wanted& wanted, int row, int col);

} // namespace sheet
