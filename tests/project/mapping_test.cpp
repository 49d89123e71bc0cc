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
    EXPECT_THAT(open(path), IsEmpty());
    const Rows back = rows();
    for (std::size_t at = 0; at < std::size(cases); ++at) {
        EXPECT_EQ(stored.at(at), cases[at].record) << cases[at].name;
        EXPECT_EQ(back.at(at), cases[at].loaded) << cases[at].name;
    }
}

TEST_F(MappingTest, LoadingSetsTheHeightAndTheCursor) {
    const std::string path = projectFile("a.grl", {",,,,,,,101.5", ",,,,,,,100.254", ",,,,,,,none", ""});
    EXPECT_THAT(open(path), IsEmpty());
    EXPECT_EQ(book.CurrentHI, 100.254F);
    EXPECT_EQ(state(), "a.grl a.grl a.grl 4,9");
    EXPECT_GE(desktop.gridFocused, 1);
    EXPECT_THAT(desktop.progress, testing::Each(testing::AllOf(testing::Ge(0), testing::Le(100))));
}

TEST_F(MappingTest, OffsetsOfRowOneAreNotCleared) {
    setRows({",9,8,7,old", ",6"});
    open(projectFile("a.grl", {",,,1.5", ",,,2.5"}));
    EXPECT_THAT(rows(), ElementsAre(",9,8,1.5", ",,,2.5"));
    EXPECT_EQ(book.notices.takeLine().text, "Row 1: keeps Left 9, Center 8 of the book before.");

    setRows({",9,,,,,,,,old", ",6"});
    open(projectFile("empty.grl", {}));
    EXPECT_THAT(rows(), ElementsAre(",9,,,,,,,,old"));
    EXPECT_THAT(run(project::appendProject, {folder / "empty.grl"}), IsEmpty());
    EXPECT_THAT(rows(), SizeIs(1));
    EXPECT_TRUE(book.MSFG.Visible());
    EXPECT_EQ(book.notices.takeLine().text, "Row 1: keeps Left 9, Remark old of a.grl.");

    book.Guarded = true; // nothing stays, and nothing is told
    open(folder / "empty.grl");
    EXPECT_THAT(rows(), ElementsAre(""));
    setRows({",9,8,7,old"});
    open(folder / "a.grl");
    EXPECT_THAT(rows(), ElementsAre(",,,1.5", ",,,2.5"));
    EXPECT_EQ(book.notices.takeLine().text, "");
}

TEST_F(MappingTest, NullsOfOtherProgramsFillNothing) {
    const std::string path = folder / "a.grl";
    makeDatabase(path, grlDesign());
    addRecords(path, project::connect, {{{"Rem", "all else Null"}}});
    open(path);
    EXPECT_EQ(rows(), remark("all else Null"));
    book.MSFG.setText(1, sheet::Center, "left of peg");
    run(project::saveProject);
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
        run(project::saveProject);
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
    run(project::saveProject);
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
    run(project::appendProject, {path});
    for (const char* added : {"00-010,,,1,,,,55.500", "CP,,0", ",,0"})
        expected.emplace_back(added);
    EXPECT_EQ(rows(), expected);
    EXPECT_EQ(book.CurrentHI, 55.5F);
    EXPECT_EQ(state(), "own.grl own.grl b.grl 7,9");
}

TEST_F(MappingTest, AppendThatFailsShowsTheDescriptionAlone) {
    setRows(remark("mine"));
    EXPECT_THAT(run(project::appendProject, {folder.write("text.grl", "no database")}),
                ElementsAre(testing::HasSubstr("Unrecognized database format")));
    EXPECT_THAT(run(project::appendProject, {folder / "missing.grl"}),
                ElementsAre(testing::Not(testing::HasSubstr("3024"))));
    for (const auto& none : std::vector<std::optional<std::string>>{std::nullopt, "*.grl", ""})
        EXPECT_THAT(run(project::appendProject, {none}), IsEmpty());
    EXPECT_EQ(rows(), remark("mine"));
    EXPECT_EQ(book.FileName, folder / "missing.grl");
}

TEST(SafeFieldValue, NullReadsAsADefaultOfTheType) {
    using dao::DataType;
    const std::pair<std::vector<DataType>, dao::Value> defaults[] = {
        {{DataType::Byte, DataType::Integer, DataType::Long, DataType::Currency, DataType::Single,
          DataType::Double, DataType::LongBinary},
         std::int32_t{0}},
        {{DataType::Text, DataType::Memo}, std::string()},
        {{DataType::Boolean}, false},
        {{DataType::Date}, "01-01-2001"},
        {{DataType::Binary, DataType::GUID, DataType::Numeric}, dao::Value()}};
    for (const auto& [types, value] : defaults)
        for (const DataType type : types)
            EXPECT_EQ(mdlTools::nullDefault(type), value) << static_cast<int>(type);
}

} // namespace
