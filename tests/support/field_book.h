#pragma once

#include "basic/files.h"
#include "sheet/book.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A file below tests/data.
inline std::string testData(std::string_view name) {
    return std::string(ZAVRO_TEST_DATA) + "/" + std::string(name);
}

inline std::vector<std::string> splitAt(std::string_view text, char divider) {
    std::vector<std::string> parts;
    for (std::size_t at = 0; at <= text.size();) {
        const std::size_t end = std::min(text.find(divider, at), text.size());
        parts.emplace_back(text.substr(at, end - at));
        at = end + 1;
    }
    return parts;
}

/// The rows of one of the books in tests/data/books, header included; no cell of theirs holds a comma.
inline std::vector<std::vector<std::string>> bookRows(std::string_view name) {
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : basic::readLines(testData("books/" + std::string(name) + ".csv")))
        rows.push_back(splitAt(line, ','));
    return rows;
}

/// Fills a grid from row 1 on, the cells of each row divided by commas; the cells behind them are emptied.
inline void keyRows(sheet::Grid& grid, const std::vector<std::string>& rows) {
    grid.setRows(static_cast<int>(rows.size()) + 1);
    for (int row = 1; row < grid.Rows(); ++row) {
        std::vector<std::string> cells = splitAt(rows[static_cast<std::size_t>(row) - 1], ',');
        cells.resize(static_cast<std::size_t>(grid.Cols()));
        for (int col = 0; col < grid.Cols(); ++col)
            grid.setText(row, col, std::move(cells[static_cast<std::size_t>(col)]));
    }
}

inline void loadBook(sheet::Book& book, std::string_view name) {
    std::vector<std::string> lines = basic::readLines(testData("books/" + std::string(name) + ".csv"));
    lines.erase(lines.begin());
    keyRows(book.MSFG, lines);
}

/// The rows from row 1 on, divided by "|", and the cells of each by commas, none behind its last text; "?" is
/// the mark of a suspicious reading.
inline std::string shownRows(const sheet::Grid& grid) {
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
