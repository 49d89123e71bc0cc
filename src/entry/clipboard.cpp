#include "clipboard.h"

#include <algorithm>
#include <utility>

namespace entry {
namespace {

bool isControl(char c) {
    return static_cast<unsigned char>(c) < 32 || c == 127;
}

} // namespace

std::string selectedText(const sheet::Grid& grid) {
    const auto [top, bottom] = std::minmax({grid.Row(), grid.RowSel()});
    const auto [first, last] = std::minmax({grid.Col(), grid.ColSel()});
    std::string text;
    for (int row = top; row <= bottom; ++row) {
        for (int col = first; col <= last; ++col)
            text.append(grid.Text(row, col)).append("\t");
        text += '\r';
    }
    return text;
}

void emptySelection(sheet::Grid& grid) {
    const auto [top, bottom] = std::minmax({grid.Row(), grid.RowSel()});
    const auto [first, last] = std::minmax({grid.Col(), grid.ColSel()});
    for (int row = top; row <= bottom; ++row)
        for (int col = first; col <= last; ++col)
            if (!grid.Text(row, col).empty()) grid.setText(row, col, {});
}

void pasteText(sheet::Grid& grid, std::string_view text) {
    const int startingCol = grid.Col();
    int row = grid.Row();
    int col = startingCol;
    std::string cell = grid.Text();
    const auto goTo = [&](int nextRow, int nextCol) {
        grid.setText(row, col, std::exchange(cell, {}));
        if (nextRow == grid.Rows()) grid.setRows(nextRow + 1);
        row = nextRow;
        col = nextCol;
    };
    char before = 0;
    for (const char c : text) {
        if (c == '\t') {
            if (col < grid.Cols() - 1) goTo(row, col + 1);
        } else if (c == '\r' || (c == '\n' && before != '\r')) {
            goTo(row + 1, startingCol);
        } else if (c == '\n' || !isControl(c)) {
            cell += c;
        }
        before = c;
    }
    grid.setText(row, col, std::move(cell));
    grid.moveTo(row, col);
}

void replaceText(sheet::Grid& grid, std::string_view text) {
    const int firstCol = grid.Col();
    int row = grid.Row();
    int col = firstCol;
    std::string cell;
    bool open = true; // a cell is being read; behind a tab or a line end only what follows opens one
    const auto close = [&] {
        if (open && col < grid.Cols()) {
            if (row >= grid.Rows()) grid.setRows(row + 1);
            grid.setText(row, col, std::move(cell));
            grid.moveTo(row, col);
        }
        cell.clear();
    };
    char before = 0;
    for (const char c : text) {
        const bool lineEnd = c == '\r' || (c == '\n' && before != '\r');
        if (c == '\t') {
            open = true;
            close();
            ++col;
            open = false;
        } else if (lineEnd) {
            close();
            ++row;
            col = firstCol;
            open = false;
        } else if (!isControl(c)) {
            cell += c;
            open = true;
        }
        before = c;
    }
    close();
}

} // namespace entry
