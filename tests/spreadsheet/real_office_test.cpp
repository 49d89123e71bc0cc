#include "running_office.h"
#include "temp_folder.h"

#include "spreadsheet/libre_office.h"

#include <gmock/gmock.h>

using spreadsheet::Failure;
using spreadsheet::Row;

namespace {

constexpr std::chrono::milliseconds limit{2000};

struct Outcome {
    std::vector<Row> rows;
    std::optional<Failure> failure;
};

Outcome read(const RunningOffice& office, const spreadsheet::GoOn& goOn = {}) {
    try {
        spreadsheet::LibreOffice program({SHEET_READER, std::vector<std::string>{office.socket()}, limit});
        return {program.readSheet(goOn), {}};
    } catch (const spreadsheet::Error& error) {
        return {{}, error.failure()};
    }
}

/// The rows, once the document that holds them is loaded.
std::vector<Row> readWhenThere(const RunningOffice& office, const std::string& firstRemark) {
    Outcome outcome;
    RunningOffice::waitUntil([&] {
        outcome = read(office);
        return !outcome.rows.empty() && outcome.rows[0][9] == firstRemark;
    });
    return outcome.rows;
}

/// A small workbook with every kind of value, dates and errors included.
std::string typedBook(const RunningOffice& office) {
    return office.write("typed.fods", TempFolder::readFile(ZAVRO_TEST_DATA "/exchange/typed.fods"));
}

class RealOffice : public testing::Test {
  protected:
    void SetUp() override {
        if (!RunningOffice::isInstalled()) GTEST_SKIP() << "LibreOffice is not installed";
        if (!std::filesystem::exists(SHEET_READER))
            GTEST_SKIP() << "the reader was not built: LibreOffice's development files are not installed";
        office.emplace();
    }
    std::optional<RunningOffice> office;
};

} // namespace

TEST_F(RealOffice, GivesEveryKindOfValueAsText) {
    const std::vector<Row> expected{
        {"01-250", "12.5", "3", "0.3", "0.333333333333333", "1.005", "0.125", "-0.5", "1E+15",
         "Brücke, 東側"},
        {"2024-01-15", "45306", "1", "#DIV/0!", "#N/A", "12.5", "1.2m", "", "1E-05", "18:00"},
        {"1250", "", "", "", "", "", "", "", "", "True"},
        {"", "", "", "", "", "", "", "", "", "two\nlines"},
        {"#DIV/0!", "", "", "", "", "", "", "", "", "False"}};
    const std::string typed = typedBook(*office);
    office->start({office->convert(typed, "xlsx")});
    EXPECT_EQ(readWhenThere(*office, expected[0][9]), expected);
    office->end();
    office->start({typed});
    EXPECT_EQ(readWhenThere(*office, expected[0][9]), expected);
}

TEST_F(RealOffice, TakesTheWorkbookBehindOtherDocuments) {
    const std::string letter = office->write("letter.txt", "No sheet here\n");
    const std::string book = typedBook(*office);
    const auto ask = [&] { static_cast<void>(read(*office)); };

    office->start();
    ASSERT_TRUE(office->waitForPipe(ask));
    EXPECT_EQ(read(*office).failure, Failure::NotRunning) << "with no document";
    office->end();
    office->start({letter});
    ASSERT_TRUE(office->waitFor(letter) && office->waitForPipe(ask));
    EXPECT_EQ(read(*office).failure, Failure::NotRunning) << "with a letter alone";
    office->end();
    office->start({book, letter});
    ASSERT_TRUE(office->waitFor(book) && office->waitFor(letter) && office->waitForPipe(ask));
    EXPECT_EQ(read(*office).rows.size(), 5U) << "with a letter in front of the workbook";
}

TEST_F(RealOffice, SurvivesASpreadsheetThatStopsOrDies) {
    std::vector<Row> rows;
    std::string csv = "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark\n";
    for (int i = 0; i < 60000; ++i) {
        const std::string level = std::to_string(100 + i % 50) + ".125", remark = "row " + std::to_string(i);
        rows.push_back({i % 11 == 0 ? "CP" : "", "2.5", "", "", "", "", "", "", level, remark});
        csv += rows.back()[0] + ",2.5,,,,,,," + level + "," + remark + "\n";
    }
    office->start({office->convert(office->write("long.csv", csv), "ods")});
    ASSERT_TRUE(readWhenThere(*office, "row 0") == rows) << "a large workbook is read whole";

    office->signal(SIGSTOP);
    Outcome outcome = read(*office);
    EXPECT_EQ(outcome.failure, Failure::NotAnswering) << "stopped before";
    office->signal(SIGCONT);

    outcome = read(*office, [&](std::size_t count) {
        if (count > 0) office->signal(SIGSTOP);
        return true;
    });
    EXPECT_EQ(outcome.failure, Failure::NotAnswering) << "stopped while reading";
    office->signal(SIGCONT);

    outcome = read(*office, [](std::size_t count) { return count == 0; });
    EXPECT_EQ(outcome.failure, Failure::Cancelled);
    EXPECT_EQ(read(*office).rows.size(), rows.size()) << "it is none the worse for all that";

    outcome = read(*office, [&](std::size_t count) {
        if (count > 0) office->signal(SIGKILL);
        return true;
    });
    EXPECT_EQ(outcome.failure, Failure::Lost) << "killed while reading";
    EXPECT_EQ(read(*office).failure, Failure::NotRunning) << "its socket stays behind";
}
