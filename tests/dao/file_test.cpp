#include "road.h"

#include "child_process.h"
#include "error_number.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

#include <fstream>
#include <sys/stat.h>

namespace {

struct DatabaseFile : testing::Test {
    TempFolder folder;
    const std::string path = makeDatabase(folder / "Road.mdb");
    const std::string before = folder.read("Road.mdb");

    static int opening(const std::string& path, const char* connect = ";pwd=TarnVel") {
        return errorOf([&] { static_cast<void>(dao::OpenDatabase(path, connect)); });
    }
    [[nodiscard]] dao::Database open() const { return dao::OpenDatabase(path, ";pwd=TarnVel"); }
    static void addTitle(dao::Database& database) {
        auto titles = database.OpenRecordset("dddd");
        titles.AddNew();
        titles.Fields(0).setValue("ours");
        titles.Update();
    }
};

TEST_F(DatabaseFile, WhatCannotBeOpened) {
    std::string later = before;
    later.replace(4, 15, "Standard ACE DB");
    later[0x14] = 2;
    const std::tuple<std::string, const char*, int> cases[] = {
        {path, ";pwd=TarnVel", 0},
        {path, ";pwd=tarnvel", 3031},
        {path, "", 3031},
        {folder / "None.mdb", "", 3024},
        {folder / "none/Road.mdb", "", 3044},
        {folder.write("empty.mdb", ""), "", 3343},
        {folder.write("text.mdb", std::string(10000, 'x')), "", 3343},
        {folder.write("later.mdb", later), "", 3343},
        {folder.write("cut.mdb", before.substr(0, 3 * 4096)), ";pwd=TarnVel", 3049}};
    for (const auto& [file, connect, number] : cases)
        EXPECT_EQ(opening(file, connect), number) << file << connect;
    EXPECT_THAT(
        [&] { static_cast<void>(dao::OpenDatabase(folder / "None.mdb", "")); },
        testing::Throws<basic::RuntimeError>(testing::Property(
            &basic::RuntimeError::description, "Could not find file '" + folder / "None.mdb" + "'.")));
}

TEST_F(DatabaseFile, NothingIsWrittenBeforeCloseAndNothingOverAnothersChange) {
    {
        auto database = open();
        addTitle(database);
    }
    EXPECT_EQ(folder.read("Road.mdb"), before);
    auto unchanged = open();
    EXPECT_EQ(unchanged.OpenRecordset("dddd").RecordCount(), 0);
    unchanged.Close();
    EXPECT_EQ(folder.read("Road.mdb"), before) << "nothing changed, nothing written";

    auto database = open();
    addTitle(database);
    std::ofstream(path, std::ios::binary | std::ios::app) << std::string(4096, '\0');
    const std::string theirs = folder.read("Road.mdb");
    EXPECT_EQ(errorOf([&] { database.Close(); }), 3197);
    EXPECT_EQ(folder.read("Road.mdb"), theirs);
}

TEST_F(DatabaseFile, ASecondProcessIsKeptOutUntilClose) {
    folder.write("Road.ldb", "left over");
    const auto another = [this] {
        return inChild([this] { return opening(path) == 3045 ? 45 : opening(path) == 0 ? 0 : 1; });
    };
    auto held = open();
    EXPECT_EQ(another(), 45);
    EXPECT_EQ(opening(path), 0) << "the same process may open it again";
    EXPECT_EQ(another(), 45);
    addTitle(held);
    held.Close();
    EXPECT_EQ(another(), 0);
}

TEST_F(DatabaseFile, AReadOnlyFileIsReadAndNotReplaced) {
    chmod(folder.path().c_str(), 0777);
    chmod(path.c_str(), 0444);
    const auto change = [this] {
        auto database = open();
        EXPECT_TRUE(database.OpenRecordset("dddd").EOF_());
        addTitle(database);
        database.Close();
    };
    EXPECT_EQ(1, asOtherUser([&] { return errorOf(change) == 3051; }));
    EXPECT_EQ(folder.read("Road.mdb"), before);
    chmod(path.c_str(), 0);
    EXPECT_EQ(1, asOtherUser([&] { return opening(path) == 3051; }));
}

} // namespace
