#include "exchange/marked_rows.h"
#include "road_fixture.h"

using exchange::TransferEnd;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using TransferTest = RoadTest;

constexpr std::string_view twoSections =
    ",,,,0.850,,,12.750,11.900,BM|00-000,3.15,,,,1.384,,,11.366|00-000,,0,,,1.400,,,11.350|"
    "00-000,,,3.15,,1.236,,,11.514|CP,,,,1.205,,1.150,12.805,11.600|00-010,3.15,,,,1.279,,,11.526|"
    "00-010,,0,,,1.341,,,11.464|00-010,,,3.15,,1.399,,,11.406|00-010,,,,,,0.905,,11.900,TBM";

TEST_F(TransferTest, MakesTheRoadFolder) {
    EXPECT_EQ(transfer(twoSections), TransferEnd::Done);
    const std::string folder = roads + "/Site1";
    EXPECT_THAT(messages(), ElementsAre(folder + " Folder is Created"));
    EXPECT_THAT(filesIn(roads),
                ElementsAre("Site1/LRod.dwg", "Site1/Road.dwg", "Site1/Road.mdb", "Site1/Site1.grl"));
    EXPECT_EQ(cross(road), "00-000,L,3.15,11.366,-,GG|00-000,C,0,11.35,11.35,GG|00-000,R,3.15,11.514,-,GG|00-"
                           "010,L,3.15,11.526,-,GG|00-010,C,0,11.464,11.464,GG|00-010,R,3.15,11.406,-,GG");
    EXPECT_EQ(records(road, "LSect", {"Chn", "Grl", "Frl"}), "00-000,11.35,11.35|00-010,11.464,11.464");
    EXPECT_EQ(records(road, "Plan", {"Chn"}), "");
    expectCleanDesk();
    EXPECT_EQ(desktop.progress.back(), 100);
    EXPECT_TRUE(std::filesystem::is_directory(home / "Road")) << "the usual folder is made, whatever is set";
    EXPECT_EQ(home.read("app/Rod.dwg"), home.read("roads/Site1/Road.dwg"));
    EXPECT_EQ(home.read("app/Rod1.dwg"), home.read("roads/Site1/LRod.dwg"));
    EXPECT_EQ(home.read("Site1.grl"), home.read("roads/Site1/Site1.grl"));
    dao::Database saved = dao::OpenDatabase(home / "Site1.grl", ";pwd=MoraKin");
    EXPECT_EQ(saved.OpenRecordset("Grl").RecordCount(), 9);
    EXPECT_TRUE(std::filesystem::exists(home / "Site1.grl.bak"));
}

TEST_F(TransferTest, WritesTheGeometryOfTheFrame) {
    const auto geometry = [this] {
        return records(road, "LSect",
                       {"LRW",    "RRW",   "RCam",  "CSlp",  "FSlp", "RGIS", "DrnTWid", "DrnWid", "RGW",
                        "DrnDep", "RGD",   "RGOS",  "LGOS",  "LG",   "RG",   "CamPer",  "ShdPer", "TKPer",
                        "LCamW",  "RCamW", "SElev", "LCOft", "RFA",  "Rem",  "RExCrW"});
    };
    ASSERT_EQ(transfer("00-000,,0,,,,,,11.350"), TransferEnd::Done);
    EXPECT_EQ(geometry(),
              "3.75,3.75,0.09,1,2,0.5,0.5,0.5,0.5,0,0,0.5,0.5,True,True,3,5,1,1.875,1.875,-,-,-,-,-");
    frame.optWLR_Click();
    frame.txtLW.text = "3.5m";
    frame.txtRW.text = "4.25";
    frame.txtCrgWid.text = "5.5";
    frame.cboFill.text = "2.5";
    frame.cboCut.text = "0.25";
    frame.cboGIS.text = "0.75";
    frame.cboGOS.text = "0.6";
    frame.txtTopW.text = "9";
    frame.txtDDrn.text = "";
    frame.txtWDrn.text = "0.45";
    road = roads + "/Site1X/Road.mdb";
    ASSERT_EQ(transfer(), TransferEnd::Done);
    EXPECT_EQ(geometry(),
              "3.5,4.25,0.09,0.25,2.5,0.75,0.75,0.45,0.45,0,0,0.6,0.6,True,True,3,5,1,2.75,2.75,-,-,-,-,-");
}

TEST_F(TransferTest, TotalWidthIsHalved) {
    const std::pair<const char*, const char*> widths[] = {
        {"7.5", "3.75"}, {"7", "3.5"}, {"10", "5.0"}, {"9.9999", "5.0"}};
    for (const auto& [total, half] : widths) {
        frame.txtTW.text = total;
        ASSERT_EQ(transfer(twoSections), TransferEnd::Done);
        EXPECT_EQ(frame.txtLW.text + " " + frame.txtRW.text, half + std::string(" ") + half);
    }
}

TEST_F(TransferTest, TitleLines) {
    const std::string by = " - Shri. Dorvan Kessel";
    const std::array<std::string, 5> cases[] = {
        {"Road to X", "Sub", "Div", "A. Surveyor", "Road to X|Sub|Div|$A. Surveyor|"},
        {"", " ", "", "A. Surveyor",
         "Type here ProjectName" + by + "|Type here div." + by + "|Type here SubDn" + by +
             "|$Shri. Dorvan Kessel|-"},
        {" padded ", "Sub", "Div", "", " padded |Sub|Div|$|"},
    };
    for (const auto& [name, subDivision, division, surveyor, lines] : cases) {
        frame.txtName.text = name;
        frame.txtSubDiv.text = subDivision;
        frame.txtDiv.text = division;
        frame.txtSurvey.text = surveyor;
        std::filesystem::remove_all(roads + "/Site1");
        ASSERT_EQ(transfer(twoSections), TransferEnd::Done);
        EXPECT_EQ(records(road, "dddd", {"dddd"}), lines);
    }
}

TEST_F(TransferTest, EachFurtherTransferTakesAnXMore) {
    const std::string folder = roads + "/Site1";
    const auto exists = [&](const std::string& xs) { return folder + xs + " Folder is Allready Exists..."; };
    ASSERT_EQ(transfer(twoSections), TransferEnd::Done);
    ASSERT_EQ(transfer(), TransferEnd::Done);
    EXPECT_THAT(messages(), ElementsAre(exists(""), folder + "X Folder is Created"));
    ASSERT_EQ(transfer(), TransferEnd::Done);
    EXPECT_THAT(messages(), ElementsAre(exists(""), exists("X"), folder + "XX Folder is Created"));
    std::filesystem::remove(folder + "X/Road.mdb"); // the folder without a road is used as it is
    ASSERT_EQ(transfer(), TransferEnd::Done);
    EXPECT_THAT(messages(), ElementsAre(exists(""), folder + "X Folder is Created"));
}

TEST_F(TransferTest, RowsBecomeRecords) {
    // What was keyed, the rows, and the records or the rows that are refused.
    const std::array<std::string, 3> cases[] = {
        {"chainages without a hyphen become kilometres and metres", "120,1,,,,,,,9.5|1250.5,,0,,,,,,8",
         "00-120,L,1,9.5,-,GG|01-250.5,C,0,8,8,GG"},
        {"bench marks, change points and rows without a chainage stay out, also between readings of one "
         "section",
         "00-000,1,,,,,,,9.5|00-000,2,,,,,,,9,TBM|CP,3,,,,,,,9|00-000,,2,,,,,,9|,1,,,,,,,7|cp-,4,,,,,,,1,TBM|"
         "00-000,,,,,,,,9,BM 1 = 9.01",
         "00-000,L,1,9.5,-,GG|00-000,C,0,9,9,GG"},
        {"a bench mark in the chainage column reads as the start of the road", "TBM,1,,,,,,,9.5",
         "00-000,L,1,9.5,-,GG"},
        {"letters before a chainage are dropped for the road", "CH 00-010,1,,,,,,,9.5|00-010,1,,,,,,,9.5",
         "refused { 2 }"},
        {"the last offset of a row wins for the side", "00-000,1,0,2,,,,,9.5|00-000,,,2,,,,,9.5",
         "refused { 2 }"},
        {"a reading keyed twice, one without a level",
         "00-000,1,,,,,,,9.5|00-000,1.0,,,,,,,9.6|00-000,2|00-000,3,,,,,,,1", "refused { 2, 3 }"},
        {"a row without an offset stands for the point above", "00-000,1,,,,,,,9.5|00-000,,,,,,,,9.5",
         "refused { 2 }"},
        {"the spare row at the end counts", "00-000,1,,,,,,,9.5|00-010,,0", "refused { 2 }"},
        {"a level that is no number counts as 0 for a side point", "00-000,1,,,,,,,high",
         "00-000,L,1,0,-,GG"},
        {"a keyed minus zero is zero", "00-000,-0,,,,,,,1", "00-000,L,0,1,-,GG"},
        {"and repeats one", "00-000,0,,,,,,,1|00-000,-0,,,,,,,1", "refused { 2 }"},
    };
    for (const auto& [what, rows, expected] : cases) {
        SCOPED_TRACE(what);
        std::filesystem::remove_all(roads + "/Site1");
        frame.Dsb();
        const TransferEnd end = transfer(rows);
        expectCleanDesk();
        const std::string refused = testing::PrintToString(marked());
        if (!expected.starts_with("refused")) {
            EXPECT_EQ(end, TransferEnd::Done);
            EXPECT_EQ(cross(road), expected);
            EXPECT_EQ(refused, "{}");
            continue;
        }
        EXPECT_EQ(end, TransferEnd::Refused);
        EXPECT_EQ("refused " + refused, expected);
        EXPECT_THAT(messages(), ElementsAre("There are " + std::to_string(marked().size()) +
                                            " Errors in your dataentry Please ckeck & then transfer it..."));
        EXPECT_THAT(filesIn(roads), IsEmpty());
        for (const exchange::MarkedRow& row : exchange::markedRows(book.MSFG)) {
            EXPECT_NE(row.fault, "");
            EXPECT_EQ(exchange::faultOf(book.MSFG, row.row), row.fault);
        }
        EXPECT_EQ(book.MSFG.Row(), marked().back());
        EXPECT_EQ(book.MSFG.Col(), 0);
    }
}

TEST_F(TransferTest, NormalisedChainageStaysInTheCellAndACleanedOneDoesNot) {
    ASSERT_EQ(transfer("120,1,,,,,,,9.5|CH 00-130,1,,,,,,,9.5"), TransferEnd::Done);
    EXPECT_EQ(shownRows(book.MSFG), "00-120,1,,,,,,,9.5|CH 00-130,1,,,,,,,9.5");
    EXPECT_EQ(book.MSFG.CellBackColor(1, 0), sheet::rgb(255, 255, 255));
    EXPECT_EQ(records(road, "CSect", {"Chn"}), "00-120|00-130");
}

TEST_F(TransferTest, RefusedRowsAreExplainedUntilTheyAreMended) {
    ASSERT_EQ(
        transfer(
            "00-000,1,,,,1.0,,,9.4,TBM|00-000,1,,,,1.1,,,9.5|00-000,1,,,,1.2,,,9.6|00-000,2,,,,1.3|00-010"),
        TransferEnd::Refused);
    EXPECT_EQ(desktop.gridFocused, 1);
    const std::pair<int, const char*> said[] = {
        {5, "3 rows marked; row 5: no reading; delete it if it is a spare row"},
        {4, "3 rows marked; row 4: no R.Level.; Cal reduces the book"},
        {3, "3 rows marked; row 3: left 1 m of 00-000 repeats row 2"},
        {2, ""}};
    for (const auto& [row, fault] : said) {
        EXPECT_EQ(desktop.statuses.empty() ? "" : desktop.statuses.back(), fault);
        desktop.statuses.clear();
        if (row > 1) {
            book.MSFG.moveTo(row - 1, 0);
            exchange::tellMarkedRow(book.MSFG, desktop);
        }
    }
    book.MSFG.setText(3, sheet::Left, ""); // a bench mark now
    book.MSFG.setText(3, sheet::Remark, "BM 1 = 9.6");
    book.MSFG.moveTo(3, 0);
    exchange::tellMarkedRow(book.MSFG, desktop);
    EXPECT_EQ(desktop.statuses.back(), "3 rows marked");
    ASSERT_EQ(transfer("00-000,1,,,,1.1,,,9.5|00-000,3,,,,1.2,,,9.6|00-000,2,,,,1.3,,,9.4"),
              TransferEnd::Done);
    EXPECT_THAT(marked(), IsEmpty());
}

TEST_F(TransferTest, AnErrorOfTheRoadIsExplainedByTheRowThatBroughtIt) {
    const std::string first = "00-000,,0,,,1.1,,,9.5|";
    for (const auto& [row, fault] :
         {std::pair("00-000,,0,6,,1.2,,,9.6", "centre of 00-000 repeats row 1"),
          {"00-010,,0,,,1.2,,,abc", "R.Level. abc is no number"},
          {"00-010,,0,,,1.2,,,9e99", "a number beyond all range"},
          {"33000,1,,,,1.2,,,9.6", "chainage 33000 is too long for plain metres: key it with its \"-\""},
          {"00-0000000000000000000000010,1,,,,1.2,,,9.6",
           "chainage is longer than the 25 characters of the road's"}}) {
        ASSERT_EQ(transfer(first + row), TransferEnd::Failed) << row;
        EXPECT_EQ(desktop.statuses.back(), std::string("1 row marked; row 2: ") + fault);
    }
}

TEST_F(TransferTest, WhatTheEngineRefusesNamesTheChainage) {
    const std::tuple<const char*, const char*, int, const char*> cases[] = {
        {"two centre readings, keyed with different numbers",
         "00-000,,0,,,,,,9|00-010,,0,,,,,,9|00-010,,2,,,,,,9|00-020,,0", 3,
         "Chainage 00-010 have some data entry Mistake CHECK IT!!!"},
        {"a first reading without an offset", "|00-000,,,,,,,,9", 2,
         "Chainage 00-000 have some data Missing CHECK IT!!!"},
        {"a chainage beyond the notation", "00-000,1,,,,,,,9|33000,1,,,,,,,9", 2, "Overflow"},
        {"a centre level that is no number", "00-000,,0,,,,,,high", 1, "Data type conversion error."},
    };
    for (const auto& [what, rows, row, message] : cases) {
        SCOPED_TRACE(what);
        book.MSFG.setRows(1);
        EXPECT_EQ(transfer(rows), TransferEnd::Failed);
        EXPECT_THAT(messages(), ElementsAre(message));
        EXPECT_THAT(marked(), ElementsAre(row));
        EXPECT_EQ(book.MSFG.Row(), row);
        EXPECT_EQ(book.MSFG.Col(), 0);
        EXPECT_THAT(filesIn(roads), IsEmpty());
        expectCleanDesk();
    }
}

TEST_F(TransferTest, AsksForWidthsAndAFileFirst) {
    frame.optWLR_Click();
    frame.txtLW.text = "none";
    frame.txtRW.text = "";
    EXPECT_EQ(transfer(twoSections), TransferEnd::Stopped);
    EXPECT_EQ(frame.focus, "txtLW");
    EXPECT_THAT(messages(), ElementsAre("Enter Left Roadwidth 1st ..."));
    frame.txtLW.text = "3";
    EXPECT_EQ(transfer(), TransferEnd::Stopped);
    EXPECT_EQ(frame.focus, "txtRW");
    EXPECT_THAT(messages(), ElementsAre("Enter Right Roadwidth 1st ..."));
    EXPECT_TRUE(frame.visible);
    EXPECT_FALSE(std::filesystem::exists(home / "Site1.grl.bak")) << "nothing was saved";
    frame.txtRW.text = "3";
    book.Caption = project::Book::untitledCaption;
    EXPECT_EQ(transfer(), TransferEnd::Stopped);
    EXPECT_THAT(messages(), ElementsAre("1st Give new name", "1st save this file..."));
    EXPECT_THAT(filesIn(roads), IsEmpty());
    expectCleanDesk();
}

TEST_F(TransferTest, ExportButtonReducesAndOpensTheFrame) {
    frame.Enb();
    exchange::showExportFrame(book, desktop, frame);
    EXPECT_THAT(messages(), ElementsAre("1st Enter Field Book Data..."));
    EXPECT_FALSE(frame.visible);
    keyRows(book.MSFG, {",,,,1.5,,,,100", "00-000,1,,,,0.75"});
    exchange::showExportFrame(book, desktop, frame);
    EXPECT_EQ(book.MSFG.Text(2, 8), "100.750");
    EXPECT_TRUE(frame.visible && !frame.commandsEnabled);
}

TEST_F(TransferTest, AdjustedLevelsAreSentAsTheyStandWhileTheyBelongToTheReadings) {
    keyRows(book.MSFG, {",,,,1.5,,,,100,A", "00-000,,0,,,1.4,,,100.102", "CP,,,,1.4,,1.5,,100.002",
                        "00-010,,0,,,1.3,,,100.104", "CP,,,,,,1.398,,100.006,B = 100.006"});
    ASSERT_TRUE(exchange::showExportFrame(book, desktop, frame));
    EXPECT_TRUE(frame.sendsAdjusted);
    EXPECT_EQ(desktop.statuses.back(), "Sends adjusted levels");
    EXPECT_EQ(book.MSFG.Text(2, sheet::RLevel), "100.102");
    EXPECT_EQ(book.MSFG.Text(3, sheet::HgtInst), "101.400"); // reduced as ever
    frame.Enb();
    book.MSFG.setText(2, sheet::InterSight, "1.3"); // another reading: the rest belonged to the old ones
    ASSERT_TRUE(exchange::showExportFrame(book, desktop, frame));
    EXPECT_FALSE(frame.sendsAdjusted);
    EXPECT_EQ(book.MSFG.Text(2, sheet::RLevel), "100.200");
    EXPECT_EQ(
        desktop.statuses.back(),
        "Sends the levels of the readings: 4 levels in R.Level. belonged to other readings or known levels");
}

// No road is made of a book that is in no file; one whose file lacks some cells is told so.
TEST_F(TransferTest, GoesByWhatBecameOfTheSave) {
    const std::string reading = "00-000,,0,,,1.1,,,9.5,";
    EXPECT_EQ(transfer(reading + std::string(300, 'x')), TransferEnd::DoneInPart);
    EXPECT_THAT(desktop.statuses.back(),
                testing::AllOf(HasSubstr("Remark in row 1"), HasSubstr("1 reading in " + roads)));

    const std::filesystem::path file = home / "Site1.grl";
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    frame.Dsb();
    EXPECT_EQ(transfer(reading), TransferEnd::Stopped);
    EXPECT_THAT(messages(), IsEmpty()) << "the bar says why";
    EXPECT_THAT(desktop.statuses.back(), testing::StartsWith("The book was not saved"));
    EXPECT_FALSE(frame.visible);
    EXPECT_EQ(records(road, "CSect", {"Chn"}), "00-000") << "only the road of before";

    // A name of points alone would make the folder above, or the one of all roads.
    for (const std::string name : {"...grl", "/.grl"}) {
        book.setProjectPath(home.path() + '/' + name);
        std::filesystem::copy_file(desktop.folder + "/grl.mdb", home.path() + '/' + name);
        frame.Dsb();
        EXPECT_EQ(transfer("cp,,0,,,1.1,,,9.5"), TransferEnd::Failed);
        EXPECT_THAT(messages(), ElementsAre("Path not found"));
    }
    book.setProjectPath(home / "...grl.grl");
    std::filesystem::copy_file(desktop.folder + "/grl.mdb", home / "...grl.grl");
    EXPECT_EQ(transfer("01 TBM,,0,,,1.1,,,9.5|TBM 7,,0,,,1.1,,,9.5"), TransferEnd::Done);
    EXPECT_EQ(book.notices.takeLine().text, "Row 1: chainage 01 TBM became 00-001, and 2 more.");
    const auto told = book.notices.list(book.MSFG);
    ASSERT_EQ(told.size(), 3U);
    EXPECT_EQ(told[1].text + ", " + told[2].text, "chainage TBM 7 became 00-000, The gutter has no depth");
}

} // namespace
