#pragma once

#include "jet/table.h"

#include <iosfwd>

namespace cli {

enum class DumpForm {
    Csv, ///< a header line, then one line a row; fields are quoted where they must be
    Json ///< one object a line
};

/// Writes the rows of `table` in the order of its pages. In CSV Null is nothing and an empty text is "".
/// Yes/No is 1 or 0 (true or false in JSON), dates are 2015-11-21 14:30:00, bytes are hex digits, GUIDs stand
/// in braces; numbers have as many digits as bring back the same value.
void dumpTable(const jet::Table& table, DumpForm form, std::ostream& out);

} // namespace cli
