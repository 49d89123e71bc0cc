#include "project/book.h"
#include "project/default_folder.h"
#include "project/recent_files.h"
#include "scripted_desktop.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

using testing::ElementsAre;

namespace {

class ListsTest : public testing::Test {
  protected:
    ListsTest() { desktop.folder = folder.path(); }

    void saved(const std::string& path) {
        book.FileName = path;
        project::Sv(book, desktop);
        project::mNu(book, desktop);
    }

    TempFolder folder;
    ScriptedDesktop desktop;
    project::Book book;
};

TEST_F(ListsTest, NewestOfFourProjectsStandsFirst) {
    folder.write("Grl.lvx", "/a/1.grl\r\n"); // found whatever its case
    const auto path = [this](const char* name) { return folder / name; };
    for (const char* name : {"2.grl", "3.grl", "4.grl", "5.grl", "C.grl"})
        folder.write(name, "");
    folder.write("c.grl", "");
    for (const char* name : {"2.grl", "3.grl", "4.grl", "c.grl"})
        saved(path(name));
    saved(path("3.grl")); // listed already: nothing moves
    saved(path("gone.grl"));
    EXPECT_EQ(folder.read("Grl.lvx"), path("c.grl") + "\r\n" + path("4.grl") + "\r\n" + path("3.grl") +
                                          "\r\n" + path("2.grl") + "\r\n");
    EXPECT_FALSE(std::filesystem::exists(folder / "GRL.LVX"));
    saved(path("C.grl")); // the letter case counts
    EXPECT_THAT(book.mnuX, ElementsAre(path("C.grl"), path("c.grl"), path("4.grl"), path("3.grl")));
}

TEST_F(ListsTest, ListFileIsReadAsItIsAndAnEntryOnceShownStays) {
    const std::pair<const char*, std::array<std::string, 4>> lists[] = {
        {"/a\n/b\r\n/c\n/d\n/e\n/f\n", {"/a", "/b", "/c", "/d"}},
        {"\r\n/na\xEFve & co.grl\r\n", {"/a", "/na\xC3\xAFve & co.grl", "/c", "/d"}},
        {"", {"/a", "/na\xC3\xAFve & co.grl", "/c", "/d"}}};
    for (const auto& [content, entries] : lists) {
        folder.write("grl.lvx", content);
        project::mNu(book, desktop);
        EXPECT_EQ(book.mnuX, entries) << content;
    }
}

TEST_F(ListsTest, DefaultFolderIsTheLineBehindFourCharacters) {
    for (const auto& [content, path] : {std::pair("002 D:\\Work\\Roads\r\n", "D:\\Work\\Roads"),
                                        {"X:\\Data\r\n", "ata"},
                                        {"002 /srv/roads\n002 /other\n", "/srv/roads"},
                                        {"002", ""},
                                        {"", "C:\\Road"},
                                        {"\xC3\xA9\xC3\xA9\xC3\xA9\xC3\xA9/x", "/x"}}) {
        folder.write("set.ini", content);
        project::readDefaultFolder(book, desktop);
        EXPECT_EQ(book.DefaultFolder, path) << content;
    }
    std::filesystem::remove(folder / "set.ini");
    project::readDefaultFolder(book, desktop);
    EXPECT_EQ(book.DefaultFolder, "C:\\Road");
    EXPECT_FALSE(std::filesystem::exists(folder / "set.ini"));

    // The dialog makes the setting and keeps the choice.
    EXPECT_EQ(project::loadFolderForDialog(desktop), "C:\\Road");
    EXPECT_EQ(folder.read("set.ini"), "002 C:\\Road\r\n");
    project::chooseDefaultFolder(book, desktop, "  /srv/my roads ");
    EXPECT_EQ(book.DefaultFolder, "/srv/my roads");
    EXPECT_EQ(folder.read("set.ini"), "002 /srv/my roads\r\n");
    EXPECT_EQ(project::loadFolderForDialog(desktop), "/srv/my roads");
}

TEST_F(ListsTest, NearestFolderThatExists) {
    std::filesystem::create_directory(folder / "roads");
    EXPECT_EQ(project::nearestFolder(folder / "roads"), folder / "roads");
    EXPECT_EQ(project::nearestFolder(folder / "roads/a/b"), folder / "roads");
    EXPECT_EQ(project::nearestFolder("relative and missing"), "/");
}

TEST_F(ListsTest, MissingProgramFolderIsSaidAndLeavesTheRunAlone) {
    desktop.folder = folder / "gone";
    project::readDefaultFolder(book, desktop);
    project::mNu(book, desktop);
    EXPECT_EQ(book.DefaultFolder, "C:\\Road");
    book.FileName = folder.write("road.grl", "");
    EXPECT_THROW(project::Sv(book, desktop), basic::RuntimeError);
    EXPECT_THROW((void)project::loadFolderForDialog(desktop), basic::RuntimeError);
    project::chooseDefaultFolder(book, desktop, "/srv/roads");
    EXPECT_EQ(book.DefaultFolder, "/srv/roads");
    EXPECT_EQ(desktop.statuses.size(), 1);
}

} // namespace
