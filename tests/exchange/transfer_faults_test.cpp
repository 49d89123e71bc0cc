#include "exchange/transfer.h"

#include "basic/runtime_error.h"
#include "held_database.h"
#include "road_fixture.h"

#include <fstream>
#include <functional>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

using exchange::TransferEnd;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

namespace fs = std::filesystem;

class FaultTest : public RoadTest {
  protected:
    void SetUp() override {
        keyed({"00-000,3.15,,,,,,,11.366,", "00-000,,0,,,,,,11.350,"});
        book.MSFG.moveTo(2, 4);
        home.write("app/GRL.LVX", (home / "Site1.grl") + "\r\n"); // saving the book lists it
        program = filesIn(desktop.folder);
    }

    /// The transfer fails with `message`, the program folder is as it was, the book still has its texts, and
    /// a transfer after `mend` goes through.
    void expectFailure(const std::string& message, const std::function<void()>& mend) {
        EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Failed);
        EXPECT_THAT(messages(), ElementsAre(message));
        expectCleanDesk();
        EXPECT_EQ(book.MSFG.Text(1, 8) + book.MSFG.Text(2, 8), "11.36611.350");
        EXPECT_EQ(book.MSFG.Row(), 2);
        mend();
        EXPECT_EQ(filesIn(desktop.folder), program);
        desktop.boxes.clear();
        frame.Dsb();
        EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
        expectCleanDesk();
    }

    void hide(const std::string& path) { fs::rename(path, path + ".hidden"); }
    void unhide(const std::string& path) { fs::rename(path + ".hidden", path); }

    std::vector<std::string> program;
};

TEST_F(FaultTest, TemplateMissing) {
    const std::string blank = desktop.folder + "/Rod.mdb";
    hide(blank);
    expectFailure("File not found", [&] { unhide(blank); });
}

TEST_F(FaultTest, TemplateThatIsNone) {
    const std::string blank = desktop.folder + "/Rod.mdb";
    hide(blank);
    struct Case {
        std::string from;
        std::string message;
    };
    fs::copy_file(desktop.folder + "/grl.mdb", blank); // another password
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Failed);
    EXPECT_THAT(messages(), ElementsAre("Not a valid password."));
    expectCleanDesk();
    desktop.boxes.clear();
    std::ofstream(blank, std::ios::trunc) << "no database at all";
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Failed);
    EXPECT_THAT(messages(), ElementsAre(testing::HasSubstr("Unrecognized database format")));
    expectCleanDesk();
    EXPECT_THAT(filesIn(roads), IsEmpty());
}

TEST_F(FaultTest, DrawingMissing) {
    const std::string drawing = desktop.folder + "/Rod1.dwg";
    hide(drawing);
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Failed);
    EXPECT_THAT(messages(), ElementsAre("File not found"));
    EXPECT_EQ(desktop.statuses.back(), roads + "/Site1 is not complete: File not found");
    expectCleanDesk();
    EXPECT_THAT(filesIn(roads), ElementsAre("Site1/Road.dwg", "Site1/Road.mdb"));
}

TEST_F(FaultTest, TargetFolderThatCannotBeMade) {
    book.DefaultFolder = home / "no/such/folder";
    expectFailure("Path not found", [&] { book.DefaultFolder = roads; });
    fs::remove_all(roads + "/Site1");
    home.write("roads/Site1", "a file where the folder should be");
    desktop.boxes.clear();
    expectFailure("Path/File access error", [&] { fs::remove(roads + "/Site1"); });
}

TEST_F(FaultTest, WorkCopyLeftByACrashIsReplaced) {
    home.write("app/Rodd.mdb", "half of a database");
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    EXPECT_EQ(filesIn(desktop.folder), program);
}

TEST_F(FaultTest, WorkCopyOfAnotherInstanceIsLeftAlone) {
    const std::string copy = desktop.folder + "/Rodd.mdb";
    fs::copy_file(desktop.folder + "/Rod.mdb", copy);
    {
        const HeldDatabase held(copy, exchange::roadConnect);
        EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Failed);
        EXPECT_THAT(messages(), ElementsAre(testing::HasSubstr("file already in use")));
        EXPECT_THAT(filesIn(desktop.folder), Contains("Rodd.mdb"));
    }
    fs::remove(copy);
    desktop.boxes.clear();
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
}

/// Root passes every permission, so the transfer runs as nobody in a child.
TEST_F(FaultTest, ProgramFolderThatLetsNothingBeWritten) {
    if (geteuid() != 0) GTEST_SKIP() << "needs root to become somebody else";
    for (const char* path : {"", "/roads", "/Site1.grl"})
        fs::permissions(home.path() + path, fs::perms::all);
    fs::permissions(desktop.folder, fs::perms(0555));
    const pid_t child = fork();
    if (child == 0) {
        constexpr uid_t nobody = 65534;
        if (setgid(nobody) != 0 || setuid(nobody) != 0) _exit(9);
        const TransferEnd end = exchange::transfer(book, desktop, frame);
        const bool asExpected = end == TransferEnd::Failed &&
                                messages() == std::vector<std::string>{"Permission denied"} &&
                                filesIn(desktop.folder) == program && filesIn(roads).empty() &&
                                book.MSFG.Visible() && frame.commandsEnabled;
        for (const std::string& message : messages())
            if (!asExpected) std::cerr << message << '\n';
        _exit(asExpected ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

/// A small file system of its own under `path` while it lives.
class SmallDisk {
  public:
    SmallDisk(std::string path, const char* size) : m_path(std::move(path)) {
        m_mounted = mount("tmpfs", m_path.c_str(), "tmpfs", 0, (std::string("size=") + size).c_str()) == 0;
    }
    SmallDisk(const SmallDisk&) = delete;
    SmallDisk& operator=(const SmallDisk&) = delete;
    ~SmallDisk() {
        if (m_mounted) umount2(m_path.c_str(), MNT_DETACH);
    }
    [[nodiscard]] bool mounted() const { return m_mounted; }

  private:
    std::string m_path;
    bool m_mounted;
};

TEST_F(FaultTest, DiskFullInTheMiddle) {
    std::vector<std::string> rows;
    for (int chainage = 0; chainage < 3000; ++chainage)
        rows.push_back(std::to_string(chainage) + ",,0,,,,,,100.000,");
    keyed(rows);
    const std::string kept = home / "kept";
    fs::copy(desktop.folder, kept, fs::copy_options::recursive);
    // From too little for the copy of the template to too little for the filled database.
    int failures = 0;
    for (const char* size : {"400k", "700k", "1000k"}) {
        SmallDisk disk(desktop.folder, size);
        if (!disk.mounted()) GTEST_SKIP() << "no right to mount";
        fs::copy(kept, desktop.folder, fs::copy_options::recursive);
        desktop.boxes.clear();
        const TransferEnd end = exchange::transfer(book, desktop, frame);
        expectCleanDesk();
        EXPECT_EQ(filesIn(desktop.folder), program) << size;
        if (end == TransferEnd::Done) continue;
        ++failures;
        EXPECT_THAT(messages(),
                    ElementsAre(testing::AnyOf("Disk full", "Disk full.", testing::HasSubstr("disk"))));
        EXPECT_THAT(filesIn(roads), IsEmpty());
    }
    EXPECT_GE(failures, 1);

    SmallDisk disk(roads, "300k"); // the project folder does not take the database
    desktop.boxes.clear();
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Failed);
    EXPECT_THAT(messages(), ElementsAre("Disk full"));
    EXPECT_THAT(filesIn(roads), IsEmpty());
    expectCleanDesk();
}

} // namespace
