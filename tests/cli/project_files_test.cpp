#include "cli/book_csv.h"
#include "cli/project_files.h"
#include "dao/dao.h"
#include "jet/database.h"
#include "sheet/book.h"

#include "field_book.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

#include <sstream>
#include <stdlib.h>

namespace {

class ProjectFiles : public testing::Test {
  protected:
    ProjectFiles() {
        setenv("XDG_DATA_HOME", folder.path().c_str(), 1);
        std::filesystem::create_directory(folder / "zavrogrl");
        jet::Database made = jet::Database::create(folder / "zavrogrl/grl.mdb", {.password = "MoraKin"});
        jet::TableDesign design{"Grl", {}, {}};
        for (const char* name : {"Chn", "Oft", "B", "i", "F", "HI", "rl", "Rem"})
            design.columns.push_back(
                {.name = name, .type = jet::ColumnType::Text, .size = 60, .allowZeroLength = true});
        design.columns[1].type = jet::ColumnType::Double;
        made.createTable(design);
        made.commit();
    }

    /// The project's rows as the text that `export` writes.
    std::string exported(const std::string& path) {
        std::ostringstream out;
        EXPECT_EQ(cli::exportProject(path, "-", out, err), cli::Done) << err.str();
        return out.str();
    }

    TempFolder folder;
    std::istringstream in;
    std::ostringstream err;
};

TEST_F(ProjectFiles, ABookIsMadeReducedAndWritten) {
    const std::string path = folder / "road.grl";
    folder.write("road.grl", "an older file is replaced");
    ASSERT_EQ(cli::newProject(path, testData("books/fleming-tbm-loop.csv"), in, err), cli::Done) << err.str();
    ASSERT_EQ(cli::calProject(path, err), cli::Done) << err.str();
    EXPECT_TRUE(std::filesystem::exists(path + ".bak"));
    EXPECT_NE(err.str().find("Sum B.S. 13.592, sum F.S. 13.519"), std::string::npos) << err.str();

    ASSERT_EQ(cli::exportProject(path, "", err, err), cli::Done);
    EXPECT_EQ(folder.read("road.csv"), exported(path));
    const auto book = bookRows("fleming-tbm-loop");
    std::vector<std::string> lines = basic::readLines(folder / "road.csv");
    ASSERT_EQ(lines.size(), book.size());
    EXPECT_EQ(lines[0], "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark,");
    for (std::size_t row = 1; row < book.size(); ++row) {
        const std::string& level = book[row][sheet::RLevel];
        EXPECT_NE(lines[row].find(',' + level), std::string::npos)
            << lines[row] << " has not the level " << level;
    }
}

TEST_F(ProjectFiles, WhatCannotBeDoneIsSaid) {
    folder.write("text.grl", "no database");
    folder.write("text.csv", "no book");
    EXPECT_EQ(cli::calProject(folder / "text.grl", err), cli::Failed);
    EXPECT_EQ(cli::exportProject(folder / "missing.grl", "-", err, err), cli::Failed);
    EXPECT_EQ(cli::newProject(folder / "a.grl", folder / "missing.csv", in, err), cli::Failed);
    EXPECT_EQ(cli::newProject(folder / "a.grl", folder / "text.csv", in, err), cli::Failed);
    EXPECT_EQ(cli::newProject(folder / "no/a.grl", testData("books/geocalc-abcg.csv"), in, err), cli::Failed);
    for (const char* said : {"Your Selected file is not a grl database file\n", "3024  ", "File not found\n",
                             "text.csv: line 1", "no/a.grl was not made: Path not found."})
        EXPECT_NE(err.str().find(said), std::string::npos) << said << "\nin\n" << err.str();
    EXPECT_FALSE(std::filesystem::exists(folder / "a.grl"));
}

} // namespace
