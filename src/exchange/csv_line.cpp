#include "csv_line.h"

namespace exchange {

void appendCsvLine(std::string& text, const sheet::Grid& grid, int row) {
    for (int col = 0; col < grid.Cols(); ++col) {
        text += grid.Text(row, col);
        text += ',';
    }
    text += "\r\n";
}

} // namespace exchange
