#include "project_fixture.h"

#include "project/recovery.h"

#include <functional>

using desktop::Answer;
using desktop::Buttons;
using sheet::Remark;
using sheet::RLevel;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

constexpr const char* saveChanges = "Do you want to Save the changes you made to this file";

class CommandsTest : public ProjectTest {
  protected:
    std::string existing(const std::string& name) {
        return projectFile(name, {row({{Remark, "the old book"}})});
    }
    [[nodiscard]] std::string recentList() const { return folder.read("app/GRL.LVX"); }
    /// Offers the copies that were set aside and drops them.
    std::size_t unsavedCopies() {
        ScriptedDesktop next;
        next.folder = desktop.folder;
        sheet::Book fresh;
        project::Recovery(fresh, next).offer();
        return next.boxes.size();
    }
    [[nodiscard]] std::string at(const std::string& name) const { return folder / name; }
    static void expectBox(const ScriptedDesktop::Box& box, const char* text, Buttons buttons,
                          const char* title = "") {
        EXPECT_EQ(box.text, text);
        EXPECT_EQ(box.buttons, buttons);
        EXPECT_EQ(box.title, title);
    }
};

TEST_F(CommandsTest, NewBindsAnEmptyBookToACopyOfTheTemplate) {
    setRows({row({{RLevel, "100"}, {Remark, "x"}}), row({{Remark, "y"}})});
    book.MSFG.setVisible(false); // hidden: no question even with changes
    book.BookChanged = true;
    desktop.files = {at("road.grl")};
    project::newProject(book, desktop);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(rows(), ElementsAre(row({})));
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_EQ(book.MSFG.Row(), 1);
    EXPECT_EQ(book.MSFG.Col(), RLevel);
    EXPECT_FALSE(book.BookChanged);
    EXPECT_EQ(book.Caption, "ZavroGrl-" + at("road.grl"));
    EXPECT_EQ(book.CurrentFile, at("road.grl"));
    EXPECT_EQ(folder.read("road.grl"), folder.read("app/grl.mdb"));
    EXPECT_THAT(files(), ElementsAre("road.grl"));
    EXPECT_EQ(recentList(), "") << "New does not list the project";
}

TEST_F(CommandsTest, NewAsksAboutChangesAndAboutAFileThatExists) {
    const std::string old = existing("road.grl");
    setRows({row({{Remark, "x"}})});
    book.BookChanged = true;
    desktop.answers = {Answer::No};
    project::newProject(book, desktop);
    EXPECT_THAT(desktop.fileDialogs, IsEmpty());
    expectBox(desktop.boxes.at(0), "Check current file is saved or not..To Create another Press Yes",
              Buttons::YesNo);

    desktop.answers = {Answer::Yes, Answer::No, Answer::Cancel};
    desktop.files = {old, old};
    project::newProject(book, desktop);
    ASSERT_THAT(desktop.boxes, SizeIs(4));
    expectBox(desktop.boxes[2], "Given Filename is allready exists Do you want to EMPTY the given file...",
              Buttons::YesNoCancel, "Check it");
    EXPECT_EQ(rows(), Rows{row({{Remark, "x"}})});
    EXPECT_THAT(records(old), SizeIs(1));

    desktop.hasTrash = true;
    desktop.answers = {Answer::Yes, Answer::Yes};
    desktop.files = {old};
    project::newProject(book, desktop);
    EXPECT_THAT(records(old), IsEmpty());
    EXPECT_THAT(desktop.trashed, ElementsAre(old));
}

TEST_F(CommandsTest, CancelledDialogsKeepTheBookAndTheDialogsName) {
    setRows({row({{Remark, "x"}})});
    book.FileName = "/books/before.grl";
    const std::string caption = book.Caption;
    for (const std::optional<std::string>& nothing :
         std::vector<std::optional<std::string>>{std::nullopt, "", "*.grl"}) {
        for (const auto& command : {project::newProject, project::openProject, project::saveProject}) {
            desktop.files = {nothing};
            command(book, desktop);
            EXPECT_EQ(book.FileName, "/books/before.grl");
        }
    }
    desktop.files = {std::nullopt};
    project::saveProjectAs(book, desktop);
    EXPECT_EQ(book.FileName, "/books/before.grl");
    EXPECT_EQ(book.Caption, caption);
    EXPECT_EQ(rows(), Rows{row({{Remark, "x"}})});
    EXPECT_THAT(messages(), testing::Each("1st Give new name")) << "which Save alone says";
    EXPECT_THAT(desktop.boxes, SizeIs(3));
    EXPECT_THAT(files(), IsEmpty());
}

TEST_F(CommandsTest, ExtensionIsFixed) {
    struct Case {
        const char* chosen;
        const char* fixed;
    };
    for (const Case& c : {Case{"road", "roadgrl"}, Case{"road.txt", "road.grl"}, Case{"ROAD.GRL", "ROAD.GRL"},
                          Case{"a.b", "a.bgrl"}, Case{"x", "xgrl"}, Case{"road.jpeg", "road.jpeggrl"},
                          Case{".txt", ".grl"}, Case{"b.\xC3\xA9\xC3\xA9\xC3\xA9", "b.grl"}}) {
        for (const auto& command : {project::newProject, project::saveProject, project::saveProjectAs}) {
            sheet::Book fresh;
            desktop.files = {at(c.chosen)};
            command(fresh, desktop);
            EXPECT_EQ(fresh.FileName, at(c.fixed));
            EXPECT_EQ(fresh.Caption, "ZavroGrl-" + at(c.fixed));
            EXPECT_TRUE(std::filesystem::remove(at(c.fixed))) << c.chosen;
            desktop.boxes.clear();
        }
    }
}

TEST_F(CommandsTest, FirstSaveAsksForANameAndListsTheProject) {
    const Rows content{row({{RLevel, "100"}}), row({})};
    setRows(content);
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
    EXPECT_EQ(book.MSFG.Row(), 2);
    EXPECT_EQ(book.MSFG.Col(), 4);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
}

TEST_F(CommandsTest, FirstSaveOnAnExistingName) {
    struct Case {
        std::deque<Answer> answers;
        std::size_t dialogs;
        std::size_t records;
    };
    for (const Case& c : {Case{{Answer::No}, 1, 2}, Case{{Answer::Cancel}, 1, 2},
                          Case{{Answer::Yes, Answer::Yes, Answer::No}, 3, 2}}) {
        const std::string old = existing("old.grl");
        sheet::Book fresh;
        std::swap(book, fresh);
        setRows({row({{Remark, "new"}}), row({})});
        desktop.boxes.clear();
        desktop.fileDialogs.clear();
        desktop.answers = c.answers;
        desktop.files = {old, old, old};
        desktop.hasTrash = true;
        project::saveProject(book, desktop);
        EXPECT_THAT(desktop.fileDialogs, SizeIs(c.dialogs));
        ASSERT_THAT(desktop.boxes, SizeIs(c.dialogs));
        expectBox(desktop.boxes[0], "This File is allready exists please give another Name",
                  Buttons::YesNoCancel);
        EXPECT_THAT(records(old), SizeIs(c.records));
        EXPECT_EQ(desktop.trashed.back(), old);
        std::filesystem::remove(old);
    }
}

TEST_F(CommandsTest, SaveKeepsTheVersionBefore) {
    const std::string path = existing("road.grl");
    open(path);
    const std::string before = folder.read("road.grl");
    folder.write("road.grl.bak", "an older backup");
    setRows({row({{Remark, "one"}}), row({{Remark, "two"}})});
    project::saveProject(book, desktop);
    EXPECT_EQ(folder.read("road.grl.bak"), before);
    EXPECT_THAT(records(path), SizeIs(2));
    EXPECT_THAT(files(), ElementsAre("road.grl", "road.grl.bak"));
    EXPECT_EQ(desktop.statuses.back(), "Saved " + path + ".");
}

TEST_F(CommandsTest, SaveTakesTheNameFromTheCaptionAndListsTheDialogsName) {
    const std::string own = existing("own.grl");
    const std::string other = existing("other.grl");
    open(own);
    book.CurrentFile = "/somewhere/else.grl"; // not what Save goes by
    book.FileName = other;                    // as an Append leaves it
    book.MSFG.setText(1, Remark, "changed");
    project::saveProject(book, desktop);
    EXPECT_EQ(records(own)[0][7], "changed");
    EXPECT_EQ(records(other)[0][7], "the old book");
    EXPECT_EQ(recentList().substr(0, other.size()), other);
}

TEST_F(CommandsTest, ABookChangedByAnotherProgramIsKeptAsBackup) {
    const std::string path = existing("road.grl");
    open(path);
    std::filesystem::copy_file(projectFile("theirs.grl", {row({{Remark, "theirs"}})}), path,
                               std::filesystem::copy_options::overwrite_existing);
    book.MSFG.setText(1, Remark, "ours");
    project::saveProject(book, desktop);
    EXPECT_EQ(records(path)[0][7], "ours");
    EXPECT_EQ(records(path + ".bak")[0][7], "theirs");
    EXPECT_THAT(desktop.statuses.back(),
                HasSubstr("Another program changed the file; its version is kept as " + path + ".bak."));
    project::saveProject(book, desktop);
    EXPECT_EQ(desktop.statuses.back(), "Saved " + path + ".") << "our own change is none of another program";

    std::filesystem::copy_file(at("theirs.grl"), path, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::remove(path + ".bak");
    std::filesystem::create_directory(path + ".bak");
    project::saveProject(book, desktop);
    EXPECT_EQ(records(path)[0][7], "theirs") << "not overwritten when it cannot be kept";
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("so the book was not saved over it."));
}

TEST_F(CommandsTest, SaveAsReplacesWithoutAQuestion) {
    const std::string old = existing("old.grl");
    const std::string path = existing("road.grl");
    open(path);
    book.MSFG.setText(1, Remark, "changed");
    book.BookChanged = true;
    desktop.files = {old};
    project::saveProjectAs(book, desktop);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(records(old)[0][7], "changed");
    EXPECT_EQ(records(path)[0][7], "the old book");
    EXPECT_EQ(book.Caption, "ZavroGrl-" + old);
    EXPECT_EQ(book.CurrentFile, path);
    EXPECT_TRUE(book.BookChanged);
    EXPECT_EQ(recentList(), "");
    EXPECT_THAT(files(), ElementsAre("old.grl", "road.grl"));
}

TEST_F(CommandsTest, OpenAsksAboutChanges) {
    const std::string mine = existing("mine.grl");
    const std::string other = projectFile("other.grl", {row({{Remark, "other"}})});
    struct Case {
        Answer answer;
        const char* saved;
        const char* shown;
        bool changed;
    };
    for (const Case& c :
         {Case{Answer::Cancel, "the old book", "edited", true},
          Case{Answer::No, "the old book", "other", false}, Case{Answer::Yes, "edited", "other", false}}) {
        open(mine);
        desktop.boxes.clear();
        book.MSFG.setText(1, Remark, "edited");
        book.BookChanged = true;
        desktop.answers = {c.answer};
        desktop.files = {other};
        project::openProject(book, desktop);
        ASSERT_THAT(desktop.boxes, SizeIs(1));
        expectBox(desktop.boxes[0], saveChanges, Buttons::YesNoCancel);
        EXPECT_EQ(records(mine)[0][7], c.saved);
        EXPECT_EQ(book.MSFG.Text(1, Remark), c.shown);
        EXPECT_EQ(book.BookChanged, c.changed);
        EXPECT_EQ(book.FileName, c.answer == Answer::Cancel ? mine : other);
        book.BookChanged = false;
        desktop.files.clear();
    }
}

TEST_F(CommandsTest, OpenOfAHiddenGridShowsItAndAsksNothing) {
    setRows({row({{Remark, "x"}})});
    book.BookChanged = true;
    book.MSFG.setVisible(false);
    project::openProject(book, desktop);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_TRUE(book.BookChanged);

    book.MSFG.setVisible(false);
    open(existing("road.grl"));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(unsavedCopies(), 1) << "nobody was asked about the grid that went";
}

TEST_F(CommandsTest, OpenKeepsWhatTheUserDidNotGiveUp) {
    struct Case {
        const char* name;
        Answer answer;
        bool readable; ///< the file that is opened
        std::size_t copies;
    };
    const std::string path = existing("road.grl");
    for (const Case& c :
         {Case{"given up", Answer::No, true, 0}, Case{"given up for nothing", Answer::No, false, 1},
          Case{"a save that failed", Answer::Yes, true, 1}}) {
        book.setProjectPath(at("gone.grl"));
        setRows({row({{Remark, c.name}})});
        book.BookChanged = true;
        book.MSFG.setVisible(true);
        desktop.answers = {c.answer};
        open(c.readable ? path : folder.write("text.grl", "none"));
        EXPECT_EQ(unsavedCopies(), c.copies) << c.name;
    }
}

TEST_F(CommandsTest, RecentEntryLoadsWithoutAQuestionAndSetsTheUnsavedGridAside) {
    const std::string path = existing("road.grl");
    setRows({row({{Remark, "unsaved"}})});
    book.BookChanged = true;
    book.CurrentFile = "/books/own.grl";
    book.mnuX[2] = path;
    project::openRecent(book, desktop, 1); // not shown
    EXPECT_EQ(book.MSFG.Text(1, Remark), "unsaved");
    project::openRecent(book, desktop, 3);
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_EQ(book.MSFG.Text(1, Remark), "the old book");
    EXPECT_EQ(book.FileName, path);
    EXPECT_EQ(book.CurrentFile, "/books/own.grl");
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("unsaved book is kept"));

    desktop.answers = {Answer::Yes};
    sheet::Book next;
    project::Recovery(next, desktop).offer();
    EXPECT_EQ(next.MSFG.Text(1, Remark), "unsaved");
}

TEST_F(CommandsTest, ExitAsksEvenAfterASave) {
    EXPECT_TRUE(project::exitProgram(book, desktop));
    EXPECT_THAT(desktop.boxes, IsEmpty());

    const std::string path = existing("road.grl");
    struct Case {
        Answer answer;
        bool ends;
        const char* saved;
    };
    for (const Case& c : {Case{Answer::Cancel, false, "the old book"}, Case{Answer::No, true, "the old book"},
                          Case{Answer::Yes, true, "edited"}, Case{Answer::No, true, "edited"}}) {
        open(path);
        book.MSFG.setText(1, Remark, "edited");
        book.BookChanged = true;
        desktop.boxes.clear();
        desktop.answers = {c.answer};
        EXPECT_EQ(project::exitProgram(book, desktop), c.ends);
        ASSERT_THAT(desktop.boxes, SizeIs(1));
        expectBox(desktop.boxes[0], saveChanges, Buttons::YesNoCancel);
        EXPECT_EQ(records(path)[0][7], c.saved);
        book.BookChanged = false;
    }
}

} // namespace
