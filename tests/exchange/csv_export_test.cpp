#include "exchange/csv_export.h"

#include "field_book.h"
#include "scripted_desktop.h"
#include "sheet/change_points.h"
#include "temp_folder.h"

#include <filesystem>
#include <gmock/gmock.h>

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

const std::string head = "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark,";

/// A book with its project file in a folder of its own, which is the current one and the home.
struct CsvExport : testing::Test {
    TempFolder folder;
    ScriptedDesktop desktop;
    project::Book book;

    CsvExport() {
        book.setProjectPath(folder / "Site1.grl");
        fs::current_path(folder.path());
        setenv("HOME", folder.path().c_str(), 1);
    }
    ~CsvExport() override { fs::current_path("/"); }

    void write() { exchange::exportCsv(book, desktop); }
    void writeList() {
        sheet::Grid list = sheet::listChangePoints(book, desktop);
        exchange::exportChangePoints(list, book, desktop);
        EXPECT_TRUE(list.Visible());
    }
    /// The file is there and the user was told so, in one box.
    void expectCreated(const std::string& path) {
        ASSERT_THAT(desktop.boxes, SizeIs(1));
        EXPECT_EQ(desktop.boxes[0].text, path + " File is Created");
        EXPECT_TRUE(fs::exists(path)) << path;
        desktop.boxes.clear();
    }
    /// Nothing was told as made; the window is as before and the status bar gives the reason.
    void expectRefused(const char* reason) {
        EXPECT_THAT(desktop.boxes, IsEmpty());
        EXPECT_TRUE(book.MSFG.Visible());
        EXPECT_FALSE(desktop.progressShown);
        ASSERT_THAT(desktop.statuses, SizeIs(1));
        EXPECT_THAT(desktop.statuses[0], HasSubstr(reason));
        desktop.statuses.clear();
    }
};

TEST_F(CsvExport, WritesRealBooksAndTheirChangePoints) {
    for (const std::string name : {"fleming-tbm-loop", "gsi-pv16", "nptel-ex14-1", "tramo1-derived"}) {
        loadBook(book, name);
        write();
        writeList();
        EXPECT_EQ(folder.read("Site1.csv"), TempFolder::readFile(testData("exchange/" + name + ".csv")));
        EXPECT_EQ(folder.read("Site1cp.csv"), TempFolder::readFile(testData("exchange/" + name + "cp.csv")));
    }
    EXPECT_THAT(desktop.statuses, IsEmpty());
}

TEST_F(CsvExport, WritesTextsAsTheyStand) {
    for (const std::string text :
         {"kerb, left side", "\"quoted\"", "Brücke – 東側 ½", " blanks ", "two\nlines", "a\tb", "=1+1"}) {
        book.MSFG.setText(1, sheet::Remark, text);
        write();
        const std::string mark = text.starts_with("Br") ? "\xEF\xBB\xBF" : "";
        EXPECT_EQ(folder.read("Site1.csv"), mark + head + "\r\n,,,,,,,,," + text + ",\r\n");
        writeList();
        EXPECT_EQ(folder.read("Site1cp.csv"), mark + head + ",\r\n,,,,,,,,," + text + ",,\r\n");
    }
}

TEST_F(CsvExport, NamesTheFileAfterTheProject) {
    fs::create_directory(folder / "Road");
    const std::tuple<std::string, const char*, const char*> cases[] = {
        {folder / "Site1.grl", "Site1.csv", "Site1cp.csv"},
        {folder / "a.b.GRL", "a.b.csv", "a.bcp.csv"},
        {folder / "roadgrl", "roadcsv", "roacp.csv"},
        {folder / "Straße é.grl", "Straße é.csv", "Straße écp.csv"},
        {folder / "xéßü", "xcsv", "cp.csv"},
        {"D:\\Road\\Site1.grl", "Road/Site1.csv", "Road/Site1cp.csv"}};
    for (const auto& [project, csv, list] : cases) {
        book.setProjectPath(project);
        write();
        expectCreated(folder / csv);
        writeList();
        expectCreated(folder / list);
    }
    EXPECT_THAT(desktop.statuses, IsEmpty());
    book.Caption = project::Book::untitledCaption;
    write();
    expectCreated("NoName.csv");
    EXPECT_THAT(desktop.statuses, ElementsAre((fs::current_path() / "NoName.csv").string() + " is created"));
    writeList();
    expectCreated("NoNamecp.csv");
}

TEST_F(CsvExport, ReplacesAnEarlierFileWholeAndShowsItsProgress) {
    folder.write("Site1.csv", std::string(5000, 'x'));
    book.MSFG.setRows(4);
    write();
    EXPECT_EQ(folder.read("Site1.csv").size(), head.size() + 2 + 3 * 12);
    EXPECT_THAT(desktop.progress, ElementsAre(25, 50, 75, 100));
    EXPECT_FALSE(desktop.progressShown);
    EXPECT_TRUE(book.MSFG.Visible());
    for (const auto& caption : {"ZavroGrl", "ZavroGrl-"}) { // no name in it
        book.Caption = caption;
        std::filesystem::remove(folder / "Site1.csv");
        desktop.statuses.clear();
        write();
        EXPECT_TRUE(fs::is_empty(folder.path()));
    }
    EXPECT_THAT(desktop.statuses, ElementsAre(HasSubstr("Invalid procedure call or argument")));
}

TEST_F(CsvExport, SaysWhyAFileCannotBeMade) {
    book.setProjectPath(folder / "nowhere/Site1.grl");
    write();
    expectRefused("Path not found");
    book.setProjectPath(folder / "Site1.grl");
    for (const char* name : {"Site1.csv", "Site1cp.csv"})
        fs::create_directory(folder / name);
    write();
    expectRefused("Path/File access error");
    writeList();
    expectRefused("Path/File access error");
    EXPECT_TRUE(fs::is_directory(folder / "Site1.csv"));
    fs::create_symlink("/dev/full", folder / "full.csv");
    book.setProjectPath(folder / "full.grl");
    write();
    expectRefused("Disk full");
}

} // namespace
