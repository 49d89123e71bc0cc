#pragma once

#include "bytes.h"
#include "table_def.h"

namespace jet {

class Pager;
class StoredRow;

/// Bytes that a value of the type takes; 0 = as many as the value has.
[[nodiscard]] std::size_t storedBytes(ColumnType type);

/// The value of a field. Long values are read from their pages.
void decodeField(Pager& pager, const ColumnDef& column, const View& field, Value& into);
/// The value of a column in a row.
void decodeColumn(Pager& pager, const ColumnDef& column, const StoredRow& row, Value& into);

/// TypeMismatch or TextTooLong when `value` cannot stand in the column.
void requireValue(const ColumnDef& column, const Value& value, Format format);
/// Appends the stored form of a value of a column that is neither Boolean nor a long value.
void encodeField(const ColumnDef& column, const Value& value, Format format, Bytes& out);
/// Stores a Single or Double at the start of `to`, which has the room; false for any other value.
[[nodiscard]] bool storeReal(const Value& value, ByteSpan to);
/// The bytes of a long value before they are cut into pieces.
[[nodiscard]] Bytes longValueBytes(const ColumnDef& column, const Value& value, Format format);

} // namespace jet
