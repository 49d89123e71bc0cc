#include "child_process.h"
#include "held_database.h"
#include "project_fixture.h"

#include <sys/stat.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

class ForeignFilesTest : public ProjectTest {
  protected:
    ForeignFilesTest() { setRows(remark("the book before")); }

    std::vector<std::string> saveRows(const Rows& rows) {
        setRows(rows);
        return run(project::saveProject);
    }
    /// The bytes of a Jet file, damaged behind its first page.
    std::string damaged() {
        std::string content = folder.read("app/grl.mdb");
        for (std::size_t at = 4096; at < content.size(); ++at)
            content[at] = static_cast<char>(at * 31);
        return content;
    }
};

TEST_F(ForeignFilesTest, EachFailedOpenShowsItsMessageAndChangesNoFile) {
    constexpr const char* notOurs = "Your Selected file is not a grl database file";
    jet::TableDesign other = grlDesign();
    other.name = "Other";
    makeDatabase(folder / "password.grl", grlDesign(), "another");
    makeDatabase(folder / "table.grl", other);
    std::filesystem::create_directory(folder / "folder.grl");
    folder.write("text.grl", "Chainage,Left\r\n");
    folder.write("long.grl", std::string(10'000, 'x')); // than a page
    folder.write("empty.grl", "");
    folder.write("cut.grl", folder.read("app/grl.mdb").substr(0, 100));
    folder.write("damaged.grl", damaged());
    const std::vector<std::string> before = files();
    for (const auto& [name, message] : {std::pair("text.grl", notOurs),
                                        {"long.grl", notOurs},
                                        {"empty.grl", notOurs},
                                        {"cut.grl", notOurs},
                                        {"password.grl", notOurs},
                                        {"folder.grl", ""},
                                        {"missing.grl", "3024  "},
                                        {"no/missing.grl", "3044  "},
                                        {"table.grl", "3078  "},
                                        {"damaged.grl", ""}}) {
        SCOPED_TRACE(name);
        const std::string path = folder / name;
        const auto content = [&] { return std::filesystem::is_regular_file(path) ? folder.read(name) : ""; };
        const std::string bytes = content();
        EXPECT_THAT(open(path), ElementsAre(StartsWith(message)));
        EXPECT_EQ(book.projectPath(), path) << "the caption has changed by then";
        EXPECT_EQ(book.MSFG.Rows(), 2);
        EXPECT_FALSE(project::isUnsaved(book)) << "what a failed load leaves is no work of the user";
        // A file that is no field book is never written to, whatever the caption says now.
        EXPECT_THAT(saveRows(remark(name)), IsEmpty());
        EXPECT_THAT(desktop.statuses.back(), HasSubstr("The book was not saved: "));
        EXPECT_EQ(content(), bytes);
        EXPECT_TRUE(project::isUnsaved(book));
        std::filesystem::remove(path + ".bak");
    }
    EXPECT_EQ(files(), before);
}

TEST_F(ForeignFilesTest, ADatabaseWithOtherTablesKeepsThem) {
    const std::string path = folder / "mixed.grl";
    makeDatabase(path, grlDesign());
    {
        jet::Database database = jet::Database::open(path, "MoraKin");
        database.createTable({"Notes", {{.name = "Text", .type = jet::ColumnType::Memo}}, {}})
            .insert({jet::Value(std::string(5000, 'n'))});
        database.commit();
    }
    open(path);
    saveRows(remark("ours"));
    EXPECT_EQ(remarkIn(path), "ours");
    dao::Database after = dao::OpenDatabase(path, project::connect);
    EXPECT_EQ(dao::toText(after.OpenRecordset("Notes").Fields("Text").value()), std::string(5000, 'n'));
}

TEST_F(ForeignFilesTest, ABookThatAnotherInstanceHoldsStaysAsItIs) {
    const std::string path = projectFile("road.grl", remark("theirs"));
    {
        const HeldDatabase held(path, project::connect);
        EXPECT_THAT(open(path), ElementsAre(StartsWith("3045  ")));
        saveRows(remark("ours"));
        EXPECT_THAT(desktop.statuses.back(), HasSubstr("not saved"));
        EXPECT_TRUE(project::isUnsaved(book));
    }
    EXPECT_EQ(remarkIn(path), "theirs");
}

TEST_F(ForeignFilesTest, FieldsThatTakeNoEmptyTextOrNoNull) {
    jet::TableDesign design = grlDesign();
    design.columns[0].allowZeroLength = false;
    const std::string nulls = folder / "nulls.grl";
    const std::string needed = folder / "needed.grl";
    makeDatabase(nulls, design);
    open(nulls);
    saveRows({"00-000", "", "CP"});
    EXPECT_THAT(records(nulls), testing::SizeIs(3)) << "an empty chainage goes as Null";
    EXPECT_THAT(desktop.statuses.back(), testing::Not(HasSubstr("left out")));
    design.columns[0].required = true;
    makeDatabase(needed, design);
    open(needed);
    saveRows({"00-000", "", "CP"});
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("not saved: The field 'Grl.Chn' cannot contain a Null"));
    EXPECT_THAT(records(needed), testing::IsEmpty());
}

// No matter of one cell: left out, it would take the row or the whole column with it.
TEST_F(ForeignFilesTest, ATableThatRefusesMoreThanAValueKeepsItsRows) {
    jet::TableDesign keyed = grlDesign();
    keyed.indexes.push_back({"PrimaryKey", {{.name = "Chn"}}, jet::IndexKind::PrimaryKey});
    jet::TableDesign lacking = grlDesign();
    lacking.columns.pop_back();
    const std::pair<jet::TableDesign, const char*> cases[] = {{keyed, "duplicate values in the index"},
                                                              {lacking, "Item not found"}};
    for (const auto& [design, reason] : cases) {
        const std::string path = folder / "odd.grl";
        std::filesystem::remove(path);
        makeDatabase(path, design);
        EXPECT_THAT(open(path), IsEmpty()) << "no record, nothing to miss";
        const std::string before = folder.read("odd.grl");
        saveRows({",,,,,,,,,lost", ",,,,,,,,,lost"});
        EXPECT_THAT(desktop.statuses.back(),
                    testing::AllOf(StartsWith("The book was not saved: "), HasSubstr(reason)));
        EXPECT_EQ(folder.read("odd.grl"), before);
        EXPECT_TRUE(project::isUnsaved(book));
    }
}

TEST_F(ForeignFilesTest, DamageInARowIsToldOfTheFileAndNotOfAField) {
    const std::string path = projectFile("road.grl", Rows(37, ",,,,,1.525,,,,kept"));
    std::string bytes = folder.read("road.grl");
    constexpr std::size_t pageSize = 4096;
    for (std::size_t page = 0; page < bytes.size(); page += pageSize)
        if (bytes[page] == 1 && bytes.substr(page, pageSize).find("kept") != std::string::npos)
            bytes[page + 0x0F] = 0x1F; // the first row begins behind the page
    folder.write("road.grl", bytes);
    EXPECT_THAT(open(path), ElementsAre(testing::AllOf(StartsWith("3049  "), HasSubstr("'" + path + "'"))));
}

TEST_F(ForeignFilesTest, AWrongCountInTheDefinitionLosesNoRow) {
    const std::string path = projectFile("road.grl", Rows(37, ",,,,,1.525,,,,kept"));
    const std::string whole = folder.read("road.grl");
    for (const int stated : {0, 3, 36, 38, 120}) {
        std::string bytes = whole;
        constexpr std::size_t pageSize = 4096;
        constexpr std::size_t rowCountAt = 0x10;
        int patched = 0;
        for (std::size_t page = 0; page < bytes.size(); page += pageSize)
            if (bytes[page] == 2 && bytes[page + rowCountAt] == 37) {
                bytes[page + rowCountAt] = static_cast<char>(stated);
                ++patched;
            }
        ASSERT_EQ(patched, 1);
        folder.write("road.grl", bytes);
        EXPECT_THAT(open(path), IsEmpty());
        EXPECT_EQ(book.MSFG.Rows(), 38);
        EXPECT_THAT(desktop.statuses.back(),
                    HasSubstr("counts " + std::to_string(stated) + " rows and holds 37"));
        project::saveProject(book, desktop);
        EXPECT_THAT(records(path), testing::SizeIs(37));
        desktop.statuses.clear();
        EXPECT_THAT(open(path), IsEmpty());
        EXPECT_THAT(desktop.statuses, testing::Not(testing::Contains(HasSubstr("counts"))));
    }
}

TEST_F(ForeignFilesTest, WithoutPermissionNothingIsTouched) {
    const std::string path = projectFile("road.grl", remark("mine"));
    const std::string before = folder.read("road.grl");
    chmod(desktop.folder.c_str(), 0755);
    chmod(folder.path().c_str(), 0555); // forbidden to the owner as well, who runs this where it is not root

    book.MSFG.setRows(1); // nothing to set aside, where that other user could not
    chmod(path.c_str(), 0);
    EXPECT_EQ(1, asOtherUser([&] { return open(path).at(0).starts_with("3051  "); })) << "not readable";
    chmod(path.c_str(), 0444);
    EXPECT_EQ(
        1, asOtherUser([&] {
            book.setProjectPath(path);
            return run(project::saveProject).empty() && // neither the backup nor the file can be written
                   desktop.statuses.back().find("not saved") != std::string::npos;
        }))
        << "read-only folder";
    for (const Command& command : {Command(project::saveProject), Command(project::saveProjectAs)}) {
        EXPECT_EQ(1, asOtherUser([&] {
                      return run(command, {folder / "new.grl"}) == Rows{"Permission denied"} &&
                             book.MSFG.Visible() && !book.hasFile();
                  }))
            << "a new file in a read-only folder";
    }
    chmod(folder.path().c_str(), 0755);
    EXPECT_EQ(folder.read("road.grl"), before);
    EXPECT_THAT(files(), ElementsAre("road.grl"));
}

TEST_F(ForeignFilesTest, APlaceThatCannotBeMadeGetsTheOtherName) {
    std::filesystem::create_directory(folder / "road.grl");
    EXPECT_THAT(run(project::newProject, {folder / "road.grl"}), IsEmpty());
    EXPECT_EQ(book.projectPath(), folder / "road.grl") << "the command goes on with the name itself";
    EXPECT_EQ(folder.read("road.grlaa"), folder.read("app/grl.mdb"));
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("road.grlaa"));

    // A file that its owner made read-only is refused although the folder would allow the rename.
    const std::string path = projectFile("locked.grl", remark("locked"));
    chmod(path.c_str(), 0444);
    run(project::saveProjectAs, {path});
    EXPECT_EQ(remarkIn(path), "locked");
    EXPECT_EQ(folder.read("locked.grlaa"), folder.read("app/grl.mdb"));
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("The book was not saved: "));
}

TEST_F(ForeignFilesTest, AMissingFolderOrTemplateEndsTheCommand) {
    const Rows none{"Path not found"};
    book.MSFG.moveTo(1, 3);
    EXPECT_EQ(run(project::newProject, {folder / "no/road.grl"}), none);
    EXPECT_EQ(run(project::saveProjectAs, {folder / "no/road.grl"}), none);
    EXPECT_TRUE(book.MSFG.CellBackColor(1, 3).isNone());
    EXPECT_EQ(run(project::saveProject, {folder / "no/road.grl"}), none);
    EXPECT_EQ(book.MSFG.CellBackColor(1, 3), sheet::rgb(240, 210, 220));

    std::filesystem::remove_all(desktop.folder); // the program folder is gone
    book.BookChanged = true;
    EXPECT_THAT(run(project::newProject, {folder / "road.grl"}, {desktop::Answer::Yes}),
                ElementsAre(testing::_, "File not found: " + desktop.folder + "/grl.mdb"));
    EXPECT_FALSE(book.hasFile());
    EXPECT_EQ(rows(), remark("the book before"));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ForeignFilesTest, ALinkIsFollowedAndTheFileKeepsItsMode) {
    const std::string path = projectFile("real.grl", remark("real"));
    chmod(path.c_str(), 0640);
    std::filesystem::create_symlink("real.grl", folder / "link.grl");
    for (const Command& command : {Command(project::saveProjectAs), Command(project::saveProject)}) {
        run(command, {folder / "link.grl"});
        EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.grl"));
    }
    EXPECT_EQ(remarkIn(path), "the book before");
    struct stat is {};
    stat(path.c_str(), &is);
    EXPECT_EQ(is.st_mode & 0777, 0640);
}

} // namespace
