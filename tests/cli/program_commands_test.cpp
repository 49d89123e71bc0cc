// The commands that work on project files and road databases, on a program folder of their own.

#include "cli/cal.h"
#include "cli/check_command.h"
#include "cli/heading_command.h"
#include "cli/import_command.h"
#include "cli/jet_command.h"
#include "cli/levels_command.h"
#include "cli/project_files.h"
#include "cli/section_commands.h"
#include "cli/transfer_command.h"
#include "dao/dao.h"
#include "exchange/road_schema.h"

#include "child_process.h"
#include "field_book.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <sstream>

using testing::HasSubstr;

namespace {

namespace fs = std::filesystem;

class ProgramCommands : public testing::Test {
  protected:
    ProgramCommands() {
        setenv("HOME", home.path().c_str(), 1);
        setenv("XDG_DATA_HOME", (home / "data").c_str(), 1);
        fs::create_directory(home / "roads");
        fs::create_directories(home / "data/zavrogrl");
        for (const char* name : {"grl.mdb", "Rod.mdb", "Rod.dwg", "Rod1.dwg"})
            fs::copy_file(std::string(ZAVRO_TEMPLATES) + "/" + name, home / "data/zavrogrl/" + name);
        options.book = book;
        options.folder = home / "roads";
    }

    cli::ExitStatus make(const std::string& path, const std::string& csv) {
        std::istringstream in;
        return cli::newProject(path, csv, in, err);
    }
    void give(std::string_view option, const char* text) {
        const auto& known = cli::frameOptions();
        const auto found =
            std::ranges::find(known, option, [](const auto& each) { return std::string_view(each.option); });
        ASSERT_NE(found, known.end()) << option;
        options.boxes.emplace_back(std::size_t(found - known.begin()), text);
    }
    dao::Value firstOf(const char* table, const char* field) const {
        dao::Database made = dao::OpenDatabase(road, exchange::roadConnect);
        return made.OpenRecordset(table).Fields(field).value();
    }

    TempFolder home;
    const std::string book = home / "Site1.grl";
    const std::string road = home / "roads/Site1/Road.mdb";
    cli::TransferOptions options;
    std::ostringstream out, err;
};

TEST_F(ProgramCommands, ABookIsMadeReducedAndWritten) {
    home.write("Site1.grl", "an older file is replaced");
    ASSERT_EQ(make(book, testData("books/fleming-tbm-loop.csv")), cli::Done) << err.str();
    ASSERT_EQ(cli::calProject(book, err), cli::Done) << err.str();
    EXPECT_TRUE(fs::exists(book + ".bak"));
    EXPECT_THAT(err.str(), HasSubstr("Sums agree: B.S. 13.592 - F.S. 13.519"));

    ASSERT_EQ(cli::exportProject(book, "", out, err), cli::Done);
    ASSERT_EQ(cli::exportProject(book, "-", out, err), cli::Done);
    EXPECT_EQ(home.read("Site1.csv"), out.str());
    const auto rows = bookRows("fleming-tbm-loop");
    const std::vector<std::string> lines = basic::readLines(home / "Site1.csv");
    ASSERT_EQ(lines.size(), rows.size());
    EXPECT_EQ(lines[0], "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark,");
    for (std::size_t row = 1; row < rows.size(); ++row)
        EXPECT_EQ(std::stod(splitAt(lines[row], ',')[sheet::RLevel]), std::stod(rows[row][sheet::RLevel]));
}

TEST_F(ProgramCommands, ARoadIsMadeWithTheGeometryOfTheOptions) {
    ASSERT_EQ(make(book, testData("books/tramo1-derived.csv")), cli::Done) << err.str();
    for (const auto& [option, text] : {std::pair("--name", "Tramo 1"),
                                       {"--lw", "3.5"},
                                       {"--rw", "4"},
                                       {"--topw", "1.5"},
                                       {"--wdrn", "0.5"},
                                       {"--ddrn", "1"}})
        give(option, text);
    options.gutter = "top";
    ASSERT_EQ(cli::transfer(options, out, err), cli::Done) << err.str();
    EXPECT_EQ(out.str(), road + "\n");
    EXPECT_THAT(err.str(), HasSubstr((home / "roads/Site1") + " Folder is Created\n"));
    EXPECT_EQ(firstOf("dddd", "dddd"), dao::Value("Tramo 1"));
    EXPECT_EQ(firstOf("LSect", "LRW"), dao::Value(3.5F));
    EXPECT_EQ(firstOf("LSect", "RRW"), dao::Value(4.0F));
    EXPECT_EQ(firstOf("LSect", "RGIS"), dao::Value(0.5F)) << "worked out from the top width";

    options.frl = road;
    EXPECT_EQ(cli::transfer(options, out, err), cli::Done);
    EXPECT_THAT(err.str(), HasSubstr("30 formation levels sent to " + road));
    EXPECT_EQ(firstOf("CSect", "Rmk"), dao::Value("GF"));
    options.frl.clear();
    options.frlUpdate = home / "missing.mdb";
    EXPECT_EQ(cli::transfer(options, out, err), cli::Failed);
    EXPECT_THAT(err.str(), HasSubstr("No formation levels sent: Could not find file"));
}

TEST_F(ProgramCommands, ARefusedBookIsToldRowByRow) {
    ASSERT_EQ(make(book, home.write("book.csv",
                                    "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark\r\n"
                                    ",,,,1,,,,100,\r\n"
                                    "00-000,2,,,,1.1,,,,\r\n"
                                    "00-000,2,,,,1.2,,,,\r\n"
                                    "00-010,,0,,,,,,,\r\n")),
              cli::Done);
    err.str("");
    EXPECT_EQ(cli::transfer(options, out, err), cli::Failed);
    EXPECT_EQ(err.str(), "There are 2 Errors in your dataentry Please ckeck & then transfer it...\n"
                         "row 3 (00-000): left 2 m of 00-000 repeats row 2\n"
                         "row 4 (00-010): no reading; delete it if it is a spare row\n");
    EXPECT_EQ(out.str(), "");
    EXPECT_TRUE(fs::is_empty(home / "roads"));
}

TEST_F(ProgramCommands, WhatCannotBeDoneIsSaid) {
    const std::string good = testData("books/tramo1-derived.csv");
    ASSERT_EQ(make(book, good), cli::Done);
    const std::string text = home.write("text.grl", "no database");
    ASSERT_EQ(
        make(home / "absurd.grl", home.write("absurd.csv", "Chainage\n,,,,1,,,,100,\n,,,,,1e39\n,,,,,1\n")),
        cli::Done);
    const std::string absurd = home.read("absurd.grl");
    const auto transfer = [this](const std::string& path, const std::string& folder, const char* gutter) {
        options.book = path;
        options.folder = folder;
        options.gutter = gutter;
        return cli::transfer(options, out, err);
    };
    const struct {
        std::function<cli::ExitStatus()> command;
        const char* said;
    } cases[] = {
        {[&] { return cli::calProject(text, err); }, "Your Selected file is not a grl database file\n"},
        {[&] { return cli::calProject(home / "absurd.grl", err); }, "Overflow"},
        {[&] { return make(home / "a.grl", text); }, "text.grl: line 1"},
        {[&] { return transfer(book, home / "roads", "top"); }, "Division by zero\n"}, // without a depth
    };
    for (const auto& each : cases) {
        err.str("");
        EXPECT_EQ(each.command(), cli::Failed) << each.said;
        EXPECT_THAT(err.str(), HasSubstr(each.said));
    }
    EXPECT_FALSE(fs::exists(home / "a.grl"));
    EXPECT_EQ(home.read("absurd.grl"), absurd) << "not saved half reduced";
    EXPECT_TRUE(fs::is_empty(home / "roads"));
    EXPECT_EQ(out.str(), "");
}

TEST_F(ProgramCommands, EveryErrorNamesItsFile) {
    const auto copy = [this](const char* name, const std::string& from) {
        return home.write(name, TempFolder::readFile(from)); // where another user can read it
    };
    const std::string good = copy("good.csv", testData("books/tramo1-derived.csv"));
    const std::string level = copy("level.gsi", testData("digital-levels/dna03-bffb-cc0.gsi"));
    ASSERT_EQ(make(book, good), cli::Done);
    ASSERT_EQ(cli::calProject(book, err), cli::Done);
    std::istringstream in;
    using Command = std::function<cli::ExitStatus(const std::string&)>;
    const auto transfer = [this](std::string cli::TransferOptions::*place) -> Command {
        return [this, place](const std::string& path) {
            cli::TransferOptions to = options;
            if (place != &cli::TransferOptions::book) to.folder.clear();
            to.*place = path;
            return cli::transfer(to, out, err);
        };
    };
    const std::vector<Command> readers{
        [&](auto& path) { return cli::calProject(path, err); },
        [&](auto& path) {
            return cli::cal({path, ""}, in, out, err);
        },
        [&](auto& path) { return cli::exportProject(path, "-", out, err); },
        [&](auto& path) { return make(home / "roads/a.grl", path); },
        transfer(&cli::TransferOptions::book),
        transfer(&cli::TransferOptions::frl),
        transfer(&cli::TransferOptions::frlUpdate),
        [&](auto& path) { return cli::levels({.book = path}, in, out, err); },
        [&](auto& path) { return cli::check({.book = path}, in, out, err); },
        [&](auto& path) {
            return cli::heading({path, {}}, out, err);
        },
        [&](auto& path) {
            return cli::heading({path, {"date=1"}}, out, err);
        },
        [&](auto& path) {
            return cli::importFile({.file = path, .out = "-", .readerProgram = TABLE_READER}, out, err);
        },
        [&](auto& path) { return cli::jetSchema({.file = path}, out, err); },
        [&](auto& path) { return cli::jetDump({.file = path}, out, err); },
        [&](auto& path) { return cli::jetCheck({.file = path}, out, err); },
        [&](auto& path) { return cli::jetCreate({.file = "no.mdb", .schema = path}, in, err); },
        [&](auto& path) { return cli::printSections(path, false, in, out, err); },
    };
    const std::vector<Command> writers{
        [&](auto& path) {
            return cli::cal({good, path}, in, out, err);
        },
        [&](auto& path) { return cli::exportProject(book, path, out, err); },
        [&](auto& path) { return make(path, good); },
        [&](auto& path) { return cli::levels({.book = book, .csv = path}, in, out, err); },
        [&](auto& path) { return cli::importFile({.file = level, .out = path}, out, err); },
        [&](auto& path) { return cli::writeDxf(book, path, {}, in, err); },
        [&](auto& path) { return cli::writeLandXml(book, path, "", in, err); },
        [&](auto& path) { return cli::jetCreate({.file = path, .schema = "/dev/null"}, in, err); },
        transfer(&cli::TransferOptions::folder),
    };
    const auto expectNamed = [this](const std::vector<Command>& commands, const std::string& path,
                                    const std::string& named) {
        for (const Command& command : commands) {
            err.str("");
            EXPECT_EQ(command(path), cli::Failed) << path << ", command " << &command - commands.data();
            EXPECT_THAT(err.str(), HasSubstr(named)) << "command " << &command - commands.data();
        }
    };
    home.write("junk.grl", std::string(5000, '\1'));
    home.write("locked.grl", home.read("Site1.grl"));
    fs::create_directories(home / "shut/folder.grl");
    fs::permissions(home.path(), fs::perms::all);
    fs::permissions(home / "locked.grl", fs::perms::none);
    fs::permissions(home / "shut", fs::perms(0555));
    EXPECT_EQ(asOtherUser([&] {
                  for (const char* name : {"missing.grl", "shut/folder.grl", "junk.grl", "locked.grl"})
                      expectNamed(readers, home / name, home / name);
                  expectNamed(writers, home / "shut/a.csv", home / "shut/a.csv");
                  expectNamed(writers, home / "no/such/a.csv", home / "no/such");
                  return HasFailure();
              }),
              0);
}

TEST_F(ProgramCommands, TheHeadingIsShownAndSet) {
    ASSERT_EQ(make(book, testData("books/geocalc-abcg.csv")), cli::Done);
    EXPECT_EQ(cli::heading({book, {"surveyor=N. N.", "WORK=Road = new"}}, out, err), cli::Done);
    EXPECT_EQ(cli::heading({book, {"surveyor=", "date=1 May"}}, out, err), cli::Done);
    EXPECT_EQ(out.str(), "work=Road = new\nsurveyor=N. N.\nwork=Road = new\ndate=1 May\n");
    EXPECT_EQ(cli::heading({book, {"colour=red"}}, out, err), cli::WrongUsage);
    EXPECT_EQ(cli::heading({book, {"date=" + std::string(256, 'x')}}, out, err), cli::Failed);
    EXPECT_EQ(cli::heading({home / "none.grl", {"date=x"}}, out, err), cli::Failed);
    EXPECT_EQ(cli::heading({home / "data/zavrogrl/Rod.mdb", {"date=x"}}, out, err), cli::Failed);
}

} // namespace
