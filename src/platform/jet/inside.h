#pragma once

#include "database.h"
#include "pager.h"

namespace jet {

/// What the checker and the engine's own tests see of a database behind its face.
struct Inside {
    /// The pages as commit() would write them.
    [[nodiscard]] static Pager& pager(Database& database);
};

} // namespace jet
