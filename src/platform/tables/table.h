#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

// What a file of tables holds, whatever its format: a sheet of cells as its program would show them.

namespace tables {

enum class CellKind : std::uint8_t {
    Empty,
    Text,
    Number,
    Date,   ///< a date or a time of day; only its shown text counts
    Truth,  ///< TRUE or FALSE
    Error,  ///< #DIV/0! and the like
    NoValue ///< a formula that was saved without its result
};

struct Cell {
    CellKind kind = CellKind::Empty;
    double number = 0; ///< the stored value of a Number, whatever its format shows of it
    std::string shown; ///< UTF-8, as the sheet shows it

    friend bool operator==(const Cell&, const Cell&) = default;
};

struct Row {
    int number = 0; ///< of the sheet, from 1
    std::vector<Cell> cells;
};

/// Cells that the sheet shows as one, rows and columns from 1; what they show stands in the first.
struct Merged {
    int firstRow = 0, firstCol = 0, lastRow = 0, lastCol = 0;
};

/// One sheet of a file, and the names of all. Rows without any content are left out.
struct Table {
    std::vector<std::string> sheets; ///< empty name: delimited text, which has one sheet
    std::size_t sheet = 0;           ///< which of them this is
    char separator = 0;              ///< between the fields of delimited text; 0 otherwise
    std::vector<Row> rows;
    std::vector<Merged> merged;
    std::vector<std::string> notes; ///< what the reader could not bring along
};

/// What is taken of one sheet at most; a file with more is refused or, where a note says so, cut.
inline constexpr int mostRows = 1'048'576;
inline constexpr int mostColumns = 702; ///< A to ZZ
inline constexpr std::size_t mostCells = 4'000'000;
inline constexpr std::size_t longestText = 32'767;              ///< bytes of one cell
inline constexpr std::size_t mostText = std::size_t{256} << 20; ///< bytes of all cells, as texts

/// A file that cannot be read; what() says why and can be shown.
class Unreadable : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// "A" for 1, "AB" for 28.
[[nodiscard]] std::string columnName(int column);

} // namespace tables
