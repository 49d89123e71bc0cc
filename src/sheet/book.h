#pragma once

#include "grid.h"
#include "heading.h"
#include "notices.h"

#include <array>
#include <cstdint>
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

/// What the main window holds for the whole run: the grid, which is the field book, and the state that the
/// commands share.
struct Book {
    Grid MSFG{columnCount};
    char CurrentSide = 'C';   ///< 'L', 'R' or 'C': the side being keyed
    float CurrentHI = 0;      ///< running height of instrument, metres
    float LastReading = 0;    ///< the reading just keyed or reduced, metres
    bool Guarded = false;     ///< guarded editing: keys leave alone what lies elsewhere or is filled
    bool BookChanged = false; ///< unsaved changes; not cleared by Save
    std::string CurrentFile;  ///< path of the open project
    std::string Caption{untitledCaption};
    std::string FileName = "*.grl";  ///< cdl1.FileName: the path that the common file dialog holds
    std::array<std::string, 4> mnuX; ///< the paths of the menu entries mnuX1 to mnuX4; empty: not shown yet
    std::uint64_t SavedMark =
        0;                ///< mark of the grid as it was last made, loaded or saved; 0 while all is empty
    std::string FileMark; ///< which version of the project file that was; empty: none known
    std::uint64_t ImportMark = 0;           ///< mark of the grid as an import left it
    std::uint64_t AsideMark = 0;            ///< mark of the grid that was last set aside
    std::string AsideCopy;                  ///< and where that copy is
    std::string DefaultFolder = "C:\\Road"; ///< parent of the project folders that the transfer makes
    Heading JobHeading;
    Notices notices; ///< what commands did beside what was meant
    Settings settings;
    OffsetArray LeftOffsets{};
    OffsetArray RightOffsets{};

    static constexpr const char* captionPrefix = "ZavroGrl-";
    static constexpr const char* untitledCaption = "ZavroGRL-NoName.grl";

    Book();

    /// The project's path: the caption behind its prefix (cut by the prefix's length). "NoName.grl" or an
    /// empty text while the book has no file.
    [[nodiscard]] std::string projectPath() const;
    [[nodiscard]] bool hasFile() const;
    void setProjectPath(std::string_view path);
};

/// Writes the ten header texts and widths, column by column, and puts the cursor on row 1, column 0.
void writeHeader(Grid& grid);

} // namespace sheet
