#include "cells.h"

#include "basic/numbers.h"

namespace sheet {

double cellValue(const Grid& grid, int row, int col) {
    return basic::val(grid.Text(row, col));
}

std::string levelText(double level) {
    return basic::format(level, basic::pattern("#0.000"));
}

std::string plainText(float value) {
    return basic::plainText(value);
}

} // namespace sheet
