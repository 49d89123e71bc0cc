#include "exchange/road_schema.h"
#include "exchange/transfer.h"

#include "basic/runtime_error.h"
#include "jet/check.h"
#include "jet/database.h"
#include "jet/schema_text.h"
#include "road_fixture.h"

#include <array>
#include <fstream>
#include <iterator>
#include <map>
#include <set>

using exchange::TransferEnd;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

TEST(LSectFields, NamesAndTypesInTheirOrder) {
    mdlTools::InitLSectFieldTable();
    struct Entry {
        int index;
        const char *name, *type;
    } entries[] = {
        {0, "", ""},         {1, "Chn", "T25"},    {2, "Grl", "N"},     {7, "LG", "Y"},
        {8, "RG", "Y"},      {11, "SElev", "T01"}, {14, "WC", "Y"},     {19, "LFA", "N"},
        {20, "RFA", "T50"},  {25, "Chk", "Y"},     {34, "TKPer", "B"},  {40, "Rem", "T25"},
        {41, "RNum", "N"},   {42, "Rem1", "T25"},  {44, "Rem2", "T25"}, {46, "LExCrW", "N"},
        {47, "RExCrW", "N"},
    };
    for (const Entry& entry : entries) {
        EXPECT_EQ(mdlTools::LSectFieldName(entry.index), entry.name);
        EXPECT_EQ(mdlTools::LSectFieldType(entry.index), entry.type) << entry.name;
    }
    std::set<std::string> names;
    for (int i = 1; i <= mdlTools::lSectFieldCount; ++i)
        names.insert(mdlTools::LSectFieldName(i));
    EXPECT_EQ(names.size(), 47U);
    for (int outside : {-1, 48, 1000}) {
        EXPECT_THROW((void)mdlTools::LSectFieldName(outside), basic::RuntimeError);
        EXPECT_THROW((void)mdlTools::LSectFieldType(outside), basic::RuntimeError);
    }
}

using SchemaTest = RoadTest;

/// The text schema of the shipped template, with lines taken out or changed: a "find -> replace" list.
std::string schemaWith(std::initializer_list<std::pair<const char*, const char*>> changes) {
    std::ifstream in(ZAVRO_ROD_SCHEMA, std::ios::binary);
    std::string text{std::istreambuf_iterator<char>(in), {}};
    for (const auto& [find, replace] : changes) {
        const std::size_t at = text.find(find);
        if (at == std::string::npos) {
            ADD_FAILURE() << find;
            continue;
        }
        text.replace(at, text.find('\n', at) + 1 - at, replace);
    }
    return text;
}

void makeDatabase(const std::string& path, const std::string& schemaText) {
    std::filesystem::remove(path);
    const jet::Schema schema = jet::parseSchema(schemaText);
    jet::Database database = jet::Database::create(path, {schema.password});
    jet::createTables(database, schema);
    database.commit();
}

std::vector<std::string> fieldsOf(const std::string& path, const char* table) {
    dao::Database database = dao::OpenDatabase(path, exchange::roadConnect);
    dao::Recordset rows = database.OpenRecordset(table);
    std::vector<std::string> names;
    for (int i = 0; i < rows.FieldCount(); ++i)
        names.push_back(rows.Fields(i).Name());
    return names;
}

const std::vector<std::string> section{"00-000,3.15,,,,,,,11.366,", "00-000,,0,,,,,,11.350,",
                                       "00-000,,,3.15,,,,,11.514,"};
const std::vector<std::string> sectionRecords{"00-000,L,3.15,11.366,-,GG", "00-000,C,0,11.35,11.35,GG",
                                              "00-000,R,3.15,11.514,-,GG"};

TEST_F(SchemaTest, ShippedTemplateHoldsTheFieldsInOrder) {
    dao::Database database = dao::OpenDatabase(desktop.folder + "/Rod.mdb", exchange::roadConnect);
    dao::Recordset lSect = database.OpenRecordset("LSect");
    ASSERT_EQ(lSect.FieldCount(), mdlTools::lSectFieldCount);
    const std::map<std::string, std::pair<dao::DataType, int>> types{
        {"N", {dao::DataType::Single, 4}},  {"B", {dao::DataType::Byte, 1}},
        {"T25", {dao::DataType::Text, 25}}, {"T50", {dao::DataType::Text, 50}},
        {"T01", {dao::DataType::Text, 1}},  {"Y", {dao::DataType::Boolean, 1}}};
    for (int i = 0; i < lSect.FieldCount(); ++i) {
        dao::Field field = lSect.Fields(i);
        EXPECT_EQ(field.Name(), mdlTools::LSectFieldName(i + 1));
        const auto& [type, size] = types.at(mdlTools::LSectFieldType(i + 1));
        EXPECT_EQ(field.Type(), type) << field.Name();
        EXPECT_EQ(field.Size(), size) << field.Name();
    }
}

TEST_F(SchemaTest, MissingFieldsAreAddedInTheirOrder) {
    makeDatabase(desktop.folder + "/Rod.mdb", schemaWith({{"    LExCrW ", ""},
                                                          {"    RExCrW ", ""},
                                                          {"    SElev ", ""},
                                                          {"    RFA ", ""},
                                                          {"    TKPer ", "    tkper    Byte\n"},
                                                          {"    Rem1 ", ""}}));
    keyed(section);
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    const std::string road = roads + "/Site1/Road.mdb";
    const std::vector<std::string> fields = fieldsOf(road, "LSect");
    ASSERT_EQ(fields.size(), 47U);
    EXPECT_THAT(std::vector<std::string>(fields.end() - 5, fields.end()),
                ElementsAre("SElev", "RFA", "Rem1", "LExCrW", "RExCrW"));
    EXPECT_THAT(fields, testing::Contains("tkper"));
    dao::Database database = dao::OpenDatabase(road, exchange::roadConnect);
    dao::Recordset lSect = database.OpenRecordset("LSect");
    const std::pair<const char*, std::pair<dao::DataType, int>> added[] = {
        {"SElev", {dao::DataType::Text, 1}},
        {"RFA", {dao::DataType::Text, 50}},
        {"Rem1", {dao::DataType::Text, 25}},
        {"LExCrW", {dao::DataType::Single, 4}}};
    for (const auto& [name, type] : added) {
        EXPECT_EQ(lSect.Fields(name).Type(), type.first) << name;
        EXPECT_EQ(lSect.Fields(name).Size(), type.second) << name;
    }
    EXPECT_EQ(cross(road), sectionRecords);
    EXPECT_THAT(records(road, "LSect", {"Chn", "TKPer", "LExCrW"}), ElementsAre("00-000,1,-"));
    EXPECT_EQ(fieldsOf(desktop.folder + "/Rod.mdb", "LSect").size(), 42U)
        << "the template itself stays as it is";
}

TEST_F(SchemaTest, AMissingFlagIsTheEnginesSyntaxError) {
    for (const char* flag : {"    LG ", "    RG ", "    WC ", "    Chk "}) {
        makeDatabase(desktop.folder + "/Rod.mdb", schemaWith({{flag, ""}, {"    LExCrW ", ""}}));
        keyed(section);
        desktop.boxes.clear();
        EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Failed) << flag;
        EXPECT_THAT(messages(), ElementsAre("Syntax error in field definition."));
        EXPECT_THAT(filesIn(roads), IsEmpty());
        EXPECT_EQ(book.MSFG.Text(1, 8), "11.366");
        expectCleanDesk();
    }
}

TEST_F(SchemaTest, AddingOutsideTheTableIsARangeError) {
    for (std::int16_t index : {std::int16_t{-1}, std::int16_t{48}}) {
        try {
            mdlTools::AddLSectField(index);
            ADD_FAILURE() << index;
        } catch (const basic::RuntimeError& error) {
            EXPECT_EQ(error.number(), basic::SubscriptOutOfRange);
        }
    }
}

TEST_F(SchemaTest, AUsersOwnTemplateKeepsWhatItHoldsBesides) {
    makeDatabase(desktop.folder + "/Rod.mdb",
                 schemaWith({{"    Oft      Double", "    Oft      Single\n    Soil     Text(20)\n"},
                             {"    RExCrW ", "    RExCrW   Double\n    Bridge   Memo\n"},
                             {"table Plan", "table Alignment\n    Name     Text(30)\n\ntable Plan\n"}}));
    {
        dao::Database blank = dao::OpenDatabase(desktop.folder + "/Rod.mdb", exchange::roadConnect);
        for (const auto& [table, field] :
             {std::pair{"Alignment", "Name"}, {"Plan", "Chn"}, {"dddd", "dddd"}}) {
            dao::Recordset rows = blank.OpenRecordset(table);
            rows.AddNew();
            rows.Fields(field).setValue("old");
            rows.Update();
        }
        blank.Close();
    }
    keyed(section);
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done);
    const std::string road = roads + "/Site1/Road.mdb";
    EXPECT_EQ(cross(road), sectionRecords);
    EXPECT_THAT(records(road, "Alignment", {"Name"}), ElementsAre("old"));
    EXPECT_THAT(records(road, "Plan", {"Chn"}), IsEmpty());
    EXPECT_THAT(records(road, "dddd", {"dddd"}), testing::Not(testing::Contains("old")));

    // A Single offset is found again although 3.15 is another number there.
    keyed({"00-000,3.15,,,,,,,11.366,", "00-000,3.15,,,,,,,11.366,"});
    EXPECT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Refused);
}

class SampleTemplate : public RoadTest, public testing::WithParamInterface<const char*> {};

TEST_P(SampleTemplate, FromAccessTakesTheTransfer) {
    const std::string sample = std::string(ZAVRO_JET_SAMPLES) + "/" + GetParam();
    if (!std::filesystem::exists(sample)) GTEST_SKIP() << "no samples";
    const std::string blank = desktop.folder + "/Rod.mdb";
    std::filesystem::copy_file(sample, blank, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(blank, std::filesystem::perms(0644));
    std::vector<std::string> before;
    {
        jet::Database database = jet::Database::open(blank);
        before = database.tableNames();
        jet::createTables(database, jet::parseSchema(schemaWith({{"    RNum2 ", ""}, {"    RFA ", ""}})));
        database.commit();
    }
    std::filesystem::permissions(blank, std::filesystem::perms(0444)); // as it comes from a disc
    std::vector<std::string> rows;
    for (int chainage = 0; chainage < 400; ++chainage)
        for (const char* point : {"5,,", "2.5,,", ",0,", ",,2.5", ",,5"})
            rows.push_back(std::to_string(chainage * 5) + "," + point + ",,,,,101.250,");
    keyed(rows);
    ASSERT_EQ(exchange::transfer(book, desktop, frame), TransferEnd::Done)
        << testing::PrintToString(messages());
    const std::string road = roads + "/Site1/Road.mdb";
    EXPECT_EQ(records(road, "CSect", {"Chn"}).size(), 2000U);
    EXPECT_EQ(records(road, "LSect", {"Chn"}).size(), 400U);
    dao::Database database = dao::OpenDatabase(road, exchange::roadConnect);
    EXPECT_THAT(database.TableNames(), testing::IsSupersetOf(before));
    dao::Recordset cSect = database.OpenRecordset("CSect");
    cSect.setIndex("cso");
    for (int row = 1; row < book.MSFG.Rows(); ++row) {
        const char side = "LLCRR"[(row - 1) % 5];
        const double offset = std::array{5.0, 2.5, 0.0, 2.5, 5.0}[std::size_t(row - 1) % 5];
        cSect.Seek("=", {book.MSFG.Text(row, 0), std::string(1, side), offset});
        ASSERT_FALSE(cSect.NoMatch()) << "row " << row;
    }
    database.Close();
    jet::Database whole = jet::Database::open(road);
    EXPECT_THAT(jet::check(whole), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Jet3AndJet4, SampleTemplate,
                         testing::Values("common1V1997.mdb", "indexV1997.mdb", "common2V2000.mdb",
                                         "compIndexV2003.mdb"),
                         [](const auto& sample) {
                             return std::filesystem::path(sample.param).stem().string();
                         });

} // namespace
