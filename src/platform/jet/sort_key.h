#pragma once

#include "value.h"

namespace jet {

/// What of a column decides the form of its key.
struct KeyColumn {
    ColumnType type;
    bool ascending = true;
};

/// Appends to `out` the key bytes of `value` (a flag byte, then the value; only the flag for Null) as index
/// entries of `format` hold them: plain comparison of the bytes gives the order of the index. The value's
/// alternative must be the one of the column's type; text is UTF-8 and is ordered by the general legacy
/// order. Never fails for such values.
void appendKey(Bytes& out, const KeyColumn& column, const Value& value, Format format);

/// The flag byte of Null, which has nothing behind it.
[[nodiscard]] bool isNullFlag(std::uint8_t flag);

} // namespace jet
