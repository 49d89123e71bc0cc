#include "basic/files.h"
#include "basic/runtime_error.h"

#include "child_process.h"
#include "error_number.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::size_t entries(const TempFolder& folder) {
    const std::filesystem::directory_iterator all(folder.path());
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

TEST(Files, SystemErrorsBecomeNumbers) {
    using basic::FileAction;
    const std::tuple<FileAction, int, int> cases[] = {
        {FileAction::Copy, EACCES, 70},          {FileAction::Copy, EROFS, 70},
        {FileAction::Copy, ENOENT, 53},          {FileAction::Copy, ENOTDIR, 76},
        {FileAction::Copy, ENOSPC, 61},          {FileAction::OpenForOutput, EACCES, 75},
        {FileAction::OpenForOutput, ENOENT, 76}, {FileAction::OpenForInput, ENOENT, 53},
        {FileAction::MakeFolder, EEXIST, 75},    {FileAction::MakeFolder, EACCES, 75},
        {FileAction::MakeFolder, ENOENT, 76},    {FileAction::Remove, ENOENT, 53},
        {FileAction::OpenForOutput, EDQUOT, 61}, {FileAction::Copy, EIO, 57}};
    for (const auto& [action, code, number] : cases)
        EXPECT_EQ(errorOf([action = action, code = code] { basic::raiseFileError(action, code, "x"); }),
                  number)
            << code;
}

TEST(Files, CopyIsWholeOrNothing) {
    const TempFolder folder;
    const std::string from = folder.write("from", std::string(200000, 'x'));
    const std::string to = folder.write("to", "old");
    chmod(to.c_str(), 0640);
    symlink("to", (folder / "link").c_str());
    basic::fileCopy(from, folder / "link");
    EXPECT_EQ(folder.read("to"), folder.read("from"));
    struct stat found {};
    lstat((folder / "link").c_str(), &found);
    EXPECT_TRUE(S_ISLNK(found.st_mode));
    stat(to.c_str(), &found);
    EXPECT_EQ(found.st_mode & 0777U, 0640U);

    EXPECT_EQ(errorOf([&] { basic::fileCopy(folder / "none", to); }), 53);
    EXPECT_EQ(errorOf([&] { basic::fileCopy(from, folder / "no/where"); }), 76);
    chmod(to.c_str(), 0440);
    EXPECT_EQ(errorOf([&] { basic::fileCopy(from, to); }), 70);
    EXPECT_EQ(errorOf([&] { basic::writeFile(to, "new"); }), 75);
    EXPECT_EQ(folder.read("to").size(), 200000U);
    EXPECT_EQ(entries(folder), 3U); // nothing is left beside them
}

TEST(Files, FoldersWithoutPermission) {
    const TempFolder folder;
    const std::string from = folder.write("from", "x");
    chmod(folder.path().c_str(), 0555);
    chmod(from.c_str(), 0444);
    const auto error = [](auto&& call) { return asOtherUser([&] { return errorOf(call); }); };
    EXPECT_EQ(error([&] { basic::fileCopy(from, folder / "to"); }), 70);
    EXPECT_EQ(error([&] { basic::writeFile(folder / "to", "x"); }), 75);
    EXPECT_EQ(error([&] { basic::makeFolder(folder / "sub"); }), 75);
    EXPECT_EQ(error([&] { basic::kill(from); }), 75);
    chmod(folder.path().c_str(), 0755);
    EXPECT_EQ(errorOf([] { basic::writeFile("/dev/full", "x"); }), 61);
}

TEST(Files, FoldersAndExistence) {
    const TempFolder folder;
    basic::makeFolder(folder / "a");
    EXPECT_TRUE(basic::folderExists(folder / "a") && !basic::fileExists(folder / "a"));
    EXPECT_EQ(errorOf([&] { basic::makeFolder(folder / "a"); }), 75);
    const std::string file = folder.write("f", "");
    EXPECT_TRUE(basic::fileExists(file) && !basic::folderExists(file));
    basic::kill(file);
    EXPECT_FALSE(basic::fileExists(file));
    EXPECT_EQ(errorOf([&] { basic::kill(file); }), 53);
}

TEST(Files, DrivesStandUnderTheHome) {
    const TempFolder home;
    setenv("HOME", home.path().c_str(), 1);
    EXPECT_EQ(basic::nativePath("C:\\Road\\A b"), home / "Road/A b");
    EXPECT_EQ(basic::nativePath("d:/x"), home / "x");
    EXPECT_EQ(basic::nativePath("C:\\"), home.path());
    EXPECT_EQ(basic::nativePath("C:"), home.path());
    for (const char* path : {"/a\\b", "work/x", "", ":", "1:x"})
        EXPECT_EQ(basic::nativePath(path), path);
    EXPECT_EQ(basic::baseName("C:\\Road\\x.grl"), "x.grl");
    EXPECT_EQ(basic::baseName("a/b"), "b");
    EXPECT_EQ(basic::baseName("b"), "b");
}

TEST(TextFiles, LinesOfAnyOrigin) {
    const TempFolder folder;
    using Lines = std::vector<std::string>;
    const std::pair<const char*, Lines> cases[] = {
        {"", {}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\nb", {"a", "b"}},
        {"\n\r\n", {"", ""}},
        {"\xEF\xBB\xBFx\u00fc\r\n", {"x\u00fc"}},
        {"Ma\xDF \x80\n", {"Ma\u00df \u20ac"}},
        // Overlong and surrogate forms are no UTF-8.
        {"\xC0\x80", {"\u00c0\u20ac"}},
        {"\xED\xA0\x80", {"\u00ed\u00a0\u20ac"}},
    };
    for (const auto& [bytes, lines] : cases)
        EXPECT_EQ(basic::readLines(folder.write("f", bytes)), lines) << bytes;
    EXPECT_EQ(basic::readLines(folder.write("f", "abcdef"), 3), Lines{"abc"});
    basic::writeLines(folder / "out", {"a", "\u00fc"});
    EXPECT_EQ(folder.read("out"), "a\r\n\u00fc\r\n");
    EXPECT_EQ(errorOf([&] { (void)basic::readLines(folder / "none"); }), 53);
    EXPECT_EQ(errorOf([&] { basic::writeLines(folder / "no/out", {}); }), 76);
    EXPECT_EQ(errorOf([&] { basic::writeLines(folder.path(), {}); }), 75);
}

} // namespace
