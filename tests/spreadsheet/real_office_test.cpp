#include "running_office.h"

#include "spreadsheet/libre_office.h"

#include <gmock/gmock.h>

using spreadsheet::Failure;
using spreadsheet::Row;
using Milliseconds = std::chrono::milliseconds;

namespace {

constexpr Milliseconds limit{2000};

struct Outcome {
    std::vector<Row> rows;
    std::optional<Failure> failure;
    Milliseconds time{};
};

Outcome read(const RunningOffice& office, const spreadsheet::GoOn& goOn = {}) {
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome;
    try {
        spreadsheet::LibreOffice program({SHEET_READER, std::vector<std::string>{office.socket()}, limit});
        outcome.rows = program.readSheet(goOn);
    } catch (const spreadsheet::Error& error) {
        outcome.failure = error.failure();
    }
    outcome.time = std::chrono::duration_cast<Milliseconds>(std::chrono::steady_clock::now() - start);
    return outcome;
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

/// A book of `count` rows, and the same as the text of a CSV file below a heading.
std::vector<Row> manyRows(int count, const std::string& remark) {
    std::vector<Row> rows;
    rows.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i)
        rows.push_back(
            {i % 11 == 0 ? "CP" : "0" + std::to_string(i % 9) + "-" + std::to_string(100 + i % 900),
             i % 3 == 0 ? "2.5" : "", i % 3 == 1 ? "0" : "", i % 3 == 2 ? "3.15" : "", "",
             "1." + std::to_string(1000 + i % 1000).substr(1) + "5", "", "",
             std::to_string(100 + i % 50) + ".125", remark + (i == 0 ? "" : " " + std::to_string(i))});
    return rows;
}
std::string csvOf(const std::vector<Row>& rows) {
    std::string text = "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark\n";
    for (const Row& row : rows) {
        for (const std::string& cell : row)
            text += (&cell == row.data() ? "" : ",") + cell;
        text += '\n';
    }
    return text;
}

/// A small workbook with every kind of value, dates and errors included.
std::string typedBook(const RunningOffice& office) {
    std::ifstream in(ZAVRO_TEST_DATA "/exchange/typed.fods", std::ios::binary);
    return office.write("typed.fods", {std::istreambuf_iterator<char>(in), {}});
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

TEST_F(RealOffice, ReadsLargeWorkbooksWhole) {
    const auto first = manyRows(5000, "as xlsx");
    const auto second = manyRows(5000, "as ods");
    const std::string xlsx = office->convert(office->write("first.csv", csvOf(first)), "xlsx");
    const std::string ods = office->convert(office->write("second.csv", csvOf(second)), "ods");
    office->start({xlsx});
    EXPECT_TRUE(readWhenThere(*office, "as xlsx") == first);
    office->end();
    office->start({ods});
    EXPECT_TRUE(readWhenThere(*office, "as ods") == second);
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
    const auto rows = manyRows(60000, "long");
    office->start({office->convert(office->write("long.csv", csvOf(rows)), "ods")});
    ASSERT_EQ(readWhenThere(*office, "long").size(), rows.size());

    office->signal(SIGSTOP);
    Outcome outcome = read(*office);
    EXPECT_EQ(outcome.failure, Failure::NotAnswering) << "stopped before";
    EXPECT_LT(outcome.time, limit + Milliseconds(1000));
    office->signal(SIGCONT);

    outcome = read(*office, [&](std::size_t count) {
        if (count > 0) office->signal(SIGSTOP);
        return true;
    });
    EXPECT_EQ(outcome.failure, Failure::NotAnswering) << "stopped while reading";
    EXPECT_LT(outcome.time, limit + Milliseconds(3000));
    office->signal(SIGCONT);

    outcome = read(*office, [](std::size_t count) { return count == 0; });
    EXPECT_EQ(outcome.failure, Failure::Cancelled);
    EXPECT_EQ(read(*office).rows.size(), rows.size()) << "it is none the worse for all that";

    outcome = read(*office, [&](std::size_t count) {
        if (count > 0) office->signal(SIGKILL);
        return true;
    });
    EXPECT_EQ(outcome.failure, Failure::Lost) << "killed while reading";
    EXPECT_LT(outcome.time, Milliseconds(3000));
    EXPECT_EQ(read(*office).failure, Failure::NotRunning) << "its socket stays behind";
}
