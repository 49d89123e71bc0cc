#include "project_fixture.h"

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <random>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using testing::AnyOf;
using testing::HasSubstr;
using testing::SizeIs;

namespace {

class FaultTest : public ProjectTest {
  protected:
    static Rows numbered(int count, const char* remark) {
        Rows rows;
        for (int k = 0; k < count; ++k)
            rows.push_back(row({{sheet::InterSight, "1.525"}, {sheet::Remark, remark}}));
        return rows;
    }
    /// The remark that all records of a whole book have, with their number: "old 400".
    static std::string bookIn(const std::string& path) {
        const Rows all = records(path);
        for (const Row& record : all)
            if (record[7] != all.front()[7]) return "mixed";
        return all.empty() ? "empty" : all.front()[7] + ' ' + std::to_string(all.size());
    }
};

TEST_F(FaultTest, AKillDuringSaveLeavesTheOldBookOrTheNewOne) {
    const std::string path = projectFile("road.grl", numbered(400, "old"));
    const std::string original = folder.read("road.grl");
    setRows(numbered(300, "new"));
    book.setProjectPath(path);

    // How long a save takes here, so that the kills fall into all of it.
    const auto start = std::chrono::steady_clock::now();
    project::saveProject(book, desktop);
    const auto whole = std::chrono::steady_clock::now() - start;
    ASSERT_EQ(bookIn(path), "new 300");

    std::mt19937 random(20221122);
    std::uniform_real_distribution<double> part(0, 1.2);
    int oldBooks = 0;
    int newBooks = 0;
    for (int time = 0; time < 200; ++time) {
        folder.write("road.grl", original);
        std::filesystem::remove(path + ".bak");
        const pid_t child = fork();
        if (child == 0) {
            project::saveProject(book, desktop);
            _exit(0);
        }
        std::this_thread::sleep_for(part(random) * whole);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string found = bookIn(path);
        ASSERT_THAT(found, AnyOf("old 400", "new 300")) << "kill " << time;
        (found == "old 400" ? oldBooks : newBooks)++;
        if (found == "new 300" || std::filesystem::exists(path + ".bak")) {
            ASSERT_EQ(bookIn(path + ".bak"), "old 400") << "kill " << time;
        }
    }
    RecordProperty("oldBooks", oldBooks);
    RecordProperty("newBooks", newBooks);
    EXPECT_GT(oldBooks, 0);
    EXPECT_GT(newBooks, 0);
}

/// A file system of a few hundred kilobytes over `folder`, in this process alone.
bool mountSmall(const std::string& folder, const char* size) {
    return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           mount("tmpfs", folder.c_str(), "tmpfs", 0, size) == 0;
}

TEST_F(FaultTest, AFullDiskLeavesTheOldBookAndSaysSo) {
    const std::string disk = folder / "disk";
    std::filesystem::create_directory(disk);
    const std::string old = projectFile("old.grl", numbered(50, "old"));
    setRows(numbered(20'000, "new"));
    const pid_t child = fork();
    if (child == 0) {
        if (!mountSmall(disk, "size=600k")) _exit(77);
        std::filesystem::copy_file(old, disk + "/road.grl");
        book.setProjectPath(disk + "/road.grl");
        project::saveProject(book, desktop);
        bool good = bookIn(disk + "/road.grl") == "old 50" && desktop.boxes.empty() &&
                    desktop.statuses.back().find("The book was not saved: ") != std::string::npos &&
                    desktop.statuses.back().find("is as it was") != std::string::npos;
        desktop.files = {disk + "/other.grl"};
        project::saveProjectAs(book, desktop);
        good = good && !std::filesystem::exists(disk + "/other.grl") && desktop.boxes.empty();
        for (const auto& entry : std::filesystem::directory_iterator(disk)) // no rubbish on a full disk
            good = good && entry.path().filename().string().starts_with("road.grl");
        _exit(good ? 0 : 1);
    }
    int status = -1;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 77) GTEST_SKIP() << "a small file system cannot be mounted here";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(FaultTest, AHugeTableIsRefusedBeforeTheGridGrows) {
    const std::string path = folder / "huge.grl";
    {
        jet::Database database = jet::Database::create(path, {.password = "MoraKin"});
        jet::Table grl =
            database.createTable({"Grl", {{.name = "Oft", .type = jet::ColumnType::Double}}, {}});
        for (int k = 0; k < project::mostRows + 1; ++k)
            grl.insert({jet::Value(1.0)});
        database.commit();
    }
    open(path);
    ASSERT_THAT(desktop.boxes, SizeIs(1));
    EXPECT_EQ(desktop.boxes[0].text, "7  The file has 1000001 rows; a book takes 1000000 at most");
    EXPECT_EQ(book.MSFG.Rows(), 2);
}

} // namespace
