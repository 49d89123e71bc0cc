#pragma once

#include "dao/dao.h"
#include "sheet/heading.h"

// The heading of a book in its project file: a table Job with the fields Key, Text(50), the primary key, and
// Value, Text(255); a record for each text that there is. The table is made with the first text, so that a
// book without a heading has none. A table of that name with other fields is somebody else's and left alone.

namespace project {

/// Empty when the file has no such table.
[[nodiscard]] sheet::Heading readHeading(dao::Database& database);

/// Brings the table in step with `heading`; records with keys that are none of the heading's stay. False when
/// the file's table Job is another one, which is left alone.
[[nodiscard]] bool writeHeading(dao::Database& database, const sheet::Heading& heading);

} // namespace project
