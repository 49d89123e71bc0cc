#include "project/program_folder.h"

#include "temp_folder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

namespace {

namespace fs = std::filesystem;
using testing::UnorderedElementsAre;

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
        return all;
    }
};

TEST_F(ProgramFolder, IsMadeForItsOwnerAndFilled) {
    EXPECT_EQ(project::prepareProgramFolder(folder, shipped), "");
    EXPECT_THAT(names(), UnorderedElementsAre("Rod.dwg", "grl.mdb"));
    struct stat found {};
    ASSERT_EQ(stat(folder.c_str(), &found), 0);
    EXPECT_EQ(found.st_mode & 0777, 0700U);
    ASSERT_EQ(stat((folder + "/grl.mdb").c_str(), &found), 0);
    EXPECT_NE(found.st_mode & S_IWUSR, 0U); // the copies made of it must be writable
}

TEST_F(ProgramFolder, KeepsWhatTheUserPutThere) {
    fs::create_directories(folder);
    world.write("data/zavrogrl/ROD.DWG", "the road program's own");
    world.write("data/zavrogrl/grl.mdb", "own template");
    EXPECT_EQ(project::prepareProgramFolder(folder, shipped), "");
    EXPECT_EQ(world.read("data/zavrogrl/ROD.DWG"), "the road program's own");
    EXPECT_EQ(world.read("data/zavrogrl/grl.mdb"), "own template");
    EXPECT_THAT(names(), UnorderedElementsAre("ROD.DWG", "grl.mdb"));
}

TEST_F(ProgramFolder, SaysWhatFailed) {
    world.write("data", "a file in the way");
    EXPECT_EQ(project::prepareProgramFolder(folder, shipped), "Path not found: " + (world / "data"));
    EXPECT_EQ(project::prepareProgramFolder(world / "fresh", world / "nothing"), "");
    EXPECT_TRUE(fs::is_directory(world / "fresh"));
}

TEST(ProgramFolderPath, LiesInTheUsersDataFolder) {
    for (const auto& [data, path] : {std::pair("/somewhere/data", "/somewhere/data/zavrogrl"),
                                     {"", "/home/surveyor/.local/share/zavrogrl"},
                                     {"relative", "/home/surveyor/.local/share/zavrogrl"}}) {
        setenv("HOME", "/home/surveyor", 1);
        setenv("XDG_DATA_HOME", data, 1);
        EXPECT_EQ(project::programFolder(), path);
    }
}

} // namespace
