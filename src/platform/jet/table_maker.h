#pragma once

#include "design.h"
#include "table_def.h"

namespace jet {

class Pager;

/// Throws InvalidDesign when the format cannot hold what is asked for.
void requireDesign(const TableDesign& design, Format format);
void requireColumnDesign(const ColumnDesign& design, Format format);

/// An empty record of such a table has room on a page.
void requireShortRecord(const Layout& layout, std::size_t columns, std::size_t fixedBytes,
                        std::size_t variableColumns);

/// The column block of a new column; number, place and offset are still open.
[[nodiscard]] ColumnDef columnDefOf(const ColumnDesign& design, Format format);

/// Adds an empty usage map to a page with maps; to a new page when `page` is 0 or has no room.
[[nodiscard]] RowPointer newUsageMap(Pager& pager, std::uint32_t& page);

/// Allocates the pages of a new table: its definition (unless `def.page` is set), maps and index roots.
/// Columns and indexes are in `def`, places and pointers are filled in.
void makeTable(Pager& pager, TableDef& def, std::uint32_t& mapPage);

/// The definition of a user table, without places and pointers.
[[nodiscard]] TableDef tableDefOf(const TableDesign& design, Format format);

} // namespace jet
