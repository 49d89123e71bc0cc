#include "reduction.h"

#include "cells.h"
#include "sight.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <string>

namespace sheet {
namespace {

// "1-5", "1-50" and "01-50" as people key them become six characters; all other texts stay.
void normaliseChainage(Grid& grid, int row, Reduction& result) {
    const std::string_view keyed = grid.Text(row, Chainage);
    const bool oneDigit = keyed.substr(basic::left(keyed, 1).size()).starts_with('-');
    const std::size_t length = basic::length(keyed) + (oneDigit ? 1 : 0);
    if (!oneDigit && length != 4 && length != 5) return;
    std::string text = (oneDigit ? "0" : "") + std::string(keyed);
    if (length == 4 || length == 5) {
        const std::string kilometres(basic::left(text, 3));
        text = kilometres + (length == 4 ? "00" : "0") + std::string(basic::right(text, length - 3));
    }
    if (keyed.find('-') == std::string_view::npos) result.madeLonger.push_back({row, std::string(keyed)});
    grid.setText(row, Chainage, std::move(text));
}

void reduceRow(Grid& grid, int row, Reduction& result) {
    Running& running = result.running;
    const Sight sight = sightAt(grid, row);
    running.lastReading = sight.reading;
    if (sight.kind == RowKind::None) return;
    const double level = levelBelow(running.height, sight.reading);
    grid.setText(row, RLevel, levelText(basic::cSng(level)));
    if (sight.kind == RowKind::ChangePoint) {
        running.height = heightAbove(level, cellValue(grid, row, BackSight));
        grid.setText(row, HgtInst, levelText(running.height));
    }
    normaliseChainage(grid, row, result);
}

} // namespace

Reduction reduce(Grid& grid, const Running& before, const std::function<void(int row)>& rowDone) {
    Reduction result;
    result.running = before;
    if (grid.Rows() < 3) return result;
    float& height = result.running.height;
    int row = 1;
    try {
        height = heightAbove(cellValue(grid, 1, RLevel), cellValue(grid, 1, BackSight));
        grid.setText(1, HgtInst, levelText(height));
        for (row = 2; row < grid.Rows(); ++row) {
            reduceRow(grid, row, result);
            if (rowDone) rowDone(row);
        }
    } catch (const basic::RuntimeError& error) {
        result.stoppedAt = row;
        result.reason = error.description();
    }
    return result;
}

Reduction reduceLevels(Book& book, desktop::Desktop& desktop) {
    Grid& grid = book.MSFG;
    if (grid.Rows() < 3) return {};
    desktop.showProgress();
    grid.setVisible(false);
    const auto rows = static_cast<float>(grid.Rows());
    Reduction result = reduce(grid, {book.CurrentHI, book.LastReading},
                              [&](int row) { desktop.setProgress(static_cast<float>(row) * 100 / rows); });
    book.CurrentHI = result.running.height;
    book.LastReading = result.running.lastReading;
    for (const auto& [row, before] : result.madeLonger)
        book.notices.addChange(grid, row, Chainage, before, Notice::Undo);
    if (result.stopped()) {
        desktop.status("Cal stopped at row " + std::to_string(result.stoppedAt));
        desktop.messageBox(result.reason);
        return result;
    }
    grid.setVisible(true);
    desktop.hideProgress();
    return result;
}

} // namespace sheet
