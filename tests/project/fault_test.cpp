#include "child_process.h"
#include "project_fixture.h"

#include <chrono>
#include <csignal>
#include <map>
#include <random>
#include <thread>

namespace {

class FaultTest : public ProjectTest {
  protected:
    static Rows numbered(int count, const std::string& text) {
        return Rows(static_cast<std::size_t>(count), ",,,,,1.525,,,," + text);
    }
    /// The remark that all records of a whole book have, and how many they are: "old 400".
    static std::string bookIn(const std::string& path) {
        const Rows all = records(path);
        for (const std::string& record : all)
            if (record != all.front()) return "mixed";
        return remarkIn(path) + ' ' + std::to_string(all.size());
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
    std::chrono::duration<double> whole = std::chrono::steady_clock::now() - start;
    ASSERT_EQ(bookIn(path), "new 300");

    std::mt19937 random(20221122);
    std::uniform_real_distribution<double> part(0, 1.2);
    std::map<std::string, int> found;
    for (int time = 0; time < 200; ++time) {
        folder.write("road.grl", original);
        std::filesystem::remove(path + ".bak");
        book.FileMark.clear(); // no other program's version
        const pid_t child = startChild([&] { return project::saveProject(book, desktop), 0; });
        std::this_thread::sleep_for(part(random) * whole);
        kill(child, SIGKILL);
        endOf(child);
        const std::string left = bookIn(path);
        ++found[left];
        whole *= left == "new 300" ? 0.95 : 1.05; // a busier machine needs longer
        if (left == "new 300" || std::filesystem::exists(path + ".bak")) {
            ASSERT_EQ(bookIn(path + ".bak"), "old 400") << "kill " << time;
        }
    }
    using testing::Pair;
    EXPECT_THAT(found, testing::ElementsAre(Pair("new 300", testing::_), Pair("old 400", testing::_)));
}

TEST_F(FaultTest, AFullDiskLeavesTheOldBookAndSaysSo) {
    const std::string disk = folder / "disk";
    std::filesystem::create_directory(disk);
    const std::string old = projectFile("old.grl", numbered(50, "old"));
    setRows(numbered(20'000, "new"));
    const int result = inChild([&] {
        if (!mountSmall(disk, "size=600k")) return 77;
        std::filesystem::copy_file(old, disk + "/road.grl");
        book.setProjectPath(disk + "/road.grl");
        project::saveProject(book, desktop);
        bool good = bookIn(disk + "/road.grl") == "old 50" &&
                    desktop.statuses.back().find("The book was not saved: ") != std::string::npos &&
                    desktop.statuses.back().find("is as it was") != std::string::npos;
        good = good && desktop.boxes.empty() && run(project::saveProjectAs, {disk + "/other.grl"}).empty();
        for (const auto& entry : std::filesystem::directory_iterator(disk)) // no rubbish on a full disk
            good = good && entry.path().filename().string().starts_with("road.grl");
        return good ? 0 : 1;
    });
    if (result == 77) GTEST_SKIP() << "a small file system cannot be mounted here";
    EXPECT_EQ(result, 0);
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
    EXPECT_THAT(open(path),
                testing::ElementsAre("7  The file has 1000001 rows; a book takes 1000000 at most"));
    EXPECT_EQ(book.MSFG.Rows(), 2);
}

} // namespace
