#include "project_fixture.h"

#include "project/append.h"
#include "project/job_heading.h"

namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class HeadingTest : public ProjectTest {
  protected:
    static std::vector<std::string> tables(const std::string& path) {
        return dao::OpenDatabase(path, project::connect).TableNames();
    }
    void setHeading(const char* key, const char* text) {
        book.JobHeading.setText(sheet::Heading::find(key).value(), text);
    }
};

TEST_F(HeadingTest, ComesAndGoesWithTheFile) {
    const std::string path = folder / "a.grl";
    setRows(remark("a"));
    ASSERT_TRUE(project::makeProject(book, desktop, path).whole());
    EXPECT_THAT(tables(path), ElementsAre("Grl")); // no heading, no table
    setHeading("Work", "  Road \xC3\xA9  ");
    setHeading("surveyor", "N. N.");
    EXPECT_TRUE(project::isUnsaved(book));
    ASSERT_TRUE(project::rewriteProject(book, desktop).whole());
    EXPECT_FALSE(project::isUnsaved(book));
    EXPECT_THAT(tables(path), ElementsAre("Grl", "Job"));

    project::Book other;
    ASSERT_TRUE(project::openPath(other, desktop, path));
    EXPECT_EQ(other.JobHeading, book.JobHeading);
    EXPECT_EQ(other.JobHeading.text("work"), "Road \xC3\xA9");
    EXPECT_FALSE(project::isUnsaved(other));
    // What is taken away goes; a key of somebody else's stays; another book's Append brings no heading.
    {
        dao::Database database = dao::OpenDatabase(path, project::connect);
        dao::Recordset job = database.OpenRecordset("Job");
        job.AddNew();
        job.Fields("Key").setValue("theirs");
        job.Fields("Value").setValue("x");
        job.Update();
        database.Close();
    }
    setHeading("surveyor", "");
    setHeading("staff", "5 m");
    ASSERT_TRUE(project::rewriteProject(book, desktop).whole());
    dao::Database database = dao::OpenDatabase(path, project::connect);
    EXPECT_EQ(project::readHeading(database), book.JobHeading);
    EXPECT_EQ(database.OpenRecordset("Job").RecordCount(), 3);
    const sheet::Heading own = book.JobHeading;
    ASSERT_TRUE(project::makeProject(other, desktop, folder / "b.grl").whole());
    desktop.files = {folder / "b.grl"};
    project::appendProject(book, desktop);
    EXPECT_EQ(book.JobHeading, own);
}

TEST_F(HeadingTest, ATableOfAnotherShapeIsLeftAlone) {
    const std::string path = folder / "a.grl";
    setRows(remark("a"));
    ASSERT_TRUE(project::makeProject(book, desktop, path).whole());
    {
        dao::Database database = dao::OpenDatabase(path, project::connect);
        database.Execute("create table Job (Id Long primary key, Value Text(10))");
        database.Close();
    }
    EXPECT_TRUE(project::rewriteProject(book, desktop).whole()); // nothing to write
    setHeading("work", "x");
    EXPECT_EQ(project::rewriteProject(book, desktop).end, project::Saved::Partly);
    EXPECT_THAT(desktop.statuses.back(), HasSubstr("but not the heading"));
    EXPECT_TRUE(project::isUnsaved(book));
    ASSERT_TRUE(project::openPath(book, desktop, path));
    EXPECT_TRUE(book.JobHeading.empty());
}

TEST_F(HeadingTest, IsPartOfTheRecoveryCopy) {
    setRows(remark("a"));
    setHeading("weather", "wind\t5 \\ gusts\nrain");
    project::Recovery(book, desktop).keep();
    project::Book restored;
    desktop.answers = {desktop::Answer::Yes};
    project::Recovery(restored, desktop).offer();
    EXPECT_EQ(restored.JobHeading, book.JobHeading);
    EXPECT_EQ(restored.JobHeading.text("weather"), "wind\t5 \\ gusts\nrain");
}

} // namespace
