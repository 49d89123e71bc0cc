#include "project_fixture.h"

using desktop::Answer;
using desktop::Buttons;
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
    [[nodiscard]] std::string at(const std::string& name) const { return folder / name; }
    /// A book that has a file, with a change.
    void edit(const std::string& path) {
        open(path);
        book.MSFG.setText(1, Remark, "edited");
        book.BookChanged = true;
        desktop.boxes.clear();
    }
    void expectBox(std::size_t index, const char* text, Buttons buttons, const char* title = "") const {
        const ScriptedDesktop::Box& box = desktop.boxes.at(index);
        EXPECT_EQ(box.text, text);
        EXPECT_EQ(box.buttons, buttons);
        EXPECT_EQ(box.title, title);
    }
};

TEST_F(CommandsTest, NewBindsAnEmptyBookToACopyOfTheTemplate) {
    setRows({",,,,,,,,100,x", ",,,,,,,,,y"});
    book.MSFG.setVisible(false); // hidden: no question even with changes
    book.BookChanged = true;
    desktop.files = {at("road.grl")};
    project::newProject(book, desktop);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(rows(), ElementsAre(""));
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_EQ(book.MSFG.Col(), sheet::RLevel);
    EXPECT_FALSE(book.BookChanged);
    EXPECT_EQ(book.Caption, "ZavroGrl-" + at("road.grl"));
    EXPECT_EQ(book.CurrentFile, at("road.grl"));
    EXPECT_EQ(folder.read("road.grl"), folder.read("app/grl.mdb"));
    EXPECT_THAT(files(), ElementsAre("road.grl"));
    EXPECT_EQ(recentList(), "") << "New does not list the project";
}

TEST_F(CommandsTest, NewAsksAboutChangesAndAboutAFileThatExists) {
    const std::string old = existing("road.grl");
    setRows(remark("x"));
    book.BookChanged = true;
    desktop.answers = {Answer::No};
    project::newProject(book, desktop);
    EXPECT_THAT(desktop.fileDialogs, IsEmpty());
    expectBox(0, "Check current file is saved or not..To Create another Press Yes", Buttons::YesNo);

    desktop.answers = {Answer::Yes, Answer::No, Answer::Cancel};
    desktop.files = {old, old};
    project::newProject(book, desktop);
    ASSERT_THAT(desktop.boxes, SizeIs(4));
    expectBox(2, "Given Filename is allready exists Do you want to EMPTY the given file...",
              Buttons::YesNoCancel, "Check it");
    EXPECT_EQ(rows(), remark("x"));
    EXPECT_THAT(records(old), SizeIs(1));

    desktop.hasTrash = true;
    desktop.answers = {Answer::Yes, Answer::Yes};
    desktop.files = {old};
    project::newProject(book, desktop);
    EXPECT_THAT(records(old), IsEmpty());
    EXPECT_THAT(desktop.trashed, ElementsAre(old));
}

TEST_F(CommandsTest, CancelledDialogsKeepTheBookAndTheDialogsName) {
    setRows(remark("x"));
    book.FileName = "/books/before.grl";
    for (const std::optional<std::string>& nothing :
         std::vector<std::optional<std::string>>{std::nullopt, "", "*.grl"}) {
        for (const auto& command : {project::newProject, project::openProject, project::saveProject}) {
            desktop.files = {nothing};
            command(book, desktop);
            EXPECT_EQ(book.FileName, "/books/before.grl");
        }
    }
    project::saveProjectAs(book, desktop);
    EXPECT_EQ(book.FileName, "/books/before.grl");
    EXPECT_EQ(book.Caption, sheet::Book::untitledCaption);
    EXPECT_EQ(rows(), remark("x"));
    EXPECT_EQ(messages(), std::vector<std::string>(3, "1st Give new name")) << "which Save alone says";
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CommandsTest, ExtensionIsFixed) {
    for (const auto& [chosen, fixed] : {std::pair("road", "roadgrl"),
                                        {"road.txt", "road.grl"},
                                        {"ROAD.GRL", "ROAD.GRL"},
                                        {"x", "xgrl"},
                                        {"road.jpeg", "road.jpeggrl"},
                                        {".txt", ".grl"},
                                        {"b.\xC3\xA9\xC3\xA9\xC3\xA9", "b.grl"}}) {
        for (const auto& command : {project::newProject, project::saveProject, project::saveProjectAs}) {
            sheet::Book fresh;
            desktop.files = {at(chosen)};
            command(fresh, desktop);
            EXPECT_EQ(fresh.Caption, "ZavroGrl-" + at(fixed));
            EXPECT_TRUE(std::filesystem::remove(at(fixed))) << chosen;
        }
    }
}

TEST_F(CommandsTest, FirstSaveAsksForANameAndListsTheProject) {
    setRows({",,,,,,,,100", ""});
    book.MSFG.moveTo(2, 4);
    book.BookChanged = true;
    desktop.files = {at("road.grl")};
    project::saveProject(book, desktop);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(book.Caption, "ZavroGrl-" + at("road.grl"));
    EXPECT_EQ(book.CurrentFile, at("road.grl"));
    EXPECT_THAT(records(at("road.grl")), SizeIs(2));
    EXPECT_THAT(files(), ElementsAre("road.grl")) << "no backup of an empty template";
    EXPECT_EQ(recentList(), at("road.grl") + "\r\n\r\n\r\n\r\n");
    EXPECT_EQ(book.mnuX[0], at("road.grl"));
    EXPECT_TRUE(book.BookChanged) << "Save does not clear it";
    EXPECT_EQ(std::pair(book.MSFG.Row(), book.MSFG.Col()), std::pair(2, 4));
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
}

TEST_F(CommandsTest, FirstSaveOnAnExistingNameAsksForAnother) {
    desktop.hasTrash = true;
    for (const auto& answers :
         {std::deque{Answer::No}, {Answer::Cancel}, {Answer::Yes, Answer::Yes, Answer::No}}) {
        const std::string old = existing("old.grl");
        sheet::Book fresh;
        std::swap(book, fresh);
        setRows({"", ""});
        desktop.boxes.clear();
        desktop.answers = answers;
        desktop.files = {old, old, old};
        project::saveProject(book, desktop);
        ASSERT_THAT(desktop.boxes, SizeIs(answers.size()));
        expectBox(0, "This File is allready exists please give another Name", Buttons::YesNoCancel);
        EXPECT_THAT(records(old), SizeIs(2));
        EXPECT_EQ(desktop.trashed.back(), old);
    }
}

TEST_F(CommandsTest, SaveTakesTheNameFromTheCaptionAndListsTheDialogsName) {
    const std::string own = existing("own.grl");
    const std::string other = existing("other.grl");
    edit(own);
    book.CurrentFile = "/somewhere/else.grl"; // not what Save goes by
    book.FileName = other;                    // as an Append leaves it
    project::saveProject(book, desktop);
    EXPECT_EQ(remarkIn(own), "edited");
    EXPECT_EQ(remarkIn(other), "the old book");
    EXPECT_EQ(recentList().substr(0, other.size()), other);
}

TEST_F(CommandsTest, SaveKeepsTheVersionBefore) {
    const auto overwrite = std::filesystem::copy_options::overwrite_existing;
    const std::string path = existing("road.grl");
    const std::string theirs = projectFile("theirs.grl", remark("theirs"));
    folder.write("road.grl.bak", "an older backup");
    edit(path);
    project::saveProject(book, desktop);
    EXPECT_EQ(remarkIn(path), "edited");
    EXPECT_EQ(remarkIn(path + ".bak"), "the old book");
    EXPECT_THAT(files(), ElementsAre("road.grl", "road.grl.bak", "theirs.grl"));
    EXPECT_EQ(desktop.statuses.back(), "Saved " + path + ".");

    std::filesystem::copy_file(theirs, path, overwrite);
    project::saveProject(book, desktop);
    EXPECT_EQ(remarkIn(path), "edited");
    EXPECT_EQ(remarkIn(path + ".bak"), "theirs");
    EXPECT_THAT(desktop.statuses.back(),
                HasSubstr("Another program changed the file; its version is kept as " + path + ".bak."));
    project::saveProject(book, desktop);
    EXPECT_EQ(desktop.statuses.back(), "Saved " + path + ".") << "our own change is none of another program";

    std::filesystem::copy_file(theirs, path, overwrite);
    std::filesystem::remove(path + ".bak");
    std::filesystem::create_directory(path + ".bak");
    project::saveProject(book, desktop);
    EXPECT_EQ(remarkIn(path), "theirs") << "not overwritten when it cannot be kept";
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("so the book was not saved over it."));
}

TEST_F(CommandsTest, SaveAsReplacesWithoutAQuestion) {
    const std::string old = projectFile("old.grl", remark("another"));
    const std::string path = existing("road.grl");
    edit(path);
    desktop.files = {old};
    project::saveProjectAs(book, desktop);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(remarkIn(old), "edited");
    EXPECT_EQ(remarkIn(path), "the old book");
    EXPECT_EQ(book.Caption, "ZavroGrl-" + old);
    EXPECT_EQ(book.CurrentFile, path);
    EXPECT_TRUE(book.BookChanged);
    EXPECT_EQ(recentList(), "");
    EXPECT_THAT(files(), ElementsAre("old.grl", "road.grl"));
}

TEST_F(CommandsTest, OpenAndExitAskAboutChanges) {
    EXPECT_TRUE(project::exitProgram(book, desktop));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    struct Case {
        Answer answer;
        bool goesOn;
        const char* saved;
    };
    const Case cases[] = {{Answer::Cancel, false, "the old book"},
                          {Answer::No, true, "the old book"},
                          {Answer::Yes, true, "edited"}};
    const std::string other = projectFile("other.grl", remark("other"));
    for (const bool exits : {false, true}) {
        for (const Case& c : cases) {
            SCOPED_TRACE(testing::Message() << (exits ? "Exit " : "Open ") << c.saved << ' ' << c.goesOn);
            const std::string mine = existing("mine.grl");
            book.BookChanged = false;
            edit(mine);
            desktop.answers = {c.answer};
            desktop.files = {other};
            if (exits) {
                EXPECT_EQ(project::exitProgram(book, desktop), c.goesOn);
            } else {
                project::openProject(book, desktop);
                EXPECT_EQ(book.MSFG.Text(1, Remark), c.goesOn ? "other" : "edited");
                EXPECT_EQ(book.FileName, c.goesOn ? other : mine);
                EXPECT_EQ(book.BookChanged, !c.goesOn);
            }
            ASSERT_THAT(desktop.boxes, SizeIs(1));
            expectBox(0, "Do you want to Save the changes you made to this file", Buttons::YesNoCancel);
            EXPECT_EQ(remarkIn(mine), c.saved);
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
    for (const Case& c : {Case{"given up", true, true, Answer::No, true, false},
                          Case{"given up for nothing", true, true, Answer::No, false, true},
                          Case{"a save that failed", true, true, Answer::Yes, true, true},
                          Case{"nobody was asked", true, false, Answer::No, true, true},
                          Case{"changed by no key", false, true, Answer::No, false, true}}) {
        SCOPED_TRACE(c.name);
        book.setProjectPath(at("gone.grl"));
        setRows(remark(c.name));
        book.BookChanged = c.changed;
        book.MSFG.setVisible(c.visible);
        desktop.boxes.clear();
        desktop.answers = {c.answer};
        open(c.readable ? path : folder.write("text.grl", "none"));
        EXPECT_EQ(desktop.boxes.size(), (c.changed && c.visible) + !c.readable);
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
    EXPECT_EQ(book.MSFG.Text(1, Remark), "the old book");
    EXPECT_EQ(book.FileName, at("road.grl"));
    EXPECT_EQ(book.CurrentFile, "/books/own.grl");
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("unsaved book is kept"));
    EXPECT_EQ(recovered(), remark("unsaved"));
}

} // namespace
