#include "exchange/csv_export.h"

#include "field_book.h"
#include "scripted_desktop.h"
#include "sheet/change_points.h"
#include "temp_folder.h"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

namespace {

constexpr const char* head = "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark,";

/// A book and its desktop, its project file in a folder of its own.
struct Case {
    TempFolder folder;
    ScriptedDesktop desktop;
    sheet::Book book;

    explicit Case(std::string_view project = "Site1.grl") { book.setProjectPath(folder / project); }

    void write() { exchange::exportCsv(book, desktop); }
    void writeList() {
        sheet::Grid list = sheet::listChangePoints(book, desktop);
        exchange::exportChangePoints(list, book, desktop);
        EXPECT_TRUE(list.Visible());
    }
    [[nodiscard]] std::string onlyBox() const {
        return desktop.boxes.size() == 1 ? desktop.boxes[0].text
                                         : std::to_string(desktop.boxes.size()) + " boxes";
    }
    /// Nothing was made or told as made; the window is as before and the status bar gives the reason.
    void expectRefused(const char* reason) const {
        EXPECT_THAT(desktop.boxes, IsEmpty());
        EXPECT_TRUE(book.MSFG.Visible());
        EXPECT_FALSE(desktop.progressShown);
        ASSERT_THAT(desktop.statuses, SizeIs(1));
        EXPECT_THAT(desktop.statuses[0], HasSubstr(reason));
    }
};

/// The current folder while it lives.
class CurrentFolder {
  public:
    explicit CurrentFolder(const std::string& path) : m_before(fs::current_path()) { fs::current_path(path); }
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;
    ~CurrentFolder() { fs::current_path(m_before); }

  private:
    fs::path m_before;
};

/// Runs `check` in a child process that has no special rights; true when it returned true there.
template <typename Check>
bool asOrdinaryUser(Check&& check) {
    const pid_t child = fork();
    if (child == 0) {
        const bool ordinary = geteuid() != 0 || (setegid(65534) == 0 && seteuid(65534) == 0);
        _exit(ordinary && check() ? 0 : 1);
    }
    int status = 1;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace

TEST(CsvExport, WritesRealBooksAndTheirChangePoints) {
    for (const char* name : {"fleming-tbm-loop", "gsi-pv16", "nptel-ex14-1", "tramo1-derived"}) {
        SCOPED_TRACE(name);
        Case made;
        loadBook(made.book, name);
        made.write();
        EXPECT_EQ(made.folder.read("Site1.csv"),
                  TempFolder::readFile(testData("exchange/" + std::string(name) + ".csv")));
        made.writeList();
        EXPECT_EQ(made.folder.read("Site1cp.csv"),
                  TempFolder::readFile(testData("exchange/" + std::string(name) + "cp.csv")));
        EXPECT_THAT(made.desktop.statuses, IsEmpty());
    }
}

TEST(CsvExport, WritesTextsAsTheyStand) {
    for (const char* text :
         {"kerb, left side", "\"quoted\"", "Brücke – 東側 ½", " blanks ", "two\nlines", "a\tb", "=1+1"}) {
        Case made;
        made.book.MSFG.moveTo(1, sheet::RLevel);
        made.book.MSFG.setText(1, sheet::Remark, text);
        made.write();
        EXPECT_EQ(made.folder.read("Site1.csv"), std::string(head) + "\r\n,,,,,,,,," + text + ",\r\n");
        made.writeList();
        EXPECT_EQ(made.folder.read("Site1cp.csv"), std::string(head) + ",\r\n,,,,,,,,," + text + ",,\r\n");
    }
}

TEST(CsvExport, NamesTheFileAfterTheProject) {
    struct Name {
        const char* project;
        const char* csv;
        const char* list;
    };
    for (const Name& name : {Name{"Site1.grl", "Site1.csv", "Site1cp.csv"},
                             {"a.b.GRL", "a.b.csv", "a.bcp.csv"},
                             {"roadgrl", "roadcsv", "roacp.csv"},
                             {"Straße é.grl", "Straße é.csv", "Straße écp.csv"},
                             {"xéßü", "xcsv", "cp.csv"}}) {
        Case made(name.project);
        made.write();
        EXPECT_EQ(made.onlyBox(), made.folder / name.csv + " File is Created");
        EXPECT_TRUE(fs::exists(made.folder / name.csv));
        made.desktop.boxes.clear();
        made.writeList();
        EXPECT_EQ(made.onlyBox(), made.folder / name.list + " File is Created");
        EXPECT_TRUE(fs::exists(made.folder / name.list));
        EXPECT_EQ(made.desktop.boxes[0].title, "");
    }
}

TEST(CsvExport, TakesAPathWithADriveAsItsFolderHere) {
    Case made;
    const std::string home = getenv("HOME") != nullptr ? getenv("HOME") : "";
    setenv("HOME", made.folder.path().c_str(), 1);
    fs::create_directory(made.folder / "Road");
    made.book.setProjectPath("D:\\Road\\Site1.grl");
    made.writeList();
    setenv("HOME", home.c_str(), 1);
    EXPECT_EQ(made.onlyBox(), made.folder / "Road/Site1cp.csv" + " File is Created");
    EXPECT_TRUE(fs::exists(made.folder / "Road/Site1cp.csv"));
}

TEST(CsvExport, PutsAnUntitledBookIntoTheCurrentFolderAndSaysWhere) {
    Case made;
    made.book.Caption = sheet::Book::untitledCaption;
    const CurrentFolder here(made.folder.path());
    made.write();
    EXPECT_EQ(made.onlyBox(), "NoName.csv File is Created");
    ASSERT_THAT(made.desktop.statuses, SizeIs(1));
    EXPECT_THAT(made.desktop.statuses[0], StartsWith((fs::current_path() / "NoName.csv").string()));
    made.desktop.boxes.clear();
    made.writeList();
    EXPECT_EQ(made.onlyBox(), "NoNamecp.csv File is Created");
    EXPECT_EQ(made.folder.read("NoNamecp.csv"), std::string(head) + ",\r\n,,,,,,,,,,,\r\n");
}

TEST(CsvExport, DoesNothingWithoutACaptionThatHoldsAName) {
    Case made;
    const CurrentFolder here(made.folder.path());
    made.book.Caption = "ZavroGrl";
    made.write();
    EXPECT_THAT(made.desktop.statuses, IsEmpty());
    EXPECT_THAT(made.desktop.boxes, IsEmpty());
    made.book.Caption = "ZavroGrl-";
    made.write();
    made.expectRefused("Invalid procedure call or argument");
    EXPECT_TRUE(fs::is_empty(made.folder.path()));
}

TEST(CsvExport, ReplacesAnEarlierFileWholeAndShowsItsProgress) {
    Case made;
    made.folder.write("Site1.csv", std::string(5000, 'x'));
    made.book.MSFG.setRows(1);
    made.write();
    EXPECT_EQ(made.folder.read("Site1.csv"), std::string(head) + "\r\n");
    made.book.MSFG.setRows(4);
    made.write();
    EXPECT_THAT(made.desktop.progress, testing::ElementsAre(100, 25, 50, 75, 100));
    EXPECT_FALSE(made.desktop.progressShown);
    EXPECT_TRUE(made.book.MSFG.Visible());
}

TEST(CsvExport, SaysWhyAFileCannotBeMade) {
    {
        Case made("nowhere/Site1.grl");
        made.write();
        made.expectRefused("Path");
    }
    {
        Case made;
        fs::create_directory(made.folder / "Site1.csv");
        made.write();
        made.expectRefused("Path/File access error");
        EXPECT_TRUE(fs::is_directory(made.folder / "Site1.csv"));
    }
    {
        Case made;
        fs::create_symlink("/dev/full", made.folder / "Site1.csv");
        made.write();
        made.expectRefused("Disk full");
    }
    {
        Case made;
        fs::create_directory(made.folder / "Site1cp.csv");
        made.writeList();
        made.expectRefused("Path/File access error");
    }
}

TEST(CsvExport, LeavesTheOldFileInAFolderThatCannotBeWritten) {
    Case made;
    made.folder.write("Site1.csv", "old");
    fs::permissions(made.folder / "Site1.csv", fs::perms::owner_read | fs::perms::others_read);
    fs::permissions(made.folder.path(), fs::perms(0555));
    EXPECT_TRUE(asOrdinaryUser([&] {
        made.write();
        made.expectRefused("Path/File access error");
        return !testing::Test::HasFailure();
    }));
    fs::permissions(made.folder.path(), fs::perms(0755));
    EXPECT_EQ(made.folder.read("Site1.csv"), "old");
    EXPECT_THAT(std::vector<fs::path>(fs::directory_iterator(made.folder.path()), {}), SizeIs(1));
}
