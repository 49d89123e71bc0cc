#include "entry_fixture.h"

namespace {

using namespace sheet;

TEST_F(Entry, OpeningARun) {
    grid.moveTo(1, RLevel);
    type(U"100\n");
    EXPECT_EQ(cursor(), "1,4");
    type(U"1.525\n");
    EXPECT_EQ(row(1), ",,,,1.525,,,101.525,100,");
    EXPECT_EQ(row(2), "00-000,,0,,,,,,,");
    EXPECT_EQ(cursor(), "2,5");
    EXPECT_EQ(book.CurrentHI, 101.525F);
    EXPECT_EQ(book.LastReading, 101.525F); // the cursor stood on the height when the reading was taken over
    EXPECT_EQ(book.CurrentSide, 'L');
    EXPECT_TRUE(book.BookChanged);
    type(U"1.105\n");
    EXPECT_EQ(row(2), "00-000,,0,,,1.105,,,100.420,");
    EXPECT_EQ(row(3), "00-000,,,,,,,,,");
    EXPECT_EQ(cursor(), "3,1");
    EXPECT_EQ(book.LastReading, 1.105F);
}

TEST_F(Entry, AWholeChainageLineAndAChangePoint) {
    openRun();
    type(U"1.1\n2.5\n1.2\n5\n1.3\nR2.5\n1.4\nC1.5\n");
    EXPECT_EQ(row(3), "00-000,2.5,,,,1.2,,,100.300,");
    EXPECT_EQ(row(4), "00-000,5,,,,1.3,,,100.200,");
    EXPECT_EQ(row(5), "00-000,,,2.5,,1.4,,,100.100,");
    EXPECT_EQ(row(6), "00-010,,0,,,1.5,,,100.000,");
    EXPECT_EQ(cursor(), "7,1");
    type(U"P2\n");
    EXPECT_EQ(cursor(), "7,4");
    type(U"1\n");
    EXPECT_EQ(row(7), "CP,,,,1,,2,100.500,99.500,");
    EXPECT_EQ(book.CurrentHI, 100.5F);
    EXPECT_EQ(row(8), "00-010,,,,,,,,,");
    EXPECT_EQ(cursor(), "8,1");
    type(U"*1\n");
    EXPECT_EQ(row(8), "00-020,,0,,,1,,,99.500,");
    EXPECT_TRUE(desktop.boxes.empty());
}

TEST_F(Entry, EnterByColumn) {
    const struct {
        int col;
        char side;
        const char* startingSide;
        int to;
        char sideAfter;
    } cases[] = {
        {Chainage, 'L', "Left", Left, 'L'},    {Chainage, 'R', "Left", Right, 'R'},
        {Chainage, 'C', "Left", Left, 'L'},    {Chainage, 'C', "Right", Right, 'R'},
        {Chainage, 'C', "left", Right, 'R'},   {Chainage, 'C', "", Right, 'R'},
        {Left, 'L', "Left", InterSight, 'L'},  {Center, 'C', "Left", Center, 'C'},
        {Right, 'R', "Left", InterSight, 'R'}, {ForeSight, 'L', "Left", BackSight, 'L'},
        {HgtInst, 'L', "Left", HgtInst, 'L'},  {RLevel, 'L', "Left", BackSight, 'L'},
        {Remark, 'L', "Left", Remark, 'L'},
    };
    for (const auto& each : cases) {
        book.CurrentSide = each.side;
        book.settings.cboSide = each.startingSide;
        grid.moveTo(1, each.col);
        type(U"\n");
        EXPECT_EQ(grid.Col(), each.to) << each.col << each.side << each.startingSide;
        EXPECT_EQ(book.CurrentSide, each.sideAfter) << each.col << each.side << each.startingSide;
    }
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_FALSE(book.BookChanged);
}

TEST_F(Entry, EnterChecksTheCellFirst) {
    grid.moveTo(1, Chainage);
    type(U"1.250\n");
    EXPECT_EQ(grid.Text(1, Chainage), "1-250");
    EXPECT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(cursor(), "1,1");
}

TEST_F(Entry, SuspiciousReadingsAreMarked) {
    const struct {
        const char* reading;
        int col;
        bool dumpy;
        bool marked;
    } cases[] = {{"1.237", InterSight, true, true},     {"1.235", InterSight, true, false},
                 {"1.230", InterSight, true, false},    {"1.237", InterSight, false, false},
                 {"1.2", ForeSight, true, false},       {"1.204", ForeSight, true, true},
                 {"1.001", BackSight, true, true},      {"9", InterSight, false, false},
                 {"9.001", InterSight, false, true},    {"12", BackSight, false, true},
                 {"12", ForeSight, false, false},       {"1.237", RLevel, true, false},
                 {"1.2350001", InterSight, true, false}};
    for (const auto& each : cases) {
        grid.setRows(1);
        grid.setRows(3);
        book.settings.chk005 = each.dumpy;
        grid.moveTo(2, each.col);
        grid.setText(each.reading);
        type(U"\n");
        EXPECT_EQ(marked(2, each.col), each.marked) << each.reading << " col " << each.col;
    }
}

TEST_F(Entry, EnterOnAnEarlierRowGoesOnAtTheEnd) {
    openRun();
    type(U"1.1\n1\n1.2\n2\n1.3\n");
    put(2, {"00-100"});
    grid.moveTo(2, InterSight);
    type(U"\b9\n");
    EXPECT_EQ(row(2), "00-100,,0,,,1.9,,,99.600,");
    EXPECT_EQ(grid.Rows(), 6);
    EXPECT_EQ(row(5), "00-100,,,,,,,,,");
    EXPECT_EQ(cursor(), "5,1");
}

TEST_F(Entry, ChainageIsFoundAboveChangePoints) {
    put(2, {"01-100"});
    put(3, {"CP"});
    put(4, {"CP", "", "", "", "1", "", "2"});
    grid.moveTo(4, BackSight);
    type(U"\n");
    EXPECT_EQ(grid.Text(5, Chainage), "01-100");
    for (const int r : {1, 2})
        put(r, {"CP"});
    grid.moveTo(4, BackSight);
    type(U"\n");
    EXPECT_EQ(grid.Text(5, Chainage), "00-000"); // never the header's text
}

TEST_F(Entry, AutoLeftToRight) {
    book.settings.chkAuto = true;
    openRun();
    type(U"1\n2\n1\n4\n1\n6\n1\n3\n");
    EXPECT_EQ(row(6), "00-000,,,3,,,,,,");
    EXPECT_EQ(cursor(), "6,3");
    EXPECT_EQ(book.CurrentSide, 'R');
    EXPECT_EQ(desktop.beeps, 1);
    type(U"\n");
    EXPECT_EQ(cursor(), "6,5");
    type(U"1\n");
    EXPECT_EQ(cursor(), "7,3");
    type(U"2\n"); // not a smaller right offset: only the starting side moves over
    EXPECT_EQ(row(7), "00-000,,,2,,,,,,");
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(Entry, AutoRightToLeftGoesOnToTheReading) {
    book.settings.chkAuto = true;
    book.settings.cboSide = "Right";
    put(2, {"00-000", "", "", "4"});
    put(3, {"00-000"});
    grid.moveTo(3, Right);
    type(U"2.50\n");
    EXPECT_EQ(row(3), "00-000,2.5,,,,,,,,");
    EXPECT_EQ(cursor(), "3,5");
    EXPECT_EQ(book.CurrentSide, 'L');
    EXPECT_EQ(desktop.beeps, 1);
}

TEST_F(Entry, AutoComparesInSinglePrecision) {
    book.settings.chkAuto = book.settings.chkOft = true;
    setOffsets({2.2F, 4}, {3});
    put(2, {"", "2.2000000001"});
    put(3, {});
    grid.moveTo(3, Left);
    type(U"2.2\n");
    EXPECT_EQ(row(3), ",,,2.2,,,,,,");
    grid.moveTo(2, Left);
    grid.setText(2, Left, "");
    type(U"\n"); // an empty offset takes the first of the left list to the right
    EXPECT_EQ(row(2), ",,,2.2,,,,,,");
}

TEST_F(Entry, AddReadingRewritesTheOffset) {
    book.settings.chkAdd = true;
    grid.moveTo(1, Left);
    type(U"2.\n");
    grid.moveTo(1, Right);
    type(U"\n");
    EXPECT_EQ(row(1), ",2.0,,0.0,,,,,,");
}

TEST_F(Entry, FixedOffsetsAreFilledIn) {
    book.settings.chkOft = true;
    setOffsets({2, 4}, {3});
    openRun();
    EXPECT_EQ(row(2), "00-000,2,0,,,,,,,"); // the first line keeps the offset beside its centre
    EXPECT_EQ(cursor(), "2,5");
    type(U"1\n");
    EXPECT_EQ(row(3), "00-000,4,,,,,,,,");
    EXPECT_EQ(cursor(), "3,1");
    type(U"\n1\n");
    EXPECT_EQ(row(4), "00-000,,,,,,,,,"); // the list ran out: the offset waits to be keyed
    EXPECT_EQ(cursor(), "4,1");
    EXPECT_EQ(book.CurrentSide, 'L');
}

TEST_F(Entry, FinalListKeysWholeSections) {
    book.settings.chkOft = book.settings.chkFinal = true;
    setOffsets({2, 4, 6}, {2.2F, 5});
    openRun();
    grid.setText(2, Left, "");
    for (int reading = 0; reading < 9; ++reading) {
        EXPECT_EQ(grid.Col(), InterSight) << reading;
        type(U"1\n");
    }
    const char* want[] = {"00-000,,0,,", "00-000,2,,,", "00-000,4,,,", "00-000,6,,,", "00-000,,,2.2,",
                          "00-000,,,5,", "00-010,,0,,", "00-010,2,,,", "00-010,4,,,", "00-010,6,,,"};
    for (int r = 2; r <= 11; ++r)
        EXPECT_EQ(row(r).substr(0, std::string(want[r - 2]).size()), want[r - 2]) << r;
}

TEST_F(Entry, FinalListWithoutOffsetsOpensChainageLines) {
    book.settings.chkFinal = true;
    openRun();
    type(U"1\n1\n");
    EXPECT_EQ(row(3), "00-020,,0,,,1,,,100.500,"); // the first reading has left 00-010 behind
    EXPECT_EQ(row(4), "00-030,,0,,,,,,,");
}

TEST_F(Entry, FinalListWithOnlyChangePointsAboveGivesUpAtTheTop) {
    book.settings.chkFinal = true;
    put(1, {"CP"});
    put(2, {"CP"});
    put(3, {"CP", "", "", "", "1", "", "2"});
    grid.moveTo(3, BackSight);
    type(U"\n");
    EXPECT_EQ(cursor(), "2,4");
    EXPECT_EQ(grid.Rows(), 5);
}

TEST_F(Entry, AbsurdReadingsEndTheKeyWithAMessage) {
    openRun();
    grid.setText(2, InterSight, "1e39");
    type(U"\n");
    ASSERT_EQ(desktop.boxes.size(), 1U);
    EXPECT_EQ(desktop.boxes[0].text, "Overflow");
    EXPECT_EQ(row(2), "00-000,,0,,,1e39,,,,");
    EXPECT_TRUE(marked(2, InterSight));
    EXPECT_EQ(grid.Rows(), 3);
    EXPECT_EQ(book.CurrentHI, 101.5F);
}

} // namespace
