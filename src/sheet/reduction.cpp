#include "reduction.h"

#include "cells.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <string>

namespace sheet {
namespace {

// "1-5", "1-50" and "01-50" as people key them become six characters; all other texts stay.
void normaliseChainage(Grid& grid, int row) {
    std::string text = grid.Text(row, Chainage);
    const std::size_t before = text.size();
    if (text.substr(basic::left(text, 1).size()).starts_with('-')) text.insert(0, 1, '0');
    const auto pad = [&text](std::size_t length, const char* zeros, std::size_t tail) {
        if (basic::length(text) != length) return;
        const std::string kilometres(basic::left(text, 3));
        text = kilometres + zeros + std::string(basic::right(text, tail));
    };
    pad(4, "00", 1);
    pad(5, "0", 2);
    if (text.size() != before) grid.setText(row, Chainage, std::move(text));
}

void reduceRow(Book& book, int row) {
    Grid& grid = book.MSFG;
    if (!grid.Text(row, InterSight).empty()) {
        book.LastReading = basic::cSng(cellValue(grid, row, InterSight));
        grid.setText(row, RLevel, levelText(basic::cSng(double{book.CurrentHI} - double{book.LastReading})));
    } else {
        book.LastReading = basic::cSng(cellValue(grid, row, ForeSight));
        if (book.LastReading == 0) return;
        const double level = double{book.CurrentHI} - double{book.LastReading};
        grid.setText(row, RLevel, levelText(basic::cSng(level)));
        book.CurrentHI = basic::cSng(level + cellValue(grid, row, BackSight));
        grid.setText(row, HgtInst, levelText(book.CurrentHI));
    }
    normaliseChainage(grid, row);
}

} // namespace

void reduceLevels(Book& book, desktop::Desktop& desktop) {
    Grid& grid = book.MSFG;
    if (grid.Rows() < 3) return;
    int row = 1;
    try {
        desktop.showProgress();
        grid.setVisible(false);
        book.CurrentHI = basic::cSng(cellValue(grid, 1, RLevel) + cellValue(grid, 1, BackSight));
        grid.setText(1, HgtInst, levelText(book.CurrentHI));
        const auto rows = static_cast<float>(grid.Rows());
        for (row = 2; row < grid.Rows(); ++row) {
            reduceRow(book, row);
            desktop.setProgress(static_cast<float>(row) * 100 / rows);
        }
        grid.setVisible(true);
        desktop.hideProgress();
    } catch (const basic::RuntimeError& error) {
        desktop.status("Cal stopped at row " + std::to_string(row));
        desktop.messageBox(error.description());
    }
}

} // namespace sheet
