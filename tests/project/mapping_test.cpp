#include "project_fixture.h"

#include "project/append.h"
#include "tools/safe_field_value.h"

#include <sys/stat.h>

using jet::ColumnType;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

class MappingTest : public ProjectTest {
  protected:
    /// Adds records as another program would; what is not given is Null.
    static void addRecords(const std::string& path, const std::string& connect,
                           const std::vector<std::vector<std::pair<const char*, dao::Value>>>& content) {
        dao::Database database = dao::OpenDatabase(path, connect);
        dao::Recordset grl = database.OpenRecordset("Grl");
        for (const auto& record : content) {
            grl.AddNew();
            for (const auto& [field, value] : record)
                grl.Fields(field).setValue(value);
            grl.Update();
        }
        database.Close();
    }
};

TEST_F(MappingTest, RowsBecomeRecordsAndComeBack) {
    struct Case {
        const char* name;
        const char* written; ///< Chainage, Left, Center, Right, B.S., I.S., F.S., Hgt.Inst, R.Level., Remark
        const char* record;
        const char* loaded;
    };
    const Case cases[] = {
        {"empty row", "", "'',0", ",,0"},
        {"every column", "01-250,2.50,,,1.525,1.10,0.9,101.525,100.425,gate",
         "01-250,-2.5,1.525,1.10,0.9,101.525,100.425,gate",
         "01-250,2.5,,,1.525,1.10,0.9,101.525,100.425,gate"},
        {"right goes before left", ",2.5,,1.5", "'',1.5", ",,,1.5"},
        {"left goes before center", ",3.000,0", "'',-3", ",3"},
        {"center 2", ",,2", "'',2", ",,,2"},
        {"center -2", ",,-2", "'',-2", ",2"},
        {"left 0 is no minus zero", ",0", "'',0", ",,0"},
        {"a number is read as far as it goes", ",,, 3.5m", "'',3.5", ",,,3.5"},
        {"no number on the right", ",,,x", "'',0", ",,0"},
        {"chainage is cleaned", " CH 0-120 ,,0", " CH 0-120 ,0", "0-120,,0"},
        {"levels get three decimals", "CP,,,,,,,100.5,99.12345", "CP,0,,,,100.5,99.12345",
         "CP,,0,,,,,100.500,99.123"},
        {"levels that are no numbers", ",,0,,,,,abc,?", "'',0,,,,abc,?", ",,0,,,,,abc,?"},
        {"any characters", ",,0,,,,,,,\xC3\xA9 \xE2\x82\xAC\nsecond",
         "'',0,,,,,,\xC3\xA9 \xE2\x82\xAC\nsecond", ",,0,,,,,,,\xC3\xA9 \xE2\x82\xAC\nsecond"},
    };
    Rows written;
    for (const Case& c : cases)
        written.push_back(c.written);
    const std::string path = projectFile("a.grl", written);
    const Rows stored = records(path);
    open(path);
    const Rows back = rows();
    ASSERT_THAT(stored, SizeIs(std::size(cases)));
    ASSERT_THAT(back, SizeIs(std::size(cases)));
    for (std::size_t at = 0; at < std::size(cases); ++at) {
        EXPECT_EQ(stored[at], cases[at].record) << cases[at].name;
        EXPECT_EQ(back[at], cases[at].loaded) << cases[at].name;
    }
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(MappingTest, LoadingSetsTheHeightAndTheCursor) {
    const std::string path = projectFile("a.grl", {",,,,,,,101.5", ",,,,,,,100.254", ",,,,,,,none", ""});
    open(path);
    EXPECT_EQ(book.CurrentHI, 100.254F);
    EXPECT_EQ(book.MSFG.Row(), 4);
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_FALSE(desktop.progressShown);
    EXPECT_GE(desktop.gridFocused, 1);
    EXPECT_EQ(book.Caption, "ZavroGrl-" + path);
    EXPECT_EQ(book.CurrentFile, path);
    EXPECT_THAT(desktop.progress, testing::Each(testing::AllOf(testing::Ge(0), testing::Le(100))));
}

TEST_F(MappingTest, OffsetsOfRowOneAreNotCleared) {
    setRows({",9,8,7,old", ",6"});
    open(projectFile("a.grl", {",,,1.5", ",,,2.5"}));
    EXPECT_THAT(rows(), ElementsAre(",9,8,1.5", ",,,2.5"));

    setRows({",9,,,,,,,,old", ",6"});
    open(projectFile("empty.grl", {}));
    EXPECT_THAT(rows(), ElementsAre(",9,,,,,,,,old"));
    desktop.files = {folder / "empty.grl"};
    project::appendProject(book, desktop);
    EXPECT_THAT(rows(), SizeIs(1));
    EXPECT_THAT(desktop.boxes, IsEmpty());
    EXPECT_TRUE(book.MSFG.Visible());
}

TEST_F(MappingTest, NullsOfOtherProgramsFillNothing) {
    const std::string path = folder / "a.grl";
    makeDatabase(path, grlDesign());
    addRecords(path, project::connect, {{{"Rem", "all else Null"}}});
    open(path);
    EXPECT_EQ(rows(), remark("all else Null"));
    book.MSFG.setText(1, sheet::Center, "left of peg");
    project::saveProject(book, desktop);
    EXPECT_EQ(records(path)[0], "'',,,,,,,all else Null") << "a center text that is no number";
}

// In files of our own making and, where they are here, in ones that Access made.
TEST_F(MappingTest, NumericColumnsKeepTheirTypes) {
    struct Case {
        ColumnType type;
        const char* sample; ///< null: a new file
    };
    for (const Case& c :
         {Case{ColumnType::Double, nullptr}, Case{ColumnType::Single, nullptr},
          Case{ColumnType::Currency, nullptr}, Case{ColumnType::Integer, nullptr},
          Case{ColumnType::Memo, nullptr}, Case{ColumnType::Double, "common1V1997.mdb"},
          Case{ColumnType::Double, "common2V2000.mdb"}, Case{ColumnType::Double, "common2V2003.mdb"}}) {
        SCOPED_TRACE(testing::Message() << static_cast<int>(c.type) << (c.sample ? c.sample : ""));
        const std::string path = folder / "numeric.grl";
        std::filesystem::remove(path);
        std::string connect = project::connect;
        if (c.sample == nullptr) {
            makeDatabase(path, grlDesign(c.type));
        } else {
            const std::string sample = ZAVRO_JET_SAMPLES + std::string("/") + c.sample;
            if (!std::filesystem::exists(sample)) continue;
            std::filesystem::copy_file(sample, path);
            chmod(path.c_str(), 0644);
            connect.clear();
            jet::Database database = jet::Database::open(path);
            database.createTable(grlDesign(c.type));
            database.commit();
        }
        const std::vector<std::string> tables = dao::OpenDatabase(path, connect).TableNames();
        addRecords(path, connect,
                   {{{"Chn", "CH 00-010"}, {"Oft", -2.5}, {"B", 1}, {"HI", 101}, {"rl", -99}},
                    {{"Oft", 0.0}, {"i", 0}}});
        open(path);
        EXPECT_THAT(rows(), ElementsAre("00-010,2.5,,,1,,,101.000,-99.000", ",,0,,,0"));
        EXPECT_EQ(book.CurrentHI, 101);
        book.MSFG.setText(2, sheet::ForeSight, "3");
        project::saveProject(book, desktop);
        open(path);
        EXPECT_THAT(rows(), ElementsAre("00-010,2.5,,,1,,,101.000,-99.000", ",,0,,,0,3"));
        EXPECT_THAT(desktop.boxes, IsEmpty());
        dao::Database saved = dao::OpenDatabase(path, connect);
        EXPECT_EQ(saved.TableNames(), tables);
        EXPECT_EQ(saved.OpenRecordset("Grl").Fields("B").Type(),
                  dao::OpenDatabase(path + ".bak", connect).OpenRecordset("Grl").Fields("B").Type());
        setRows({""});
    }
}

TEST_F(MappingTest, TextsThatTheFileRefusesAreCountedAndTheBookStaysUnsaved) {
    const std::string path = folder / "a.grl";
    makeDatabase(path, grlDesign(ColumnType::Double));
    open(path);
    setRows({",,,,1.525", ",,,,,1.2m,,,," + std::string(256, 'x'),
             "a chainage longer than 25 characters,,,,,,,,,kept"});
    project::saveProject(book, desktop);
    EXPECT_THAT(records(path), ElementsAre("'',0,1.525", "'',0", ",0,,,,,,kept"));
    EXPECT_EQ(desktop.statuses.back(), "Saved " + path +
                                           ", but 3 texts do not fit the file and were left out: I.S. in "
                                           "row 2 is the first.");
    EXPECT_TRUE(project::isUnsaved(book)) << "the recovery copy is kept";
    EXPECT_THAT(desktop.boxes, IsEmpty());
}

TEST_F(MappingTest, AppendAddsBelowTheLastRow) {
    const std::string path = projectFile("b.grl", {"00-010,,,1,,,,55.5", "CP", ""});
    Rows expected{",,,,,,,,100", "00-000", ",4", ""};
    setRows(expected);
    book.setProjectPath("/books/own.grl");
    book.CurrentFile = "/books/own.grl";
    desktop.files = {path};
    project::appendProject(book, desktop);
    for (const char* added : {"00-010,,,1,,,,55.500", "CP,,0", ",,0"})
        expected.emplace_back(added);
    EXPECT_EQ(rows(), expected);
    EXPECT_EQ(book.CurrentHI, 55.5F);
    EXPECT_EQ(book.MSFG.Row(), 7);
    EXPECT_EQ(book.Caption, "ZavroGrl-/books/own.grl");
    EXPECT_EQ(book.CurrentFile, "/books/own.grl");
    EXPECT_EQ(book.FileName, path);
    EXPECT_FALSE(book.BookChanged);
    EXPECT_TRUE(book.MSFG.Visible());
}

TEST_F(MappingTest, AppendThatFailsShowsTheDescriptionAlone) {
    setRows(remark("mine"));
    desktop.files = {folder.write("text.grl", "no database"), folder / "missing.grl", std::nullopt, "*.grl",
                     ""};
    for (int time = 0; time < 5; ++time)
        project::appendProject(book, desktop);
    EXPECT_THAT(messages(), ElementsAre(testing::HasSubstr("Unrecognized database format"),
                                        testing::Not(testing::HasSubstr("3024"))));
    EXPECT_EQ(rows(), remark("mine"));
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
