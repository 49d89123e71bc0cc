#include "jet_input.h"

#include "jet/check.h"
#include "jet/schema_text.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

void readTable(const jet::Database& db, const std::string& name) {
    const jet::Table table = db.table(name);
    (void)fuzz::tolerant([&] { (void)fuzz::rowsOf(table); });
    for (std::size_t i = 0; i < table.indexes().size(); ++i)
        (void)fuzz::tolerant([&] {
            for (const jet::RowId id : table.seekAll(static_cast<int>(i), {}))
                (void)table.exists(id);
        });
}

} // namespace

// Any bytes open, or give an error: all rows, all indexes, the layout and the structural check.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const jet::MemoryDisk disk(jet::Bytes(data, data + size));
    std::optional<jet::Database> db = fuzz::open(disk, jet::OpenMode::ReadOnly);
    if (!db) return 0;
    for (const std::string& name : db->allTableNames())
        (void)fuzz::tolerant([&] { readTable(*db, name); });
    (void)fuzz::tolerant([&] { (void)jet::schemaText(jet::schemaOf(*db)); });
    // The check reports damage; it does not throw.
    if (jet::check(*db).size() > 1001 || db->changed()) std::abort();
    return 0;
}

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t most,
                                               unsigned seed) {
    return fuzz::mutate(data, size, most, seed);
}
