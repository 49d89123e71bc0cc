#pragma once

#include "errors.h"

#include "jet/database.h"

#include <optional>
#include <string>

namespace dao {

/// An open database file, shared by the Database and its Recordsets; empty once the Database is closed.
struct Connection {
    std::string path;
    std::optional<jet::Database> database;
    /// Counts what may change the order of rows in an index, so that a recordset knows when to look again.
    std::uint64_t changes = 0;

    [[nodiscard]] jet::Database& open() {
        if (!database) raise(EngineError::ObjectClosed);
        return *database;
    }
};

} // namespace dao
