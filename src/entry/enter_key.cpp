#include "enter_key.h"

#include "chainage.h"
#include "guarded.h"

#include "sheet/cells.h"
#include "sheet/sight.h"

#include "basic/numbers.h"

#include <cmath>
#include <string>

namespace entry {
namespace {

using sheet::Book;
using sheet::Grid;
using namespace sheet;

// The nearest row from `row` upwards whose chainage is not "CP"; 0 when there is none.
int chainageRow(const Grid& grid, int row) {
    while (row > 0 && grid.Text(row, Chainage) == "CP")
        --row;
    return row;
}

std::string orElse(const std::string& text, const char* whenEmpty) {
    return text.empty() ? whenEmpty : text;
}

// Offsets are compared in single precision, in which the lists hold them.
float offsetAt(const Grid& grid, int row, int col) {
    return basic::cSng(cellValue(grid, row, col));
}

// One side of the cross-section as the entry rules see it.
struct Side {
    char letter;
    int col;
    char otherLetter;
    int otherCol;
    const OffsetArray& offsets;

    [[nodiscard]] int count() const { return static_cast<int>(offsets[0]); }
};

Side leftSide(const Book& book) {
    return {'L', Left, 'R', Right, book.LeftOffsets};
}
Side rightSide(const Book& book) {
    return {'R', Right, 'L', Left, book.RightOffsets};
}

void startSide(Book& book) {
    book.CurrentSide = book.settings.startsLeft() ? 'L' : 'R';
    book.MSFG.setCol(book.settings.startsLeft() ? Left : Right);
}

// A dumpy level is read to 5 mm: anything between is a slip of the pen.
bool isBetweenMarks(double reading) {
    const double marks = reading * 200;
    return std::nearbyint(marks) != std::nearbyint(marks * 1000) / 1000;
}

void enterChainage(Book& book) {
    if (book.CurrentSide == 'L')
        book.MSFG.setCol(Left);
    else if (book.CurrentSide == 'R')
        book.MSFG.setCol(Right);
    else
        startSide(book);
}

// An offset that does not go on outwards belongs to the other side: it is moved there. True when it was.
bool moveToOtherSide(Book& book, desktop::Desktop& desktop, const Side& side) {
    Grid& grid = book.MSFG;
    const int row = grid.Row();
    if (book.settings.chkAdd)
        grid.setText(row, side.col, basic::format(cellValue(grid, row, side.col), basic::pattern("#0.0##")));
    if (!book.settings.chkAuto || book.settings.startsLeft() != (side.letter == 'L')) return false;
    const double offset = cellValue(grid, row, side.col);
    if (basic::cSng(offset) > offsetAt(grid, row - 1, side.col)) return false;
    grid.setText(row, side.col, {});
    grid.setCol(side.otherCol);
    grid.setText(book.settings.chkOft && offset == 0 ? plainText(side.offsets[1]) : basic::plainText(offset));
    book.CurrentSide = side.otherLetter;
    desktop.beep();
    return true;
}

void enterOther(Book& book, desktop::Desktop& desktop) {
    Grid& grid = book.MSFG;
    switch (grid.Col()) {
    case Chainage:
        enterChainage(book);
        break;
    case Left:
        if (!moveToOtherSide(book, desktop, leftSide(book))) grid.setCol(InterSight);
        break;
    case Right:
        // Unlike on the left, the cursor goes on to the reading here also after a move.
        moveToOtherSide(book, desktop, rightSide(book));
        grid.setCol(InterSight);
        break;
    case ForeSight:
    case RLevel:
        grid.setCol(BackSight);
        break;
    default:
        break;
    }
}

// Height of instrument and reduced level as the reading just keyed gives them.
void reduceReading(Book& book) {
    Grid& grid = book.MSFG;
    const int row = grid.Row();
    const auto showHeight = [&] { grid.setText(row, HgtInst, levelText(book.CurrentHI)); };
    if (row == 1) {
        book.CurrentHI = heightAbove(cellValue(grid, row, RLevel), cellValue(grid, row, BackSight));
        showHeight();
        grid.setCol(HgtInst);
    }
    book.LastReading = basic::cSng(basic::val(grid.Text()));
    if (grid.Col() == InterSight) {
        const float level = basic::cSng(levelBelow(book.CurrentHI, book.LastReading));
        grid.setText(row, RLevel, levelText(level));
    } else if (grid.Col() == BackSight) {
        // Between the two sights of a change point the running height is that point's level.
        book.CurrentHI = basic::cSng(levelBelow(book.CurrentHI, cellValue(grid, row, ForeSight)));
        grid.setText(row, RLevel, levelText(book.CurrentHI));
        book.CurrentHI = heightAbove(book.CurrentHI, book.LastReading);
        showHeight();
    }
}

// A list that was read at the start lays no offset until OK in Settings.
void tellUnusedList(Book& book, const Side& side) {
    if (!book.settings.chkOft || side.count() > 0) return;
    for (const std::string& entry : book.settings.lstOft)
        if (entry.starts_with(side.letter))
            return book.notices.addOnce(
                {book.MSFG.Row(), -1,
                 "no offset from the list (" + entry + "): it is ticked and in use after OK in Settings"});
}

// Puts the cursor into the side's offset cell and, with fixed offsets, the next entry of its list into it.
// False when the final list is ticked and ran out.
bool placeOffset(Book& book, const Side& side) {
    Grid& grid = book.MSFG;
    grid.setCol(side.col);
    if (book.settings.chkOft) {
        const float above = offsetAt(grid, grid.Row() - 1, side.col);
        for (int entry = 1; entry <= side.count(); ++entry) {
            const float offset = side.offsets[static_cast<std::size_t>(entry)];
            if (offset <= above) continue;
            grid.setText(plainText(offset));
            break;
        }
    }
    tellUnusedList(book, side);
    if (!book.settings.chkFinal) return true;
    if (grid.Text().empty()) return false;
    grid.setCol(InterSight);
    return true;
}

// The row for the next reading: the last one of the grid, with the chainage that is being keyed.
void openNextRow(Book& book) {
    Grid& grid = book.MSFG;
    if (grid.Row() == grid.Rows() - 1) grid.setRows(grid.Rows() + 1);
    const int from = chainageRow(grid, grid.Row());
    std::string chainage = orElse(from > 0 ? grid.Text(from, Chainage) : std::string(), "00-000");
    grid.setRow(grid.Rows() - 1);
    grid.setText(grid.Row(), Chainage, std::move(chainage));

    if (book.CurrentSide == 'C') startSide(book);
    if (book.CurrentSide == 'L' && !placeOffset(book, leftSide(book))) book.CurrentSide = 'R';
    if (book.CurrentSide == 'R' && !placeOffset(book, rightSide(book))) newChainageLine(book);
    if (grid.Row() == 2) {
        if (book.Guarded) {
            grid.setText(2, Left, {});
            grid.setText(2, Right, {});
        }
        grid.setText(2, Center, "0");
        grid.setCol(InterSight);
    }
    if (grid.Row() < grid.Rows() - 1) grid.setRow(grid.Row() + 1);
}

void enterReading(Book& book, desktop::Desktop& desktop) {
    Grid& grid = book.MSFG;
    if (basic::val(grid.Text()) > 9) grid.setCellBackColor(suspiciousReading);
    if (correctsWithEnter(book)) return guardedEnter(book, desktop);
    reduceReading(book);
    openNextRow(book);
}

} // namespace

bool opensChainageLine(const Book& book) {
    const Grid& grid = book.MSFG;
    return grid.Row() > 1 && chainageRow(grid, grid.Row() - 1) > 0;
}

void newChainageLine(Book& book) {
    Grid& grid = book.MSFG;
    const int row = grid.Row();
    book.CurrentSide = 'C';
    grid.setText(row, Center, "0");
    if (!opensChainageLine(book)) return grid.moveTo(1, BackSight);
    const int from = chainageRow(grid, row - 1);
    grid.setText(row, Chainage, StrToFig(orElse(grid.Text(from, Chainage), "0"), book.settings.cboIncr));
    grid.setText(row, Left, {});
    grid.setText(row, Right, {});
    grid.setCol(InterSight);
}

void enterKey(Book& book, desktop::Desktop& desktop) {
    Grid& grid = book.MSFG;
    leaveCell(book, desktop);
    const int col = grid.Col();
    if (book.settings.chk005 && col >= BackSight && col <= ForeSight &&
        isBetweenMarks(basic::val(grid.Text())))
        grid.setCellBackColor(suspiciousReading);
    if (col == BackSight || col == InterSight)
        enterReading(book, desktop);
    else
        enterOther(book, desktop);
}

} // namespace entry
