#include "entry/chainage.h"
#include "entry/entry_settings.h"
#include "entry/row_editing.h"
#include "project/append.h"
#include "project/project_file.h"
#include "sheet/journal.h"
#include "sheet/reduction.h"
#include "survey/findings.h"
#include "survey/sections.h"
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
    survey::Runs runs{grid};
    survey::Findings findings{grid, runs, survey::Findings::Cursor::Follow};
    survey::Sections sections{grid};
    std::string other;             ///< a project file
    std::string begun = content(); ///< texts and colours before the first step of the history
    int points = 0;                ///< of the ground, seen in comparisons
    Standing oldest, newest;       ///< where the user stood before that step and after the last one

    RandomKeys() {
        desktop.folder = folder.path();
        for (GridListener* each : std::initializer_list<GridListener*>{&runs, &findings, &sections})
            grid.addListener(*each);
        other = folder / "other.grl";
        std::filesystem::copy_file(ZAVRO_TEMPLATES "/grl.mdb", other);
        Book rows;
        loadBook(rows, "nptel-ex14-1");
        EXPECT_EQ(project::writeRows(rows, desktop, other).count, 0);
    }

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
    // Without what the shape of the ground tells: keys make readings of 1e29, beside which no ground is left.
    static std::string textOf(const std::vector<survey::Finding>& list) {
        std::string all;
        using enum survey::FindingRule;
        for (const survey::Finding& each : list)
            if (each.rule < Metre || each.rule > JumpAcross)
                all += std::to_string(each.row) + ' ' + each.text + ' ' + std::to_string(each.mark) + '\n';
        return all;
    }
    // What followed every key, undo and redo is what a look at the whole book finds. The row that is being
    // keyed is not judged, so that the cursor stands on an empty one.
    void compareWithMadeAnew() {
        const Standing stood = Standing::of(book);
        grid.setRows(grid.Rows() + 1);
        grid.moveTo(grid.Rows() - 1, Chainage);
        survey::Runs runsAnew(grid);
        survey::Findings findingsAnew(grid, runsAnew, survey::Findings::Cursor::Follow);
        survey::Sections sectionsAnew(grid);
        ASSERT_EQ(textOf(findings.all()), textOf(findingsAnew.all())) << grid.Row();
        ASSERT_TRUE(std::ranges::equal(sections.points(), sectionsAnew.points()));
        ASSERT_EQ(sections.rowsWithoutLevel(), sectionsAnew.rowsWithoutLevel());
        points += static_cast<int>(sections.points().size());
        grid.setRows(grid.Rows() - 1);
        stood.restore(book);
        journal.clear();
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
            if (below(2) == 0) grid.setSelection(1 + below(grid.Rows() - 1), below(grid.Cols()));
            grid.setCellBackColor(any(std::array{dataError, noColour, rgb(255, 255, 255)}));
        } else if (kind < 97) {
            reduceLevels(book, desktop);
            grid.setVisible(true);
        } else if (kind < 98)
            any(std::array{entry::insertRow, entry::insertRows, entry::deleteRow, entry::deleteRows})(
                book, desktop);
        else if (kind < 99)
            changeSettings();
        else
            project::appendProject(book, desktop);
    }
};

// 100,000 keys of every kind, mostly what people key, with any answer to what is asked, never crash, never
// touch the header, and leave a grid with a row and a cursor in it. Every hundred of them, selections and
// appended books among them, can be taken back, and runs, findings and sections follow.
TEST_F(RandomKeys, KeepTheGridWhole) {
    const std::array inputs{"",  "1",  "2.5",    "-0.004", "x",     "1e39", "1e999", "32768",
                            "3", "12", "\u00fc", ".",      "1-250", "CP",   "-",     "0"};
    const std::array clipboards{
        "1\t2\r3\t4\r", "\n\n", "CP\t\t\t\t1\t\t2", "1e999\r", "\t\t\t\t\t\t\t\t\t\t\t\tx", ""};
    const std::string header = grid.Text(0, 0) + grid.Text(0, 9);
    for (int i = 0; i < 100'000; ++i) {
        desktop.inputs = {any(inputs)};
        desktop.answers = {any(std::array{desktop::Answer::Yes, desktop::Answer::No})};
        desktop.clipboard = any(clipboards);
        desktop.files = {other};
        stepWithHistory();
        desktop.boxes.clear();
        if (below(4) == 0) (void)findings.version(); // as a window asks now and then
        if (i % 100 == 99) goThroughHistory();
        if (i % 100 == 99) compareWithMadeAnew();
        if (HasFatalFailure()) FAIL() << i;
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
    EXPECT_GT(points, 1000);
}

} // namespace
