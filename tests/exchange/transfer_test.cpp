#include "exchange/marked_rows.h"
#include "exchange/transfer.h"

#include "road_fixture.h"

#include <fstream>

using exchange::TransferEnd;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using TransferTest = RoadTest;

const std::vector<std::string> twoSections{
    ",,,,0.850,,,12.750,11.900,BM",   "00-000,3.15,,,,1.384,,,11.366,",    "00-000,,0,,,1.400,,,11.350,",
    "00-000,,,3.15,,1.236,,,11.514,", "CP,,,,1.205,,1.150,12.805,11.600,", "00-010,3.15,,,,1.279,,,11.526,",
    "00-010,,0,,,1.341,,,11.464,",    "00-010,,,3.15,,1.399,,,11.406,",    "00-010,,,,,,0.905,,11.900,TBM",
};

TEST_F(TransferTest, MakesTheRoadFolder) {
    keyed(twoSections);
    book.MSFG.moveTo(3, 5);
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    const std::string folder = roads + "/Site1";
    EXPECT_THAT(messages(), ElementsAre(folder + " Folder is Created"));
    EXPECT_THAT(filesIn(roads),
                ElementsAre("Site1/LRod.dwg", "Site1/Road.dwg", "Site1/Road.mdb", "Site1/Site1.grl"));
    EXPECT_THAT(cross(folder + "/Road.mdb"),
                ElementsAre("00-000,L,3.15,11.366,-,GG", "00-000,C,0,11.35,11.35,GG",
                            "00-000,R,3.15,11.514,-,GG", "00-010,L,3.15,11.526,-,GG",
                            "00-010,C,0,11.464,11.464,GG", "00-010,R,3.15,11.406,-,GG"));
    EXPECT_THAT(records(folder + "/Road.mdb", "LSect", {"Chn", "Grl", "Frl"}),
                ElementsAre("00-000,11.35,11.35", "00-010,11.464,11.464"));
    EXPECT_THAT(records(folder + "/Road.mdb", "Plan", {"Chn"}), IsEmpty());
    expectCleanDesk();
    EXPECT_EQ(book.MSFG.Row(), 3);
    EXPECT_EQ(book.MSFG.Col(), 5);
    EXPECT_TRUE(std::filesystem::is_directory(home / "Road")) << "the usual folder is made, whatever is set";
    for (const auto& [from, to] : {std::pair{"Rod.dwg", "Road.dwg"}, {"Rod1.dwg", "LRod.dwg"}})
        EXPECT_EQ(home.read("app/" + std::string(from)), home.read("roads/Site1/" + std::string(to)));
    EXPECT_EQ(home.read("Site1.grl"), home.read("roads/Site1/Site1.grl"));
}

TEST_F(TransferTest, WritesTheGeometryOfTheFrame) {
    keyed(twoSections);
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
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    const std::string road = roads + "/Site1/Road.mdb";
    EXPECT_THAT(records(road, "LSect",
                        {"Chn", "LRW", "RRW", "RCam", "CSlp", "FSlp", "RGIS", "DrnTWid", "DrnWid", "RGW",
                         "DrnDep", "RGD", "RGOS", "LGOS", "CamPer", "ShdPer", "TKPer", "LCamW", "RCamW"}),
                ElementsAre("00-000,3.5,4.25,0.09,0.25,2.5,0.75,0.75,0.45,0.45,0,0,0.6,0.6,3,5,1,2.75,2.75",
                            "00-010,3.5,4.25,0.09,0.25,2.5,0.75,0.75,0.45,0.45,0,0,0.6,0.6,3,5,1,2.75,2.75"));
    EXPECT_THAT(records(road, "LSect", {"SElev", "LCOft", "RFA", "Rem", "RExCrW"}),
                ElementsAre("-,-,-,-,-", "-,-,-,-,-"));
    dao::Database database = dao::OpenDatabase(road, exchange::roadConnect);
    dao::Recordset lSect = database.OpenRecordset("LSect");
    lSect.MoveFirst();
    EXPECT_EQ(lSect.Fields("LG").value(), dao::Value(true));
    EXPECT_EQ(lSect.Fields("RG").value(), dao::Value(true));
}

TEST_F(TransferTest, TotalWidthIsHalved) {
    const std::pair<const char*, const char*> widths[] = {
        {"7.5", "3.75"}, {"7", "3.5"}, {"10", "5.0"}, {"9.9999", "5.0"}};
    for (const auto& [total, half] : widths) {
        keyed(twoSections);
        frame.txtTW.text = total;
        ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
        EXPECT_EQ(frame.txtLW.text, half);
        EXPECT_EQ(frame.txtRW.text, half);
    }
}

TEST_F(TransferTest, TitleLines) {
    struct Case {
        const char *name, *subDivision, *division, *surveyor;
        std::vector<std::string> lines;
    } cases[] = {
        {"Road to X", "Sub", "Div", "A. Surveyor", {"Road to X", "Sub", "Div", "$A. Surveyor", ""}},
        {"",
         " ",
         "",
         "A. Surveyor",
         {"Type here ProjectName - Shri. Dorvan Kessel", "Type here div. - Shri. Dorvan Kessel",
          "Type here SubDn - Shri. Dorvan Kessel", "$Shri. Dorvan Kessel", "-"}},
        {" padded ", "Sub", "Div", "", {" padded ", "Sub", "Div", "$", ""}},
    };
    std::string folder = roads + "/Site1";
    for (const Case& c : cases) {
        keyed(twoSections);
        frame.txtName.text = c.name;
        frame.txtSubDiv.text = c.subDivision;
        frame.txtDiv.text = c.division;
        frame.txtSurvey.text = c.surveyor;
        ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
        EXPECT_EQ(records(folder + "/Road.mdb", "dddd", {"dddd"}), c.lines);
        folder += "X";
    }
}

TEST_F(TransferTest, EachFurtherTransferTakesAnXMore) {
    const std::string folder = roads + "/Site1";
    const auto exists = [&](const std::string& xs) { return folder + xs + " Folder is Allready Exists..."; };
    for (int time = 0; time < 3; ++time) {
        keyed(twoSections);
        ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    }
    EXPECT_THAT(messages(),
                ElementsAre(folder + " Folder is Created", exists(""), folder + "X Folder is Created",
                            exists(""), exists("X"), folder + "XX Folder is Created"));
    std::filesystem::remove(folder + "X/Road.mdb"); // the folder without a road is used as it is
    desktop.boxes.clear();
    keyed(twoSections);
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    EXPECT_THAT(messages(), ElementsAre(exists(""), folder + "X Folder is Created"));
}

TEST_F(TransferTest, RowsBecomeRecords) {
    struct Case {
        const char* what;
        std::vector<std::string> rows, records;
        std::vector<int> marked;
    } cases[] = {
        {"chainages without a hyphen become kilometres and metres",
         {"120,1,,,,,,,9.5,", "1250.5,,0,,,,,,8,"},
         {"00-120,L,1,9.5,-,GG", "01-250.5,C,0,8,8,GG"},
         {}},
        {"bench marks, change points and rows without a chainage stay out, also between readings of one "
         "section",
         {"00-000,1,,,,,,,9.5,", "00-000,2,,,,,,,9,TBM", "CP,3,,,,,,,9,", "00-000,,2,,,,,,9,", ",1,,,,,,,7,",
          "cp-,4,,,,,,,1,TBM"},
         {"00-000,L,1,9.5,-,GG", "00-000,C,0,9,9,GG"},
         {}},
        {"a bench mark in the chainage column reads as the start of the road",
         {"TBM,1,,,,,,,9.5,"},
         {"00-000,L,1,9.5,-,GG"},
         {}},
        {"letters before a chainage are dropped for the road",
         {"CH 00-010,1,,,,,,,9.5,", "00-010,1,,,,,,,9.5,"},
         {},
         {2}},
        {"the last offset of a row wins for the side",
         {"00-000,1,0,2,,,,,9.5,", "00-000,,,2,,,,,9.5,"},
         {},
         {2}},
        {"a reading keyed twice, one without a level",
         {"00-000,1,,,,,,,9.5,", "00-000,1.0,,,,,,,9.6,", "00-000,2,,,,,,,,", "00-000,3,,,,,,,1,"},
         {},
         {2, 3}},
        {"a row without an offset stands for the point above",
         {"00-000,1,,,,,,,9.5,", "00-000,,,,,,,,9.5,"},
         {},
         {2}},
        {"the spare row at the end counts", {"00-000,1,,,,,,,9.5,", "00-010,,0,,,,,,,"}, {}, {2}},
        {"a level that is no number counts as 0 for a side point",
         {"00-000,1,,,,,,,high,"},
         {"00-000,L,1,0,-,GG"},
         {}},
        {"a keyed minus zero is zero",
         {"00-000,,-0,,,,,,1,", "00-000,-0,,,,,,,1,"},
         {"00-000,C,0,1,1,GG", "00-000,L,0,1,-,GG"},
         {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        desktop.boxes.clear();
        std::filesystem::remove_all(roads + "/Site1");
        keyed(c.rows);
        frame.Dsb();
        const TransferEnd end = exchange::transfer(book, desktop, frame);
        EXPECT_EQ(marked(), c.marked);
        expectCleanDesk();
        if (c.marked.empty()) {
            EXPECT_EQ(end, TransferEnd::Done);
            EXPECT_EQ(cross(roads + "/Site1/Road.mdb"), c.records);
        } else {
            EXPECT_EQ(end, TransferEnd::Refused);
            EXPECT_THAT(messages(),
                        ElementsAre("There are " + std::to_string(c.marked.size()) +
                                    " Errors in your dataentry Please ckeck & then transfer it..."));
            EXPECT_THAT(filesIn(roads), IsEmpty());
            EXPECT_EQ(book.MSFG.Row(), c.marked.back());
            EXPECT_EQ(book.MSFG.Col(), 0);
        }
    }
}

TEST_F(TransferTest, NormalisedChainageStaysInTheCellAndACleanedOneDoesNot) {
    keyed({"120,1,,,,,,,9.5,", "CH 00-130,1,,,,,,,9.5,"});
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    EXPECT_EQ(book.MSFG.Text(1, 0), "00-120");
    EXPECT_EQ(book.MSFG.Text(2, 0), "CH 00-130");
    EXPECT_EQ(book.MSFG.CellBackColor(1, 0), sheet::rgb(255, 255, 255));
    EXPECT_EQ(records(roads + "/Site1/Road.mdb", "CSect", {"Chn"}),
              (std::vector<std::string>{"00-120", "00-130"}));
}

TEST_F(TransferTest, RefusedRowsAreExplained) {
    keyed({"00-000,1,,,,1.1,,,9.5,", "00-000,1,,,,1.2,,,9.6,", "00-000,2,,,,1.3,,,,", "00-010,,,,,,,,,"});
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Refused);
    EXPECT_EQ(desktop.statuses.back(), "3 rows marked; row 4: no reading; delete it if it is a spare row");
    EXPECT_EQ(desktop.gridFocused, 1);
    book.MSFG.moveTo(3, 0);
    exchange::tellMarkedRow(book.MSFG, desktop);
    EXPECT_EQ(desktop.statuses.back(), "3 rows marked; row 3: no R.Level.; Cal reduces the book");
    book.MSFG.moveTo(2, 0);
    exchange::tellMarkedRow(book.MSFG, desktop);
    EXPECT_EQ(desktop.statuses.back(), "3 rows marked; row 2: left 1 m of 00-000 repeats row 1");
    const std::size_t said = desktop.statuses.size();
    book.MSFG.moveTo(1, 0);
    exchange::tellMarkedRow(book.MSFG, desktop);
    EXPECT_THAT(desktop.statuses, SizeIs(said)) << "a good row has nothing to say";
}

TEST_F(TransferTest, MendedRowsTurnWhiteAndGoThrough) {
    keyed({"00-000,1,,,,,,,9.5,", "00-000,1,,,,,,,9.6,"});
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Refused);
    book.MSFG.setText(2, 1, "2");
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    EXPECT_THAT(marked(), IsEmpty());
}

TEST_F(TransferTest, WhatTheEngineRefusesNamesTheChainage) {
    struct Case {
        const char* what;
        std::vector<std::string> rows;
        int row;
        const char* message;
    } cases[] = {
        {"two centre readings, keyed with different numbers",
         {"00-000,,0,,,,,,9,", "00-010,,0,,,,,,9,", "00-010,,2,,,,,,9,", "00-020,,0,,,,,,,"},
         3,
         "Chainage 00-010 have some data entry Mistake CHECK IT!!!"},
        {"a first reading without an offset",
         {",,,,,,,,,", "00-000,,,,,,,,9,"},
         2,
         "Chainage 00-000 have some data Missing CHECK IT!!!"},
        {"a chainage beyond the notation", {"00-000,1,,,,,,,9,", "33000,1,,,,,,,9,"}, 2, "Overflow"},
        {"a centre level that is no number", {"00-000,,0,,,,,,high,"}, 1, "Data type conversion error."},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        desktop.boxes.clear();
        keyed(c.rows);
        for (int row = 1; row < book.MSFG.Rows(); ++row)
            book.MSFG.setCellBackColor(row, 0, sheet::noColour);
        EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Failed);
        EXPECT_THAT(messages(), ElementsAre(c.message));
        EXPECT_THAT(marked(), ElementsAre(c.row));
        EXPECT_EQ(book.MSFG.Row(), c.row);
        EXPECT_EQ(book.MSFG.Col(), 0);
        EXPECT_THAT(filesIn(roads), IsEmpty());
        expectCleanDesk();
    }
}

TEST_F(TransferTest, AsksForWidthsFirst) {
    keyed(twoSections);
    frame.optWLR_Click();
    frame.txtLW.text = "none";
    frame.txtRW.text = "";
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Stopped);
    EXPECT_EQ(frame.focus, "txtLW");
    frame.txtLW.text = "3";
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Stopped);
    EXPECT_EQ(frame.focus, "txtRW");
    EXPECT_THAT(messages(), ElementsAre("Enter Left Roadwidth 1st ...", "Enter Right Roadwidth 1st ..."));
    EXPECT_TRUE(frame.visible);
    EXPECT_FALSE(std::filesystem::exists(home / "Site1.grl.bak")) << "nothing was saved";
}

TEST_F(TransferTest, NeedsAFile) {
    keyed(twoSections);
    book.Caption = sheet::Book::untitledCaption;
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Stopped);
    EXPECT_THAT(messages(), ElementsAre("1st Give new name", "1st save this file..."));
    EXPECT_THAT(filesIn(roads), IsEmpty());
    expectCleanDesk();
}

TEST_F(TransferTest, SavesFirst) {
    keyed(twoSections);
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    dao::Database saved = dao::OpenDatabase(home / "Site1.grl", ";pwd=MoraKin");
    EXPECT_EQ(saved.OpenRecordset("Grl").RecordCount(), static_cast<int>(twoSections.size()));
    EXPECT_TRUE(std::filesystem::exists(home / "Site1.grl.bak"));
}

TEST_F(TransferTest, ExportButtonReducesAndOpensTheFrame) {
    frame.Enb();
    exchange::showExportFrame(book, desktop, frame);
    EXPECT_THAT(messages(), ElementsAre("1st Enter Field Book Data..."));
    EXPECT_FALSE(frame.visible);
    keyed({",,,,1.5,,,,100,", "00-000,1,,,,0.75,,,,"});
    exchange::showExportFrame(book, desktop, frame);
    EXPECT_EQ(book.MSFG.Text(2, 8), "100.750");
    EXPECT_TRUE(frame.visible);
    EXPECT_FALSE(frame.commandsEnabled);
    desktop.showProgress();
    exchange::cancelExport(desktop, frame);
    expectCleanDesk();
}

TEST_F(TransferTest, ProgressRunsToItsEnd) {
    std::vector<std::string> rows;
    for (int chainage = 100; chainage < 300; ++chainage)
        rows.push_back("00-" + std::to_string(chainage) + ",1,,,,,,,9,");
    keyed(rows);
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    ASSERT_GE(desktop.progress.size(), rows.size());
    const std::vector<float> walk(desktop.progress.end() - static_cast<std::ptrdiff_t>(rows.size()),
                                  desktop.progress.end());
    EXPECT_TRUE(std::is_sorted(walk.begin(), walk.end()));
    EXPECT_FLOAT_EQ(walk.back(), 100);
}

} // namespace
