#pragma once

#include "basic/files.h"
#include "sheet/book.h"

#include <string>
#include <string_view>
#include <vector>

/// A file below tests/data.
inline std::string testData(std::string_view name) {
    return std::string(ZAVRO_TEST_DATA) + "/" + std::string(name);
}

/// The rows of one of the books in tests/data/books, header included; no cell of theirs holds a comma.
inline std::vector<std::vector<std::string>> bookRows(std::string_view name) {
    std::vector<std::vector<std::string>> rows;
    for (std::string_view line : basic::readLines(testData("books/" + std::string(name) + ".csv"))) {
        auto& row = rows.emplace_back();
        for (std::size_t comma = 0; comma != std::string_view::npos;) {
            comma = line.find(',');
            row.emplace_back(line.substr(0, comma));
            line.remove_prefix(comma == std::string_view::npos ? line.size() : comma + 1);
        }
    }
    return rows;
}

inline void loadBook(sheet::Book& book, std::string_view name) {
    const auto rows = bookRows(name);
    book.MSFG.setRows(static_cast<int>(rows.size()));
    for (std::size_t row = 1; row < rows.size(); ++row)
        for (std::size_t col = 0; col < rows[row].size(); ++col)
            book.MSFG.setText(static_cast<int>(row), static_cast<int>(col), rows[row][col]);
}
