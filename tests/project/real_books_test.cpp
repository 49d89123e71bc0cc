#include "project_fixture.h"

#include <cstdlib>

namespace {

double number(const std::string& text) {
    return std::strtod(text.c_str(), nullptr);
}

class RealBooksTest : public ProjectTest, public testing::WithParamInterface<const char*> {
  protected:
    RealBooksTest() {
        loadBook(book, GetParam());
        content = rows();
        run(project::saveProject, {path});
    }
    Rows content;
    const std::string path = folder / "book.grl";
};

TEST_P(RealBooksTest, FiftySavesKeepSizeReadingsAndOrder) {
    ASSERT_GT(content.size(), 5);
    open(path);
    const Rows loaded = rows();
    ASSERT_EQ(loaded.size(), content.size());
    for (std::size_t row = 0; row < content.size(); ++row) {
        std::vector<std::string> was = splitAt(content[row], ',');
        std::vector<std::string> is = splitAt(loaded[row], ',');
        for (auto* cells : {&was, &is})
            cells->resize(sheet::columnCount);
        for (const int col : {0, 4, 5, 6, 9})
            EXPECT_EQ(is[std::size_t(col)], was[std::size_t(col)]) << "row " << row + 1;
        for (const int col : {1, 3, 7, 8})
            EXPECT_NEAR(number(is[std::size_t(col)]), number(was[std::size_t(col)]), 0.0005)
                << "row " << row + 1;
    }
    run(project::saveProject);
    const auto size = std::filesystem::file_size(path);
    for (int time = 0; time < 50; ++time)
        run(project::saveProject);
    EXPECT_EQ(std::filesystem::file_size(path), size);
    open(path);
    EXPECT_EQ(rows(), loaded);
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
