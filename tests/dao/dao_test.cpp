#include "road.h"

#include "error_number.h"
#include "temp_folder.h"

#include <gmock/gmock.h>

namespace {

using testing::ElementsAre;

class RoadDatabase : public testing::Test {
  protected:
    TempFolder folder;
    std::string path = makeDatabase(folder / "Road.mdb");
    dao::Database road = dao::OpenDatabase(path, ";pwd=TarnVel");

    /// Closes and opens again.
    void reopen() {
        road.Close();
        road = dao::OpenDatabase(path, ";PWD=TarnVel");
    }
};

TEST_F(RoadDatabase, RecordsComeBackInTheOrderWritten) {
    auto titles = road.OpenRecordset("DDDD");
    EXPECT_TRUE(titles.BOF() && titles.EOF_());
    for (const char* line : {"name of work", "sub-division", "division", "$surveyor", ""}) {
        titles.AddNew();
        titles.Fields(0).setValue(line);
        titles.Update();
    }
    EXPECT_EQ(titles.RecordCount(), 5);
    reopen();
    auto read = road.OpenRecordset("dddd");
    EXPECT_FALSE(read.BOF() || read.EOF_());
    EXPECT_THAT(column(read, "dddd"),
                ElementsAre("name of work", "sub-division", "division", "$surveyor", ""));
    read.MoveFirst();
    EXPECT_EQ(read.PercentPosition(), 0);
    read.MoveNext();
    EXPECT_EQ(read.PercentPosition(), 20);
}

TEST_F(RoadDatabase, SeekFindsExactlyTheKey) {
    auto section = road.OpenRecordset("CSect");
    EXPECT_EQ(errorOf([&] { section.setIndex("None"); }), 3015);
    EXPECT_EQ(errorOf([&] { section.Seek("=", {"01-250", "L", 1.5}); }), 3019);
    addPoint(section, "01-250", "L", 1.5);
    addPoint(section, "01-250", "L", -1.5);
    addPoint(section, "012-50", "L", 1.5);
    section.setIndex("cso");
    struct Case {
        std::vector<dao::Value> key;
        bool found;
    };
    const std::vector<Case> cases = {
        {{"01-250", "L", 1.5}, true},     {{"01-250", "l", "1.50"}, true}, {{"01-250 ", "L", -1.5}, true},
        {{"01-250", "L", 0.0}, false},    {{"01250", "L", 1.5}, false},    {{"012-50", "L", 1.5F}, true},
        {{"0-1250", "L", 1.5}, false},    {{"012-50", "R", 1.5}, false},   {{"012-50"}, true},
        {{dao::Null{}, "L", 1.5}, false},
    };
    for (const Case& c : cases) {
        section.Seek("=", c.key);
        EXPECT_EQ(!section.NoMatch(), c.found) << dao::toText(c.key[0]);
        if (c.found)
            EXPECT_EQ(section.Fields("Side").value(), dao::Value("L"));
        else
            EXPECT_EQ(errorOf([&] { static_cast<void>(section.Fields("Side").value()); }), 3021);
    }
    EXPECT_EQ(errorOf([&] { section.Seek("=", {"01-250", "L", "far"}); }), 3421);
    EXPECT_EQ(errorOf([&] { section.Seek(">", {"01-250"}); }), 3251);
}

TEST_F(RoadDatabase, IndexGivesTheOrder) {
    auto section = road.OpenRecordset("CSect");
    for (const char* chainage : {"02-000", "00-500", "01-000"})
        addPoint(section, chainage, "C", 0);
    EXPECT_THAT(column(section, "Chn"), ElementsAre("02-000", "00-500", "01-000"));
    section.setIndex("CSO");
    EXPECT_THAT(column(section, "Chn"), ElementsAre("00-500", "01-000", "02-000"));
    section.Seek("=", {"00-500", "C", 0.0});
    section.MoveNext();
    EXPECT_EQ(section.Fields("Chn").value(), dao::Value("01-000"));
    addPoint(section, "01-500", "C", 0);
    section.MoveNext();
    EXPECT_EQ(section.Fields("Chn").value(), dao::Value("01-500"));
}

TEST_F(RoadDatabase, ARefusedRecordIsNotStored) {
    auto section = road.OpenRecordset("CSect");
    addPoint(section, "01-250", "C", 0);
    EXPECT_EQ(errorOf([&] { addPoint(section, "01-250", "c", -0.0); }), 3022);
    section.AddNew();
    section.Fields("Chn").setValue("01-300");
    section.Fields("Side").setValue("C");
    EXPECT_EQ(errorOf([&] { section.Update(); }), 3058);
    section.AddNew();
    EXPECT_EQ(errorOf([&] { section.Fields("Side").setValue("LR"); }), 3163);
    EXPECT_EQ(errorOf([&] { section.Fields("Grl").setValue("high"); }), 3421);
    EXPECT_EQ(section.RecordCount(), 1);
    // An edit that would take another row's key leaves the row as it was.
    addPoint(section, "01-300", "C", 0);
    section.setIndex("CSO");
    section.Seek("=", {"01-300", "C", 0.0});
    section.Edit();
    section.Fields("Chn").setValue("01-250");
    section.Fields("Grl").setValue(7.0);
    EXPECT_EQ(errorOf([&] { section.Update(); }), 3022);
    section.Seek("=", {"01-300", "C", 0.0});
    ASSERT_FALSE(section.NoMatch());
    EXPECT_TRUE(dao::isNull(section.Fields("Grl").value()));
}

TEST_F(RoadDatabase, FieldsRefuseNullAndEmptyTextsAsTheirPropertiesSay) {
    const std::string rules = makeDatabase(folder / "rules.mdb", R"(
table T
    Id   Counter required
    Name Text(9) required zero-length
    Rem  Text(9)
)");
    auto database = dao::OpenDatabase(rules, ";pwd=TarnVel");
    auto records = database.OpenRecordset("T");
    EXPECT_TRUE(records.Fields("Name").Required() && records.Fields("Name").AllowZeroLength());
    const auto add = [&](const dao::Value& name, const dao::Value& remark) {
        records.AddNew();
        records.Fields("Name").setValue(name);
        records.Fields("Rem").setValue(remark);
        return errorOf([&] { records.Update(); });
    };
    EXPECT_EQ(add(dao::Null{}, "x"), 3314);
    EXPECT_EQ(add("", ""), 3315);
    EXPECT_EQ(add("", dao::Null{}), 0);
    EXPECT_EQ(records.RecordCount(), 1);
    records.MoveFirst();
    records.Edit();
    records.Fields("Name").setValue(dao::Null{});
    EXPECT_EQ(errorOf([&] { records.Update(); }), 3314);
}

TEST_F(RoadDatabase, EditChangesOneRecordInAllItsIndexes) {
    auto section = road.OpenRecordset("CSect");
    addPoint(section, "01-250", "L", 2);
    addPoint(section, "01-250", "R", 2);
    section.MoveFirst();
    section.Edit();
    section.Fields("Chn").setValue("09-999");
    section.Fields("calc").setValue(true);
    EXPECT_EQ(section.Fields("Chn").value(), dao::Value("09-999")) << "the copy buffer shows what is set";
    section.Update();
    reopen();
    auto read = road.OpenRecordset("CSect");
    read.setIndex("CSO");
    read.Seek("=", {"01-250", "L", 2.0});
    EXPECT_TRUE(read.NoMatch());
    read.Seek("=", {"09-999", "L", 2.0});
    ASSERT_FALSE(read.NoMatch());
    EXPECT_EQ(read.Fields("calc").value(), dao::Value(true));
}

TEST_F(RoadDatabase, DeletingWhileWalkingEmptiesTheTable) {
    auto section = road.OpenRecordset("CSect");
    for (int i = 0; i < 500; ++i)
        addPoint(section, std::to_string(i).c_str(), "C", i);
    section.MoveFirst();
    float last = 0;
    while (!section.EOF_()) {
        section.Delete();
        EXPECT_EQ(errorOf([&] { static_cast<void>(section.Fields(0).value()); }), 3167);
        EXPECT_EQ(errorOf([&] { section.Edit(); }), 3167);
        EXPECT_GE(section.PercentPosition(), last);
        last = section.PercentPosition();
        section.MoveNext();
    }
    EXPECT_EQ(section.RecordCount(), 0);
    EXPECT_EQ(errorOf([&] { section.MoveNext(); }), 3021);
    EXPECT_EQ(errorOf([&] { section.MoveFirst(); }), 3021);
    EXPECT_EQ(errorOf([&] { section.Delete(); }), 3021);
}

TEST_F(RoadDatabase, ExecuteEmptiesAndExtendsTables) {
    auto section = road.OpenRecordset("LSect");
    section.AddNew();
    section.Fields("Chn").setValue("00-000");
    section.Update();
    section.Close();
    road.Execute("alter table lsect add LExCrW single");
    road.Execute("alter table LSect add RFA Text(50)");
    EXPECT_EQ(errorOf([&] { road.Execute("alter table LSect add LG"); }), 3292);
    EXPECT_EQ(errorOf([&] { road.Execute("alter table LSect add LG Flag"); }), 3292);
    EXPECT_EQ(errorOf([&] { road.Execute("alter table LSect add frl Single"); }), 3380);
    EXPECT_EQ(errorOf([&] { road.Execute("alter table None add F Single"); }), 3371);
    EXPECT_EQ(errorOf([&] { road.Execute("Delete * From None"); }), 3078);
    reopen();
    auto wider = road.OpenRecordset("LSect");
    ASSERT_EQ(wider.FieldCount(), 4);
    EXPECT_EQ(wider.Fields(2).Name(), "LExCrW");
    EXPECT_EQ(wider.Fields(2).Type(), dao::DataType::Single);
    EXPECT_EQ(wider.Fields("rfa").Size(), 50);
    EXPECT_TRUE(dao::isNull(wider.Fields("RFA").value()));
    wider.Edit();
    wider.Fields("RFA").setValue("x");
    wider.Update();
    EXPECT_EQ(wider.Fields("RFA").value(), dao::Value("x"));
    road.Execute("Delete * From LSECT");
    EXPECT_EQ(wider.RecordCount(), 0);
    EXPECT_EQ(errorOf([&] { static_cast<void>(wider.Fields("RFA").value()); }), 3167);
}

TEST_F(RoadDatabase, WhatIsNotThereOrNotOpen) {
    EXPECT_EQ(errorOf([&] { static_cast<void>(road.OpenRecordset("None")); }), 3078);
    EXPECT_THAT(road.TableNames(), testing::UnorderedElementsAre("CSect", "LSect", "dddd"));
    auto section = road.OpenRecordset("CSect");
    EXPECT_EQ(errorOf([&] { static_cast<void>(section.Fields("None")); }), 3265);
    EXPECT_EQ(errorOf([&] { static_cast<void>(section.Fields(5)); }), 3265);
    EXPECT_EQ(errorOf([&] { section.Update(); }), 3020);
    EXPECT_EQ(errorOf([&] { section.Fields(0).setValue("x"); }), 3020);
    EXPECT_EQ(errorOf([&] { section.Edit(); }), 3021);
    section.Close();
    EXPECT_EQ(errorOf([&] { section.AddNew(); }), 3420);
    auto open = road.OpenRecordset("CSect");
    road.Close();
    EXPECT_EQ(errorOf([&] { open.AddNew(); }), 3420);
    EXPECT_EQ(errorOf([&] { road.Execute("Delete * From CSect"); }), 3420);
}

} // namespace
