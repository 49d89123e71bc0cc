#include "sheet_import.h"

#include "basic/numbers.h"
#include "project/marks.h"
#include "sheet/long_work.h"

#include <algorithm>

namespace exchange {
namespace {

constexpr const char* notRunning = "1st Start Excel and Open Your Existing Field book Sheet";

bool isEmpty(const spreadsheet::Row& row) {
    return std::ranges::all_of(row, [](const std::string& cell) { return cell.empty(); });
}

/// A number in the form of its grid column; any other text, and a number beyond all range, as it stands.
std::string formatted(const std::string& text, int col) {
    if (col == sheet::Chainage || col == sheet::Remark || !basic::isNumber(text)) return text;
    const bool isLevel = col == sheet::HgtInst || col == sheet::RLevel;
    try {
        return basic::format(basic::val(text), isLevel ? basic::pattern("#0.000") : basic::pattern("#0.###"));
    } catch (const basic::RuntimeError&) {
        return text;
    }
}

/// Puts the rows into the grid, whose former content goes, marks and all. The cursor ends on the last cell
/// that was read.
void fillGrid(project::Book& book, desktop::Desktop& desktop, const std::vector<spreadsheet::Row>& rows) {
    sheet::Grid& grid = book.MSFG;
    sheet::LongWork work(grid, desktop);
    const int count = static_cast<int>(rows.size());
    grid.setRows(1);
    grid.setRows(count + 3); // header, the rows, the empty row that ended the reading, and one to go on with
    for (int row = 1; row <= count; ++row) {
        for (int col = 0; col < sheet::columnCount; ++col) {
            const auto r = static_cast<std::size_t>(row - 1);
            grid.setText(row, col, formatted(rows[r][static_cast<std::size_t>(col)], col));
        }
        work.done(row, count);
    }
    grid.moveTo(count + 1, sheet::Remark);
}

} // namespace

project::Outcome importSheet(project::Book& book, desktop::Desktop& desktop,
                             const std::function<std::vector<spreadsheet::Row>()>& readSheet) {
    std::vector<spreadsheet::Row> rows;
    try {
        rows = readSheet();
    } catch (const spreadsheet::Error& error) {
        if (error.failure() == spreadsheet::Failure::NotRunning)
            desktop.messageBox(notRunning);
        else
            desktop.status(std::string(error.what()) + "; the book is as it was");
        return error.failure() == spreadsheet::Failure::Cancelled ? project::Outcome::Cancelled
                                                                  : project::Outcome::Failed;
    }
    rows.erase(std::ranges::find_if(rows, isEmpty), rows.end());
    // An import that nobody has touched is read again as easily.
    const bool untouched = book.ImportMark != 0 && project::gridMark(book.MSFG) == book.ImportMark;
    if (!untouched && !project::mayDrop(book, desktop)) return project::Outcome::Refused;
    fillGrid(book, desktop, rows);
    book.ImportMark = project::gridMark(book.MSFG);
    desktop.status(std::to_string(rows.size()) + (rows.size() == 1 ? " row" : " rows") +
                   " imported; Cal reduces the levels");
    return project::Outcome::Done;
}

} // namespace exchange
