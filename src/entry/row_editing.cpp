#include "row_editing.h"

#include "basic/numbers.h"

#include <algorithm>
#include <string>

namespace entry {
namespace {

using sheet::Grid;
using sheet::Marks;

void emptyRow(Grid& grid, int row) {
    for (int col = 0; col < grid.Cols(); ++col)
        grid.setText(row, col, {});
}

// Hides the grid while `change` runs with the row of the cursor, then shows it with the cursor in its old
// place, or on the last row when that place is gone.
template <typename Change>
void whileHidden(sheet::Book& book, Change&& change) {
    Grid& grid = book.MSFG;
    const int rows = grid.Rows();
    const int row = grid.Row();
    const int col = grid.Col();
    grid.setVisible(false);
    change(grid, row);
    if (grid.Rows() < 2) grid.setRows(2);
    if (grid.Rows() != rows) book.BookChanged = true;
    grid.moveTo(std::min(row, grid.Rows() - 1), col);
}

template <typename Command>
void showingErrors(sheet::Book& book, desktop::Desktop& desktop, Command&& command) {
    try {
        command();
    } catch (const basic::RuntimeError& error) {
        desktop.messageBox(error.description());
    }
    book.MSFG.setVisible(true);
}

int askCount(desktop::Desktop& desktop, std::string_view prompt, std::string_view title) {
    return basic::cInt(basic::val(desktop.inputBox(prompt, title)));
}

} // namespace

void insertRow(sheet::Book& book, desktop::Desktop& desktop) {
    showingErrors(book, desktop, [&] {
        whileHidden(book, [](Grid& grid, int current) {
            // Marks stay with the position here, unlike in the other three.
            grid.insertRows(current, 1, Marks::Stay);
        });
    });
}

void insertRows(sheet::Book& book, desktop::Desktop& desktop) {
    showingErrors(book, desktop, [&] {
        const int count = askCount(desktop, "Enter Number of Rows that you want to Insert", "Rows Inserting");
        if (count < 1) return;
        whileHidden(book, [count](Grid& grid, int current) {
            grid.insertRows(current, count, Marks::Move);
            for (int row = current; row < current + count; ++row)
                for (int col = 0; col < grid.Cols(); ++col)
                    grid.setCellBackColor(row, col, sheet::noColour);
        });
    });
}

void deleteRow(sheet::Book& book, desktop::Desktop& desktop) {
    showingErrors(book, desktop, [&] {
        whileHidden(book, [](Grid& grid, int current) {
            if (grid.Rows() == 2)
                emptyRow(grid, current);
            else
                grid.removeRows(current, 1, Marks::Move);
        });
    });
}

void deleteRows(sheet::Book& book, desktop::Desktop& desktop) {
    showingErrors(book, desktop, [&] {
        const Grid& grid = book.MSFG;
        int count = askCount(desktop,
                             "Enter Number of Rows want to Delete...(it counts from current row to below...)",
                             "Rows Deleting");
        if (count < 1) return;
        count = std::min(count, grid.Rows() - grid.Row());
        if (desktop.messageBox("Are you sure to delete " + std::to_string(count) +
                                   " Rows, Because ones delete then never come..",
                               desktop::Buttons::YesNoCancel, "Conferm!!!") != desktop::Answer::Yes)
            return;
        whileHidden(book, [count](Grid& rows, int current) {
            if (rows.Rows() == 2)
                emptyRow(rows, current);
            else
                rows.removeRows(current, count, Marks::Move);
        });
    });
}

} // namespace entry
