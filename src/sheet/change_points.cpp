#include "change_points.h"

#include "long_work.h"

namespace sheet {
namespace {

bool isListed(const Grid& book, int row) {
    return book.Text(row, Chainage) == "CP" || !book.Text(row, book.Cols() - 1).empty();
}

/// Fills the list's last row from one book row, with the chainage of another, and adds an empty row.
void addRow(Grid& list, const Grid& book, int row, int chainageRow) {
    const int last = list.Rows() - 1;
    list.setText(last, Chainage, book.Text(chainageRow, Chainage));
    for (int col = Left; col < columnCount; ++col)
        list.setText(last, col, book.Text(row, col));
    list.setRows(list.Rows() + 1);
}

} // namespace

Grid emptyChangePointList() {
    Grid list(listColumnCount);
    writeHeader(list);
    list.setColWidth(bookRowColumn, 1);
    return list;
}

Grid listChangePoints(Book& book, desktop::Desktop& desktop) {
    Grid list = emptyChangePointList();
    Grid& grid = book.MSFG;
    LongWork work(grid, desktop);
    addRow(list, grid, 1, 1);
    for (int row = 2; row < grid.Rows(); ++row) {
        if (isListed(grid, row)) {
            list.setText(list.Rows() - 1, bookRowColumn, std::to_string(row));
            addRow(list, grid, row, row - 1);
        }
        work.done(row, grid.Rows() - 1);
    }
    list.setRows(list.Rows() - 1);
    return list;
}

} // namespace sheet
