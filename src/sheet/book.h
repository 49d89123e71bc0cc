#pragma once

#include "grid.h"
#include "heading.h"
#include "notices.h"

#include <array>
#include <string>
#include <vector>

namespace sheet {

/// Columns of the field book.
enum Column : int {
    Chainage,
    Left,
    Center,
    Right,
    BackSight,
    InterSight,
    ForeSight,
    HgtInst,
    RLevel,
    Remark
};
inline constexpr int columnCount = 10;

/// Values of the Settings controls that steer keyboard entry; each member is named after its control.
struct Settings {
    std::string cboIncr = "10";   ///< chainage increment, metres
    std::string cboSide = "Left"; ///< starting side; only the first letter counts
    int cboSideIndex = 0;         ///< chosen item of cboSide; -1 when its text was typed and is no item
    bool chkAuto = false;
    bool chkOft = false;
    bool chkFinal = false;
    bool chk005 = false;
    bool chkAdd = false;
    std::string txtAdd;
    std::vector<std::string> lstOft; ///< "L02.50": side letter and distance, in list order

    [[nodiscard]] bool startsLeft() const { return !cboSide.empty() && cboSide.front() == 'L'; }
};

/// Fixed offsets of one side: element 0 holds the count, entries from 1 on. Metres.
using OffsetArray = std::array<float, 201>;

/// The grid, which is the field book, and the state that keys and commands share. It knows no files:
/// project/book.h does.
struct Book {
    Grid MSFG{columnCount};
    char CurrentSide = 'C';   ///< 'L', 'R' or 'C': the side being keyed
    float CurrentHI = 0;      ///< running height of instrument, metres
    float LastReading = 0;    ///< the reading just keyed or reduced, metres
    bool Guarded = false;     ///< guarded editing: keys leave alone what lies elsewhere or is filled
    bool BookChanged = false; ///< unsaved changes; not cleared by Save
    Heading JobHeading;
    Notices notices; ///< what commands did beside what was meant
    Settings settings;
    OffsetArray LeftOffsets{};
    OffsetArray RightOffsets{};

    Book();
};

/// Writes the ten header texts and widths, column by column, and puts the cursor on row 1, column 0.
void writeHeader(Grid& grid);

} // namespace sheet
