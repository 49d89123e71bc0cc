#include "child_process.h"
#include "held_database.h"
#include "road_fixture.h"

#include <functional>

using exchange::TransferEnd;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

namespace fs = std::filesystem;

class FaultTest : public RoadTest {
  protected:
    void SetUp() override {
        keyRows(book.MSFG, {"00-000,3.15,,,,,,,11.366", "00-000,,0,,,,,,11.350"});
        book.MSFG.moveTo(2, 4);
        home.write("app/GRL.LVX", (home / "Site1.grl") + "\r\n"); // saving the book lists it
        program = filesIn(desktop.folder);
    }

    /// The transfer fails with `message`, and the book still has its texts.
    void expectFailure(const char* message) {
        frame.Dsb();
        EXPECT_EQ(transfer(), TransferEnd::Failed);
        EXPECT_THAT(messages(), ElementsAre(HasSubstr(message)));
        expectCleanDesk();
        EXPECT_EQ(shownRows(book.MSFG), "00-000,3.15,,,,,,,11.366|00-000,,0,,,,,,11.350");
        EXPECT_EQ(book.MSFG.Row(), 2);
    }
    /// The program folder is as it was, and a transfer goes through.
    void expectMended() {
        EXPECT_EQ(filesIn(desktop.folder), program);
        frame.Dsb();
        EXPECT_EQ(transfer(), TransferEnd::Done);
        expectCleanDesk();
    }

    std::vector<std::string> program;
};

TEST_F(FaultTest, Templates) {
    const std::string blank = desktop.folder + "/Rod.mdb";
    fs::rename(blank, home / "hidden");
    expectFailure(("File not found: " + blank).c_str());
    fs::copy_file(desktop.folder + "/grl.mdb", blank);
    expectFailure("Not a valid password.");
    home.write("app/Rod.mdb", "no database at all");
    expectFailure("Unrecognized database format");
    EXPECT_THAT(filesIn(roads), IsEmpty());
    fs::rename(home / "hidden", blank);
    expectMended();
}

TEST_F(FaultTest, DrawingMissing) {
    fs::rename(desktop.folder + "/Rod1.dwg", home / "hidden");
    expectFailure("File not found");
    EXPECT_EQ(desktop.statuses.back(),
              roads + "/Site1 is not complete: File not found: " + desktop.folder + "/Rod1.dwg");
    EXPECT_THAT(filesIn(roads), ElementsAre("Site1/Road.dwg", "Site1/Road.mdb"));
}

TEST_F(FaultTest, TargetFolderThatCannotBeMade) {
    book.DefaultFolder = home / "no/such/folder";
    expectFailure("Path not found");
    EXPECT_EQ(desktop.statuses.back(), "No road was made: Path not found: " + (home / "no/such/folder"));
    book.DefaultFolder = roads;
    home.write("roads/Site1", "a file where the folder should be");
    expectFailure("Path/File access error");
    fs::remove(roads + "/Site1");
    expectMended();
}

TEST_F(FaultTest, WorkCopiesOfACrashAndOfAnotherInstance) {
    home.write("app/.zavrogrl-999999999-1.tmp", "half of a database");
    EXPECT_EQ(transfer(), TransferEnd::Done);
    EXPECT_EQ(filesIn(desktop.folder), program) << "what a crash left is gone";
}

TEST_F(FaultTest, TwoTransfersAtOnceKeepTheirOwnRoads) {
    // The other instance makes its whole road while this one stands at its last question.
    fs::create_directory(roads + "/Site1");
    desktop.onBox = [&](std::string_view message) {
        if (message.find("Folder is Created") == std::string_view::npos) return;
        desktop.onBox = nullptr;
        EXPECT_EQ(inChild([&] { return transfer() == TransferEnd::Done ? 0 : 1; }), 0);
    };
    EXPECT_EQ(transfer(), TransferEnd::Done);
    EXPECT_THAT(filesIn(roads), testing::IsSupersetOf({"Site1/Road.mdb", "Site1X/Road.mdb"}));
}

TEST_F(FaultTest, ProgramFolderThatLetsNothingBeWritten) {
    for (const char* path : {"", "/roads", "/Site1.grl"})
        fs::permissions(home.path() + path, fs::perms::all);
    fs::permissions(desktop.folder, fs::perms(0555));
    EXPECT_EQ(asOtherUser([&] {
                  expectFailure("Permission denied");
                  EXPECT_EQ(filesIn(desktop.folder), program);
                  EXPECT_THAT(filesIn(roads), IsEmpty());
                  return HasFailure();
              }),
              0);
}

TEST_F(FaultTest, DiskFullInTheMiddle) {
    std::string rows;
    for (int chainage = 0; chainage < 3000; ++chainage)
        rows += std::to_string(chainage) + ",,0,,,,,,100.000|";
    rows.pop_back();
    const std::string kept = home / "kept";
    fs::copy(desktop.folder, kept, fs::copy_options::recursive);
    const int result = inChild([&] {
        // From too little for the copy of the template to too little for the filled database.
        for (const char* size : {"size=400k", "size=700k", "size=1000k"}) {
            SCOPED_TRACE(size);
            if (!mountSmall(desktop.folder, size)) return 77;
            fs::copy(kept, desktop.folder, fs::copy_options::recursive);
            EXPECT_EQ(transfer(rows), TransferEnd::Failed);
            EXPECT_THAT(messages(), ElementsAre(HasSubstr("isk")));
            EXPECT_EQ(filesIn(desktop.folder), program);
            expectCleanDesk();
        }
        for (int mounted = 0; mounted < 3; ++mounted)
            umount(desktop.folder.c_str());
        if (!mountSmall(roads, "size=300k")) return 77; // the project folder does not take the database
        EXPECT_EQ(transfer(), TransferEnd::Failed);
        EXPECT_THAT(messages(), ElementsAre("Disk full"));
        EXPECT_THAT(filesIn(roads), IsEmpty());
        expectCleanDesk();
        return static_cast<int>(HasFailure());
    });
    if (result == 77) GTEST_SKIP() << "no right to mount";
    EXPECT_EQ(result, 0);
}

} // namespace
