#include "project_fixture.h"

#include "project/append.h"
#include "project/recovery.h"
#include "sheet/cells.h"
#include "tools/safe_field_value.h"

using sheet::BackSight;
using sheet::Center;
using sheet::Chainage;
using sheet::ForeSight;
using sheet::HgtInst;
using sheet::InterSight;
using sheet::Left;
using sheet::Remark;
using sheet::Right;
using sheet::RLevel;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class MappingTest : public ProjectTest {
  protected:
    /// Fills records of a new project file directly, as another program would; no entry is Null.
    std::string foreignFile(const std::string& name,
                            const std::vector<std::vector<std::pair<const char*, dao::Value>>>& content,
                            const jet::TableDesign& design = grlDesign()) {
        std::string path = folder / name;
        makeDatabase(path, design);
        dao::Database database = dao::OpenDatabase(path, project::connect);
        dao::Recordset grl = database.OpenRecordset("Grl");
        for (const auto& record : content) {
            grl.AddNew();
            for (const auto& [field, value] : record)
                grl.Fields(field).setValue(value);
            grl.Update();
        }
        database.Close();
        return path;
    }
};

TEST_F(MappingTest, RowsBecomeRecordsAndComeBack) {
    struct Case {
        const char* name;
        Row written;
        Row record; // Chn, Oft, B, i, F, HI, rl, Rem
        Row loaded;
    };
    const std::vector<Case> cases{
        {"empty row",
         row({}),
         {"", "0", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Center, "0"}})},
        {"every column",
         row({{Chainage, "01-250"},
              {Left, "2.50"},
              {BackSight, "1.525"},
              {InterSight, "1.10"},
              {ForeSight, "0.9"},
              {HgtInst, "101.525"},
              {RLevel, "100.425"},
              {Remark, "gate"}}),
         {"01-250", "-2.5", "1.525", "1.10", "0.9", "101.525", "100.425", "gate"},
         row({{Chainage, "01-250"},
              {Left, "2.5"},
              {BackSight, "1.525"},
              {InterSight, "1.10"},
              {ForeSight, "0.9"},
              {HgtInst, "101.525"},
              {RLevel, "100.425"},
              {Remark, "gate"}})},
        {"right goes before left",
         row({{Left, "2.5"}, {Right, "1.5"}}),
         {"", "1.5", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Right, "1.5"}})},
        {"left goes before center",
         row({{Left, "3.000"}, {Center, "0"}}),
         {"", "-3", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Left, "3"}})},
        {"center 2",
         row({{Center, "2"}}),
         {"", "2", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Right, "2"}})},
        {"center -2",
         row({{Center, "-2"}}),
         {"", "-2", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Left, "2"}})},
        {"left 0 is no minus zero",
         row({{Left, "0"}}),
         {"", "0", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Center, "0"}})},
        {"a number is read as far as it goes",
         row({{Right, " 3.5m"}}),
         {"", "3.5", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Right, "3.5"}})},
        {"no number on the right",
         row({{Right, "x"}}),
         {"", "0", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Center, "0"}})},
        {"chainage is cleaned",
         row({{Chainage, " CH 0-120 "}, {Center, "0"}}),
         {" CH 0-120 ", "0", "Null", "Null", "Null", "Null", "Null", "Null"},
         row({{Chainage, "0-120"}, {Center, "0"}})},
        {"change point",
         row({{Chainage, "CP"}, {HgtInst, "100.5"}, {RLevel, "99.12345"}}),
         {"CP", "0", "Null", "Null", "Null", "100.5", "99.12345", "Null"},
         row({{Chainage, "CP"}, {Center, "0"}, {HgtInst, "100.500"}, {RLevel, "99.123"}})},
        {"levels that are no numbers",
         row({{Center, "0"}, {HgtInst, "abc"}, {RLevel, "?"}}),
         {"", "0", "Null", "Null", "Null", "abc", "?", "Null"},
         row({{Center, "0"}, {HgtInst, "abc"}, {RLevel, "?"}})},
        {"a remark of any characters",
         row({{Center, "0"}, {Remark, "\xC3\xA9 \xE2\x82\xAC \xE0\xA4\x95\nsecond"}}),
         {"", "0", "Null", "Null", "Null", "Null", "Null", "\xC3\xA9 \xE2\x82\xAC \xE0\xA4\x95\nsecond"},
         row({{Center, "0"}, {Remark, "\xC3\xA9 \xE2\x82\xAC \xE0\xA4\x95\nsecond"}})},
    };
    Rows written;
    Rows expectedRecords;
    Rows loaded;
    for (const Case& c : cases) {
        written.push_back(c.written);
        expectedRecords.push_back(c.record);
        loaded.push_back(c.loaded);
    }
    const std::string path = projectFile("a.grl", written);
    const Rows stored = records(path);
    open(path);
    const Rows back = rows();
    ASSERT_THAT(stored, SizeIs(cases.size()));
    ASSERT_THAT(back, SizeIs(cases.size()));
    for (std::size_t at = 0; at < cases.size(); ++at) {
        EXPECT_EQ(stored[at], expectedRecords[at]) << cases[at].name;
        EXPECT_EQ(back[at], loaded[at]) << cases[at].name;
    }
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(MappingTest, LoadingSetsTheHeightAndTheCursor) {
    const std::string path = projectFile(
        "a.grl", {row({{HgtInst, "101.5"}}), row({{HgtInst, "100.254"}}), row({{HgtInst, "none"}}), row({})});
    book.CurrentHI = 7;
    open(path);
    EXPECT_EQ(book.CurrentHI, 100.254F);
    EXPECT_EQ(book.MSFG.Row(), 4);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
    EXPECT_GE(desktop.gridFocused, 1);
    EXPECT_EQ(book.Caption, "ZavroGrl-" + path);
    EXPECT_EQ(book.CurrentFile, path);
    for (const float percent : desktop.progress) {
        EXPECT_GE(percent, 0);
        EXPECT_LE(percent, 100);
    }
}

TEST_F(MappingTest, OffsetsOfRowOneAreNotCleared) {
    setRows({row({{Left, "9"}, {Center, "8"}, {Right, "7"}, {BackSight, "old"}}), row({{Left, "6"}})});
    const std::string path = projectFile("a.grl", {row({{Right, "1.5"}}), row({{Right, "2.5"}})});
    open(path);
    EXPECT_THAT(rows(),
                ElementsAre(row({{Left, "9"}, {Center, "8"}, {Right, "1.5"}}), row({{Right, "2.5"}})));
}

TEST_F(MappingTest, EmptyTableKeepsRowOne) {
    setRows({row({{Left, "9"}, {Remark, "old"}}), row({{Left, "6"}})});
    const std::string path = folder / "empty.grl";
    std::filesystem::copy_file(desktop.folder + "/grl.mdb", path);
    open(path);
    EXPECT_THAT(rows(), ElementsAre(row({{Left, "9"}, {Remark, "old"}})));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_TRUE(book.MSFG.Visible());
    desktop.files.emplace_back(path);
    project::appendProject(book, desktop);
    EXPECT_THAT(rows(), SizeIs(1));
}

TEST_F(MappingTest, NullsOfOtherProgramsFillNothing) {
    const std::string path = foreignFile("a.grl", {{{"Rem", std::string("all else Null")}}});
    open(path);
    EXPECT_THAT(rows(), ElementsAre(row({{Remark, "all else Null"}})));
    book.MSFG.setText(1, Center, "left of peg");
    project::saveProject(book, desktop);
    EXPECT_EQ(records(path)[0][1], "Null") << "a center text that is no number";
}

TEST_F(MappingTest, NumericColumnsKeepTheirTypes) {
    for (const jet::ColumnType type :
         {jet::ColumnType::Double, jet::ColumnType::Single, jet::ColumnType::Currency,
          jet::ColumnType::Integer, jet::ColumnType::Memo}) {
        const std::string name = "numeric" + std::to_string(static_cast<int>(type)) + ".grl";
        const std::string path = foreignFile(name,
                                             {{{"Chn", std::string("00-010")},
                                               {"Oft", -2.5},
                                               {"B", std::int32_t{1}},
                                               {"HI", std::int32_t{101}},
                                               {"rl", std::int32_t{-99}}},
                                              {{"Oft", 0.0}, {"i", std::int32_t{0}}}},
                                             grlDesign(type));
        open(path);
        EXPECT_THAT(rows(), ElementsAre(row({{Chainage, "00-010"},
                                             {Left, "2.5"},
                                             {BackSight, "1"},
                                             {HgtInst, "101.000"},
                                             {RLevel, "-99.000"}}),
                                        row({{Center, "0"}, {InterSight, "0"}})))
            << name;
        EXPECT_EQ(book.CurrentHI, 101) << name;
        book.MSFG.setText(2, ForeSight, "3");
        project::saveProject(book, desktop);
        EXPECT_EQ(records(path)[1][4], "3") << name;
        dao::Database database = dao::OpenDatabase(path, project::connect);
        EXPECT_EQ(database.OpenRecordset("Grl").Fields("B").Type(),
                  dao::OpenDatabase(path + ".bak", project::connect).OpenRecordset("Grl").Fields("B").Type())
            << name;
        setRows({row({})});
    }
}

TEST_F(MappingTest, TextsThatTheFileRefusesAreCountedAndTheBookStaysUnsaved) {
    const std::string path = foreignFile("a.grl", {}, grlDesign(jet::ColumnType::Double));
    open(path);
    setRows({row({{BackSight, "1.525"}}),
             row({{InterSight, "1.2m"}, {Remark, std::string(256, 'x').c_str()}}),
             row({{Chainage, "a chainage longer than 25 characters"}, {Remark, "kept"}})});
    project::saveProject(book, desktop);
    EXPECT_THAT(records(path), ElementsAre(Row{"", "0", "1.525", "Null", "Null", "Null", "Null", "Null"},
                                           Row{"", "0", "Null", "Null", "Null", "Null", "Null", "Null"},
                                           Row{"Null", "0", "Null", "Null", "Null", "Null", "Null", "kept"}));
    EXPECT_EQ(desktop.statuses.back(),
              "Saved " + path +
                  ", but 3 texts do not fit the file and were left out: I.S. in row 2 is "
                  "the first.");
    EXPECT_TRUE(project::isUnsaved(book)) << "the recovery copy is kept";
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(MappingTest, AppendAddsBelowTheLastRow) {
    const std::string path =
        projectFile("b.grl", {row({{Chainage, "00-010"}, {Right, "1"}, {HgtInst, "55.5"}}),
                              row({{Chainage, "CP"}}), row({})});
    const Rows before{row({{RLevel, "100"}}), row({{Chainage, "00-000"}}), row({}), row({{Left, "4"}}),
                      row({})};
    setRows(before);
    book.setProjectPath("/books/own.grl");
    book.CurrentFile = "/books/own.grl";
    desktop.files.emplace_back(path);
    project::appendProject(book, desktop);
    Rows expected = before;
    expected.push_back(row({{Chainage, "00-010"}, {Right, "1"}, {HgtInst, "55.500"}}));
    expected.push_back(row({{Chainage, "CP"}, {Center, "0"}}));
    expected.push_back(row({{Center, "0"}}));
    EXPECT_EQ(rows(), expected);
    EXPECT_EQ(book.CurrentHI, 55.5F);
    EXPECT_EQ(book.MSFG.Row(), 8);
    EXPECT_EQ(book.Caption, "ZavroGrl-/books/own.grl");
    EXPECT_EQ(book.CurrentFile, "/books/own.grl");
    EXPECT_EQ(book.FileName, path);
    EXPECT_FALSE(book.BookChanged);
    EXPECT_TRUE(book.MSFG.Visible());
}

TEST_F(MappingTest, AppendThatFailsShowsTheDescriptionAlone) {
    setRows({row({{RLevel, "100"}})});
    const Rows before = rows();
    desktop.files = {folder.write("text.grl", "no database"), folder / "missing.grl", std::nullopt, "*.grl",
                     ""};
    for (int time = 0; time < 5; ++time)
        project::appendProject(book, desktop);
    ASSERT_THAT(desktop.boxes, SizeIs(2));
    EXPECT_THAT(desktop.boxes[0].text, testing::HasSubstr("Unrecognized database format"));
    EXPECT_THAT(desktop.boxes[1].text, testing::Not(testing::HasSubstr("3024")));
    EXPECT_EQ(rows(), before);
    EXPECT_EQ(book.FileName, folder / "missing.grl");
}

TEST(SafeFieldValue, NullReadsAsADefaultOfTheType) {
    using dao::DataType;
    for (const DataType type : {DataType::Byte, DataType::Integer, DataType::Long, DataType::Currency,
                                DataType::Single, DataType::Double, DataType::LongBinary})
        EXPECT_EQ(mdlTools::nullDefault(type), dao::Value(std::int32_t{0})) << static_cast<int>(type);
    for (const DataType type : {DataType::Text, DataType::Memo})
        EXPECT_EQ(mdlTools::nullDefault(type), dao::Value(std::string()));
    EXPECT_EQ(mdlTools::nullDefault(DataType::Boolean), dao::Value(false));
    EXPECT_EQ(mdlTools::nullDefault(DataType::Date), dao::Value(std::string("01-01-2001")));
    for (const DataType type : {DataType::Binary, DataType::GUID, DataType::Numeric})
        EXPECT_TRUE(dao::isNull(mdlTools::nullDefault(type)));
}

} // namespace
