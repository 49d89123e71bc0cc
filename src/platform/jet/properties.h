#pragma once

#include "design.h"
#include "table.h"

namespace jet {

/// Takes what the properties of a table (column LvProp of the catalog) say about its columns. Properties that
/// are damaged or not understood are passed over.
void readProperties(const Bytes& stored, Format format, std::vector<Column>& columns);
/// The properties of a new table; empty when nothing differs from what holds without them.
[[nodiscard]] Bytes makeProperties(const std::vector<ColumnDesign>& columns, Format format);
/// The stored properties of a table with those of a new column; what else stands in them stays. Properties
/// that are damaged are left as they are.
[[nodiscard]] Bytes withColumn(const Bytes& stored, const ColumnDesign& column, Format format);

} // namespace jet
