#include "book.h"

#include <array>

namespace sheet {
namespace {

struct ColumnHead {
    const char* text;
    int twips;
};

constexpr std::array<ColumnHead, columnCount> heads{{{"Chainage", 900},
                                                     {"Left", 700},
                                                     {"Center", 650},
                                                     {"Right", 700},
                                                     {"B.S.", 700},
                                                     {"I.S.", 700},
                                                     {"F.S.", 700},
                                                     {"Hgt.Inst", 830},
                                                     {"R.Level.", 920},
                                                     {"Remark", 1600}}};

} // namespace

Book::Book() {
    writeHeader(MSFG);
}

void writeHeader(Grid& grid) {
    for (int col = 0; col < columnCount; ++col) {
        const ColumnHead& head = heads[static_cast<std::size_t>(col)];
        grid.setText(0, col, head.text);
        grid.setColWidth(col, head.twips);
    }
    grid.moveTo(1, 0);
}

} // namespace sheet
