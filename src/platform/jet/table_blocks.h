#pragma once

#include "table_def.h"

namespace jet {

// The blocks that a definition is made of: one a column, one for the data of each index, one an index.
// Reading takes a block of the length that the layout names; writing appends one. Fields that are not named
// here are written as zero.

[[nodiscard]] ColumnDef readColumnBlock(const View& block, const Layout& layout);
void writeColumnBlock(Bytes& out, const ColumnDef& column, const Layout& layout);
[[nodiscard]] IndexData readIndexDataBlock(const View& block, const Layout& layout);
void writeIndexDataBlock(Bytes& out, const IndexData& data, const Layout& layout);
[[nodiscard]] LogicalIndex readIndexBlock(const View& block, const Layout& layout);
void writeIndexBlock(Bytes& out, const LogicalIndex& index, const Layout& layout);

} // namespace jet
