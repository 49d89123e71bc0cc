#include "file_faults.h"
#include "project_fixture.h"

#include <sys/stat.h>

using desktop::Answer;
using sheet::Remark;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class CommandsTest : public ProjectTest {
  protected:
    std::string existing(const std::string& name) { return projectFile(name, remark("the old book")); }
    [[nodiscard]] std::string recentList() const { return folder.read("app/GRL.LVX"); }
    /// A book that has a file, with a change.
    void edit(const std::string& path) {
        book.BookChanged = false;
        open(path);
        book.MSFG.setText(1, Remark, "edited");
        book.BookChanged = true;
    }
};

TEST_F(CommandsTest, NewBindsAnEmptyBookToACopyOfTheTemplate) {
    setRows({",,,,,,,,100,x", ",,,,,,,,,y"});
    book.MSFG.setVisible(false); // hidden: no question even with changes
    book.BookChanged = true;
    EXPECT_THAT(run(project::newProject, {folder / "road.grl"}), IsEmpty());
    EXPECT_THAT(rows(), ElementsAre(""));
    EXPECT_EQ(state(), "road.grl road.grl road.grl 1,8");
    EXPECT_EQ(book.Caption, "ZavroGrl-" + (folder / "road.grl"));
    EXPECT_EQ(folder.read("road.grl"), folder.read("app/grl.mdb"));
    EXPECT_THAT(files(), ElementsAre("road.grl"));
    EXPECT_EQ(recentList(), "") << "New does not list the project";
}

TEST_F(CommandsTest, NewAsksAboutChangesAndAboutAFileThatExists) {
    const std::string question = "Check current file is saved or not..To Create another Press Yes [Yes No]";
    const std::string overwrite = "Given Filename is allready exists Do you want to EMPTY the given file... "
                                  "[Yes No Cancel]Check it";
    const std::string old = existing("road.grl");
    setRows(remark("x"));
    book.BookChanged = true;
    EXPECT_THAT(run(project::newProject, {old}, {Answer::No}), ElementsAre(question));
    EXPECT_THAT(run(project::newProject, {old, old}, {Answer::Yes, Answer::No, Answer::Cancel}),
                ElementsAre(question, overwrite, overwrite));
    EXPECT_EQ(rows(), remark("x"));
    EXPECT_THAT(records(old), SizeIs(1));
    desktop.hasTrash = true;
    run(project::newProject, {old}, {Answer::Yes, Answer::Yes});
    EXPECT_THAT(records(old), IsEmpty());
    EXPECT_THAT(desktop.trashed, ElementsAre(old));
    EXPECT_EQ(desktop.statuses.back(), "The file that stood there is in the trash.");
}

TEST_F(CommandsTest, CancelledDialogsKeepTheBookAndTheDialogsName) {
    const Rows noName{"1st Give new name"};
    setRows(remark("x"));
    book.FileName = "/books/before.grl";
    for (const auto& none : std::vector<std::optional<std::string>>{std::nullopt, "", "*.grl"}) {
        EXPECT_THAT(run(project::newProject, {none}), IsEmpty());
        EXPECT_THAT(run(project::openProject, {none}), IsEmpty());
        EXPECT_EQ(run(project::saveProject, {none}), noName);
    }
    EXPECT_THAT(run(project::saveProjectAs), IsEmpty());
    EXPECT_EQ(state(), "NoName.grl  before.grl 1,0");
    EXPECT_EQ(rows(), remark("x"));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CommandsTest, ExtensionIsFixed) {
    const std::pair<const char*, const char*> names[] = {
        {"road", "roadgrl"},           {"road.txt", "road.grl"}, {"ROAD.GRL", "ROAD.GRL"}, {"x", "xgrl"},
        {"road.jpeg", "road.jpeggrl"}, {".txt", ".grl"},         {"b.ééé", "b.grl"}};
    for (const auto& [chosen, fixed] : names) {
        for (const Command& command :
             {Command(project::newProject), Command(project::saveProject), Command(project::saveProjectAs)}) {
            book = project::Book();
            run(command, {folder / chosen});
            EXPECT_EQ(book.projectPath(), folder / fixed);
            EXPECT_TRUE(std::filesystem::remove(folder / fixed)) << chosen;
        }
    }
}

TEST_F(CommandsTest, FirstSaveAsksForANameAndListsTheProject) {
    setRows({",,,,,,,,100", ""});
    book.MSFG.moveTo(2, 4);
    book.BookChanged = true;
    EXPECT_THAT(run(project::saveProject, {folder / "road.grl"}), IsEmpty());
    EXPECT_EQ(state(), "road.grl road.grl road.grl 2,4 changed") << "Save does not clear it";
    EXPECT_THAT(records(folder / "road.grl"), SizeIs(2));
    EXPECT_THAT(files(), ElementsAre("road.grl")) << "no backup of an empty template";
    EXPECT_EQ(recentList(), (folder / "road.grl") + "\r\n\r\n\r\n\r\n");
    EXPECT_EQ(book.mnuX[0], folder / "road.grl");
}

TEST_F(CommandsTest, FirstSaveOnAnExistingNameAsksForAnother) {
    desktop.hasTrash = true;
    for (const std::deque<Answer>& answers :
         {std::deque{Answer::No}, {Answer::Cancel}, {Answer::Yes, Answer::Yes, Answer::No}}) {
        const std::string old = existing("old.grl");
        book = project::Book();
        setRows({"", ""});
        EXPECT_EQ(
            run(project::saveProject, {old, old, old}, answers),
            Rows(answers.size(), "This File is allready exists please give another Name [Yes No Cancel]"));
        EXPECT_THAT(records(old), SizeIs(2));
        EXPECT_EQ(desktop.trashed.back(), old);
        EXPECT_EQ(desktop.statuses.back(), "Saved " + old + ". The file that stood there is in the trash.");
    }
}

TEST_F(CommandsTest, SaveTakesTheNameFromTheCaptionAndListsTheDialogsName) {
    const std::string own = existing("own.grl");
    const std::string other = existing("other.grl");
    edit(own);
    book.CurrentFile = "/somewhere/else.grl"; // not what Save goes by
    book.FileName = other;                    // as an Append leaves it
    run(project::saveProject);
    EXPECT_EQ(remarkIn(own), "edited");
    EXPECT_EQ(remarkIn(other), "the old book");
    EXPECT_EQ(recentList().substr(0, other.size()), other);
}

TEST_F(CommandsTest, SaveKeepsTheVersionBefore) {
    const std::string path = existing("road.grl");
    const std::string theirs = projectFile("theirs.grl", remark("theirs"));
    const auto overwrite = [&] {
        std::filesystem::copy_file(theirs, path, std::filesystem::copy_options::overwrite_existing);
    };
    folder.write("road.grl.bak", "an older backup");
    edit(path);
    run(project::saveProject);
    EXPECT_EQ(remarkIn(path) + ", " + remarkIn(path + ".bak"), "edited, the old book");
    EXPECT_THAT(files(), ElementsAre("road.grl", "road.grl.bak", "theirs.grl"));
    EXPECT_EQ(desktop.statuses.back(), "Saved " + path + ".");

    overwrite();
    run(project::saveProject);
    EXPECT_EQ(remarkIn(path) + ", " + remarkIn(path + ".bak"), "edited, theirs");
    EXPECT_THAT(
        desktop.statuses.back(),
        HasSubstr("Another program changed the file; its version is kept as " + path + ".other-1.bak."));
    run(project::saveProject);
    EXPECT_EQ(desktop.statuses.back(), "Saved " + path + ".") << "our own change is none of another program";
    EXPECT_EQ(remarkIn(path + ".other-1.bak"), "theirs") << "the second save leaves it alone";

    overwrite();
    const FileFaults nothingKept([](files::Call call, const std::string& target) {
        return call == files::Call::Rename && target.ends_with(".bak") ? EIO : 0;
    });
    run(project::saveProject);
    EXPECT_EQ(remarkIn(path), "theirs") << "not overwritten when it cannot be kept";
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("so the book was not saved over it."));
}

TEST_F(CommandsTest, TheBackupIsAsPrivateAsTheBookAndFollowsNoLink) {
    const std::string path = existing("road.grl");
    const std::string victim = folder.write("victim", "untouched");
    ::chmod(path.c_str(), 0600);
    for (const bool pipe : {false, true}) {
        std::filesystem::remove(path + ".bak");
        if (pipe) {
            ASSERT_EQ(::mkfifo((path + ".bak").c_str(), 0666), 0);
        } else {
            std::filesystem::create_symlink(victim, path + ".bak");
        }
        edit(path);
        run(project::saveProject);
        EXPECT_TRUE(std::filesystem::is_regular_file(std::filesystem::symlink_status(path + ".bak")));
        EXPECT_EQ(std::filesystem::status(path + ".bak").permissions(), std::filesystem::perms(0600));
    }
    EXPECT_EQ(folder.read("victim"), "untouched");
}

TEST_F(CommandsTest, SaveAsReplacesWithoutAQuestion) {
    const std::string old = projectFile("old.grl", remark("another"));
    edit(existing("road.grl"));
    EXPECT_THAT(run(project::saveProjectAs, {old}), IsEmpty());
    EXPECT_EQ(remarkIn(old), "edited");
    EXPECT_EQ(remarkIn(folder / "road.grl"), "the old book");
    EXPECT_EQ(state(), "old.grl road.grl old.grl 1,9 changed");
    EXPECT_EQ(recentList(), "");
    EXPECT_THAT(files(), ElementsAre("old.grl", "road.grl"));
}

TEST_F(CommandsTest, OpenAndExitAskAboutChanges) {
    EXPECT_TRUE(project::exitProgram(book, desktop));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    const std::string other = projectFile("other.grl", remark("other"));
    struct Case {
        Answer answer;
        const char* saved;
        const char* state; ///< after Open
    };
    for (const Case& c : {Case{Answer::Cancel, "the old book", "mine.grl mine.grl mine.grl 1,9 changed"},
                          Case{Answer::No, "the old book", "other.grl other.grl other.grl 1,9"},
                          Case{Answer::Yes, "edited", "other.grl other.grl other.grl 1,9"}}) {
        for (const bool exits : {false, true}) {
            SCOPED_TRACE(std::string(exits ? "Exit " : "Open ") + c.state);
            const std::string mine = existing("mine.grl");
            edit(mine);
            bool ended = false;
            const Command exit = [&](auto& b, auto& d) { ended = project::exitProgram(b, d); };
            EXPECT_THAT(run(exits ? exit : Command(project::openProject), {other}, {c.answer}),
                        ElementsAre("Do you want to Save the changes you made to this file [Yes No Cancel]"));
            EXPECT_EQ(remarkIn(mine), c.saved);
            if (exits)
                EXPECT_EQ(ended, c.answer != Answer::Cancel);
            else
                EXPECT_EQ(state(), c.state);
        }
    }
}

TEST_F(CommandsTest, OpenKeepsWhatTheUserDidNotGiveUp) {
    struct Case {
        const char* name;
        bool changed, visible;
        Answer answer;
        bool readable; ///< the file that is opened
        bool kept;
    };
    const std::string path = existing("road.grl");
    const std::string text = folder.write("text.grl", "none");
    for (const Case& c : {Case{"given up", true, true, Answer::No, true, false},
                          Case{"given up for nothing", true, true, Answer::No, false, true},
                          Case{"a save that failed", true, true, Answer::Yes, true, true},
                          Case{"nobody was asked", true, false, Answer::No, true, true},
                          Case{"changed by no key", false, true, Answer::No, true, true},
                          Case{"changed by no key for nothing", false, true, Answer::No, false, true}}) {
        SCOPED_TRACE(c.name);
        book.setProjectPath(folder / "gone.grl");
        setRows(remark(c.name));
        book.BookChanged = c.changed;
        book.MSFG.setVisible(c.visible);
        EXPECT_THAT(run(project::openProject, {c.readable ? path : text}, {c.answer}),
                    SizeIs((c.changed && c.visible) + !c.readable));
        EXPECT_EQ(recovered(), c.kept ? remark(c.name) : Rows());
    }
}

TEST_F(CommandsTest, RecentEntryLoadsWithoutAQuestionAndSetsTheUnsavedGridAside) {
    setRows(remark("unsaved"));
    book.BookChanged = true;
    book.CurrentFile = "/books/own.grl";
    book.mnuX[2] = existing("road.grl");
    project::openRecent(book, desktop, 1); // not shown
    EXPECT_EQ(rows(), remark("unsaved"));
    project::openRecent(book, desktop, 3);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(rows(), ElementsAre(",,0,,,,,,,the old book"));
    EXPECT_EQ(state(), "road.grl own.grl road.grl 1,9 changed");
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("unsaved book is kept"));
    EXPECT_EQ(recovered(), remark("unsaved"));
}

// Where no copy can be kept, what is in no file stays: the command stops, and the next time it asks, so that
// No lets the user out.
TEST_F(CommandsTest, AGridThatCannotBeSetAsideIsNotDropped) {
    const std::string other = existing("other.grl");
    book.mnuX[0] = other;
    const Command exit = [&](auto& b, auto& d) { EXPECT_EQ(project::exitProgram(b, d), b.MSFG.Rows() == 9); };
    const Command recent = [](auto& b, auto& d) { project::openRecent(b, d, 1); };
    std::filesystem::rename(desktop.folder, folder / "away"); // no place for a copy, no template, no list
    for (const bool hidden : {false, true}) {
        for (const Command& command :
             {Command(project::newProject), Command(project::openProject), exit, recent}) {
            setRows(remark("in no file"));
            book.BookChanged = false;
            book.MSFG.setVisible(!hidden);
            EXPECT_THAT(run(command, {other}, {Answer::Yes}), testing::Each(HasSubstr("Given Filename")));
            EXPECT_EQ(rows(), remark("in no file"));
            EXPECT_TRUE(book.BookChanged) << "the next command asks";
            EXPECT_THAT(desktop.statuses.back(), HasSubstr("No copy of the unsaved book could be kept"));
        }
    }
    book.MSFG.setVisible(true);
    run(project::openProject, {other}, {Answer::No});
    EXPECT_EQ(remarkIn(other), "the old book");
    EXPECT_THAT(rows(), ElementsAre(",,0,,,,,,,the old book")) << "given up";
}

TEST_F(CommandsTest, ExitEndsOnlyWhenTheBookIsSavedWholeOrGivenUp) {
    struct Case {
        const char* file; ///< of the book; empty for a first Save, which is cancelled
        std::string text;
        const char* told;
    };
    const std::string tooLong(300, 'x');
    for (const Case& c : {Case{"", "x", "The book was not saved. The unsaved"},
                          Case{"gone/road.grl", "x", "The book was not saved: "},
                          Case{"road.grl", tooLong, "but 1 text does not fit the file"}}) {
        existing("road.grl");
        book = project::Book();
        if (*c.file != '\0') book.setProjectPath(folder / c.file);
        setRows(remark(c.text));
        book.BookChanged = true;
        desktop.answers = {Answer::Yes};
        EXPECT_FALSE(project::exitProgram(book, desktop));
        EXPECT_THAT(desktop.statuses.back(), HasSubstr(c.told));
        EXPECT_THAT(desktop.statuses.back(), HasSubstr(project::setAsideNote));
        EXPECT_EQ(recovered(), remark(c.text));
        desktop.answers = {Answer::No};
        EXPECT_TRUE(project::exitProgram(book, desktop));
    }
}

TEST_F(CommandsTest, ABookBeginsWithoutWhatTheOneBeforeLeft) {
    const std::string sided = projectFile("sided.grl", {",2.5,,,,,,,,left", ""});
    const std::string none = folder / "none.grl";
    run(project::newProject, {none});
    for (const auto& [path, stays] : {std::pair(sided, "Row 1: keeps Center 0 of "),
                                      {none, "Row 1: keeps Chainage 00-000, Center 0, "}}) {
        setRows({"00-000,,0,,1.5,,,,100,tbm"});
        book.MSFG.setCellBackColor(1, sheet::BackSight, sheet::suspiciousReading);
        book.CurrentHI = 101.5F;
        book.LastReading = 1.5F;
        book.BookChanged = false;
        open(path);
        EXPECT_TRUE(book.MSFG.CellBackColor(1, sheet::BackSight).isNone());
        EXPECT_EQ(book.CurrentHI, 0);
        EXPECT_EQ(book.LastReading, 0);
        EXPECT_THAT(book.notices.takeLine().text, testing::StartsWith(stays));
    }
}

TEST_F(CommandsTest, OnlyWholePathsOfFilesAreListed) {
    const std::string road = existing("road.grl");
    book.setProjectPath(road);
    for (const std::string& name : {std::string("*.grl"), folder / "gone.grl"}) {
        book.FileName = name;
        run(project::saveProject);
        EXPECT_EQ(recentList(), "") << name;
    }
    const std::filesystem::path here = std::filesystem::current_path();
    std::filesystem::current_path(folder.path());
    book.FileName = "road.grl";
    run(project::saveProject);
    std::filesystem::current_path(here);
    EXPECT_EQ(recentList(), road + "\r\n\r\n\r\n\r\n");

    // A first Save within Open leaves its name when Open is cancelled.
    book = project::Book();
    book.BookChanged = true;
    run(project::openProject, {folder / "first.grl", std::nullopt}, {Answer::Yes});
    EXPECT_EQ(book.FileName, folder / "first.grl");
}

TEST_F(CommandsTest, ANameThatItsEndingMakesAnExistingOneIsAskedAboutAgain) {
    existing("km 1.grl");
    setRows(remark("x"));
    run(project::saveProject, {folder / "km 1.750", folder / "km 2.grl"}, {Answer::Yes});
    EXPECT_EQ(remarkIn(folder / "km 1.grl"), "the old book");
    EXPECT_EQ(book.projectPath(), folder / "km 2.grl");
}

} // namespace
