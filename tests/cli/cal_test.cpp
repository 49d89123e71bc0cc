#include "basic/files.h"
#include "cli/cal.h"
#include "exchange/book_csv.h"
#include "project/book.h"

#include "field_book.h"
#include "temp_folder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

const std::string header = "Chainage,Left,Center,Right,B.S.,I.S.,F.S.,Hgt.Inst,R.Level.,Remark\r\n";

TEST(BookCsv, ReadsEveryForm) {
    const struct {
        const char* what;
        const char* lines;
        const char* written; // as it is written again
    } cases[] = {
        {"empty", "", ",,,,,,,,,\r\n"},
        {"short and blank lines, no end", "00-000,2.5\n\n\r\n,,,,1", "00-000,2.5,,,,,,,,\r\n,,,,1,,,,,\r\n"},
        {"a comma at the end", "a,,,,,,,,,rem,\r\n,,,,,,,,,,\r\n", "a,,,,,,,,,rem\r\n,,,,,,,,,\r\n"},
        {"commas in an unquoted remark", "a,,,,,,,,,b, c,,d,,\n", "a,,,,,,,,,\"b, c,,d,\"\r\n"},
        {"quoted fields", "\"a\",\"1,5\",,,,,,,,\"say \"\"x\"\"\"\n",
         "a,\"1,5\",,,,,,,,\"say \"\"x\"\"\"\r\n"},
        {"quoted line end and comma at the end", ",,,,,,,,,\"x\r\ny\",\nb\n",
         ",,,,,,,,,\"x\r\ny\"\r\nb,,,,,,,,,\r\n"},
        {"a quote inside", "a\"b,,,,,,,,,5\" pipe\n", "\"a\"\"b\",,,,,,,,,\"5\"\" pipe\"\r\n"},
        {"characters of several bytes", "\u00fc,,,,,,,,,\u20ac\n", "\u00fc,,,,,,,,,\u20ac\r\n"},
    };
    for (const auto& each : cases) {
        project::Book book;
        exchange::readBook(book.MSFG, "\xEF\xBB\xBF"
                                      "chainage ,x,\r\n" +
                                          std::string(each.lines));
        EXPECT_EQ(exchange::writeBook(book.MSFG), header + each.written) << each.what;
    }
}

struct Cal : testing::Test {
    TempFolder folder;
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;

    cli::ExitStatus run(const std::string& from, const std::string& to) {
        return cli::cal({from, to}, in, out, err);
    }
};

TEST_F(Cal, ReducesAFileOrAStream) {
    const std::string from = testData("books/nptel-ex14-1.csv");
    EXPECT_EQ(run(from, folder / "out.csv"), cli::Done);
    in.str(basic::readFile(from));
    EXPECT_EQ(run("-", ""), cli::Done);
    EXPECT_EQ(out.str(), folder.read("out.csv"));
    const std::string sums = "Sums agree: B.S. 9.620 - F.S. 9.985 = -0.365, level 100.000 to 99.635.\n";
    EXPECT_EQ(err.str(), sums + sums);
    project::Book book;
    exchange::readBook(book.MSFG, out.str());
    EXPECT_EQ(book.MSFG.Text(9, sheet::RLevel), "99.635");
    // What is written reads back to the same.
    in.clear();
    in.str(out.str());
    out.str("");
    EXPECT_EQ(run("-", "-"), cli::Done);
    EXPECT_EQ(out.str(), folder.read("out.csv"));
}

TEST_F(Cal, SaysWhatFailedAndWritesNothing) {
    const std::string absurd =
        folder.write("absurd.csv", header + ",,,,1,,,,100,\n,,,,,1e39,,,,\n,,,,,1,,,,\n");
    const struct {
        std::string in;
        std::string out;
        const char* said;
    } cases[] = {
        {folder.write("x.csv", "00-000,1,2\n"), "out", "line 1: "},
        {folder.write("z.csv", ""), "out", "line 1: "},
        {folder.write("y.csv", "Chainage\na\n\"b\nc,,\n"), "out", "line 3: a quoted field has no end"},
        {absurd, "out", "Cal stopped at row 2\nOverflow\n"}};
    for (const auto& each : cases) {
        err.str("");
        EXPECT_EQ(run(each.in, folder / each.out), cli::Failed) << each.said;
        EXPECT_NE(err.str().find(each.said), std::string::npos) << err.str();
    }
    EXPECT_FALSE(basic::fileExists(folder / "out"));
    EXPECT_EQ(out.str(), "");
}

} // namespace
