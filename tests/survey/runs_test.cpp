#include "survey/rise_and_fall.h"
#include "survey/runs.h"

#include "field_book.h"
#include "sheet/cells.h"
#include "survey_text.h"

#include <gmock/gmock.h>

#include <cmath>
#include <random>

namespace {

using namespace survey;
using testing::ElementsAre;
using testing::IsEmpty;

struct Levelled {
    sheet::Book book;
    Runs runs{book.MSFG};

    explicit Levelled(const std::vector<std::string>& rows, Closing closing = {}) {
        keyRows(book.MSFG, rows);
        runs.setClosing(std::move(closing));
        book.MSFG.addListener(runs);
    }
    std::string adjusted(int row) { return sheet::levelText(runs.levelAt(row)->adjusted()); }
    std::vector<std::string> verdicts() {
        std::vector<std::string> texts;
        for (const RunSection& section : runs.sections())
            texts.push_back(describe(section));
        return texts;
    }
};

Closing by(const char* rule, Method method = Method::Setups) {
    return {*toleranceFrom(rule), method, {}, {}};
}

TEST(Runs, PublishedLevelsComeOutDigitByDigit) {
    const struct {
        const char* book;
        Method method;
        const char* verdict;
    } cases[] = {
        {"puno-3128", Method::Distance, "Closes: 3 mm, allowed 5 mm (12 mm √0.2 km)"},
        {"acet108", Method::Setups, "Closes: 0 mm, allowed 9 mm (5 mm √3, no length)"},
        {"png-bm1-bm2", Method::Setups, "Not closed: no known level at the end"},
    };
    for (const auto& [name, method, verdict] : cases) {
        std::vector<std::string> lines = basic::readLines(testData(std::string("runs/") + name + ".csv"));
        lines.erase(lines.begin());
        Levelled run(lines, by("12rK", method));
        EXPECT_THAT(run.verdicts(), ElementsAre(verdict)) << name;
        for (int row = 1; row < run.book.MSFG.Rows(); ++row)
            EXPECT_EQ(run.adjusted(row), splitAt(lines[static_cast<std::size_t>(row) - 1], ',')[10])
                << name << row;
        EXPECT_TRUE(checkRiseAndFall(run.book.MSFG, run.runs).agrees()) << name;
    }
    // Five turns over 300 m and 15 mm: 45 m and 35 m carry 2.3 and 4.0 mm.
    Levelled turns({"00-000,,,,1,,,,0,", "00-045,,,,1,,1,,,", "00-080,,,,1,,1,,,", "00-150,,,,1,,1,,,",
                    "00-200,,,,1,,1,,,", "00-300,,,,,,1,,,= 0.015"},
                   by("none", Method::Distance));
    EXPECT_NEAR(turns.runs.levelAt(2)->correction, 0.00225, 1e-12);
    EXPECT_NEAR(turns.runs.levelAt(3)->correction, 0.0040, 1e-12);
}

TEST(Runs, ClosingRecordsOfAnInstrument) {
    const struct {
        double metres, misclosure, tolerance; // m, mm, mm
    } lines[] = {{1010.21242, -0.13, 7.03}, {537.91937, 0.11, 5.67}, {955.64062, -0.12, 6.89},
                 {655.38646, -0.15, 6.05},  {601.82834, 0.06, 5.88}, {443.36060, -0.15, 5.33},
                 {1135.69101, -0.11, 7.33}, {928.95653, 0.19, 6.82}};
    for (const auto& line : lines) {
        const Allowed allowed = allowedBy(*toleranceFrom("2+5rK"), line.metres / 1000, 1);
        EXPECT_NEAR(*allowed.millimetres, line.tolerance, 0.005);
        EXPECT_TRUE(isWithin(line.misclosure, *allowed.millimetres));
    }
    sheet::Book book;
    loadBook(book, "gsi-pv16");
    Runs runs(book.MSFG, {*toleranceFrom("2+5rK"), Method::Setups, {0.4433606}, {{48, 171.45252}}});
    const RunSection& section = runs.sections().at(0);
    EXPECT_NEAR(*section.misclosureMm, -0.14, 1e-9); // the instrument's hidden digits make it -0.15
    EXPECT_EQ(section.setups, 12);
    EXPECT_EQ(describe(section), "Closes: 0 mm, allowed 5 mm (2 + 5 mm √0.443 km)");
}

TEST(Runs, VerdictsOfOneSection) {
    const auto missing = [](const char* known) {
        return std::vector<std::string>{"00-000,,,,1,,,,100,A", "00-040,,0,,,1.2,,,,", "CP,,,,1,,1.5,,,",
                                        "00-440,,0,,,1.1,,,,", std::string("CP,,,,,,1,,,B=") + known};
    };
    const struct {
        const char* known;
        const char* rule;
        const char* verdict;
    } cases[] = {
        {"99.497", "12rK", "Closes: 3 mm, allowed 8 mm (12 mm √0.44 km)"},
        {"99.543", "5rN", "Does not close: 43 mm, allowed 7 mm"},
        {"99.4918", "12rK", "Does not close: 8.2 mm, allowed 8.0 mm"},
        {"99.508", "8", "Closes: 8.0 mm, allowed 8.0 mm"},
        {"99.5", "none", "Misses by 0.0 mm, no tolerance set"},
        {"99.5 m", "12rK", "Not closed: no known level at the end"},
    };
    for (const auto& [known, rule, verdict] : cases)
        EXPECT_THAT(Levelled(missing(known), by(rule)).verdicts(), ElementsAre(verdict)) << known;
    // A flying run to a far mark has no length by its chainages; a typed one serves.
    const std::vector<std::string> flying{"00-000,,,,1,,,,100,", "CP,,,,1,,1,,,", "CP,,,,,,1,,,=100.009"};
    EXPECT_THAT(Levelled(flying).verdicts(), ElementsAre("Does not close: 9 mm, allowed 7 mm"));
    EXPECT_THAT(Levelled(flying, {*toleranceFrom("12rK"), Method::Distance, {1.5}, {}}).verdicts(),
                ElementsAre("Closes: 9 mm, allowed 15 mm (12 mm √1.5 km)"));
}

TEST(Runs, SeveralMarksChecksAndATail) {
    // The second section starts from its own mark: it misses by 2 mm, not by 12.
    Levelled run({",,,,1,,,,100,A", "CP,,,,3,,0.99,,,", "CP,,,,2,,-2,,,M=105",
                  ",,0,,,1.000,,,,check = 106.003", "CP,,,,4,,1,,,", "CP,,,,1,,0.008,,,Q = 110.000",
                  ",,0,,,0.5,,,,", "CP,,,,,,1,,,"},
                 by("none"));
    run.book.MSFG.setText(3, sheet::ForeSight, "-1.99"); // raw 105 becomes 105.000 + 10 mm below
    run.book.MSFG.setText(2, sheet::BackSight, "3.01");
    const std::string table = textOf(run.runs.sections());
    EXPECT_EQ(table, "M 1>3 2 105.010 +10.0 open|check 3>4 1 106.000 -3.0 check|Q 3>6 2 109.992 -8.0 open|"
                     " 6>8 1 110.000 open");
    EXPECT_EQ(run.adjusted(2), "100.005"); // half of the misclosure at the first change point
    EXPECT_EQ(run.adjusted(3), "105.000");
    EXPECT_EQ(run.adjusted(6), "110.000");
    EXPECT_EQ(run.adjusted(8), "110.000"); // the tail keeps the last correction
}

TEST(Runs, WhatClosesAndWhatDoesNot) {
    const std::vector<std::string> start{",,,,1.5,,,,100,A"};
    const auto closedBy = [&](const char* last, const char* behind = "") {
        std::vector<std::string> rows = start;
        rows.emplace_back(last);
        if (*behind != '\0') rows.emplace_back(behind);
        return textOf(Levelled(rows, by("10")).runs.sections());
    };
    EXPECT_EQ(closedBy(",,0,,,1.500,,,,B=100.004"), "B 1>2 1 100.000 -4.0 closes"); // an I.S. at the end
    EXPECT_EQ(closedBy(",,0,,,1.500,,,,B=100.004", ",,,,,,,,,spare"), "B 1>2 1 100.000 -4.0 closes");
    EXPECT_EQ(closedBy(",,0,,,1.500,,,,B=101.5"), "B 1>2 1 100.000 -1500.0 check| 1>2 1 100.000 open");
    EXPECT_EQ(closedBy("CP,,,,,,1.500,,,B=101.5"), "B 1>2 1 100.000 -1500.0 fails");
    EXPECT_EQ(closedBy(",,0,,,1.500,,,,B=100.004", ",,0,,,1.4,,,,"),
              "B 1>2 1 100.000 -4.0 check| 1>3 1 100.100 open");
    EXPECT_EQ(closedBy(",,,,,,,,,B=100"), ""); // nothing was sighted there

    // The first of two levels for one name or one point holds, and it is told.
    Levelled twice({",,,,1.5,,,,100,A = 100.5", "CP,,,,1.5,,1.5,,,B=100", "CP,,,,,,1.5,,,B=100.25"},
                   {*toleranceFrom("10"), Method::Setups, {}, {{3, 7.0}}});
    EXPECT_EQ(textOf(twice.runs.sections()), "B 1>2 1 100.000 +0.0 closes|B 2>3 1 100.000 +0.0 closes");
    std::vector<int> told;
    for (const Contradiction& each : twice.runs.contradictions())
        told.push_back(each.row * 10 + each.firstRow);
    EXPECT_THAT(told, ElementsAre(11, 33, 32));
}

TEST(Runs, StopsWhereNothingFollows) {
    const auto stop = [](const char* row, const char* first = ",,,,1,,,,100,A") {
        Levelled run({first, "CP,,,,1,,1,,,M=100", row, "CP,,,,,,1,,,Q=100"}, by("10"));
        return std::to_string(run.runs.stoppedAt()) + ' ' + textOf(run.runs.sections());
    };
    const std::string whole = "M 1>2 1 100.000 +0.0 closes";
    EXPECT_EQ(stop("CP,,,,1,,1.5x,,,"), "3 " + whole);
    EXPECT_EQ(stop("CP,,,,1e39,,1e39,,,"), "3 " + whole);
    EXPECT_EQ(stop(",,0,,,abc,,,,"), "0 " + whole + "|Q 2>4 1 100.000 +0.0 closes"); // its point is dropped
    EXPECT_EQ(stop("CP,,,,1,,1,,,", ",,,,x,,,,100,A"), "1 ");
}

TEST(RiseAndFall, ProvesTheIntermediateSightsToo) {
    sheet::Book book;
    loadBook(book, "nptel-ex14-1");
    Runs runs(book.MSFG);
    const RiseAndFall check = checkRiseAndFall(book.MSFG, runs);
    EXPECT_EQ(describe(check), "They agree: B.S. - F.S. -0.365, rises - falls -0.365, last - first -0.365");
    EXPECT_NEAR(*riseAt(runs, 2), -1.090, 1e-12);
    EXPECT_NEAR(*riseAt(runs, 5), 2.260, 1e-12);
    book.MSFG.setText(5, sheet::RLevel, "102.460");
    EXPECT_THAT(describe(checkRiseAndFall(book.MSFG, runs)),
                testing::EndsWith("1 level does not follow from the readings, row 5"));
}

TEST(Tolerance, TypedRules) {
    for (const char* text : {"12rK", "2+5rK", "5rN", "2.5", "none"})
        EXPECT_EQ(toleranceText(*toleranceFrom(text)), text);
    EXPECT_EQ(toleranceFrom(" 12√k "), toleranceFrom("12rK"));
    for (const char* text : {"", "-3", "rK", "5r", "5rM", "1+2+3rK", "5rK+1", "a", "1e999"})
        EXPECT_FALSE(toleranceFrom(text)) << text;
    // Compared as they are shown: hundredths of a millimetre.
    EXPECT_TRUE(isWithin(-8.004, 8.0));
    EXPECT_FALSE(isWithin(8.006, 8.0));
}

// Keys, inserted and removed rows at random: what was followed equals what is read anew.
TEST(Runs, FollowedEqualsReadAnew) {
    std::mt19937 random(7);
    const auto pick = [&](int least, int most) { return std::uniform_int_distribution(least, most)(random); };
    const std::vector<std::vector<std::string>> texts{{"", "CP", "00-020", "00-040", "00-100", "x"},
                                                      {""},
                                                      {"", "0"},
                                                      {""},
                                                      {"", "1.5", "2", "x"},
                                                      {"", "1.2", "", "y"},
                                                      {"", "1.1", "", "1.3", "0"},
                                                      {""},
                                                      {"", "100"},
                                                      {"", "M = 100.5", "= 99", "N=100", "bm"}};
    for (int session = 0; session < 60; ++session) {
        sheet::Book book;
        sheet::Grid& grid = book.MSFG;
        Closing closing = by("12rK", session % 2 == 0 ? Method::Distance : Method::Setups);
        Runs followed(grid, closing);
        grid.addListener(followed);
        grid.setRows(pick(2, 30));
        for (int step = 0; step < 120; ++step) {
            const int what = pick(0, 30);
            if (what == 0) grid.setRows(grid.Rows() + pick(1, 3));
            if (what == 1) grid.setRows(std::max(2, grid.Rows() - pick(1, 3)));
            if (what == 2) grid.insertRows(pick(1, grid.Rows() - 1), pick(1, 3), sheet::Marks::Stay);
            if (what == 3 && grid.Rows() > 6)
                grid.removeRows(pick(1, grid.Rows() - 4), 3, sheet::Marks::Stay);
            const int row = pick(1, grid.Rows() - 1);
            const int col = pick(0, 9);
            const auto& choices = texts[static_cast<std::size_t>(col)];
            grid.setText(row, col, choices[static_cast<std::size_t>(pick(0, int(choices.size()) - 1))]);
            if (pick(0, 3) != 0) continue;
            Runs anew(grid, closing);
            ASSERT_EQ(textOf(followed.sections()), textOf(anew.sections())) << session << ' ' << step;
            ASSERT_EQ(followed.stoppedAt(), anew.stoppedAt());
            for (int r = 1; r < grid.Rows(); ++r) {
                const auto a = followed.levelAt(r);
                const auto b = anew.levelAt(r);
                ASSERT_EQ(a.has_value(), b.has_value()) << r;
                ASSERT_EQ(a ? a->adjusted() : 0, b ? b->adjusted() : 0) << r;
            }
        }
        grid.removeListener(followed);
    }
}

} // namespace
