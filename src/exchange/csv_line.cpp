#include "csv_line.h"

namespace exchange {

void appendCsvLine(std::string& text, const sheet::Grid& grid, int row) {
    for (int col = 0; col < grid.Cols(); ++col) {
        text += grid.Text(row, col);
        text += ',';
    }
    text += "\r\n";
}

void appendCsvField(std::string& csv, std::string_view text) {
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        csv += text;
        return;
    }
    csv += '"';
    for (const char c : text) {
        if (c == '"') csv += '"';
        csv += c;
    }
    csv += '"';
}

} // namespace exchange
