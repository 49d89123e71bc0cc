#include "entry/chainage.h"
#include "entry/entry_settings.h"
#include "entry/row_editing.h"
#include "sheet/journal.h"
#include "sheet/reduction.h"
#include "temp_folder.h"

#include "entry_fixture.h"

#include <array>
#include <random>

namespace {

using namespace sheet;

struct RandomKeys : Entry {
    TempFolder folder;
    std::mt19937 random{20260101};
    Journal journal{book};
    std::string begun = content(); ///< texts and colours before the first step of the history
    Standing oldest, newest;       ///< where the user stood before that step and after the last one

    [[nodiscard]] std::string content() const {
        std::string all = std::to_string(grid.Rows());
        for (int row = 1; row < grid.Rows(); ++row)
            for (int col = 0; col < grid.Cols(); ++col)
                all += '|' + grid.Text(row, col) + '#' + std::to_string(grid.CellBackColor(row, col).rgb);
        return all;
    }
    void stepWithHistory() {
        const Standing before = Standing::of(book);
        const std::uint64_t version = journal.version();
        const int steps = journal.undoSteps();
        journal.begin("any");
        step();
        ASSERT_TRUE(journal.end());
        if (journal.version() == version) return;
        if (steps == 0) oldest = before;
        newest = Standing::of(book);
    }
    // Taken back to its start the book is what it was, and done again what it became.
    void goThroughHistory() {
        const std::string ended = content();
        const int steps = journal.undoSteps();
        while (journal.undo()) {
        }
        ASSERT_EQ(content(), begun);
        ASSERT_EQ(Standing::of(book), oldest);
        while (journal.redo()) {
        }
        ASSERT_EQ(content(), ended);
        ASSERT_EQ(Standing::of(book), newest);
        ASSERT_EQ(journal.undoSteps(), steps);
        journal.clear();
        begun = ended;
    }

    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    template <typename T, std::size_t N>
    T any(const std::array<T, N>& values) {
        return values[random() % N];
    }

    void changeSettings() {
        Settings& settings = book.settings;
        for (bool* each :
             {&settings.chkAuto, &settings.chkOft, &settings.chkFinal, &settings.chk005, &settings.chkAdd})
            *each = below(2) == 0;
        book.Guarded = below(2) == 0;
        settings.cboSide = below(3) == 0 ? "Right" : "Left";
        settings.cboIncr = desktop.inputs.front();
        entry::addOffset(settings, desktop, std::to_string(below(20)), entry::OffsetSide::Both);
        if (below(4) == 0) settings.lstOft.clear();
        if (below(16) == 0) entry::acceptSettings(book, desktop);
    }
    void step() {
        static constexpr std::u32string_view common =
            U"0123456789012345678901234567890..\r\r\r\r\r\r\r\rLRCP*lrcps+-tT\b\x01\x03\x16";
        const int kind = below(100);
        if (kind < 80)
            entry::keyPress(book, desktop, common[random() % common.size()]);
        else if (kind < 83)
            entry::keyPress(book, desktop, static_cast<char32_t>(below(0x3000)));
        else if (kind < 88)
            press(static_cast<entry::EditKey>(below(5)));
        else if (kind < 96) {
            entry::leaveCell(book, desktop);
            grid.moveTo(1 + below(grid.Rows() - 1), below(grid.Cols()));
            if (below(4) == 0) grid.setSelection(1, below(grid.Cols()));
            grid.setCellBackColor(any(std::array{dataError, noColour, rgb(255, 255, 255)}));
        } else if (kind < 97) {
            reduceLevels(book, desktop);
            grid.setVisible(true);
        } else if (kind < 98)
            any(std::array{entry::insertRow, entry::insertRows, entry::deleteRow, entry::deleteRows})(
                book, desktop);
        else
            changeSettings();
    }
};

// 100,000 keys of every kind, mostly what people key, with any answer to what is asked, never crash, never
// touch the header, and leave a grid with a row and a cursor in it. Every hundred of them can be taken back.
TEST_F(RandomKeys, KeepTheGridWhole) {
    desktop.folder = folder.path();
    const std::array inputs{"",  "1",  "2.5",    "-0.004", "x",     "1e39", "1e999", "32768",
                            "3", "12", "\u00fc", ".",      "1-250", "CP",   "-",     "0"};
    const std::array clipboards{
        "1\t2\r3\t4\r", "\n\n", "CP\t\t\t\t1\t\t2", "1e999\r", "\t\t\t\t\t\t\t\t\t\t\t\tx", ""};
    const std::string header = grid.Text(0, 0) + grid.Text(0, 9);
    for (int i = 0; i < 100'000; ++i) {
        desktop.inputs = {any(inputs)};
        desktop.answers = {any(std::array{desktop::Answer::Yes, desktop::Answer::No})};
        desktop.clipboard = any(clipboards);
        stepWithHistory();
        desktop.boxes.clear();
        if (i % 100 == 99) goThroughHistory();
        if (HasFatalFailure()) return;
        if (i % 100 == 99 && grid.Rows() > 400) {
            grid.setRows(20);
            begun = content();
            journal.clear();
        }
        ASSERT_TRUE(grid.Row() >= 1 && grid.Row() < grid.Rows() && grid.Col() < grid.Cols()) << i;
        ASSERT_TRUE(grid.RowSel() >= 1 && grid.RowSel() < grid.Rows()) << i;
        ASSERT_TRUE(book.CurrentSide == 'L' || book.CurrentSide == 'R' || book.CurrentSide == 'C') << i;
        ASSERT_TRUE(grid.Visible()) << i;
    }
    EXPECT_EQ(grid.Text(0, 0) + grid.Text(0, 9), header);
}

} // namespace
