#include "jet/check.h"
#include "jet/database.h"
#include "jet/error.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

// Any bytes either open or are refused with a jet::Error; what opens can be read and checked, whatever it
// holds.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > std::size_t{1} << 20) return 0;
    try {
        auto file = std::make_unique<jet::MemoryFile>(jet::Bytes(data, data + size));
        jet::Database database = jet::Database::open(std::move(file), "password", jet::OpenMode::ReadOnly);
        for (const std::string& name : database.allTableNames()) {
            try {
                const jet::Table table = database.table(name);
                for (jet::Cursor rows = table.scan(); rows.next();)
                    if (rows.row().size() != table.columns().size()) std::abort();
                for (int i = 0; i < static_cast<int>(table.indexes().size()); ++i)
                    if (table.indexes()[static_cast<std::size_t>(i)].seekable)
                        static_cast<void>(table.seekAll(i, {}));
            } catch (const jet::Error&) {
                // Damage in one table leaves the others.
            }
        }
        static_cast<void>(jet::check(database));
    } catch (const jet::Error&) {
        // Refused.
    }
    return 0;
}
