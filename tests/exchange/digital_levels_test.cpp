#include "exchange/digital_levels.h"

#include "basic/numbers.h"
#include "basic/runtime_error.h"
#include "project/book.h"
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
    EXPECT_THAT(file.strays, IsEmpty());
}

struct Blocks {
    const char* book;
    int method; ///< 1 BF, 2 BFFB, 3 aBF, 4 aBFFB
    bool wide;  ///< GSI-16
};

/// A real book as its instrument's blocks, in units of 0.01 mm. Methods that read twice read 0.2 mm more and
/// less; those that alternate begin every other set-up with its fore sight.
std::string gsiOf(const Blocks& blocks) {
    const auto rows = bookRows(blocks.book);
    const auto star = [&] { return std::string(blocks.wide ? "*" : ""); };
    const auto padded = [](std::string digits, std::size_t width) {
        return std::string(width > digits.size() ? width - digits.size() : 0, '0') + digits;
    };
    std::string text = star() + "410001+?......" + std::to_string(blocks.method) + " \r\n";
    int block = 1;
    const auto add = [&](std::size_t row, const char* index, double metres) {
        const long value = std::lround(metres * 100000);
        const std::size_t width = blocks.wide ? 16 : 8;
        text += star() + "11" + padded(std::to_string(++block), 4) + "+" +
                padded("P" + std::to_string(row), width) + " " + index + (value < 0 ? "-" : "+") +
                padded(std::to_string(std::abs(value)), width) + " \r\n";
    };
    const auto has = [&](std::size_t row, int col) {
        return !rows[row][static_cast<std::size_t>(col)].empty();
    };
    const auto at = [&](std::size_t row, int col) {
        return basic::val(rows[row][static_cast<std::size_t>(col)]);
    };
    add(1, "83..58", at(1, sheet::RLevel));
    bool foreFirst = false;
    for (std::size_t back = 1, fore = 2; fore < rows.size(); ++fore) {
        if (!has(fore, sheet::ForeSight)) continue;
        const double backSight = at(back, sheet::BackSight), foreSight = at(fore, sheet::ForeSight);
        const double apart = blocks.method % 2 == 0 ? 0.0002 : 0;
        if (foreFirst) add(fore, "332.08", foreSight + apart);
        add(back, "331.08", backSight + apart);
        for (std::size_t row = back + 1; row < fore; ++row) {
            add(row, "333.08", at(row, sheet::InterSight));
            add(row, "83..08", at(row, sheet::RLevel));
        }
        if (foreFirst && apart > 0) add(back, "335.08", backSight - apart);
        if (!foreFirst) add(fore, "332.08", foreSight + apart);
        if (apart > 0) add(fore, "336.08", foreSight - apart);
        if (!foreFirst && apart > 0) add(back, "335.08", backSight - apart);
        add(fore, "83..08", at(fore, sheet::RLevel));
        foreFirst = blocks.method > 2 && !foreFirst;
        back = fore;
    }
    return text;
}

TEST(DigitalLevels, RealBooksComeBackFromTheirBlocks) {
    for (const Blocks& blocks : {Blocks{"gsi-pv16", 1, false}, Blocks{"gsi-pv16", 1, true},
                                 Blocks{"nptel-ex14-1", 1, false}, Blocks{"tramo1-derived", 1, true},
                                 Blocks{"sprinter-211264", 2, true}, Blocks{"fleming-tbm-loop", 3, false},
                                 Blocks{"ge120-loop", 4, true}, Blocks{"ge120-loop", 3, false}}) {
        SCOPED_TRACE(blocks.book);
        const LevelFile file = read(gsiOf(blocks));
        EXPECT_EQ(file.format, blocks.wide ? "GSI-16" : "GSI-8");
        ASSERT_THAT(file.lines, SizeIs(1));
        const LevelLine& line = file.lines[0];
        EXPECT_THAT(line.troubles, IsEmpty());
        EXPECT_THAT(line.hints, IsEmpty());
        const auto published = bookRows(blocks.book);
        const auto cells = exchange::levelRows(line, {});
        ASSERT_EQ(published.size(), cells.size() + 1);
        project::Book book;
        book.MSFG.setRows(static_cast<int>(cells.size()) + 1);
        for (std::size_t row = 0; row < cells.size(); ++row)
            for (int col = 0; col < sheet::columnCount; ++col)
                book.MSFG.setText(static_cast<int>(row) + 1, col, cells[row][static_cast<std::size_t>(col)]);
        // From the texts that the book gets; Cal shows them at three decimals.
        double height = 0;
        for (std::size_t row = 0; row < cells.size(); ++row) {
            const auto value = [&](int col) { return basic::val(cells[row][static_cast<std::size_t>(col)]); };
            const double level =
                row == 0 ? value(sheet::RLevel) : height - value(sheet::InterSight) - value(sheet::ForeSight);
            if (!cells[row][sheet::BackSight].empty()) height = level + value(sheet::BackSight);
            EXPECT_NEAR(level, basic::val(published[row + 1][sheet::RLevel]), 0.0001) << row + 1;
        }
        ScriptedDesktop desktop;
        sheet::reduceLevels(book, desktop);
        const int last = book.MSFG.Rows() - 1;
        EXPECT_NEAR(basic::val(book.MSFG.Text(last, sheet::RLevel)),
                    basic::val(published.back()[sheet::RLevel]), 0.0006);
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
    EXPECT_THAT(read(text + "For M5|Adr 17|KD1 1 1|Rb 1 m|").strays, testing::Contains(HasSubstr("line 17")));
    std::string huge = text;
    huge.replace(huge.find("Rf 1.10000"), 10, "Rf 1e300");
    EXPECT_THAT(read(huge).lines[0].troubles, testing::Contains(HasSubstr("line 9")));
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
