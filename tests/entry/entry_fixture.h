#pragma once

#include "entry/key_entry.h"
#include "project/book.h"

#include "field_book.h"
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
    project::Book book;
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
        book.notices.bookBegins();
        desktop.boxes.clear();
        desktop.beeps = 0;
        grid.setRows(1);
        keyRows(grid, splitAt(rows, '|'));
        for (int r = 1; r < grid.Rows(); ++r)
            for (int c = 0; c < grid.Cols(); ++c)
                if (const std::string text = grid.Text(r, c); text.ends_with('?')) {
                    grid.setText(r, c, text.substr(0, text.size() - 1));
                    grid.setCellBackColor(r, c, sheet::suspiciousReading);
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

    [[nodiscard]] std::string rows() const { return shownRows(grid); }
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
};
