#include "key_entry.h"

#include "chainage.h"
#include "clipboard.h"
#include "enter_key.h"
#include "guarded.h"
#include "overwritten.h"

#include "sheet/cells.h"

#include "basic/numbers.h"
#include "basic/strings.h"

#include <algorithm>
#include <string>

namespace entry {
namespace {

using sheet::Book;
using sheet::Grid;
using namespace sheet;

constexpr char32_t ctrlA = 1, ctrlC = 3, backspace = 8, enter = 13, ctrlV = 22, firstPrintable = 32,
                   rubout = 127;

bool isDigit(char32_t c) {
    return c >= U'0' && c <= U'9';
}
char32_t lowered(char32_t c) {
    return c >= U'A' && c <= U'Z' ? c - U'A' + U'a' : c;
}

// A letter that writes over what stands in the cursor's row.
bool overwrites(const Book& book, char32_t character) {
    if (book.MSFG.Col() == Remark) return false;
    const char32_t letter = lowered(character);
    return letter == U'p' || letter == U'c' || letter == U'*' || letter == U't' ||
           (letter == U's' && book.MSFG.Row() >= 2);
}

void appendToCell(Grid& grid, char32_t character) {
    std::string text = grid.Text();
    basic::append(text, character);
    grid.setText(std::move(text));
}

std::string summed(double value) {
    return basic::format(value, basic::pattern("#0.0##"));
}

void addToCell(Grid& grid, int row, double value) {
    grid.setText(row, InterSight, summed(cellValue(grid, row, InterSight) + value));
}

void plusKey(Book& book, desktop::Desktop& desktop) {
    Grid& grid = book.MSFG;
    const int row = grid.Row();
    switch (grid.Col()) {
    case Chainage: {
        const double next = basic::val(basic::left(grid.Text(), 2)) + 1;
        grid.setText((next < 10 ? "0" : "") + basic::text(next) + "-000");
        grid.setText(row, Center, "0");
        grid.setCol(InterSight);
        break;
    }
    case Left:
    case Right:
        grid.setText(summed(cellValue(grid, row - 1, grid.Col()) + basic::val(grid.Text())));
        grid.setCol(InterSight);
        break;
    case InterSight: {
        const double value = basic::val(desktop.inputBox("Enter Value to Add...", "Addition"));
        if (value == 0) return;
        const int far = grid.RowSel();
        for (int each = std::min(row, far); each <= std::max(row, far); ++each)
            addToCell(grid, each, value);
        break;
    }
    default:
        break;
    }
}

// The check for a cell that a command takes the cursor out of; not when the cursor stays in its column.
void leaveFor(Book& book, desktop::Desktop& desktop, int col) {
    if (book.MSFG.Col() != col) leaveCell(book, desktop);
}

void sideKey(Book& book, desktop::Desktop& desktop, char side) {
    const int col = side == 'L' ? Left : Right;
    leaveFor(book, desktop, col);
    book.CurrentSide = side;
    book.MSFG.setCol(col);
}

void changePointKey(Book& book, desktop::Desktop& desktop) {
    Grid& grid = book.MSFG;
    const int row = grid.Row();
    constexpr std::array emptied{Left, Center, Right, InterSight};
    if (grid.Col() != Chainage && std::find(emptied.begin(), emptied.end(), grid.Col()) == emptied.end())
        leaveFor(book, desktop, ForeSight);
    grid.setText(row, Chainage, "CP");
    for (const int col : emptied)
        grid.setText(row, col, {});
    grid.setCol(ForeSight);
}

void chainageKey(Book& book, desktop::Desktop& desktop) {
    const Grid& grid = book.MSFG;
    const bool opens = opensChainageLine(book);
    const int col = grid.Col();
    const bool emptied = col == Center || (opens && (col == Chainage || col == Left || col == Right));
    const bool toFirstRow = !opens && grid.Row() > 1;
    if (!emptied && (toFirstRow || col != (opens ? InterSight : BackSight))) leaveCell(book, desktop);
    newChainageLine(book);
}

void characterKey(Book& book, desktop::Desktop& desktop, char32_t character) {
    Grid& grid = book.MSFG;
    const char32_t letter = lowered(character);
    if (letter == U'l') return sideKey(book, desktop, 'L');
    if (letter == U'r') return sideKey(book, desktop, 'R');
    if (letter == U's' && grid.Row() >= 2) return grid.setText(grid.Text(grid.Row() - 1, grid.Col()));
    if (letter == U'p') return changePointKey(book, desktop);
    if (letter == U'c' || letter == U'*') return chainageKey(book, desktop);

    const std::string& text = grid.Text();
    const bool firstPoint = character == U'.' && text.find('.') == std::string::npos;
    const bool firstHyphen =
        character == U'-' && grid.Col() == Chainage && text.find('-') == std::string::npos;
    if (isDigit(character) || firstPoint || firstHyphen)
        appendToCell(grid, character);
    else if (character == U'-' && grid.Col() == InterSight) {
        const double value = basic::val(text);
        grid.setText(value == 0 ? "-" : basic::plainText(-value));
    }
    book.BookChanged = true;
}

void remarkKey(Book& book, char32_t character) {
    if (character >= firstPrintable && character != rubout) appendToCell(book.MSFG, character);
    book.BookChanged = true;
}

void press(Book& book, desktop::Desktop& desktop, char32_t character) {
    Grid& grid = book.MSFG;
    if (book.Guarded && character == U',' && grid.Col() != Remark) character = U'.';
    if (overwrites(book, character) && guardsAgainst(book, desktop, lowered(character))) return;
    if (character == backspace) {
        std::string text = grid.Text();
        basic::dropLast(text);
        return grid.setText(std::move(text));
    }
    if (character == ctrlC) return desktop.setClipboardText(selectedText(grid));
    if (character == ctrlA) {
        grid.moveTo(1, 0);
        grid.setSelection(grid.Rows() - 1, grid.Cols() - 1);
    } else if (character == ctrlV) {
        if (const auto clipboard = desktop.clipboardText())
            book.Guarded ? replaceText(grid, *clipboard) : pasteText(grid, *clipboard);
    } else if (lowered(character) == U't' && grid.Col() != Remark) {
        return grid.setText(grid.Row(), Remark, "TBM");
    } else if (character == U'+') {
        return plusKey(book, desktop);
    } else if (character == enter) {
        return enterKey(book, desktop);
    }
    if (grid.Col() == Remark)
        remarkKey(book, character);
    else
        characterKey(book, desktop, character);
}

void editKey(Book& book, desktop::Desktop& desktop, EditKey key) {
    Grid& grid = book.MSFG;
    switch (key) {
    case EditKey::Delete:
        grid.setText(std::string());
        break;
    case EditKey::F2: {
        std::string answer = desktop.inputBox("Enter New Value ", "Check", grid.Text());
        if (!answer.empty()) grid.setText(std::move(answer));
        book.BookChanged = true;
        break;
    }
    case EditKey::F3: {
        const double value = basic::val(desktop.inputBox("Enter Number to Add OR Subtract...", "Check"));
        if (value == 0) return;
        grid.setText(summed(basic::val(grid.Text()) + value));
        book.BookChanged = true;
        break;
    }
    case EditKey::F9: {
        leaveCell(book, desktop);
        int row = grid.Row() - 1;
        while (row > 1 && grid.CellBackColor(row, Chainage) != dataError)
            --row;
        grid.moveTo(std::max(row, 1), Chainage);
        break;
    }
    case EditKey::F12:
        if (grid.FontSize() == 8.25)
            grid.setFontSize(9.75);
        else if (grid.FontSize() == 9.75)
            grid.setFontSize(12);
        else if (grid.FontSize() == 12)
            grid.setFontSize(8.25);
        break;
    }
}

template <typename Handler>
void showingErrors(desktop::Desktop& desktop, Handler&& handler) {
    try {
        handler();
    } catch (const basic::RuntimeError& error) {
        if (error.number() != basic::PermissionDenied) desktop.messageBox(error.description());
    }
}

} // namespace

KeyStep stepOf(const Book& book, char32_t character) {
    const bool remark = book.MSFG.Col() == Remark;
    if (character == enter) return {"Enter"};
    if (character == ctrlV) return {"Paste"};
    if (character == U'+') return {"Add"};
    if (!remark) switch (lowered(character)) {
        case U's':
            return {"Same Reading"};
        case U'p':
            return {"Change Point"};
        case U'c':
        case U'*':
            return {"Next Chainage"};
        case U't':
            return {"TBM"};
        default:
            break;
        }
    return {"Typing", character == backspace || character >= firstPrintable};
}

KeyStep stepOf(EditKey key) {
    switch (key) {
    case EditKey::Delete:
        return {"Delete"};
    case EditKey::F2:
        return {"New Value"};
    case EditKey::F3:
        return {"Add OR Subtract"};
    case EditKey::F9:
    case EditKey::F12:
        break;
    }
    return {"Move"};
}

void keyPress(Book& book, desktop::Desktop& desktop, char32_t character) {
    const bool letter = overwrites(book, character);
    const bool adds = character == U'+';
    if (!letter && !adds && character != enter && character != ctrlV)
        return showingErrors(desktop, [&] { press(book, desktop, character); });
    const bool alone = lowered(character) == U's' || lowered(character) == U't';
    const Overwritten watch(book, letter && (alone || isFilled(book.MSFG, book.MSFG.Row())));
    showingErrors(desktop, [&] { press(book, desktop, character); });
    watch.tell(adds || book.Guarded ? Notice::Undo : Notice::UndoOrGuard);
}

void keyDown(Book& book, desktop::Desktop& desktop, EditKey key) {
    showingErrors(desktop, [&] { editKey(book, desktop, key); });
}

} // namespace entry
