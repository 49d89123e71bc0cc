#pragma once

#include "column_guess.h"

#include "desktop/desktop.h"
#include "project/book.h"
#include "project/project_commands.h"

#include <array>
#include <string>
#include <vector>

namespace exchange {

/// Something to be said before a table is taken.
struct ImportNote {
    std::string text;
    bool leavesOut = false; ///< something of the table is not taken, or not as it was meant
};

using BookRow = std::array<std::string, sheet::columnCount>;

struct TakenTable {
    std::vector<BookRow> rows;
    std::vector<int> sources; ///< the sheet's row of each
    std::vector<ImportNote> notes;

    [[nodiscard]] bool leavesOut() const;
};

/// The rows that a book gets of `table`, and what cannot be taken of it. Readings and offsets are the stored
/// values at seven significant digits at most, levels to 0.1 mm, chainages and remarks what the sheet shows;
/// "+" between kilometres and metres becomes "-". Rows that are empty in all columns that count are passed
/// over. With a column Kind of reading, a back sight behind the fore sight on the same point goes into its
/// row.
[[nodiscard]] TakenTable takeTable(const tables::Table& table, const Layout& layout);

/// How rows go on below a book. All its levels hang on row 1, so a back sight that opens the rows must be one
/// on the change point that the book ends with: it goes into that point's row.
struct Joint {
    int above = 0;       ///< the last row of the book that holds anything; 0: none
    bool shares = false; ///< the first of the rows is the point of that row
    ImportNote note;     ///< what is to be said of it; leavesOut: they cannot go there
};
[[nodiscard]] Joint jointBelow(const sheet::Grid& grid, const std::vector<BookRow>& rows);

enum class ImportPlace { Replace, AddBelow };

/// Puts rows into the book: in its place, after an unsaved one was set aside, or below the last row that
/// holds anything, if they can go on there. The levels are left to Cal.
project::Outcome importRows(project::Book& book, desktop::Desktop& desktop, const std::vector<BookRow>& rows,
                            ImportPlace place);

} // namespace exchange
