#include "project/program_folder.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;

class ProgramFolder : public testing::Test {
  protected:
    TempFolder world;
    std::string shipped = world / "shipped";
    std::string folder = world / "data/zavrogrl";

    ProgramFolder() {
        fs::create_directory(shipped);
        world.write("shipped/grl.mdb", "template");
        world.write("shipped/Rod.dwg", "placeholder");
        fs::permissions(shipped + "/grl.mdb", fs::perms::owner_read); // as some installations have it
    }
    std::vector<std::string> names() const {
        std::vector<std::string> all;
        for (const auto& entry : fs::directory_iterator(folder))
            all.push_back(entry.path().filename().string());
        std::sort(all.begin(), all.end());
        return all;
    }
};

TEST_F(ProgramFolder, IsMadeForItsOwnerAndFilled) {
    EXPECT_EQ(project::prepareProgramFolder(folder, shipped), "");
    EXPECT_THAT(names(), testing::ElementsAre("Rod.dwg", "grl.mdb"));
    struct stat found {};
    ASSERT_EQ(stat(folder.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777, 0700U);
    ASSERT_EQ(stat((folder + "/grl.mdb").c_str(), &found), 0);
    EXPECT_NE(found.st_mode & S_IWUSR, 0U); // the copies made of it must be writable
}

TEST_F(ProgramFolder, KeepsWhatTheUserPutThere) {
    fs::create_directories(folder);
    world.write("data/zavrogrl/ROD.DWG", "the road program's own");
    EXPECT_EQ(project::prepareProgramFolder(folder, shipped), "");
    EXPECT_EQ(world.read("data/zavrogrl/ROD.DWG"), "the road program's own");
    EXPECT_THAT(names(), testing::ElementsAre("ROD.DWG", "grl.mdb"));
    world.write("data/zavrogrl/grl.mdb", "own template");
    EXPECT_EQ(project::prepareProgramFolder(folder, shipped), "");
    EXPECT_EQ(world.read("data/zavrogrl/grl.mdb"), "own template");
}

TEST_F(ProgramFolder, TwoInstancesFillItAtOnce) {
    world.write("shipped/large", std::string(3'000'000, 'x'));
    std::vector<pid_t> children;
    for (int k = 0; k < 4; ++k) {
        const pid_t child = fork();
        if (child == 0) _exit(project::prepareProgramFolder(folder, shipped).empty() ? 0 : 1);
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = -1;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
    EXPECT_THAT(names(), testing::ElementsAre("Rod.dwg", "grl.mdb", "large"));
    EXPECT_EQ(fs::file_size(folder + "/large"), 3'000'000U);
}

TEST_F(ProgramFolder, SaysWhatFailed) {
    world.write("data", "a file in the way");
    EXPECT_EQ(project::prepareProgramFolder(folder, shipped), "Path not found");
    EXPECT_EQ(project::prepareProgramFolder(world / "fresh", world / "nothing"), "");
    EXPECT_TRUE(fs::is_directory(world / "fresh"));
}

TEST_F(ProgramFolder, LiesInTheUsersDataFolder) {
    const auto valueOf = [](const char* name) {
        const char* value = std::getenv(name);
        return value == nullptr ? std::string() : std::string(value);
    };
    const std::string data = valueOf("XDG_DATA_HOME");
    const std::string home = valueOf("HOME");
    setenv("XDG_DATA_HOME", "/somewhere/data", 1);
    EXPECT_EQ(project::programFolder(), "/somewhere/data/zavrogrl");
    setenv("HOME", "/home/surveyor", 1);
    for (const char* nothing : {"", "relative"}) {
        setenv("XDG_DATA_HOME", nothing, 1);
        EXPECT_EQ(project::programFolder(), "/home/surveyor/.local/share/zavrogrl");
    }
    setenv("XDG_DATA_HOME", data.c_str(), 1);
    setenv("HOME", home.c_str(), 1);
}

} // namespace
