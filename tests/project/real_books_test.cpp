#include "command_output.h"
#include "project_fixture.h"

#include <cstdio>

namespace {

std::string printed(const char* format, double number) {
    char text[32];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

double number(const std::string& text) {
    return std::strtod(text.c_str(), nullptr);
}

/// Texts with commas between them, none behind the last text.
std::string lineOf(const std::vector<std::string>& texts) {
    std::string line;
    for (const std::string& text : texts)
        line += text + ',';
    return line.substr(0, line.find_last_not_of(',') + 1);
}

/// What a row is after a save and a load, by the rules of the file: one signed offset a row, levels with
/// three decimals.
std::string afterSave(const std::string& row) {
    std::vector<std::string> cells = splitAt(row, ',');
    cells.resize(sheet::columnCount);
    double offset = number(cells[2]);
    if (!cells[1].empty()) offset = -number(cells[1]);
    if (!cells[3].empty()) offset = number(cells[3]);
    cells[1] = offset < 0 ? printed("%g", -offset) : "";
    cells[2] = offset == 0 ? "0" : "";
    cells[3] = offset > 0 ? printed("%g", offset) : "";
    for (const std::size_t level : {7U, 8U})
        if (!cells[level].empty()) cells[level] = printed("%.3f", number(cells[level]));
    return lineOf(cells);
}

class RealBooksTest : public ProjectTest, public testing::WithParamInterface<const char*> {
  protected:
    RealBooksTest() {
        loadBook(book, GetParam());
        content = rows();
        desktop.files = {path};
        project::saveProject(book, desktop);
    }
    Rows content;
    const std::string path = folder / "book.grl";
};

TEST_P(RealBooksTest, ComesBackByTheRulesOfTheFileHoweverOftenItIsSaved) {
    ASSERT_GT(content.size(), 5);
    Rows expected;
    for (const std::string& row : content)
        expected.push_back(afterSave(row));
    open(path);
    EXPECT_EQ(rows(), expected);
    project::saveProject(book, desktop);
    const auto size = std::filesystem::file_size(path);
    for (int time = 0; time < 50; ++time)
        project::saveProject(book, desktop);
    EXPECT_EQ(std::filesystem::file_size(path), size);
    open(path);
    EXPECT_EQ(rows(), expected);
}

TEST_P(RealBooksTest, AnotherReaderSeesAllRowsInOrder) {
    if (!outputOf("command -v mdb-export")) GTEST_SKIP() << "mdb-export is not here";
    const std::optional<std::string> exported =
        outputOf("mdb-export -H -Q -d , '" + path + "' Grl 2>/dev/null");
    ASSERT_TRUE(exported);
    Rows seen = splitAt(*exported, '\n');
    seen.pop_back(); // behind the last line's end
    for (std::string& record : seen) {
        std::vector<std::string> fields = splitAt(record, ',');
        fields[1] = printed("%g", number(fields[1])); // it prints more digits
        if (fields[0].empty()) fields[0] = "''";      // it tells no difference to Null
        record = lineOf(fields);
    }
    EXPECT_EQ(seen, records(path));
    EXPECT_EQ(seen.size(), content.size());
}

INSTANTIATE_TEST_SUITE_P(Books, RealBooksTest,
                         testing::Values("gsi-pv16", "sprinter-211264", "ge120-loop", "fleming-tbm-loop",
                                         "nptel-ex14-1", "geocalc-abcg", "tramo1-xsec", "wheatley-xsec",
                                         "tramo1-derived"),
                         [](const auto& book) {
                             std::string name = book.param;
                             std::erase(name, '-');
                             return name;
                         });

} // namespace
