#include "check.h"
#include "engine_fixture.h"
#include "random_rows.h"

namespace jet {
namespace {

/// Inserts, updates and deletes at random, keeping `model` in step.
void churn(Table table, Rows& model, Random& random, int changes) {
    for (int i = 0; i < changes; ++i) {
        const unsigned what = random() % 10;
        auto victim = model.begin();
        if (!model.empty()) std::advance(victim, random() % model.size());
        try {
            if (what < 5 || model.empty()) {
                Row row = randomRow(table, random);
                const RowId id = table.insert(row);
                ASSERT_FALSE(model.contains(id));
                model[id] = table.read(id);
                for (std::size_t c = 0; c < row.size(); ++c)
                    if (!table.columns()[c].autonumber) {
                        ASSERT_EQ(model[id][c], row[c]) << table.columns()[c].name;
                    }
            } else if (what < 8) {
                const Row row = randomRow(table, random);
                table.update(victim->first, row);
                victim->second = row;
            } else {
                table.erase(victim->first);
                model.erase(victim);
            }
        } catch (const Error& error) {
            ASSERT_TRUE(isRefusal(error.kind())) << error.what();
        }
    }
}

class SampleTest : public ::testing::TestWithParam<std::string> {
    void SetUp() override {
        if (GetParam().empty()) GTEST_SKIP() << "no sample databases";
    }
};

TEST_P(SampleTest, ReadsEveryTableAndFindsEveryRowByEveryIndex) {
    const Database db = Database::open(GetParam(), passwordOf(GetParam()), OpenMode::ReadOnly);
    for (const std::string& name : db.allTableNames())
        if (GetParam().find("unicodeCompV2003") == std::string::npos || name != "Table")
            expectIndexesMatch(db.table(name));
}

TEST_P(SampleTest, KeepsAModelThroughFiveHundredChangesATable) {
    const MemoryDisk disk(contentOf(GetParam()));
    std::map<std::string, Rows> models;
    std::vector<std::string> faultsBefore;
    {
        Database db = disk.open(passwordOf(GetParam()));
        faultsBefore = check(db);
        Random random(2003);
        for (const std::string& name : db.allTableNames()) {
            // The first two say where the others are; the third has bytes of fixed length, which come back
            // padded.
            if (name == "MSysObjects" || name == "MSysACEs" || name == "MSysAccessObjects") continue;
            const Table table = db.table(name);
            Rows& model = models[name] = rowsOf(table);
            churn(table, model, random, 500);
        }
        db.commit();
    }
    Database db = disk.open(passwordOf(GetParam()));
    for (const std::string& fault : check(db))
        EXPECT_TRUE(std::ranges::count(faultsBefore, fault) == 1) << fault;
    for (const auto& [name, model] : models) {
        const Table table = db.table(name);
        EXPECT_EQ(rowsOf(table), model) << name;
        expectIndexesMatch(table);
    }
}

/// What Access keeps in its own tables: forms, properties, modules, relations, and the catalog itself.
std::map<std::string, Rows> ownTablesOfAccess(const Database& db) {
    std::map<std::string, Rows> all;
    for (const std::string& name : db.allTableNames())
        if (name.starts_with("MSys")) all[name] = rowsOf(db.table(name));
    // The date of the last change is what may differ.
    const Table objects = db.table("MSysObjects");
    for (auto& [id, row] : all["MSysObjects"])
        row[static_cast<std::size_t>(*objects.column("DateUpdate"))] = Null{};
    return all;
}

TEST_P(SampleTest, TakesNewTablesAndColumns) {
    const MemoryDisk disk(contentOf(GetParam()));
    Rows model;
    std::size_t faultsBefore = 0;
    const std::map<std::string, Rows> before = ownTablesOfAccess(disk.open(passwordOf(GetParam())));
    const TableDesign design{
        .name = "Levels, new",
        .columns = {{.name = "Chn", .type = ColumnType::Text, .size = 25},
                    {.name = "Oft", .type = ColumnType::Double}},
        .indexes = {{.name = "Key", .columns = {{"Chn"}, {"Oft", false}}, .kind = IndexKind::PrimaryKey}}};
    {
        Database db = disk.open(passwordOf(GetParam()));
        faultsBefore = check(db).size();
        Random random(7);
        Rows ignored;
        churn(db.createTable(design), ignored, random, 300);
        for (const ColumnDesign& column :
             std::vector<ColumnDesign>{{.name = "Rem", .type = ColumnType::Memo},
                                       {.name = "Ok", .type = ColumnType::Boolean},
                                       {.name = "Rl", .type = ColumnType::Single}})
            for (const std::string& name : db.tableNames()) {
                const Rows old = rowsOf(db.table(name));
                db.addColumn(name, column);
                for (auto& [id, row] : rowsOf(db.table(name)))
                    ASSERT_TRUE(std::equal(old.at(id).begin(), old.at(id).end(), row.begin())) << name;
            }
        model = rowsOf(db.table(design.name));
        churn(db.table(design.name), model, random, 800);
        db.commit();
    }
    Database db = disk.open(passwordOf(GetParam()));
    EXPECT_EQ(rowsOf(db.table(design.name)), model);
    expectIndexesMatch(db.table(design.name));
    const std::vector<std::string> faults = check(db);
    EXPECT_EQ(faults.size(), faultsBefore) << (faults.empty() ? "" : faults.back());
    const std::map<std::string, Rows> after = ownTablesOfAccess(db);
    for (const auto& [name, rows] : before)
        for (const auto& [id, row] : rows)
            EXPECT_EQ(after.at(name).at(id), row) << name;
}

INSTANTIATE_TEST_SUITE_P(Access, SampleTest, ::testing::ValuesIn(samples()),
                         [](const auto& path) { return sampleName(path.param); });

} // namespace
} // namespace jet
