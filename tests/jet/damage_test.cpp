#include "check.h"
#include "layout.h"
#include "page_mutator.h"
#include "random_rows.h"
#include "rich_file.h"
#include "schema_text.h"

namespace jet {
namespace {

/// Wrong bytes where structure stands; now and then the file is cut short as well.
Bytes damaged(Bytes content, unsigned seed) {
    fuzz::damagePages(content, content[0x14] == 0 ? jet3Layout.pageSize : jet4Layout.pageSize, seed);
    if (seed % 40 == 0) content.resize(content.size() * (seed % 7) / 7);
    return content;
}

/// Reads, changes and commits whatever the file still shows. Only errors of the engine may come out.
void useEverything(const MemoryDisk& disk, const std::string& password, unsigned seed) {
    Random random(seed);
    std::optional<Database> db;
    const auto tolerant = [](const auto& action) { (void)errorOf(action); };
    tolerant([&] { db = disk.open(password); });
    if (!db) return;
    tolerant([&] { (void)check(*db); });
    tolerant([&] { (void)schemaText(schemaOf(*db)); });
    for (const std::string& name : db->allTableNames()) {
        tolerant([&] { (void)rowsOf(db->table(name)); });
        tolerant([&] {
            const Table table = db->table(name);
            for (std::size_t i = 0; i < table.indexes().size(); ++i)
                (void)table.seekAll(static_cast<int>(i), {});
        });
    }
    for (const std::string& name : db->tableNames())
        tolerant([&] {
            Table table = db->table(name);
            for (int i = 0; i < 30; ++i)
                table.insert(randomRow(table, random));
            for (Cursor cursor = table.scan(); cursor.next();) {
                if (random() % 8 == 0)
                    table.erase(cursor.id());
                else if (random() % 8 == 1)
                    table.update(cursor.id(), randomRow(table, random));
            }
            db->addColumn(name, {.name = "Zusatz", .type = ColumnType::Memo});
            if (random() % 2 == 0) table.clear();
        });
    tolerant([&] {
        db->createTable(
            {.name = "Neu", .columns = {{.name = "A"}}, .indexes = {{.name = "A", .columns = {{"A"}}}}});
    });
    tolerant([&] { db->commit(); });
}

TEST(DamageTest, DamagedFilesGiveErrorsAndNothingWorse) {
    const Bytes sound = richFile();
    for (unsigned seed = 0; seed < 120; ++seed) {
        SCOPED_TRACE(seed);
        useEverything(MemoryDisk(damaged(sound, seed)), "", seed);
    }
}

TEST(DamageTest, DamagedSamplesGiveErrorsAndNothingWorse) {
    for (const std::string& path : samples()) {
        if (path.empty()) GTEST_SKIP() << "no sample databases";
        const Bytes sound = contentOf(path);
        for (unsigned seed = 0; seed < 6; ++seed) {
            SCOPED_TRACE(path + " " + std::to_string(seed));
            useEverything(MemoryDisk(damaged(sound, seed)), passwordOf(path), seed);
        }
    }
}

TEST(DamageTest, TheMessageNamesThePlace) {
    Bytes content = richFile();
    content[4096 * 2] = 9; // the catalog's definition
    try {
        (void)MemoryDisk(content).open();
        FAIL() << "opened";
    } catch (const Error& error) {
        EXPECT_EQ(error.kind(), ErrorKind::Corrupt);
        EXPECT_EQ(error.page(), 2U);
        EXPECT_EQ(error.offset(), 0U);
        EXPECT_NE(error.text().find("page 2"), std::string::npos);
    }
}

// Rows written to the catalog as if it were a table of the user would lose other tables.
TEST(DamageTest, TheCatalogIsNoUserTableWhateverItsEntrySays) {
    const MemoryDisk disk(richFile());
    {
        Database db = disk.open();
        Table catalog = db.table("MSysObjects");
        const auto flags = static_cast<std::size_t>(*catalog.column("Flags"));
        for (auto& [id, row] : rowsOf(catalog)) {
            row[flags] = std::int32_t{0};
            catalog.update(id, row);
        }
        db.commit();
    }
    const std::vector<std::string> names = disk.open().tableNames();
    EXPECT_EQ(std::ranges::count(names, "T"), 1);
    EXPECT_EQ(std::ranges::count(names, "MSysObjects"), 0);

    Bytes content = richFile();
    const std::size_t definition = catalogPage * jet4Layout.pageSize;
    std::size_t column = definition + jet4Layout.countersAt +
                         content[definition + jet4Layout.indexDataCountAt] * jet4Layout.counterBytes;
    while (content[column + 5] != 2) // Name is its column number 2
        column += jet4Layout.columnBytes;
    ASSERT_EQ(content[column], static_cast<std::uint8_t>(ColumnType::Text));
    content[column] = 0x7F;
    EXPECT_EQ(errorOf([&] { (void)MemoryDisk(content).open(); }), ErrorKind::Corrupt);
}

TEST(DamageTest, AColumnOfAnUnknownTypeIsShownAsBytes) {
    const MemoryDisk disk;
    {
        Database db = disk.create();
        db.createTable({.name = "T", .columns = {{.name = "A", .type = ColumnType::Double}}}).insert({1.5});
        db.commit();
    }
    Bytes content = disk.content();
    std::size_t definition = content.size();
    do
        definition -= jet4Layout.pageSize;
    while (content[definition] != static_cast<std::uint8_t>(PageKind::TableDef));
    content[definition + jet4Layout.countersAt] = 0x2E; // without an index the first column stands here
    Database db = MemoryDisk(content).open();
    EXPECT_NE(schemaText(schemaOf(db)).find("A Binary(8)"), std::string::npos) << schemaText(schemaOf(db));
    const Row row = rowsOf(db.table("T")).begin()->second;
    EXPECT_EQ(std::get<Bytes>(row[0]), (Bytes{0, 0, 0, 0, 0, 0, 0xF8, 0x3F}));
}

TEST(DamageTest, MapsThatOverlapAreNotChanged) {
    const MemoryDisk disk;
    {
        Database db = disk.create();
        db.createTable(
            {.name = "T", .columns = {{.name = "A"}}, .indexes = {{.name = "A", .columns = {{"A"}}}}});
        db.commit();
    }
    // The usage maps of the table lie on the last page that belongs to no table, its index has the third one.
    Bytes content = disk.content();
    std::size_t maps = content.size();
    do
        maps -= jet4Layout.pageSize;
    while (content[maps] != static_cast<std::uint8_t>(PageKind::Data) || content[maps + ownerAt] != 0);
    // A fourth slot takes its place, and the second map grows into it behind a slot that is deleted.
    static constexpr std::array<std::uint8_t, 10> slots{4, 0, 0xBB, 0x0F, 0x36, 0x0F, 0x76, 0xCF, 0x31, 0x0F};
    std::ranges::copy(slots, content.begin() + static_cast<std::ptrdiff_t>(maps + jet4Layout.slotCountAt));
    const std::array<std::uint8_t, 4> third{2, static_cast<std::uint8_t>(maps / jet4Layout.pageSize), 0, 0};
    const auto reference = std::ranges::search(content, third).begin();
    ASSERT_NE(reference, content.end());
    *reference = 3;
    const MemoryDisk damaged(content);
    Database db = damaged.open();
    try {
        db.table("T").insert({std::string("01-250")});
        FAIL() << "changed";
    } catch (const Error& error) {
        EXPECT_NE(error.text().find("out of order"), std::string::npos) << error.text();
    }
    EXPECT_FALSE(db.changed());
}

TEST(DamageTest, ColumnsInOnePlaceAreReadButNotWritten) {
    const MemoryDisk disk;
    {
        Database db = disk.create();
        db.createTable({.name = "T",
                        .columns = {{.name = "A", .type = ColumnType::Double},
                                    {.name = "B", .type = ColumnType::Double}}})
            .insert({1.5, 2.5});
        db.commit();
    }
    Bytes content = disk.content();
    std::size_t definition = content.size();
    do
        definition -= jet4Layout.pageSize;
    while (content[definition] != static_cast<std::uint8_t>(PageKind::TableDef));
    content[definition + jet4Layout.countersAt + jet4Layout.columnBytes + 21] = 0; // the place of B
    Database db = MemoryDisk(content).open();
    Table table = db.table("T");
    EXPECT_EQ(rowsOf(table).begin()->second, (Row{1.5, 1.5}));
    EXPECT_EQ(errorOf([&] { table.insert({3.5, 4.5}); }), ErrorKind::Corrupt);
    EXPECT_FALSE(db.changed());
}

} // namespace
} // namespace jet
