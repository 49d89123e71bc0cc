#pragma once

#include "entry/key_entry.h"

#include "scripted_desktop.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

/// What keys make of a book. Rows stand from row 1 on, divided by "|", their cells by commas; "?" behind a
/// cell is the mark of a suspicious reading. A line feed stands for Enter.
struct Scene {
    const char* what;
    std::string_view rows;
    int row, col;
    std::u32string_view keys;
    const char* after;
    const char* end; ///< as Entry::state() tells it
};

/// A book that is keyed into.
struct Entry : testing::Test {
    sheet::Book book;
    ScriptedDesktop desktop;
    sheet::Grid& grid = book.MSFG;

    void type(std::u32string_view keys) {
        for (const char32_t key : keys)
            entry::keyPress(book, desktop, key == U'\n' ? U'\r' : key);
    }
    void press(entry::EditKey key) { entry::keyDown(book, desktop, key); }

    /// A fresh book with these rows and nothing told yet.
    void start(std::string_view rows, int row, int col) {
        const sheet::Book fresh;
        book.CurrentHI = fresh.CurrentHI;
        book.CurrentSide = fresh.CurrentSide;
        book.BookChanged = false;
        desktop.boxes.clear();
        desktop.beeps = 0;
        grid.setRows(1);
        for (std::size_t at = 0; at <= rows.size();) {
            grid.setRows(grid.Rows() + 1);
            const std::size_t end = std::min(rows.find('|', at), rows.size());
            fill(grid.Rows() - 1, rows.substr(at, end - at));
            at = end + 1;
        }
        grid.moveTo(row, col);
    }
    void play(const Scene& scene) {
        SCOPED_TRACE(scene.what);
        start(scene.rows, scene.row, scene.col);
        type(scene.keys);
        EXPECT_EQ(rows(), scene.after);
        EXPECT_EQ(state(), scene.end);
    }

    /// The rows as a scene writes them, without the commas behind their last text.
    [[nodiscard]] std::string rows() const {
        std::string all;
        for (int row = 1; row < grid.Rows(); ++row) {
            if (row > 1) all += '|';
            std::string commas;
            for (int col = 0; col < grid.Cols(); ++col, commas += ',') {
                const bool marked = grid.CellBackColor(row, col) == sheet::suspiciousReading;
                const std::string cell = grid.Text(row, col) + (marked ? "?" : "");
                if (!cell.empty()) all += std::exchange(commas, {}) + cell;
            }
        }
        return all;
    }
    /// Cursor, side, and what else there is to tell: "2,5 L changed, 1 box, 1 beep".
    [[nodiscard]] std::string state() const {
        std::string text = std::to_string(grid.Row()) + "," + std::to_string(grid.Col()) + " " +
                           static_cast<char>(book.CurrentSide);
        if (book.BookChanged) text += " changed";
        if (!desktop.boxes.empty()) text += ", " + std::to_string(desktop.boxes.size()) + " box";
        if (desktop.beeps > 0) text += ", " + std::to_string(desktop.beeps) + " beep";
        return text;
    }
    void setOffsets(const std::vector<float>& left, const std::vector<float>& right) {
        for (auto [offsets, values] : {std::pair{&book.LeftOffsets, &left}, {&book.RightOffsets, &right}}) {
            (*offsets)[0] = static_cast<float>(values->size());
            std::copy(values->begin(), values->end(), offsets->begin() + 1);
        }
    }

  private:
    void fill(int row, std::string_view cells) {
        int col = 0;
        for (std::size_t at = 0; at <= cells.size(); ++col) {
            const std::size_t end = std::min(cells.find(',', at), cells.size());
            std::string_view cell = cells.substr(at, end - at);
            if (cell.ends_with('?')) {
                grid.setCellBackColor(row, col, sheet::suspiciousReading);
                cell.remove_suffix(1);
            }
            grid.setText(row, col, std::string(cell));
            at = end + 1;
        }
    }
};
