#pragma once

#include "entry/key_entry.h"

#include "scripted_desktop.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

/// A book that is keyed into. In `type`, a line feed stands for Enter.
struct Entry : testing::Test {
    sheet::Book book;
    ScriptedDesktop desktop;
    sheet::Grid& grid = book.MSFG;

    void type(std::u32string_view keys) {
        for (const char32_t key : keys)
            entry::keyPress(book, desktop, key == U'\n' ? U'\r' : key);
    }
    void press(entry::EditKey key) { entry::keyDown(book, desktop, key); }

    /// Puts texts into row `row`, from column 0 on, adding rows as needed.
    void put(int row, std::initializer_list<const char*> texts) {
        if (row >= grid.Rows()) grid.setRows(row + 1);
        int col = 0;
        for (const char* text : texts)
            grid.setText(row, col++, text);
    }
    [[nodiscard]] std::string row(int row) const {
        std::string line;
        for (int col = 0; col < grid.Cols(); ++col)
            line += (col > 0 ? "," : "") + grid.Text(row, col);
        return line;
    }
    [[nodiscard]] std::string cursor() const {
        return std::to_string(grid.Row()) + "," + std::to_string(grid.Col());
    }
    [[nodiscard]] bool marked(int row, int col) const {
        return grid.CellBackColor(row, col) == sheet::suspiciousReading;
    }
    void setOffsets(std::vector<float> left, std::vector<float> right) {
        const auto fill = [](sheet::OffsetArray& offsets, const std::vector<float>& values) {
            offsets[0] = static_cast<float>(values.size());
            for (std::size_t i = 0; i < values.size(); ++i)
                offsets[i + 1] = values[i];
        };
        fill(book.LeftOffsets, left);
        fill(book.RightOffsets, right);
    }
    /// Row 1 keyed: level 100, back sight 1.5; the cursor is then on I.S. of row 2.
    void openRun() {
        grid.moveTo(1, sheet::RLevel);
        type(U"100\n1.5\n");
    }
};
