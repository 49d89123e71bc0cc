#include "jet/database.h"

#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

// Save, load and seek-then-insert of field books with 11 readings a chainage, beside SQLite doing the same in
// one transaction, with the same index or both without.

namespace {

using jet::ColumnType;
using jet::Value;

struct Reading {
    std::string chainage;
    std::string side;
    double offset;
    std::string reading;
};

/// As a book is kept: left to right at each chainage.
std::vector<Reading> readings(std::int64_t count) {
    std::vector<Reading> all;
    for (std::int64_t i = 0; i < count; ++i) {
        const auto place = static_cast<int>(i % 11) - 5;
        const auto metres = static_cast<long>(i / 11) * 10;
        char chainage[32];
        std::snprintf(chainage, sizeof chainage, "%02ld-%03ld", metres / 1000, metres % 1000);
        all.push_back({chainage,
                       place < 0    ? "L"
                       : place == 0 ? "C"
                                    : "R",
                       place < 0 ? -place * 1.5 : place * 1.5, "1." + std::to_string(100 + i % 900)});
    }
    return all;
}

/// A folder on the disk for one run.
class Folder {
  public:
    Folder() : m_path(std::filesystem::temp_directory_path() / "zavrogrl-jet-bench") {
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    Folder(const Folder&) = delete;
    Folder& operator=(const Folder&) = delete;
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    [[nodiscard]] std::string operator/(const char* name) const { return (m_path / name).string(); }

  private:
    std::filesystem::path m_path;
};

const jet::IndexDesign pointKey{
    .name = "CSO", .columns = {{"Chn"}, {"Side"}, {"Oft"}}, .kind = jet::IndexKind::PrimaryKey};

/// What both sides of a comparison keep: no index, as the field book has none, or a unique one.
enum Keeps { NoIndex, UniqueIndex };

jet::TableDesign bookDesign(Keeps keeps) {
    jet::TableDesign design{.name = "Grl"};
    design.columns = {{.name = "Chn", .type = ColumnType::Text, .size = 25, .allowZeroLength = true},
                      {.name = "Side", .type = ColumnType::Text, .size = 1},
                      {.name = "Oft", .type = ColumnType::Double}};
    if (keeps == UniqueIndex) design.indexes = {pointKey};
    for (const char* name : {"B", "i", "F", "HI", "rl"})
        design.columns.push_back({.name = name, .type = ColumnType::Text, .size = 20});
    design.columns.push_back({.name = "Rem", .type = ColumnType::Text});
    return design;
}

jet::TableDesign roadDesign() {
    jet::TableDesign design{.name = "CSect"};
    design.columns = {{.name = "Chn", .type = ColumnType::Text, .size = 25},
                      {.name = "Side", .type = ColumnType::Text, .size = 1},
                      {.name = "Oft", .type = ColumnType::Double},
                      {.name = "Grl", .type = ColumnType::Single}};
    design.indexes = {pointKey};
    return design;
}

jet::Row bookRow(const Reading& reading) {
    return {reading.chainage, reading.side,           reading.offset,         jet::Null{}, reading.reading,
            jet::Null{},      std::string("101.525"), std::string("100.425"), jet::Null{}};
}

void makeFile(const std::string& path, const jet::TableDesign& design) {
    std::filesystem::remove(path);
    jet::Database db = jet::Database::create(path);
    db.createTable(design);
    db.commit();
}

void JetSave(benchmark::State& state) {
    const Folder folder;
    const std::vector<Reading> book = readings(state.range(0));
    makeFile(folder / "book.mdb", bookDesign(static_cast<Keeps>(state.range(1))));
    for (auto _ : state) {
        jet::Database db = jet::Database::open(folder / "book.mdb");
        jet::Table table = db.table("Grl");
        table.clear();
        for (const Reading& reading : book)
            table.insert(bookRow(reading));
        db.commit();
    }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(folder / "book.mdb"));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void JetLoad(benchmark::State& state) {
    const Folder folder;
    makeFile(folder / "book.mdb", bookDesign(NoIndex));
    {
        jet::Database db = jet::Database::open(folder / "book.mdb");
        jet::Table table = db.table("Grl");
        for (const Reading& reading : readings(state.range(0)))
            table.insert(bookRow(reading));
        db.commit();
    }
    for (auto _ : state) {
        const jet::Database db = jet::Database::open(folder / "book.mdb", {}, jet::OpenMode::ReadOnly);
        std::size_t length = 0;
        const jet::Table table = db.table("Grl");
        for (jet::Cursor cursor = table.scan(); cursor.next();)
            length += std::get<std::string>(cursor.row()[0]).size();
        benchmark::DoNotOptimize(length);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void JetSeekThenInsert(benchmark::State& state) {
    const Folder folder;
    const std::vector<Reading> book = readings(state.range(0));
    std::vector<Value> key(3);
    for (auto _ : state) {
        state.PauseTiming();
        makeFile(folder / "road.mdb", roadDesign());
        state.ResumeTiming();
        jet::Database db = jet::Database::open(folder / "road.mdb");
        jet::Table table = db.table("CSect");
        for (const Reading& reading : book) {
            key[0] = reading.chainage;
            key[1] = reading.side;
            key[2] = reading.offset;
            if (!table.seek(0, key)) table.insert({reading.chainage, reading.side, reading.offset, 100.0F});
        }
        db.commit();
    }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(folder / "road.mdb"));
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

using Sqlite = std::unique_ptr<sqlite3, decltype(&sqlite3_close)>;
using Statement = std::unique_ptr<sqlite3_stmt, decltype(&sqlite3_finalize)>;

Sqlite openSqlite(const std::string& path) {
    sqlite3* db = nullptr;
    if (sqlite3_open(path.c_str(), &db) != SQLITE_OK) std::abort();
    return {db, sqlite3_close};
}

void run(const Sqlite& db, const char* sql) {
    if (sqlite3_exec(db.get(), sql, nullptr, nullptr, nullptr) != SQLITE_OK) std::abort();
}

Statement prepare(const Sqlite& db, const char* sql) {
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(db.get(), sql, -1, &statement, nullptr) != SQLITE_OK) std::abort();
    return {statement, sqlite3_finalize};
}

void bind(const Statement& statement, int place, const std::string& text) {
    sqlite3_bind_text(statement.get(), place, text.data(), static_cast<int>(text.size()), SQLITE_STATIC);
}

void finish(const Statement& statement) {
    if (sqlite3_step(statement.get()) != SQLITE_DONE) std::abort();
    sqlite3_reset(statement.get());
}

/// One row of so many is changed; the commit writes the whole file anew.
void JetChangeOne(benchmark::State& state) {
    const Folder folder;
    makeFile(folder / "book.mdb", bookDesign(NoIndex));
    {
        jet::Database db = jet::Database::open(folder / "book.mdb");
        jet::Table table = db.table("Grl");
        for (const Reading& reading : readings(state.range(0)))
            table.insert(bookRow(reading));
        db.commit();
    }
    Reading changed = readings(1).front();
    for (auto _ : state) {
        changed.reading = std::to_string(state.iterations());
        jet::Database db = jet::Database::open(folder / "book.mdb");
        jet::Table table = db.table("Grl");
        jet::Cursor cursor = table.scan();
        if (cursor.next()) table.update(cursor.id(), bookRow(changed));
        db.commit();
    }
    state.counters["bytes"] = static_cast<double>(std::filesystem::file_size(folder / "book.mdb"));
}

/// The same rows, replaced in one transaction.
void SqliteSave(benchmark::State& state) {
    const Folder folder;
    const std::vector<Reading> book = readings(state.range(0));
    const std::string hi = "101.525";
    const std::string level = "100.425";
    {
        const Sqlite db = openSqlite(folder / "book.db");
        run(db, "create table Grl (Chn text, Oft real, Side text, B text, i text, F text, HI text, rl text, "
                "Rem text)");
        if (state.range(1) == UniqueIndex) run(db, "create unique index CSO on Grl (Chn, Side, Oft)");
    }
    for (auto _ : state) {
        const Sqlite db = openSqlite(folder / "book.db");
        run(db, "begin; delete from Grl");
        const Statement insert = prepare(db, "insert into Grl values (?, ?, ?, null, ?, null, ?, ?, null)");
        for (const Reading& reading : book) {
            bind(insert, 1, reading.chainage);
            sqlite3_bind_double(insert.get(), 2, reading.offset);
            bind(insert, 3, reading.side);
            bind(insert, 4, reading.reading);
            bind(insert, 5, hi);
            bind(insert, 6, level);
            finish(insert);
        }
        run(db, "commit");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void SqliteSeekThenInsert(benchmark::State& state) {
    const Folder folder;
    const std::vector<Reading> book = readings(state.range(0));
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove(folder / "road.db");
        const Sqlite db = openSqlite(folder / "road.db");
        run(db, "create table CSect (Chn text, Side text, Oft real, Grl real)");
        run(db, "create unique index CSO on CSect (Chn, Side, Oft)");
        state.ResumeTiming();
        run(db, "begin");
        const Statement seek = prepare(db, "select rowid from CSect where Chn = ? and Side = ? and Oft = ?");
        const Statement insert = prepare(db, "insert into CSect values (?, ?, ?, 100.0)");
        for (const Reading& reading : book) {
            for (const Statement* statement : {&seek, &insert}) {
                bind(*statement, 1, reading.chainage);
                bind(*statement, 2, reading.side);
                sqlite3_bind_double(statement->get(), 3, reading.offset);
                finish(*statement);
            }
        }
        run(db, "commit");
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void sizesWithAndWithoutIndex(benchmark::internal::Benchmark* benchmark) {
    benchmark->ArgNames({"rows", "index"})->ArgsProduct({{1000, 10000, 100000}, {NoIndex, UniqueIndex}});
    benchmark->Unit(benchmark::kMillisecond)->UseRealTime();
}

void sizes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->UseRealTime();
}

BENCHMARK(JetSave)->Apply(sizesWithAndWithoutIndex);
BENCHMARK(SqliteSave)->Apply(sizesWithAndWithoutIndex);
BENCHMARK(JetChangeOne)->Apply(sizes);
BENCHMARK(JetLoad)->Apply(sizes);
BENCHMARK(JetSeekThenInsert)->Apply(sizes);
BENCHMARK(SqliteSeekThenInsert)->Apply(sizes);

} // namespace
