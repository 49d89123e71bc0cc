#include "peers.h"

#include "catalog.h"
#include "engine_fixture.h"
#include "foreign_tree.h"
#include "inside.h"
#include "random_rows.h"
#include "temp_folder.h"

#include "jet/check.h"
#include "jet/database.h"
#include "jet/schema_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace {

using jet::ColumnType;

/// The first column in which two rows differ; nothing when they are the same.
std::optional<std::size_t> difference(const jet::Table& table, const std::vector<Printed>& ours,
                                      const std::vector<Printed>& theirs, Peer peer) {
    for (std::size_t i = 0; i < ours.size(); ++i)
        if (!same(table.columns()[i], ours[i], theirs.at(i), peer)) return i;
    return std::nullopt;
}

/// The readers meet a row that was moved out of its place at the new place, we at the old one: so a row may
/// stand elsewhere when `inOrder` is false.
void expectSameTable(const jet::Table& table, PrintedRows theirs, Peer peer, bool inOrder) {
    const PrintedRows ours = ourRows(table);
    ASSERT_EQ(ours.size(), theirs.size()) << nameOf(peer) << ", rows of " << table.name();
    for (std::size_t row = 0; row < ours.size(); ++row) {
        ASSERT_EQ(ours[row].size(), theirs[row].size())
            << nameOf(peer) << ", row " << row << " of " << table.name();
        const auto differs = difference(table, ours[row], theirs[row], peer);
        if (!differs) continue;
        const auto found =
            std::find_if(theirs.begin() + static_cast<std::ptrdiff_t>(row), theirs.end(),
                         [&](const auto& other) { return !difference(table, ours[row], other, peer); });
        ASSERT_TRUE(!inOrder && found != theirs.end())
            << nameOf(peer) << ", " << table.name() << "." << table.columns()[*differs].name << " of row "
            << row << ": ours is \"" << ours[row][*differs].text << "\", theirs \""
            << theirs[row][*differs].text << '"';
        std::rotate(theirs.begin() + static_cast<std::ptrdiff_t>(row), found, found + 1);
    }
}

/// Every user table of the file reads the same in both.
void expectSameFile(const std::string& path, const std::string& password, Peer peer, bool inOrder) {
    jet::Database database = jet::Database::open(path, password, jet::OpenMode::ReadOnly);
    std::vector<std::string> names = database.tableNames();
    std::vector<PrintedTable> tables = readWith(peer, path, names);
    ASSERT_EQ(tables.size(), names.size()) << nameOf(peer);
    for (const PrintedTable& table : tables) {
        ASSERT_TRUE(database.hasTable(table.name)) << table.name;
        expectSameTable(database.table(table.name), table.rows, peer, inOrder);
    }
}

class PeerTest : public testing::TestWithParam<Peer> {
  protected:
    void SetUp() override {
        if (!installed(GetParam())) GTEST_SKIP() << nameOf(GetParam()) << " is not installed";
    }
};

INSTANTIATE_TEST_SUITE_P(Readers, PeerTest, testing::Values(Peer::MdbExport, Peer::MdbReader),
                         [](const auto& reader) {
                             return reader.param == Peer::MdbExport ? "mdbexport" : "mdbreader";
                         });

TEST_P(PeerTest, FilesMadeByAccess) {
    for (const std::string& path : jet::samples()) {
        if (path.empty()) GTEST_SKIP() << "no databases made by Access (ZAVRO_JET_SAMPLES)";
        SCOPED_TRACE(path);
        expectSameFile(path, jet::passwordOf(path), GetParam(), path.find("overflow") == std::string::npos);
    }
}

// Five hundred seeded inserts, updates and deletes in every table; the file stays sound.
TEST_P(PeerTest, FilesMadeByAccessAndChanged) {
    TempFolder folder;
    for (const std::string& path : jet::samples()) {
        if (path.empty()) GTEST_SKIP() << "no databases made by Access (ZAVRO_JET_SAMPLES)";
        SCOPED_TRACE(path);
        const std::string copy = folder / std::filesystem::path(path).filename().string();
        std::filesystem::copy_file(path, copy);
        std::filesystem::permissions(copy, std::filesystem::perms::owner_write,
                                     std::filesystem::perm_options::add);
        {
            jet::Database database = jet::Database::open(copy, jet::passwordOf(path));
            const auto before = jet::check(database, jet::CheckLevel::Strict);
            for (const std::string& name : database.tableNames())
                jet::changeAtRandom(database.table(name), 500, 7);
            database.commit();
            EXPECT_LE(jet::check(database, jet::CheckLevel::Strict).size(), before.size());
        }
        expectSameFile(copy, jet::passwordOf(path), GetParam(), false);
    }
}

constexpr const char* everyType = R"(
table Every
    Id      Counter
    Flag    YesNo
    Small   Byte
    Number  Integer
    Money   Currency
    Single  Single
    Double  Double
    Day     DateTime
    Bytes   Binary(40)
    Short   Text(10)
    Text    Text(255) zero-length
    Plain   Text(80) plain
    Memo    Memo
    Object  LongBinary
    Guid    Guid
    Exact   Numeric(20, 4)
    primary key PK (Id)
    index Names (Text, Number desc)
    unique index Both (Id desc, Guid)
    index Values (Double, Single, Money, Day) ignore-nulls

table [A b]
    [Key]   Text(100)
    Flag    YesNo
    unique index K (Key desc)
)";

TEST_P(PeerTest, EveryColumnTypeOfOurs) {
    TempFolder folder;
    const std::string path = folder / "every.mdb";
    jet::Database database = jet::Database::create(path);
    jet::createTables(database, jet::parseSchema(everyType));
    for (const std::string& name : database.tableNames())
        jet::changeAtRandom(database.table(name), 3000, 11);
    database.addColumn("A b", jet::ColumnDesign{.name = "Later", .type = ColumnType::Memo});
    jet::changeAtRandom(database.table("A b"), 500, 12);
    database.commit();
    EXPECT_EQ(jet::check(database, jet::CheckLevel::Strict), std::vector<std::string>());
    EXPECT_GT(database.table("Every").rowCount(), 500U);
    expectSameFile(path, "", GetParam(), false);
}

// Keys of about 100 bytes that have no beginning in common: few fit on a page, so the tree gets four levels.
TEST_P(PeerTest, AnIndexOfTwoHundredThousandTexts) {
    TempFolder folder;
    const std::string path = folder / "large.mdb";
    jet::Database database = jet::Database::create(path);
    jet::createTables(database, jet::parseSchema(R"(
table Large
    Key     Text(110)
    Number  Long
    unique index Key (Key)
)"));
    jet::Table table = database.table("Large");
    jet::Random random(5);
    const auto key = [&random] {
        std::string text(90 + random() % 20, '-');
        for (char& c : text)
            if (const unsigned letter = random() % 27; letter != 26) c = static_cast<char>('a' + letter);
        return text;
    };
    std::vector<jet::RowId> rows;
    for (std::int32_t i = 0; i < 203000; ++i)
        rows.push_back(table.insert({key(), i}));
    for (std::size_t i = 0; i < 6000; ++i) {
        const jet::RowId victim = rows[i * 33];
        if (i % 2 == 0)
            table.erase(victim);
        else
            table.update(victim, {key(), -1});
    }
    database.commit();
    EXPECT_EQ(table.rowCount(), 200000U);
    jet::Pager& pager = jet::Inside::pager(database);
    const auto definition = jet::TableDef::load(pager, jet::Catalog(pager).table("Large")->page());
    EXPECT_EQ(jet::levelsOf(pager, definition.page, definition.indexData.front().root).size(), 4U);
    EXPECT_EQ(jet::check(database, jet::CheckLevel::Strict), std::vector<std::string>());
    expectSameFile(path, "", GetParam(), false);
}

// Books, roads and login stores.
TEST_P(PeerTest, EveryKindOfFileWithItsPassword) {
    TempFolder folder;
    for (const std::filesystem::path schemaFile :
         {ZAVRO_SCHEMAS "/grl.schema", ZAVRO_SCHEMAS "/rod.schema", ZAVRO_TEST_DATA "/suprt.schema"}) {
        const jet::Bytes text = jet::contentOf(schemaFile.string());
        const jet::Schema schema = jet::parseSchema(std::string(text.begin(), text.end()));
        const std::string path = folder / schemaFile.stem().string();
        jet::CreateOptions options;
        options.password = schema.password;
        jet::Database database = jet::Database::create(path, options);
        jet::createTables(database, schema);
        for (const std::string& table : database.tableNames())
            jet::changeAtRandom(database.table(table), 200, 3);
        database.commit();
        expectSameFile(path, schema.password, GetParam(), false);
    }
}

} // namespace
