#include "road.h"

#include "error_of.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr uid_t otherUser = 65534;

int opening(const std::string& path, const char* connect = ";pwd=TarnVel") {
    return errorOf([&] { static_cast<void>(dao::OpenDatabase(path, connect)); });
}

/// Runs `action` in another process, as another user when this one is root, and gives what it returns.
int inChild(const std::function<int()>& action, bool otherwise = false) {
    const pid_t child = fork();
    if (child == 0) {
        if (otherwise && geteuid() == 0 && seteuid(otherUser) != 0) _exit(99);
        _exit(action() % 256);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

void addTitle(dao::Database& database, const char* text) {
    auto titles = database.OpenRecordset("dddd");
    titles.AddNew();
    titles.Fields(0).setValue(text);
    titles.Update();
}

TEST(DatabaseFile, WhatCannotBeOpened) {
    TempFolder folder;
    const std::string path = makeDatabase(folder / "Road.mdb");
    EXPECT_EQ(opening(path), 0);
    EXPECT_EQ(opening(path, ";pwd=tarnvel"), 3031);
    EXPECT_EQ(opening(path, ""), 3031);
    EXPECT_EQ(opening(folder / "None.mdb"), 3024);
    EXPECT_EQ(opening(folder / "none/Road.mdb"), 3044);
    EXPECT_EQ(opening(folder.write("empty.mdb", "")), 3343);
    EXPECT_EQ(opening(folder.write("text.mdb", std::string(10000, 'x'))), 3343);
    std::string later = folder.read("Road.mdb");
    later.replace(4, 15, "Standard ACE DB");
    later[0x14] = 2;
    EXPECT_EQ(opening(folder.write("later.mdb", later)), 3343);
    EXPECT_EQ(opening(folder.write("cut.mdb", folder.read("Road.mdb").substr(0, 3 * 4096))), 3049);
}

TEST(DatabaseFile, DescriptionsNameTheFile) {
    TempFolder folder;
    try {
        static_cast<void>(dao::OpenDatabase(folder / "None.mdb", ""));
        FAIL();
    } catch (const basic::RuntimeError& error) {
        EXPECT_EQ(error.description(), "Could not find file '" + folder / "None.mdb" + "'.");
    }
}

TEST(DatabaseFile, NothingIsWrittenBeforeClose) {
    TempFolder folder;
    const std::string path = makeDatabase(folder / "Road.mdb");
    const std::string before = folder.read("Road.mdb");
    {
        auto database = dao::OpenDatabase(path, ";pwd=TarnVel");
        addTitle(database, "lost");
    }
    EXPECT_EQ(folder.read("Road.mdb"), before);
    auto unchanged = dao::OpenDatabase(path, ";pwd=TarnVel");
    auto titles = unchanged.OpenRecordset("dddd");
    EXPECT_EQ(titles.RecordCount(), 0);
    unchanged.Close();
    EXPECT_EQ(folder.read("Road.mdb"), before) << "nothing changed, nothing written";
}

// Another process of ours is kept out as long as the database is open, and after a kill no longer.
TEST(DatabaseFile, ASecondProcessIsKeptOut) {
    TempFolder folder;
    const std::string path = makeDatabase(folder / "Road.mdb");
    folder.write("Road.ldb", "left over");
    const auto tryIt = [&] { return opening(path) == 3045 ? 45 : opening(path) % 100; };
    {
        auto held = dao::OpenDatabase(path, ";pwd=TarnVel");
        EXPECT_EQ(inChild(tryIt), 45);
        EXPECT_EQ(opening(path), 0) << "the same process may open it again";
        EXPECT_EQ(inChild(tryIt), 45);
        addTitle(held, "x");
        held.Close();
        EXPECT_EQ(inChild(tryIt), 0);
    }
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t holder = fork();
    if (holder == 0) {
        auto held = dao::OpenDatabase(path, ";pwd=TarnVel");
        static_cast<void>(write(ready[1], "x", 1));
        pause();
        _exit(0);
    }
    char byte = 0;
    ASSERT_EQ(read(ready[0], &byte, 1), 1);
    EXPECT_EQ(opening(path), 3045);
    kill(holder, SIGKILL);
    waitpid(holder, nullptr, 0);
    EXPECT_EQ(opening(path), 0);
    close(ready[0]);
    close(ready[1]);
}

TEST(DatabaseFile, AReadOnlyFileIsReadAndNotReplaced) {
    TempFolder folder;
    const std::string path = makeDatabase(folder / "Road.mdb");
    const std::string before = folder.read("Road.mdb");
    chmod(folder.path().c_str(), 0777);
    chmod(path.c_str(), 0444);
    const auto change = [&] {
        return errorOf([&] {
            auto database = dao::OpenDatabase(path, ";pwd=TarnVel");
            auto titles = database.OpenRecordset("dddd");
            EXPECT_TRUE(titles.EOF_());
            addTitle(database, "x");
            database.Close();
        });
    };
    EXPECT_EQ(inChild([&] { return change() == 3051 ? 1 : 0; }, true), 1);
    EXPECT_EQ(folder.read("Road.mdb"), before);
    chmod(path.c_str(), 0);
    EXPECT_EQ(inChild([&] { return opening(path) == 3051 ? 1 : 0; }, true), 1);
}

TEST(DatabaseFile, AFileChangedUnderneathIsNotOverwritten) {
    TempFolder folder;
    const std::string path = makeDatabase(folder / "Road.mdb");
    auto database = dao::OpenDatabase(path, ";pwd=TarnVel");
    addTitle(database, "ours");
    std::ofstream(path, std::ios::binary | std::ios::app) << std::string(4096, '\0');
    const std::string theirs = folder.read("Road.mdb");
    EXPECT_EQ(errorOf([&] { database.Close(); }), 3197);
    EXPECT_EQ(folder.read("Road.mdb"), theirs);
}

} // namespace
