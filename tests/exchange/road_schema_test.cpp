#include "exchange/road_schema.h"

#include "error_number.h"
#include "jet/check.h"
#include "jet/database.h"
#include "jet/schema_text.h"
#include "road_fixture.h"

#include <map>

using exchange::TransferEnd;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// A road template of the user's own: the shipped schema with lines taken out or changed.
class SchemaTest : public RoadTest {
  protected:
    using Changes = std::initializer_list<std::pair<const char*, const char*>>;

    static jet::Schema schemaWith(Changes changes) {
        std::string text = TempFolder::readFile(ZAVRO_ROD_SCHEMA);
        for (const auto& [find, replace] : changes) {
            const std::size_t at = text.find(find);
            if (at == std::string::npos) throw std::invalid_argument(find);
            text.replace(at, text.find('\n', at) + 1 - at, replace);
        }
        return jet::parseSchema(text);
    }
    void makeTemplate(Changes changes) const {
        std::filesystem::remove(blank);
        const jet::Schema schema = schemaWith(changes);
        jet::Database database = jet::Database::create(blank, {schema.password});
        jet::createTables(database, schema);
        database.commit();
    }
    /// "Name Text(25)" of each field of LSect.
    static std::vector<std::string> fieldsOf(const std::string& path) {
        jet::Database database = jet::Database::open(path, "TarnVel");
        std::vector<std::string> fields;
        for (const jet::TableDesign& table : jet::schemaOf(database).tables)
            if (table.name == "LSect") fields = splitAt(jet::schemaText({{}, {table}}), '\n');
        std::erase_if(fields, [](const std::string& line) {
            return !line.starts_with(' ') || line.find("primary key") != std::string::npos;
        });
        for (std::string& field : fields) {
            field.erase(0, 4);
            field.erase(field.find(' '), field.rfind(' ') - field.find(' '));
        }
        return fields;
    }

    std::string blank = desktop.folder + "/Rod.mdb";
    const char* section = "00-000,3.15,,,,,,,11.366|00-000,,0,,,,,,11.350|00-000,,,3.15,,,,,11.514";
    const char* sectionRecords =
        "00-000,L,3.15,11.366,-,GG|00-000,C,0,11.35,11.35,GG|00-000,R,3.15,11.514,-,GG";
};

TEST_F(SchemaTest, TheFieldTableIsThatOfTheShippedTemplate) {
    const std::map<std::string, std::string> types{{"N", "Single"},     {"B", "Byte"},
                                                   {"T25", "Text(25)"}, {"T50", "Text(50)"},
                                                   {"T01", "Text(1)"},  {"Y", "YesNo"}};
    std::vector<std::string> table;
    for (int i = 1; i <= mdlTools::lSectFieldCount; ++i)
        table.push_back(mdlTools::LSectFieldName(i) + " " + types.at(mdlTools::LSectFieldType(i)));
    EXPECT_EQ(fieldsOf(blank), table);
    for (const int outside : {-1, 48}) {
        EXPECT_EQ(errorOf([&] { (void)mdlTools::LSectFieldName(outside); }), basic::SubscriptOutOfRange);
        EXPECT_EQ(errorOf([&] { (void)mdlTools::LSectFieldType(outside); }), basic::SubscriptOutOfRange);
        EXPECT_EQ(errorOf([&] { mdlTools::AddLSectField(static_cast<std::int16_t>(outside)); }),
                  basic::SubscriptOutOfRange);
    }
}

TEST_F(SchemaTest, MissingFieldsAreAddedInTheirOrder) {
    makeTemplate({{"    LExCrW ", ""},
                  {"    RExCrW ", ""},
                  {"    SElev ", ""},
                  {"    RFA ", ""},
                  {"    TKPer ", "    tkper    Byte\n"},
                  {"    Rem1 ", ""}});
    ASSERT_EQ(transfer(section), TransferEnd::Done);
    const std::vector<std::string> fields = fieldsOf(road);
    ASSERT_EQ(fields.size(), 47U);
    EXPECT_THAT(
        std::vector<std::string>(fields.end() - 5, fields.end()),
        ElementsAre("SElev Text(1)", "RFA Text(50)", "Rem1 Text(25)", "LExCrW Single", "RExCrW Single"));
    EXPECT_THAT(fields, Contains("tkper Byte"));
    EXPECT_EQ(cross(road), sectionRecords);
    EXPECT_EQ(records(road, "LSect", {"Chn", "TKPer", "LExCrW"}), "00-000,1,-");
    EXPECT_EQ(fieldsOf(blank).size(), 42U) << "the template itself stays as it is";
    makeTemplate({{"    LCOft ", ""}, {"    TKPer ", ""}});
    ASSERT_EQ(transfer(section), TransferEnd::Done);
    EXPECT_EQ(fieldsOf(roads + "/Site1X/Road.mdb").back(), "TKPer Byte");
}

TEST_F(SchemaTest, AMissingFlagIsTheEnginesSyntaxError) {
    for (const char* flag : {"    LG ", "    RG ", "    WC ", "    Chk "}) {
        makeTemplate({{flag, ""}, {"    LExCrW ", ""}});
        EXPECT_EQ(transfer(section), TransferEnd::Failed) << flag;
        EXPECT_THAT(messages(), ElementsAre("Syntax error in field definition."));
        EXPECT_THAT(filesIn(roads), IsEmpty());
        EXPECT_EQ(book.MSFG.Text(1, 8), "11.366");
        expectCleanDesk();
    }
}

TEST_F(SchemaTest, AUsersOwnTemplateKeepsWhatItHoldsBesides) {
    makeTemplate({{"    Oft      Double", "    Oft      Single\n    Soil     Text(20)\n"},
                  {"    RExCrW ", "    RExCrW   Double\n    Bridge   Memo\n"},
                  {"table Plan", "table Alignment\n    Name     Text(30)\n\ntable Plan\n"}});
    {
        dao::Database database = dao::OpenDatabase(blank, exchange::roadConnect);
        for (const auto& [table, field] :
             {std::pair{"Alignment", "Name"}, {"Plan", "Chn"}, {"dddd", "dddd"}}) {
            dao::Recordset rows = database.OpenRecordset(table);
            rows.AddNew();
            rows.Fields(field).setValue("old");
            rows.Update();
        }
        database.Close();
    }
    ASSERT_EQ(transfer(section), TransferEnd::Done);
    EXPECT_EQ(cross(road), sectionRecords);
    EXPECT_EQ(records(road, "Alignment", {"Name"}), "old");
    EXPECT_EQ(records(road, "Plan", {"Chn"}), "");
    EXPECT_THAT(records(road, "dddd", {"dddd"}), testing::Not(testing::HasSubstr("old")));

    // A Single offset is found again although 3.15 is another number there.
    EXPECT_EQ(transfer("00-000,3.15,,,,,,,11.366|00-000,3.15,,,,,,,11.366"), TransferEnd::Refused);
}

TEST_F(SchemaTest, TemplatesFromAccessTakeTheTransfer) {
    namespace fs = std::filesystem;
    const std::string samples = ZAVRO_JET_SAMPLES;
    if (samples.empty()) GTEST_SKIP() << "no databases made by Access (ZAVRO_JET_SAMPLES)";
    std::string rows = "1000,,0,,,,,,101.250";
    for (int chainage = 0; chainage < 1000; chainage += 5)
        for (const char* point : {",5,,", ",2.5,,", ",,0,", ",,,2.5", ",,,5"})
            rows += "|" + std::to_string(chainage) + point + ",,,,,101.250";
    for (const char* name : {"common1V1997", "indexV1997", "common2V2000", "compIndexV2003"}) {
        SCOPED_TRACE(name);
        fs::remove(blank);
        fs::copy_file(samples + "/" + name + ".mdb", blank);
        fs::permissions(blank, fs::perms(0644));
        std::vector<std::string> tables;
        {
            jet::Database database = jet::Database::open(blank);
            tables = database.tableNames();
            jet::createTables(database, schemaWith({{"    RNum2 ", ""}, {"    RFA ", ""}}));
            database.commit();
        }
        fs::permissions(blank, fs::perms(0444)); // as it comes from a disc
        fs::remove_all(roads + "/Site1");
        ASSERT_EQ(transfer(rows), TransferEnd::Done) << testing::PrintToString(messages());
        EXPECT_EQ(splitAt(cross(road), '|').size(), 1001U);
        EXPECT_EQ(splitAt(records(road, "LSect", {"Chn"}), '|').size(), 201U);
        jet::Database whole = jet::Database::open(road);
        EXPECT_THAT(whole.tableNames(), testing::IsSupersetOf(tables));
        EXPECT_THAT(jet::check(whole), IsEmpty());
    }
}

} // namespace
