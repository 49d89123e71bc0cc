#include "exchange/digital_levels.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "sheet/book.h"
#include "sheet/reduction.h"

#include "field_book.h"
#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <cmath>

using exchange::LevelFile;
using exchange::LevelLine;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

LevelFile read(const std::string& text) {
    return exchange::readLevelFile(text);
}

// The published differences of every line, and the two lines that disagree with themselves.
TEST(DigitalLevels, AnInstrumentsOwnFileGivesItsPublishedDifferences) {
    const LevelFile file = read(TempFolder::readFile(testData("digital-levels/dna03-bffb-cc0.gsi")));
    std::vector<std::vector<std::string>> wanted;
    for (const std::string& line : basic::readLines(testData("digital-levels/dna03-lines.csv")))
        wanted.push_back(splitAt(line, ','));
    ASSERT_EQ(file.lines.size(), wanted.size() - 1);
    std::string named;
    for (std::size_t k = 0; k < file.lines.size(); ++k) {
        const LevelLine& line = file.lines[k];
        const auto& row = wanted[k + 1];
        EXPECT_EQ(std::to_string(line.firstLine) + line.from() + line.to() + std::to_string(line.setUps),
                  row[0] + row[2] + row[3] + row[6]);
        EXPECT_NEAR(line.byReadings.value_or(9), basic::val(row[7]), 1e-7) << row[0];
        EXPECT_NEAR(line.byLevels.value_or(9), basic::val(row[8]), 1e-7) << row[0];
        for (const std::string& trouble : line.troubles)
            named += line.from() + line.to() + " " + trouble.substr(0, 8) + ";";
    }
    EXPECT_EQ(named, "UG line 256;RM line 534;");
}

/// A real book as its instrument's blocks, in units of 0.01 mm: GSI-8, or GSI-16 with an asterisk.
std::string gsiOf(const std::string& name, bool wide) {
    const auto rows = bookRows(name);
    std::string text = wide ? "*" : "";
    text += "410001+?......1 \r\n";
    int block = 1;
    const auto unit = [](const std::string& metres) { return std::lround(basic::val(metres) * 100000); };
    const auto padded = [](std::string digits, std::size_t width) {
        return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
    };
    const auto add = [&](const std::string& point, const std::string& words) {
        text += std::string(wide ? "*" : "") + "11" + padded(std::to_string(++block), 4) + "+" +
                padded(point, wide ? 16 : 8) + " " + words + " \r\n";
    };
    const auto word = [&](const char* index, long value) {
        return index + std::string(value < 0 ? "-" : "+") +
               padded(std::to_string(std::abs(value)), wide ? 16 : 8);
    };
    const auto cell = [&](std::size_t row, int col) { return rows[row][static_cast<std::size_t>(col)]; };
    add("BM", word("83..58", unit(cell(1, sheet::RLevel))));
    add("BM", word("331.08", unit(cell(1, sheet::BackSight))));
    for (std::size_t row = 2; row < rows.size(); ++row) {
        const bool turns = !cell(row, sheet::ForeSight).empty();
        const std::string point = std::string("P") + std::to_string(row);
        add(point,
            word(turns ? "332.08" : "333.08", unit(cell(row, turns ? sheet::ForeSight : sheet::InterSight))));
        add(point, word("83..08", unit(cell(row, sheet::RLevel))));
        if (turns && !cell(row, sheet::BackSight).empty())
            add(point, word("331.08", unit(cell(row, sheet::BackSight))));
    }
    return text;
}

TEST(DigitalLevels, ARealBookComesBackFromItsBlocks) {
    for (const bool wide : {false, true}) {
        const LevelFile file = read(gsiOf("gsi-pv16", wide));
        EXPECT_EQ(file.format, wide ? "GSI-16" : "GSI-8");
        ASSERT_THAT(file.lines, SizeIs(1));
        const LevelLine& line = file.lines[0];
        EXPECT_THAT(line.troubles, IsEmpty());
        EXPECT_THAT(line.hints, IsEmpty());
        EXPECT_EQ(line.setUps, 12);
        sheet::Book book;
        const auto cells = exchange::levelRows(line, {});
        book.MSFG.setRows(static_cast<int>(cells.size()) + 1);
        for (std::size_t row = 0; row < cells.size(); ++row)
            for (int col = 0; col < sheet::columnCount; ++col)
                book.MSFG.setText(static_cast<int>(row) + 1, col, cells[row][static_cast<std::size_t>(col)]);
        ScriptedDesktop desktop;
        sheet::reduceLevels(book, desktop);
        const auto published = bookRows("gsi-pv16");
        ASSERT_EQ(published.size(), cells.size() + 1);
        for (std::size_t row = 1; row < published.size(); ++row)
            EXPECT_NEAR(basic::val(book.MSFG.Text(static_cast<int>(row), sheet::RLevel)),
                        basic::val(published[row][sheet::RLevel]), 0.0006)
                << row;
    }
}

constexpr const char* start = "410001+?......1 \n110002+0000000A 83..58+00100000 \n";
const std::string setUp =
    "110003+0000000A 331.08+00150000 \n110004+0000000B 332.08+00120000 \n110005+0000000B 83..08+00130000 \n";

TEST(DigitalLevels, WhatIsMissingOrRepeatedIsNamedWithItsLine) {
    const std::tuple<const char*, std::string, const char*> files[] = {
        {"nothing", start + setUp, ""},
        {"a back sight again", start + std::string("110003+0000000A 331.08+00150000 \n") + setUp,
         "line 4 (110003+0000000A 331.08"},
        {"no fore sight",
         start + std::string("110003+0000000A 331.08+00150000 \n110005+0000000B 83..08+00130000 \n"),
         "no fore sight"},
        {"the end is missing", start + setUp + "110006+0000000B 331.08+00150000 \n", "not finished"},
        {"another point",
         start + setUp +
             "110006+0000000C 331.08+00150000 \n110007+0000000D 332.08+00120000 \n110008+0000000D "
             "83..08+00160000 \n",
         "goes to \"C\""},
        {"no start", "410001+?......1 \n" + setUp, "no starting level"},
        {"half a pair", "410001+?......2 \n110002+0000000A 83..58+00100000 \n" + setUp,
         "lacks one of its two back sights"},
        {"0.2 mm", start + std::string(setUp).replace(setUp.find("00130000"), 8, "00130020"), "by 0.20 mm"},
    };
    for (const auto& [name, text, trouble] : files) {
        const LevelFile file = read(text);
        ASSERT_THAT(file.lines, SizeIs(1)) << name;
        if (std::string(trouble).empty())
            EXPECT_THAT(file.lines[0].troubles, IsEmpty()) << name;
        else
            EXPECT_THAT(file.lines[0].troubles, testing::Contains(HasSubstr(trouble))) << name;
    }
    for (const char* none : {"", "Chainage,Left\n", "For R5|Adr 1|", "110001+00000001 \n"})
        EXPECT_THROW((void)read(none), basic::RuntimeError) << none;
}

TEST(DigitalLevels, AClosingRecordIsAKnownLevelUnlessItIsAQuickClose) {
    const auto remark = [](const char* found, const char* known) {
        const LevelFile file = read(start + setUp + "110006+0000000B 512...+0000BM 2 513.08+" + found +
                                    " 514.08+" + known + " \n");
        return exchange::levelRows(file.lines.at(0), {}).back()[sheet::Remark];
    };
    EXPECT_EQ(remark("00130000", "00129990"), "BM 2 = 1.2999");
    EXPECT_EQ(remark("00130000", "00130000"), "B");
}

TEST(DigitalLevels, PointNamesTellChainageAndOffset) {
    const auto place = [](const char* form, const char* name) -> std::string {
        const auto parsed = exchange::PointForm::parse(form);
        if (!parsed) return "no form";
        const auto found = parsed->place(name);
        if (!found) return "none";
        return found->chainage + (found->offset ? " " + basic::text(*found->offset) : "");
    };
    EXPECT_EQ(place("KKMMM", "01250"), "01-250");
    EXPECT_EQ(place("KKMMM", "1250"), "01-250") << "the instrument drops zeros";
    EXPECT_EQ(place("KKMMM", "BM1"), "none");
    EXPECT_EQ(place("KKMMM+oo", "00250+05"), "00-250 5");
    EXPECT_EQ(place("KKMMM±oo", "250-12"), "00-250 -12");
    EXPECT_EQ(place("K-MMM.M", "2-005.5"), "02-005.5");
    EXPECT_EQ(place("oo", "12"), "no form");
    EXPECT_EQ(place("KMK", "123"), "no form");
}

TEST(DigitalLevels, M5LinesAreReadByTheirTokens) {
    std::string text;
    int address = 0;
    for (const char* line : {"TO  Start-Line          BF    1|", "KD1  BM1  1| | |Z  100.00000 m",
                             "KD1 BM1 12:00:00 1|Rb 1.60000 m|HD 20.0 m|", "TO  Measurement repeated.|",
                             "KD1 BM1 1|Lr 1.50000 m|E 20.0 m|", "TO  Intermediate sight.|",
                             "KD1 P1 1|Rz 1.20000 m|HD 9.0 m|Z 100.30000 m", "TO  End of interm. sight.|",
                             "KD1 1 1|Rf 1.10000 m|HD 20.0 m|Z 100.40000 m", "KD1 1 1|Rb 1.00000 m|HD 9 m|",
                             "KD1 2 1|Rf 1.10000 m|HD 9 m|Z 100.30000 m", "TO  Station repeated.|",
                             "KD1 1 1|Rb 1.30000 m|HD 9 m|", "KD1 2 1|Rf 1.20000 m|HD 9 m|Z 100.50000 m",
                             "KD1 BM2 1|Sh 0.50000 m|dz 0.00100 m|Z 100.49900 m", "TO  End-Line  1|"})
        text += "For M5|Adr " + std::to_string(++address) + "|" + line + "\r\n";
    const LevelFile file = read(text);
    ASSERT_THAT(file.lines, SizeIs(1));
    EXPECT_THAT(file.lines[0].troubles, IsEmpty());
    EXPECT_THAT(file.notes,
                ElementsAre("read from the maker's description; no file of an instrument was at hand"));
    std::vector<std::string> rows;
    for (const auto& row : exchange::levelRows(file.lines[0], {}))
        rows.push_back(row[sheet::BackSight] + "," + row[sheet::InterSight] + "," + row[sheet::ForeSight] +
                       "," + row[sheet::Remark]);
    EXPECT_THAT(rows, ElementsAre("1.5,,,BM1", ",1.2,,P1", "1.3,,1.1,1", ",,1.2,BM2 = 100.499"));
    EXPECT_NEAR(file.lines[0].byReadings.value_or(0), 0.5, 1e-9);
}

} // namespace
