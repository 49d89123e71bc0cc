#include "cli/transfer_command.h"

#include "cli/project_files.h"
#include "dao/dao.h"
#include "exchange/road_schema.h"

#include "field_book.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <sstream>
#include <stdlib.h>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

namespace fs = std::filesystem;

class TransferCommand : public testing::Test {
  protected:
    TransferCommand() {
        setenv("HOME", home.path().c_str(), 1);
        setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
        fs::create_directories(home / "data/zavrogrl");
        for (const char* name : {"grl.mdb", "Rod.mdb", "Rod.dwg", "Rod1.dwg"})
            fs::copy_file(std::string(ZAVRO_TEMPLATES) + "/" + name, home / "data/zavrogrl/" + name);
        fs::create_directory(home / "roads");
        options.book = home / "Site1.grl";
        options.folder = home / "roads";
    }

    void makeBook(const std::string& csv) {
        std::istringstream in;
        ASSERT_EQ(cli::newProject(options.book, csv, in, err), cli::Done) << err.str();
        err.str("");
    }

    void give(std::string_view option, const char* text) {
        const auto& known = cli::frameOptions();
        const auto found =
            std::ranges::find(known, option, [](const auto& each) { return std::string_view(each.option); });
        ASSERT_NE(found, known.end()) << option;
        options.boxes.emplace_back(std::size_t(found - known.begin()), text);
    }

    dao::Value firstOf(const char* table, const char* field) const {
        dao::Database road = dao::OpenDatabase(home / "roads/Site1/Road.mdb", exchange::roadConnect);
        return road.OpenRecordset(table).Fields(field).value();
    }

    TempFolder home;
    cli::TransferOptions options;
    std::ostringstream out, err;
};

TEST_F(TransferCommand, MakesTheRoadWithTheGeometryOfTheOptions) {
    makeBook(testData("books/tramo1-derived.csv"));
    give("--name", "Tramo 1");
    give("--lw", "3.5");
    give("--rw", "4");
    give("--topw", "1.5");
    give("--wdrn", "0.5");
    give("--ddrn", "1");
    options.gutter = "top";
    ASSERT_EQ(cli::transfer(options, out, err), cli::Done) << err.str();
    EXPECT_EQ(out.str(), (home / "roads/Site1/Road.mdb") + "\n");
    EXPECT_THAT(err.str(), HasSubstr((home / "roads/Site1") + " Folder is Created\n"));
    EXPECT_EQ(firstOf("dddd", "dddd"), dao::Value("Tramo 1"));
    EXPECT_EQ(firstOf("LSect", "LRW"), dao::Value(3.5F));
    EXPECT_EQ(firstOf("LSect", "RRW"), dao::Value(4.0F));
    EXPECT_EQ(firstOf("LSect", "RGIS"), dao::Value(0.5F)) << "worked out from the top width";

    options.frl = home / "roads/Site1/Road.mdb";
    EXPECT_EQ(cli::transfer(options, out, err), cli::Done);
    EXPECT_THAT(err.str(), HasSubstr("30 formation levels sent to " + options.frl));
    EXPECT_EQ(firstOf("CSect", "Rmk"), dao::Value("GF"));
    options.frl.clear();
    options.frlUpdate = home / "missing.mdb";
    EXPECT_EQ(cli::transfer(options, out, err), cli::Failed);
    EXPECT_THAT(err.str(), HasSubstr("No formation levels sent: Could not find file"));
}

TEST_F(TransferCommand, ARefusedBookIsToldRowByRow) {
    makeBook(home.write("book.csv", "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark\r\n"
                                    ",,,,1,,,,100,\r\n"
                                    "00-000,2,,,,1.1,,,,\r\n"
                                    "00-000,2,,,,1.2,,,,\r\n"
                                    "00-010,,0,,,,,,,\r\n"));
    EXPECT_EQ(cli::transfer(options, out, err), cli::Failed);
    EXPECT_EQ(err.str(), "There are 2 Errors in your dataentry Please ckeck & then transfer it...\n"
                         "row 3 (00-000): left 2 m of 00-000 repeats row 2\n"
                         "row 4 (00-010): no reading; delete it if it is a spare row\n");
    EXPECT_EQ(out.str(), "");
    EXPECT_TRUE(fs::is_empty(home / "roads"));
}

TEST_F(TransferCommand, WhatCannotBeDoneIsSaid) {
    options.book = home / "missing.grl";
    EXPECT_EQ(cli::transfer(options, out, err), cli::Failed);
    EXPECT_NE(err.str(), "");
    options.book = home / "Site1.grl";
    makeBook(testData("books/tramo1-derived.csv"));

    options.folder = home / "no/such";
    EXPECT_EQ(cli::transfer(options, out, err), cli::Failed);
    EXPECT_THAT(err.str(), StartsWith("Path not found\n"));

    err.str("");
    options.folder = home / "roads";
    options.gutter = "top"; // without a depth
    EXPECT_EQ(cli::transfer(options, out, err), cli::Failed);
    EXPECT_EQ(err.str(), "Division by zero\n");
    EXPECT_TRUE(fs::is_empty(home / "roads"));
}

} // namespace
