#include "held_database.h"
#include "project_fixture.h"

#include "project/append.h"
#include "project/recovery.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

constexpr const char* notOurs = "Your Selected file is not a grl database file";

class ForeignFilesTest : public ProjectTest {
  protected:
    ForeignFilesTest() { setRows({row({{sheet::Remark, "the book before"}})}); }

    /// A database without a password has none to get wrong, so these have one.
    std::string withoutGrl(const std::string& name) {
        jet::TableDesign design = grlDesign();
        design.name = "Other";
        makeDatabase(folder / name, design);
        return folder / name;
    }
    std::string otherPassword(const std::string& name) {
        makeDatabase(folder / name, grlDesign(), "another");
        return folder / name;
    }
    /// The bytes of a Jet file, damaged behind its first page.
    std::string damaged(const std::string& name) {
        std::string content = folder.read("app/grl.mdb");
        for (std::size_t at = 4096; at < content.size(); ++at)
            content[at] = static_cast<char>(at * 31);
        return folder.write(name, content);
    }
};

TEST_F(ForeignFilesTest, EachFailedOpenShowsItsMessageAndChangesNoFile) {
    struct Case {
        const char* name;
        std::string path;
        std::string message; ///< or how it starts
    };
    std::filesystem::create_directory(folder / "folder.grl");
    const std::vector<Case> cases{
        {"text", folder.write("text.grl", "Chainage,Left\r\n"), notOurs},
        {"longer than a page", folder.write("long.grl", std::string(10'000, 'x')), notOurs},
        {"empty", folder.write("empty.grl", ""), notOurs},
        {"cut header", folder.write("cut.grl", folder.read("app/grl.mdb").substr(0, 100)), notOurs},
        {"other password", otherPassword("password.grl"), notOurs},
        {"folder", folder / "folder.grl", ""},
        {"missing", folder / "missing.grl", "3024  "},
        {"missing folder", folder / "no/missing.grl", "3044  "},
        {"no table", withoutGrl("other.grl"), "3078  "},
        {"damaged", damaged("damaged.grl"), ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const std::string before = std::filesystem::is_regular_file(c.path)
                                       ? folder.read(std::filesystem::path(c.path).filename().string())
                                       : "";
        desktop.boxes.clear();
        open(c.path);
        ASSERT_THAT(desktop.boxes, SizeIs(1));
        EXPECT_EQ(desktop.boxes[0].buttons, desktop::Buttons::Ok);
        EXPECT_THAT(desktop.boxes[0].text, StartsWith(c.message));
        EXPECT_EQ(book.Caption, "ZavroGrl-" + c.path) << "the caption has changed by then";
        EXPECT_EQ(book.MSFG.Rows(), 2);
        EXPECT_FALSE(project::isUnsaved(book)) << "what a failed load leaves is no work of the user";
        book.MSFG.setText(1, sheet::Remark, c.name);
        // A file that is no field book is never written to, whatever the caption says now.
        desktop.boxes.clear();
        project::saveProject(book, desktop);
        EXPECT_THAT(desktop.boxes, IsEmpty());
        EXPECT_THAT(desktop.statuses.back(), HasSubstr("The book was not saved: "));
        if (!before.empty()) {
            EXPECT_EQ(folder.read(std::filesystem::path(c.path).filename().string()), before);
        }
        EXPECT_TRUE(project::isUnsaved(book));
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "missing.grl"));
}

TEST_F(ForeignFilesTest, AFailedOpenSetsTheUnsavedGridAside) {
    setRows({row({{sheet::Remark, "one"}}), row({{sheet::Remark, "two"}})});
    open(folder.write("text.grl", "none"));
    sheet::Book next;
    desktop.answers = {desktop::Answer::Yes};
    project::Recovery(next, desktop).offer();
    EXPECT_EQ(rowsOf(next.MSFG), (Rows{row({{sheet::Remark, "one"}}), row({{sheet::Remark, "two"}})}));
}

TEST_F(ForeignFilesTest, ADatabaseWithOtherTablesKeepsThem) {
    const std::string path = folder / "mixed.grl";
    {
        jet::Database database = jet::Database::create(path, {.password = "MoraKin"});
        database.createTable(grlDesign());
        jet::Table notes =
            database.createTable({"Notes", {{.name = "Text", .type = jet::ColumnType::Memo}}, {}});
        notes.insert({jet::Value(std::string(5000, 'n'))});
        database.commit();
    }
    open(path);
    setRows({row({{sheet::Remark, "ours"}})});
    project::saveProject(book, desktop);
    EXPECT_EQ(records(path)[0][7], "ours");
    dao::Database after = dao::OpenDatabase(path, project::connect);
    EXPECT_EQ(dao::toText(after.OpenRecordset("Notes").Fields("Text").value()), std::string(5000, 'n'));
}

TEST_F(ForeignFilesTest, FilesMadeByAccessAreLoadedAndSavedInTheirOwnTypes) {
    const std::string samples = ZAVRO_JET_SAMPLES;
    if (samples.empty()) GTEST_SKIP() << "no files made by Access here";
    for (const char* sample : {"common1V1997.mdb", "common2V2000.mdb", "common2V2003.mdb"}) {
        SCOPED_TRACE(sample);
        const std::string path = folder / (std::string(sample) + ".grl");
        std::filesystem::copy_file(samples + "/" + sample, path);
        chmod(path.c_str(), 0644);
        std::vector<std::string> others;
        {
            jet::Database database = jet::Database::open(path);
            others = database.tableNames();
            jet::Table grl = database.createTable(grlDesign(jet::ColumnType::Double));
            const double three[] = {1.525, 101.525, 100};
            grl.insert({std::string("CH 00-010"), -2.5, three[0], jet::Null{}, jet::Null{}, three[1],
                        three[2], std::string("gate")});
            grl.insert(
                {jet::Null{}, 0.0, jet::Null{}, 0.75, jet::Null{}, jet::Null{}, jet::Null{}, jet::Null{}});
            database.commit();
        }
        desktop.boxes.clear();
        open(path);
        ASSERT_THAT(messages(), IsEmpty());
        const Rows loaded{row({{sheet::Chainage, "00-010"},
                               {sheet::Left, "2.5"},
                               {sheet::BackSight, "1.525"},
                               {sheet::HgtInst, "101.525"},
                               {sheet::RLevel, "100.000"},
                               {sheet::Remark, "gate"}}),
                          row({{sheet::Center, "0"}, {sheet::InterSight, "0.75"}})};
        EXPECT_EQ(rows(), loaded);
        EXPECT_EQ(book.CurrentHI, 101.525F);
        project::saveProject(book, desktop);
        setRows({row({})});
        book.BookChanged = false;
        open(path);
        EXPECT_EQ(rows(), loaded);
        dao::Database database = dao::OpenDatabase(path, "");
        EXPECT_EQ(database.OpenRecordset("Grl").Fields("rl").Type(), dao::DataType::Double);
        EXPECT_THAT(database.TableNames(), testing::IsSupersetOf(others));
    }
}

TEST_F(ForeignFilesTest, ABookThatAnotherInstanceHoldsStaysAsItIs) {
    const std::string path = projectFile("road.grl", {row({{sheet::Remark, "theirs"}})});
    {
        const HeldDatabase held(path, project::connect);
        open(path);
        EXPECT_THAT(messages(), ElementsAre(StartsWith("3045  ")));
        setRows({row({{sheet::Remark, "ours"}})});
        project::saveProject(book, desktop);
        EXPECT_THAT(desktop.statuses.back(), HasSubstr("not saved"));
        EXPECT_TRUE(project::isUnsaved(book));
    }
    EXPECT_EQ(records(path)[0][7], "theirs");
}

TEST_F(ForeignFilesTest, ATableWithAKeyLeavesOutWhatItRefuses) {
    jet::TableDesign design = grlDesign();
    design.indexes.push_back({"PrimaryKey", {{.name = "Chn"}}, jet::IndexKind::PrimaryKey});
    const std::string path = folder / "keyed.grl";
    makeDatabase(path, design);
    open(path);
    setRows({row({{sheet::Chainage, "00-000"}}), row({{sheet::Chainage, "00-000"}}),
             row({{sheet::Chainage, "CP"}})});
    project::saveProject(book, desktop);
    EXPECT_THAT(records(path), SizeIs(2));
    EXPECT_THAT(desktop.statuses.back(),
                HasSubstr("1 text does not fit the file and was left out: Chainage in row 2"));
}

TEST_F(ForeignFilesTest, ATableWithoutSomeOfTheFieldsIsAnErrorOfTheLoad) {
    jet::TableDesign design = grlDesign();
    design.columns.pop_back();
    const std::string path = folder / "short.grl";
    makeDatabase(path, design);
    open(path);
    EXPECT_THAT(desktop.boxes, IsEmpty()) << "no record, nothing to miss";
    setRows({row({{sheet::Remark, "lost"}})});
    project::saveProject(book, desktop);
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("Remark in row 1"));
    desktop.boxes.clear();
    open(path);
    ASSERT_THAT(desktop.boxes, SizeIs(1));
    EXPECT_THAT(desktop.boxes[0].text, StartsWith("3265  "));
    EXPECT_FALSE(book.MSFG.Visible()) << "the grid stays hidden until the next Open";
    project::openProject(book, desktop);
    EXPECT_TRUE(book.MSFG.Visible());
}

/// Runs `work` as a user who owns nothing here; true when it returned true.
template <typename Work>
bool asAnotherUser(Work&& work) {
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (geteuid() == 0 && (setegid(nobody) != 0 || seteuid(nobody) != 0)) _exit(2);
        bool good = false;
        try {
            good = work();
        } catch (...) {
            _exit(3);
        }
        _exit(good ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST_F(ForeignFilesTest, WithoutPermissionNothingIsTouched) {
    if (geteuid() != 0) GTEST_SKIP() << "needs a second user";
    chmod(folder.path().c_str(), 0755);
    chmod(desktop.folder.c_str(), 0755);
    const std::string path = projectFile("road.grl", {row({{sheet::Remark, "mine"}})});
    const std::string before = folder.read("road.grl");

    chmod(path.c_str(), 0600);
    EXPECT_TRUE(asAnotherUser([&] {
        open(path);
        return desktop.boxes.size() == 1 && desktop.boxes[0].text.starts_with("3051  ");
    })) << "not readable";

    chmod(path.c_str(), 0644);
    EXPECT_TRUE(asAnotherUser([&] {
        book.setProjectPath(path);
        project::saveProject(book, desktop); // neither the backup nor the file can be written
        return desktop.boxes.empty() && desktop.statuses.back().find("not saved") != std::string::npos;
    })) << "read-only folder";

    for (const bool saveAs : {false, true}) {
        EXPECT_TRUE(asAnotherUser([&] {
            desktop.files = {folder / "new.grl"};
            (saveAs ? project::saveProjectAs : project::saveProject)(book, desktop);
            return desktop.boxes.size() == 1 && desktop.boxes[0].text == "Permission denied" &&
                   book.MSFG.Visible() && book.Caption == sheet::Book::untitledCaption;
        })) << "a new file in a read-only folder, Save As "
            << saveAs;
    }
    EXPECT_EQ(folder.read("road.grl"), before);
    EXPECT_THAT(files(), ElementsAre("road.grl"));
}

TEST_F(ForeignFilesTest, APlaceThatCannotBeMadeGetsTheOtherName) {
    std::filesystem::create_directory(folder / "road.grl");
    desktop.files = {folder / "road.grl"};
    project::newProject(book, desktop);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(book.Caption, "ZavroGrl-" + (folder / "road.grl"))
        << "the command goes on with the name itself";
    EXPECT_EQ(folder.read("road.grlaa"), folder.read("app/grl.mdb"));
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("road.grlaa"));

    // A file that its owner made read-only is refused although the folder would allow the rename.
    const std::string path = projectFile("locked.grl", {row({{sheet::Remark, "locked"}})});
    chmod(path.c_str(), 0444);
    sheet::Book other;
    desktop.files = {path};
    project::saveProjectAs(other, desktop);
    EXPECT_EQ(records(path)[0][7], "locked");
    EXPECT_EQ(folder.read("locked.grlaa"), folder.read("app/grl.mdb"));
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("The book was not saved: "));
}

TEST_F(ForeignFilesTest, AMissingFolderOrTemplateEndsTheCommand) {
    const std::string caption = book.Caption;
    book.MSFG.moveTo(1, 3);
    desktop.files = {folder / "no/road.grl", folder / "no/road.grl", folder / "no/road.grl"};
    project::newProject(book, desktop);
    project::saveProjectAs(book, desktop);
    EXPECT_TRUE(book.MSFG.CellBackColor(1, 3).isNone());
    project::saveProject(book, desktop);
    EXPECT_EQ(book.MSFG.CellBackColor(1, 3), sheet::rgb(240, 210, 220));
    EXPECT_THAT(messages(), ElementsAre("Path not found", "Path not found", "Path not found"));

    std::filesystem::remove_all(desktop.folder); // the program folder is gone
    desktop.files = {folder / "road.grl"};
    project::newProject(book, desktop);
    EXPECT_EQ(desktop.boxes.back().text, "File not found");
    EXPECT_EQ(book.Caption, caption);
    EXPECT_EQ(rows(), Rows{row({{sheet::Remark, "the book before"}})});
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(ForeignFilesTest, ALinkIsFollowedAndTheFileKeepsItsMode) {
    const std::string path = projectFile("real.grl", {row({{sheet::Remark, "real"}})});
    chmod(path.c_str(), 0640);
    std::filesystem::create_symlink("real.grl", folder / "link.grl");
    desktop.files = {folder / "link.grl"};
    project::saveProjectAs(book, desktop);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.grl"));
    project::saveProject(book, desktop);
    EXPECT_TRUE(std::filesystem::is_symlink(folder / "link.grl"));
    EXPECT_EQ(records(path)[0][7], "the book before");
    struct stat is {};
    stat(path.c_str(), &is);
    EXPECT_EQ(is.st_mode & 0777, 0640);
}

} // namespace
