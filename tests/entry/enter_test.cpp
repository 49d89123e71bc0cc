#include "entry_fixture.h"

#include <tuple>

namespace {

using namespace sheet;

TEST_F(Entry, ReadingsAreReducedAsTheyAreKeyed) {
    grid.moveTo(1, RLevel);
    type(U"100\n1.525\n");
    EXPECT_EQ(rows(), ",,,,1.525,,,101.525,100|00-000,,0");
    EXPECT_EQ(book.CurrentHI, 101.525F);
    EXPECT_EQ(book.LastReading, 101.525F); // the cursor stood on the height when the reading was taken over
    type(U"1.105\n");
    EXPECT_EQ(book.LastReading, 1.105F);
    play({"a line with both sides, a second line, a change point and a line after it", "", 1, RLevel,
          U"100\n1.5\n1.1\n2.5\n1.2\n5\n1.3\nR2.5\n1.4\nC1.5\nP2\n1\n*1\n",
          ",,,,1.5,,,101.500,100|00-000,,0,,,1.1,,,100.400|00-000,2.5,,,,1.2,,,100.300|"
          "00-000,5,,,,1.3,,,100.200|00-000,,,2.5,,1.4,,,100.100|00-010,,0,,,1.5,,,100.000|"
          "CP,,,,1,,2,100.500,99.500|00-020,,0,,,1,,,99.500|00-020",
          "9,1 L changed"});
    EXPECT_EQ(book.CurrentHI, 100.5F);
}

TEST_F(Entry, EnterByColumn) {
    const std::tuple<int, char, const char*, const char*> cases[] = {
        {Chainage, 'L', "Left", "1,1 L"},  {Chainage, 'R', "Left", "1,3 R"}, {Chainage, 'C', "Left", "1,1 L"},
        {Chainage, 'C', "Right", "1,3 R"}, {Chainage, 'C', "left", "1,3 R"}, {Chainage, 'C', "", "1,3 R"},
        {Left, 'L', "Left", "1,5 L"},      {Center, 'C', "Left", "1,2 C"},   {Right, 'R', "Left", "1,5 R"},
        {ForeSight, 'L', "Left", "1,4 L"}, {HgtInst, 'L', "Left", "1,7 L"},  {RLevel, 'L', "Left", "1,4 L"},
        {Remark, 'L', "Left", "1,9 L"},
    };
    for (const auto& [col, side, startingSide, end] : cases) {
        start("", 1, col);
        book.CurrentSide = side;
        book.settings.cboSide = startingSide;
        type(U"\n");
        EXPECT_EQ(state(), end) << col << side << startingSide;
    }
}

TEST_F(Entry, SuspiciousReadingsAreMarked) {
    const std::tuple<const char*, int, bool, bool> cases[] = {
        {"1.237", InterSight, true, true},     {"1.235", InterSight, true, false},
        {"1.230", InterSight, true, false},    {"1.237", InterSight, false, false},
        {"1.2", ForeSight, true, false},       {"1.204", ForeSight, true, true},
        {"1.001", BackSight, true, true},      {"9", InterSight, false, false},
        {"9.001", InterSight, false, true},    {"12", BackSight, false, true},
        {"12", ForeSight, false, false},       {"1.237", RLevel, true, false},
        {"1.2350001", InterSight, true, false}};
    for (const auto& [reading, col, dumpy, marked] : cases) {
        start("|", 2, col);
        book.settings.chk005 = dumpy;
        grid.setText(reading);
        type(U"\n");
        EXPECT_EQ(grid.CellBackColor(2, col) == suspiciousReading, marked) << reading << " col " << col;
    }
}

TEST_F(Entry, EnterFindsTheNextRowAndItsChainage) {
    const Scene scenes[] = {
        {"the cell is checked first", "1.250", 1, Chainage, U"\n", "1-250", "1,1 L, 1 box"},
        {"from an earlier row entry goes on at the end", "|00-100,,0,,,1.|00-000|00-000", 2, InterSight,
         U"9\n", "|00-100,,0,,,1.9,,,-1.900|00-000|00-100", "4,1 L changed"},
        {"the chainage stands above the change points", "|01-100|CP|CP,,,,1,,2", 4, BackSight, U"\n",
         "|01-100|CP|CP,,,,1,,2,-1.000,-2.000|01-100", "5,1 L"},
        {"never the header's text", "CP|CP|CP,,,,1,,2", 3, BackSight, U"\n",
         "CP|CP|CP,,,,1,,2,-1.000,-2.000|00-000", "4,1 L"},
        {"a reading beyond all range", "|00-000,,0,,,1e39", 2, InterSight, U"\n", "|00-000,,0,,,1e39?",
         "2,5 C, 1 box"},
    };
    for (const Scene& scene : scenes)
        play(scene);
    EXPECT_EQ(desktop.boxes.at(0).text, "Overflow");
    EXPECT_EQ(book.CurrentHI, 0);
}

TEST_F(Entry, OffsetsThatTurnBackMoveToTheOtherSide) {
    book.settings.chkAuto = true;
    play({"left to right, where a smaller right offset is left alone", ",,,,1.5,,,,100|00-000,,0", 2,
          InterSight, U"1\n2\n1\n4\n1\n3\n\n1\n2\n",
          ",,,,1.5,,,,100|00-000,,0,,,1,,,-1.000|00-000,2,,,,1,,,-1.000|00-000,4,,,,1,,,-1.000|"
          "00-000,,,3,,1,,,-1.000|00-000,,,2",
          "6,5 R changed, 1 beep"});
    book.settings.cboSide = "Right";
    play({"right to left, where the cursor goes on to the reading", "|00-000,,,4|00-000", 3, Right, U"2.50\n",
          "|00-000,,,4|00-000,2.5", "3,5 L changed, 1 beep"});
    book.settings.cboSide = "Left";
    book.settings.chkOft = true;
    setOffsets({2.2F, 4}, {3});
    play({"compared in single precision", "|,2.2000000001|", 3, Left, U"2.2\n", "|,2.2000000001|,,,2.2",
          "3,3 R changed, 1 beep"});
    play({"an empty offset takes the first of the left list to the right", "|", 2, Left, U"\n", "|,,,2.2",
          "2,3 R, 1 beep"});
    book.settings.chkAuto = book.settings.chkOft = false;
    book.settings.chkAdd = true;
    play({"adding up rewrites the left offset", "2.", 1, Left, U"2.\n", "2.,2.0", "1,5 C changed"});
    play({"and the right one", "", 1, Right, U"\n", ",,,0.0", "1,5 C"});
}

TEST_F(Entry, FixedOffsetsAreFilledIn) {
    book.settings.chkOft = true;
    setOffsets({2, 4}, {3});
    play({"the first line keeps the offset beside its centre; when the list ran out it waits to be keyed", "",
          1, RLevel, U"100\n1.5\n1\n\n1\n",
          ",,,,1.5,,,101.500,100|00-000,2,0,,,1,,,100.500|00-000,4,,,,1,,,100.500|00-000", "4,1 L changed"});
    book.settings.chkFinal = true;
    setOffsets({2, 4, 6}, {2.2F, 5});
    play({"the final list keys whole sections", ",,,,1.5,,,,100|00-000,,0", 2, InterSight,
          U"1\n1\n1\n1\n1\n1\n1\n",
          ",,,,1.5,,,,100|00-000,,0,,,1,,,-1.000|00-000,2,,,,1,,,-1.000|00-000,4,,,,1,,,-1.000|"
          "00-000,6,,,,1,,,-1.000|00-000,,,2.2,,1,,,-1.000|00-000,,,5,,1,,,-1.000|00-010,,0,,,1,,,-1.000|00-"
          "010,2",
          "9,5 L changed"});
    setOffsets({}, {});
    book.settings.lstOft = {"R02.50"};
    start("|00-000,,0", 2, InterSight);
    for (const char* told :
         {"Row 3: no offset from the list (R02.50): it is ticked and in use after OK in Settings.", ""}) {
        book.CurrentSide = 'R';
        grid.moveTo(2, InterSight);
        type(U"\n");
        EXPECT_EQ(book.notices.takeLine().text, told) << "once in a book";
    }
    book.settings.chkOft = false;
    play({"a final list without offsets opens chainage lines, the second at once", "", 1, RLevel,
          U"100\n1.5\n1\n1\n",
          ",,,,1.5,,,101.500,100|00-010,,0,,,1,,,100.500|00-020,,0,,,1,,,100.500|00-030,,0",
          "4,5 C changed"});
    play({"with nothing but change points above it gives up at the top", "CP|CP|CP,,,,1,,2", 3, BackSight,
          U"\n", "CP|CP|CP,,,,1,,2,-1.000,-2.000|00-000,,0", "2,4 C"});
}

} // namespace
