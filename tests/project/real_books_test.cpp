#include "command_output.h"
#include "field_book.h"
#include "project_fixture.h"

#include <array>
#include <cstdio>
#include <sstream>

using testing::SizeIs;

namespace {

/// What a row is after a save and a load, by the rules of the file: one signed offset a row, levels with
/// three decimals.
Row afterSave(Row row) {
    const auto number = [](const std::string& text) { return std::strtod(text.c_str(), nullptr); };
    const auto shortest = [](double value) {
        std::ostringstream text;
        text << value;
        return text.str();
    };
    double offset = row[2].empty() ? 0 : number(row[2]);
    if (!row[1].empty()) offset = -number(row[1]);
    if (!row[3].empty()) offset = number(row[3]);
    row[1] = offset < 0 ? shortest(-offset) : "";
    row[2] = offset == 0 ? "0" : "";
    row[3] = offset > 0 ? shortest(offset) : "";
    for (const std::size_t level : {7U, 8U}) {
        if (row[level].empty()) continue;
        std::array<char, 32> text{};
        std::snprintf(text.data(), text.size(), "%.3f", number(row[level]));
        row[level] = text.data();
    }
    return row;
}

class RealBooksTest : public ProjectTest, public testing::WithParamInterface<const char*> {
  protected:
    RealBooksTest() {
        content = bookRows(GetParam());
        content.erase(content.begin()); // the header
        path = folder / (std::string(GetParam()) + ".grl");
        setRows(content);
        desktop.files = {path};
        project::saveProject(book, desktop);
    }
    Rows content;
    std::string path;
};

TEST_P(RealBooksTest, ComesBackByTheRulesOfTheFile) {
    ASSERT_GT(content.size(), 5);
    Rows expected;
    for (const Row& row : content)
        expected.push_back(afterSave(row));
    sheet::Book other;
    other.FileName = path;
    ASSERT_TRUE(project::op(other, desktop));
    EXPECT_EQ(rowsOf(other.MSFG), expected);
}

TEST_P(RealBooksTest, FiftySavesKeepSizeAndOrder) {
    open(path);
    const Rows loaded = rows();
    project::saveProject(book, desktop);
    const auto size = std::filesystem::file_size(path);
    for (int time = 0; time < 50; ++time)
        project::saveProject(book, desktop);
    EXPECT_EQ(std::filesystem::file_size(path), size);
    open(path);
    EXPECT_EQ(rows(), loaded);
}

TEST_P(RealBooksTest, OtherReadersSeeAllRowsInOrder) {
    if (!outputOf("command -v mdb-export")) GTEST_SKIP() << "mdb-export is not here";
    const std::optional<std::string> exported =
        outputOf("mdb-export -H -Q -d '|' -0 NULL '" + path + "' Grl 2>/dev/null");
    ASSERT_TRUE(exported);
    std::istringstream lines(*exported);
    Rows seen;
    for (std::string line; std::getline(lines, line);) {
        Row fields;
        std::istringstream parts(line);
        for (std::string field; std::getline(parts, field, '|');)
            fields.push_back(field);
        fields.resize(8);
        fields[1] = std::to_string(std::strtod(fields[1].c_str(), nullptr));
        seen.push_back(std::move(fields));
    }
    Rows ours = records(path);
    for (Row& record : ours) {
        record[1] = std::to_string(std::strtod(record[1].c_str(), nullptr));
        for (std::string& field : record)
            if (field == "Null" || field.empty()) field = "NULL"; // mdb-export tells no difference
    }
    EXPECT_THAT(seen, SizeIs(content.size()));
    EXPECT_EQ(seen, ours);
}

TEST_P(RealBooksTest, AReaderOfAnotherLanguageSeesTheSame) {
    const std::string modules = ZAVRO_NODE;
    if (!std::filesystem::exists(modules + "/node_modules/mdb-reader") || !outputOf("command -v node"))
        GTEST_SKIP() << "mdb-reader is not here";
    std::string expected;
    for (const Row& record : records(path)) {
        expected += expected.empty() ? "[{" : ",{";
        std::size_t field = 0;
        for (const char* name : {"Chn", "Oft", "B", "i", "F", "HI", "rl", "Rem"}) {
            const std::string& value = record[field++];
            expected += std::string(field == 1 ? "\"" : ",\"") + name + "\":";
            expected += value == "Null" ? "null" : field == 2 ? value : '"' + value + '"';
        }
        expected += '}';
    }
    EXPECT_EQ(outputOf("node '" ZAVRO_TESTS "/support/dump_table.mjs' '" + modules + "' '" + path +
                       "' Grl MoraKin"),
              expected + "]\n");
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
