#include "project_fixture.h"

#include "project/recovery.h"

#include <sys/wait.h>
#include <unistd.h>

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class RecoveryTest : public ProjectTest {
  protected:
    /// Names of the copies in the program folder.
    [[nodiscard]] std::vector<std::string> copies() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(desktop.folder))
            if (entry.path().filename().string().starts_with(project::copyPrefix))
                names.push_back(entry.path().string());
        return names;
    }

    /// What a run that ended without a normal Exit leaves: its copy.
    void crashedRun(const Rows& content, const std::string& path = {}) {
        sheet::Book crashed;
        std::swap(crashed, book);
        setRows(content);
        if (!path.empty()) book.setProjectPath(path);
        book.CurrentSide = 'R';
        book.CurrentHI = 101.525F;
        project::Recovery(book, desktop).keep();
        std::swap(crashed, book);
    }

    const Rows someRows{row({{8, "100"}, {4, "1.5"}}), row({{0, "00-000"}, {9, "a\tb\nc\\d \xC3\xA9"}}),
                        row({})};
};

TEST_F(RecoveryTest, AnUnsavedBookIsOfferedAfterACrash) {
    crashedRun(someRows, "/books/road.grl");
    ASSERT_THAT(copies(), SizeIs(1));

    desktop.answers = {desktop::Answer::Yes};
    project::Recovery recovery(book, desktop);
    recovery.offer();
    std::time_t seconds = std::chrono::system_clock::to_time_t(desktop.time);
    char time[6];
    std::strftime(time, sizeof time, "%H:%M", std::localtime(&seconds));
    ASSERT_THAT(desktop.boxes, SizeIs(1));
    EXPECT_EQ(desktop.boxes[0].text, std::string("An unsaved book from ") + time + " was found. Open it?");
    EXPECT_EQ(desktop.boxes[0].buttons, desktop::Buttons::YesNo);

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
    crashedRun({row({{9, "older"}})});
    desktop.time += 1h;
    crashedRun({row({{9, "newer"}})});
    desktop.answers = {desktop::Answer::No, desktop::Answer::Yes};
    project::Recovery recovery(book, desktop);
    recovery.offer();
    EXPECT_THAT(desktop.boxes, SizeIs(2));
    EXPECT_EQ(rows(), Rows{row({{9, "older"}})});
    recovery.discard();
    EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(RecoveryTest, TheCopyOfARunningProcessIsNotOffered) {
    int ready[2];
    int end[2];
    ASSERT_EQ(pipe(ready), 0);
    ASSERT_EQ(pipe(end), 0);
    const pid_t child = fork();
    if (child == 0) {
        setRows(someRows);
        project::Recovery recovery(book, desktop);
        recovery.keep();
        char byte = '.';
        (void)!write(ready[1], &byte, 1);
        (void)!read(end[0], &byte, 1);
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    project::Recovery(book, desktop).offer();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_THAT(copies(), SizeIs(1));

    ASSERT_EQ(write(end[1], &byte, 1), 1);
    waitpid(child, nullptr, 0);
    desktop.answers = {desktop::Answer::Yes};
    project::Recovery(book, desktop).offer();
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
    const auto content = folder.read("app/" + std::filesystem::path(first[0]).filename().string());

    desktop.time += 3s;
    EXPECT_EQ(recovery.keep(), 0ms) << "nothing changed";
    book.MSFG.setText(3, 9, "more");
    EXPECT_EQ(recovery.keep(), 7s);
    EXPECT_EQ(folder.read("app/" + std::filesystem::path(first[0]).filename().string()), content);
    desktop.time += 7s;
    EXPECT_EQ(recovery.keep(), 0ms);
    EXPECT_EQ(copies(), first);
    EXPECT_NE(folder.read("app/" + std::filesystem::path(first[0]).filename().string()), content);

    book.MSFG.setText(3, 9, "");
    book.SavedMark = 0;
    setRows({row({})}); // what New leaves
    EXPECT_EQ(recovery.keep(), 0ms);
    EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(RecoveryTest, DamagedAndForeignFilesAreNotOffered) {
    crashedRun(someRows);
    const std::string name = "app/" + std::filesystem::path(copies()[0]).filename().string();
    const std::string whole = folder.read(name);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        folder.write(name, whole.substr(0, length));
        project::Recovery(book, desktop).offer();
    }
    folder.write("app/recovery-notes.txt", "buy pegs\n");
    project::Recovery(book, desktop).offer();
    EXPECT_THAT(desktop.boxes, IsEmpty());
    folder.write(name, whole);
    project::Recovery(book, desktop).offer();
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
    EXPECT_EQ(project::setAside(book, desktop), "");
}

} // namespace
