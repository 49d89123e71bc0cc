#include "project_fixture.h"

using namespace std::chrono_literals;
using desktop::Answer;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class RecoveryTest : public ProjectTest {
  protected:
    /// Paths of the copies in the program folder.
    [[nodiscard]] std::vector<std::string> copies() const {
        std::vector<std::string> paths;
        for (const auto& entry : std::filesystem::directory_iterator(desktop.folder))
            if (entry.path().filename().string().starts_with(project::copyPrefix))
                paths.push_back(entry.path().string());
        return paths;
    }
    void offer() { project::Recovery(book, desktop).offer(); }

    /// What a run that ended without a normal Exit leaves: its copy.
    void crashedRun(const Rows& content) {
        project::Book crashed;
        keyRows(crashed.MSFG, content);
        crashed.setProjectPath("/books/road.grl");
        crashed.CurrentSide = 'R';
        crashed.CurrentHI = 101.525F;
        project::Recovery(crashed, desktop).keep();
    }

    const Rows someRows{",,,,1.5,,,,100", "00-000,,,,,,,,,a\tb\nc\\d \xC3\xA9", ""};
};

TEST_F(RecoveryTest, AnUnsavedBookIsOfferedAfterACrash) {
    crashedRun(someRows);
    desktop.answers = {Answer::Yes};
    setenv("TZ", "UTC", 1);
    tzset();
    project::Recovery recovery(book, desktop);
    recovery.offer();
    ASSERT_THAT(desktop.boxes, SizeIs(1));
    EXPECT_EQ(desktop.boxes[0].text,
              "An unsaved book \"road.grl\" from 2023-11-14 22:13 with 3 rows was found. Open it?");
    EXPECT_EQ(desktop.boxes[0].buttons, desktop::Buttons::YesNoCancel);
    EXPECT_EQ(rows(), someRows);
    EXPECT_EQ(book.Caption, "ZavroGrl-/books/road.grl");
    EXPECT_EQ(book.CurrentSide, 'R');
    EXPECT_EQ(book.CurrentHI, 101.525F);
    EXPECT_TRUE(book.BookChanged);
    EXPECT_TRUE(project::isUnsaved(book));
    EXPECT_THAT(copies(), SizeIs(1)) << "the restored book has a copy of its own";
    recovery.discard();
    EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(RecoveryTest, NoDropsTheCopyAndTheNextOlderOneIsOffered) {
    crashedRun(remark("older"));
    desktop.time += 1h;
    crashedRun(remark("newer"));
    desktop.answers = {Answer::Cancel};
    offer();
    EXPECT_THAT(desktop.boxes, SizeIs(1)) << "Cancel ends the asking";
    EXPECT_THAT(copies(), SizeIs(2)) << "and keeps all";
    desktop.hasTrash = true;
    desktop.answers = {Answer::No, Answer::Yes};
    offer();
    EXPECT_THAT(desktop.trashed, SizeIs(1));
    EXPECT_EQ(rows(), remark("older"));
    EXPECT_THAT(copies(), SizeIs(1));
}

TEST_F(RecoveryTest, TheCopyOfARunningInstanceIsNotOffered) {
    {
        project::Book other;
        keyRows(other.MSFG, someRows);
        project::Recovery running(other, desktop);
        running.keep();
        offer();
        EXPECT_THAT(desktop.boxes, IsEmpty());
        EXPECT_THAT(copies(), SizeIs(1));
    }
    desktop.answers = {Answer::Yes};
    offer();
    EXPECT_EQ(rows(), someRows);
}

TEST_F(RecoveryTest, ACopyIsWrittenEveryTenSecondsAtMostAndOnlyWhenNeeded) {
    project::Recovery recovery(book, desktop);
    EXPECT_EQ(recovery.keep(), 0ms);
    EXPECT_THAT(copies(), IsEmpty()) << "an empty book";

    setRows(someRows);
    EXPECT_EQ(recovery.keep(), 0ms);
    const std::vector<std::string> first = copies();
    ASSERT_THAT(first, SizeIs(1));
    const std::string content = TempFolder::readFile(first[0]);

    desktop.time += 3s;
    EXPECT_EQ(recovery.keep(), 0ms) << "nothing changed";
    book.MSFG.setText(3, 9, "more");
    EXPECT_EQ(recovery.keep(), 7s);
    EXPECT_EQ(TempFolder::readFile(first[0]), content);
    desktop.time += 7s;
    EXPECT_EQ(recovery.keep(), 0ms);
    EXPECT_EQ(copies(), first);
    EXPECT_NE(TempFolder::readFile(first[0]), content);

    book.SavedMark = 0;
    setRows({""}); // what New leaves
    EXPECT_EQ(recovery.keep(), 0ms);
    EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(RecoveryTest, DamagedAndForeignFilesAreNotOffered) {
    crashedRun(someRows);
    const std::string name = "app/" + std::filesystem::path(copies()[0]).filename().string();
    const std::string whole = folder.read(name);
    folder.write("app/recovery-notes.txt", "buy pegs\n");
    for (std::size_t length = 0; length < whole.size(); ++length) {
        folder.write(name, whole.substr(0, length));
        offer();
    }
    EXPECT_THAT(desktop.boxes, IsEmpty());
    folder.write(name, whole);
    offer();
    EXPECT_THAT(desktop.boxes, SizeIs(1));
}

TEST_F(RecoveryTest, WithoutAPlaceForCopiesTheUserIsToldOnce) {
    std::filesystem::remove_all(desktop.folder);
    project::Recovery recovery(book, desktop);
    recovery.offer();
    setRows(someRows);
    recovery.keep();
    desktop.time += 1min;
    recovery.keep();
    EXPECT_THAT(desktop.statuses, SizeIs(1));
    EXPECT_TRUE(project::setAside(book, desktop).failed());
}

} // namespace
